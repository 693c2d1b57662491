#include "desktop/applications/ProcessApplication.h"

#include "desktop/applications/ProcessIdentity.h"
#include "desktop/applications/SessionUnit.h"
#include "foundation/FileReading.h"

#include <QFile>

namespace kestrin::desktop {

using namespace foundation;

namespace {

/// What is started in a terminal is in the unit of the terminal, which has another number.
QString idOfOwnScope(const QByteArray &folder, qint32 process) {
    const QByteArray group = fileHead(folder + "/cgroup");
    return group.contains('-' + QByteArray::number(process) + ".scope") ? unitIdOfControlGroup(group)
                                                                        : QString();
}

} // namespace

std::optional<DesktopEntryIndex::Found> applicationOfProcess(qint32 process, DesktopEntryIndex &entries,
                                                             const std::function<QStringList()> &busNames) {
    std::optional<DesktopEntryIndex::Found> found;
    const auto take = [&found](std::optional<DesktopEntryIndex::Found> candidate) {
        if (!found && candidate && !candidate->entry.isOutsideMenus)
            found = std::move(candidate);
        return found.has_value();
    };
    const QByteArray folder = "/proc/" + QByteArray::number(process);
    const ProcessIdentity identity = ProcessIdentity::of(process);
    if (take(entries.withId(identity.sandboxId)) || take(entries.withId(idOfOwnScope(folder, process))))
        return found;
    for (const QString &name : busNames()) {
        if (take(entries.withId(name)))
            return found;
    }
    if (identity.executablePath && take(entries.withExecutable(*identity.executablePath)))
        return found;
    // An interpreter's first argument is the script.
    const QList<QByteArray> words = fileHead(folder + "/cmdline").split('\0');
    if (words.size() > 1 && words[1].contains('/'))
        take(entries.withExecutable(QFile::decodeName(words[1])));
    return found;
}

} // namespace kestrin::desktop
