#include "desktop/applications/ApplicationIdentity.h"

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/applications/KnownPackagings.h"
#include "desktop/applications/ProcessIdentity.h"

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

using Found = std::optional<DesktopEntryIndex::Found>;

/// "/usr/share/applications/org.kde.dolphin.desktop" and "org.kde.dolphin" are the same.
QString idOfDesktopFile(const QString &idOrPath) {
    QString id = idOrPath.sliced(idOrPath.lastIndexOf(u'/') + 1);
    if (id.endsWith(".desktop"_L1))
        id.chop(8);
    return id;
}

Found findEntry(const ApplicationClaims &claims, const QString &sandboxId, DesktopEntryIndex &entries) {
    const auto byId = [&entries](const QString &id) {
        Found found = entries.withId(id);
        // The site is not the application; the browser is.
        return found && found->entry.isWebApplication ? std::nullopt : found;
    };
    for (const QString &id : {sandboxId, claims.gtkApplicationId, idOfDesktopFile(claims.kdeDesktopFile)}) {
        if (Found found = byId(id))
            return found;
    }
    const QString instance = claims.isSite() ? QString() : claims.instanceName;
    for (const QString &name : {claims.className, instance}) {
        if (Found found = entries.withWindowClass(name))
            return found;
    }
    for (const QString &name : {claims.className, instance}) {
        if (Found found = byId(name))
            return found;
    }
    return std::nullopt;
}

QString nameWithoutEntry(const ApplicationClaims &claims, const ProcessIdentity &process) {
    if (!claims.className.isEmpty())
        return claims.className;
    return claims.instanceName.isEmpty() ? process.executableName() : claims.instanceName;
}

} // namespace

ApplicationIdentity ApplicationIdentity::of(const ApplicationClaims &claims, const ProcessIdentity &process,
                                            DesktopEntryIndex &entries) {
    const QString sandboxId = process.sandboxId.isEmpty() ? claims.sandboxId : process.sandboxId;
    const Found found = findEntry(claims, sandboxId, entries);
    ApplicationIdentity identity;
    if (found)
        identity.name = found->entry.name;
    if (identity.name.isEmpty())
        identity.name = nameWithoutEntry(claims, process);

    // What a packaging is called is certain. The class comes second: whoever makes a starter of his own, or
    // lets a tool make one, calls it as he likes, and the windows stay the same.
    identity.identifier = knownBundleIdentifierOfId(found ? found->id : sandboxId);
    if (!identity.identifier)
        identity.identifier = knownBundleIdentifierOfClass(claims.className);
    if (!identity.identifier && found)
        identity.identifier = found->id;
    return identity;
}

} // namespace kestrin::desktop
