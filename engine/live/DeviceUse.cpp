#include "engine/live/DeviceUse.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

namespace {

QString sentence(const DeviceUse &use, const QString &verb) {
    const QString device = use.category == MacRiskCategory::microphone ? u"microphone"_s
                           : use.category == MacRiskCategory::camera   ? u"camera"_s
                                                                       : u"screen"_s;
    return use.localizedName + u' ' + verb + u" using the "_s + device + u'.';
}

} // namespace

QString startedSentence(const DeviceUse &use) {
    return sentence(use, u"started"_s);
}

QString goingOnSentence(const DeviceUse &use) {
    return sentence(use, u"is"_s);
}

QString stoppedSentence(const DeviceUse &use) {
    return sentence(use, u"stopped"_s);
}

} // namespace kestrin::engine
