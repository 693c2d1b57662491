#include "runtime/AddableApplications.h"

#include "engine/OwnApplications.h"
#include "engine/RiskAppMatcher.h"

#include <QSet>

namespace kestrin::runtime {

using namespace engine;

QList<AddableApplication> addableApplications(const RiskAppCatalog &catalog,
                                              const QList<RunningMacApp> &running,
                                              const QList<InstalledApplication> &installed) {
    const RiskAppMatcher matcher(catalog);
    QList<AddableApplication> result;
    QSet<std::pair<QString, QString>> seen;
    const auto append = [&](const AddableApplication &application) {
        const auto key = std::pair{normalizedAppName(application.name),
                                   application.identifier.value_or(QString()).toLower()};
        if (seen.contains(key) || isKestrinsName(application.name) ||

            matcher.definition({0, application.name, application.identifier, {}}))
            return;
        seen.insert(key);
        result.append(application);
    };

    QHash<QString, QString> icons;
    for (const InstalledApplication &application : installed)
        icons.insert(application.identifier, application.icon);
    for (const RunningMacApp &app : running)
        append({app.localizedName, app.bundleIdentifier,
                icons.value(app.bundleIdentifier.value_or(QString())), true});
    for (const InstalledApplication &application : installed)
        append({application.name, application.identifier, application.icon, false});
    return result;
}

} // namespace kestrin::runtime
