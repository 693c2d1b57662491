#include "app/Kestrin/log/ApplicationPictures.h"

#include "engine/RiskAppCatalog.h"

namespace kestrin::app {

using namespace engine;
using namespace runtime;

ApplicationPictures::ApplicationPictures(const QList<InstalledApplication> &installed) {
    for (const InstalledApplication &application : installed) {
        m_byIdentifier.insert(application.identifier.toLower(), application.icon);
        m_byName.insert(normalizedAppName(application.name), application.icon);
    }
}

QString ApplicationPictures::of(const MacProtectionEvent &event) const {
    if (!event.appName)
        return {};
    const auto found = m_byIdentifier.constFind(event.bundleIdentifier.value_or(QString()).toLower());
    return found != m_byIdentifier.cend() ? *found : ofName(*event.appName);
}

QString ApplicationPictures::ofName(const QString &name) const {
    return m_byName.value(normalizedAppName(name));
}

} // namespace kestrin::app
