#include "desktop/wayland/SocketOwners.h"

#include "desktop/applications/ProcessIdentity.h"
#include "desktop/wayland/SocketPeers.h"

#include <QByteArray>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

namespace kestrin::desktop {

namespace {

struct CloseDescriptors {
    void operator()(DIR *folder) const { ::closedir(folder); }
};
using Descriptors = std::unique_ptr<DIR, CloseDescriptors>;

QByteArray folderOf(qint32 process) {
    return "/proc/" + QByteArray::number(process) + "/fd";
}

quint32 socketAt(int folder, const char *name) {
    std::array<char, 64> target{};
    const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
    return length > 0 ? inodeOfSocket(QByteArrayView(target.data(), length)) : 0;
}

/// Of all users.
QList<qint32> allProcesses() {
    QList<qint32> processes;
    const Descriptors folder(::opendir("/proc"));
    while (const dirent *const entry = folder ? ::readdir(folder.get()) : nullptr) {
        if (const int process = std::atoi(static_cast<const char *>(entry->d_name)); process > 0)
            processes.append(process);
    }
    return processes;
}

} // namespace

QList<qint32> SocketOwners::of(const QSet<quint32> &inodes) {
    m_owners.removeIf([&inodes](const auto &known) {
        const QByteArray descriptor = QByteArray::number(known.value().descriptor);
        const QByteArray path = folderOf(known.value().process) + '/' + descriptor;
        return !inodes.contains(known.key()) || socketAt(AT_FDCWD, path.constData()) != known.key();
    });
    if (m_owners.size() < inodes.size())
        search(inodes);
    QList<qint32> owners;
    for (const Owner &owner : std::as_const(m_owners)) {
        if (!owners.contains(owner.process))
            owners.append(owner.process);
    }
    std::sort(owners.begin(), owners.end());
    return owners;
}

void SocketOwners::search(const QSet<quint32> &inodes) {
    for (const qint32 process : allProcesses()) {
        // Only those of the user himself can be opened.
        const Descriptors folder(::opendir(folderOf(process).constData()));
        while (const dirent *const entry = folder ? ::readdir(folder.get()) : nullptr) {
            const quint32 inode = socketAt(::dirfd(folder.get()), static_cast<const char *>(entry->d_name));
            if (inode == 0 || !inodes.contains(inode))
                continue;
            const auto known = m_owners.constFind(inode);
            if (known == m_owners.cend() || startOfProcess(process) < startOfProcess(known->process))
                m_owners.insert(inode, {process, std::atoi(static_cast<const char *>(entry->d_name))});
        }
    }
}

} // namespace kestrin::desktop
