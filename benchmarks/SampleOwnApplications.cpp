#include "benchmarks/SampleOwnApplications.h"

#include "benchmarks/Run.h"
#include "engine/OwnApplications.h"
#include "runtime/FileStores.h"

using namespace Qt::StringLiterals;

namespace kestrin::bench {

using namespace engine;

void storeOwnApplications(const QString &supportFolder, int count) {
    const auto add = [count](QList<RiskAppDefinition> &own) {
        QString refusal;
        for (int i = 0; i < count && refusal.isEmpty(); ++i)
            refusal = appendOwn({.name = u"Meeting Helper %1"_s.arg(i),
                                 .identifiers = {u"org.example.meeting-helper-%1"_s.arg(i)},
                                 .aliases = {u"Helper %1"_s.arg(i)},
                                 .categories = {MacRiskCategory::microphone}},
                                own);
        return refusal;
    };
    if (!runtime::ownApplicationsIn(supportFolder)->update(add).isKept())
        giveUp("there is no room for own applications.");
}

} // namespace kestrin::bench
