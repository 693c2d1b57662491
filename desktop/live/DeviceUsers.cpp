#include "desktop/live/DeviceUsers.h"

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/ProcessApplication.h"
#include "desktop/applications/ProcessIdentity.h"
#include "foundation/FileReading.h"

#include <QDir>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

namespace {

constexpr qsizetype manyProcesses = 256;
constexpr qsizetype longName = 200;

/// Empty for folders that many applications share.
QString ownFolder(const QString &executable) {
    const QString folder = executable.first(executable.lastIndexOf(u'/') + 1);
    for (const QLatin1StringView shared :
         {"/bin/"_L1, "/sbin/"_L1, "/games/"_L1, "/libexec/"_L1, "/lib/"_L1}) {
        if (folder.endsWith(shared))
            return {};
    }
    return folder == "/"_L1 || folder == QDir::homePath() + u'/' ? QString() : folder;
}

/// Whether `path` is what the parent runs too, or lies in the folder that is the parent's own.
bool belongsTo(const QString &path, const QString &parent) {
    const QString folder = ownFolder(parent);
    return path == parent || (!folder.isEmpty() && path.startsWith(folder));
}

/// What it is called in listings of processes.
QString nameOfProcess(qint32 process) {
    return QString::fromUtf8(fileHead("/proc/" + QByteArray::number(process) + "/comm")).trimmed();
}

/// A process of the menus' applications, or none.
QString applicationIdOf(qint32 process, DesktopEntryIndex &entries) {
    const auto found = applicationOfProcess(process, entries, [] { return QStringList(); });
    return found ? found->id : QString();
}

} // namespace

DeviceUser DeviceUsers::of(const SourceUse &use) {
    if (const auto known = m_known.constFind(use.process);
        known != m_known.cend() && isStillCalledSo(*known, use))
        return known->user;
    if (m_known.size() >= manyProcesses)
        m_known.clear();
    const quint64 start = use.process > 0 ? startOfProcess(use.process) : 0;
    const auto executable = ProcessIdentity::of(use.process).executablePath;
    const DeviceUser user = find(use);
    // A process that stands for itself may show a window later, which tells who it is.
    const bool isForGood = user.process != use.process || withWindows(user.process);
    m_known.insert(use.process, {start, executable, user, Clock::now(), isForGood});
    return user;
}

/// The same program under the same number is the same application.
bool DeviceUsers::isStillCalledSo(const Known &known, const SourceUse &use) {
    return known.start != 0 && known.start == startOfProcess(use.process) &&
           known.executable == ProcessIdentity::of(use.process).executablePath &&
           (known.isForGood || Clock::now() - known.since < 5s);
}

void DeviceUsers::lookAtWindows() {
    const auto now = Clock::now();
    if (m_looked && now - *m_looked < 1s)
        return;
    m_looked = now;
    m_withWindows = m_workspace.runningApplications();
}

const WorkspaceApplication *DeviceUsers::withWindows(qint32 process) const {
    const auto found = std::ranges::find(m_withWindows, process, &WorkspaceApplication::processIdentifier);
    return found == m_withWindows.cend() ? nullptr : &*found;
}

DeviceUser DeviceUsers::find(const SourceUse &use) {
    lookAtWindows();
    m_entries.refresh();
    DeviceUser user{use.process, {}, {}};
    ProcessIdentity identity = ProcessIdentity::of(use.process);
    QString id = applicationIdOf(use.process, m_entries);
    // No application starts itself more often than this.
    for (int depth = 0; depth < 16 && identity.executablePath && !withWindows(user.process); ++depth) {
        const qint32 parent = parentOfProcess(user.process);
        const ProcessIdentity above = parent > 1 ? ProcessIdentity::of(parent) : ProcessIdentity();
        if (!above.executablePath || above.sandboxId != identity.sandboxId)
            break;
        const QString aboveId = applicationIdOf(parent, m_entries);
        const bool isHelper = belongsTo(*identity.executablePath, *above.executablePath);
        // All of a sandbox is the same application, and what starts it there has no windows.
        const bool isKnown = identity.sandboxId.isEmpty() && !id.isEmpty() && !aboveId.isEmpty();
        if (isKnown ? id != aboveId : !isHelper)
            break;
        user.process = parent;
        identity = above;
        id = aboveId.isEmpty() ? id : aboveId;
    }
    if (const auto *const application = withWindows(user.process)) {
        user.name = application->localizedName.value_or(QString());
        user.identifier = application->bundleIdentifier;
    } else {
        ApplicationClaims claims;
        claims.gtkApplicationId = id;
        claims.sandboxId = use.sandboxId;
        const auto known = ApplicationIdentity::of(claims, identity, m_entries);
        user.name = known.name;
        user.identifier = known.identifier;
    }
    for (const QString &name :
         {use.claimedName, nameOfProcess(user.process), u"A program without a name"_s}) {
        if (user.name.isEmpty())
            user.name = name;
    }
    user.name.truncate(longName);
    return user;
}

} // namespace kestrin::desktop
