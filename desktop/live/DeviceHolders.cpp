#include "desktop/live/DeviceHolders.h"

#include "foundation/Deadline.h"
#include "foundation/FileReading.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <memory>

namespace kestrin::desktop {

using namespace foundation;

namespace {

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

QByteArray nameOf(const dirent &entry) {
    return static_cast<const char *>(entry.d_name);
}

/// Of device files the device, of others the file.
struct FileIdentity {
    dev_t device = 0;
    ino_t file = 0;

    static std::optional<FileIdentity> of(int folder, const QByteArray &path) {
        struct stat status {};
        if (::fstatat(folder, path.constData(), &status, 0) != 0)
            return std::nullopt;
        const bool isDevice = S_ISCHR(status.st_mode);
        return isDevice ? FileIdentity{status.st_rdev, 0} : FileIdentity{status.st_dev, status.st_ino};
    }
    bool operator==(const FileIdentity &) const = default;
};

struct Device {
    QByteArray path;
    /// Behind the last slash, and with the slash.
    QByteArray ending;
    FileIdentity identity;
};

QList<Device> lookAt(const QSet<QByteArray> &paths) {
    QList<Device> devices;
    for (const QByteArray &path : paths) {
        if (const auto identity = FileIdentity::of(AT_FDCWD, path))
            devices.append({path, path.sliced(std::max<qsizetype>(path.lastIndexOf('/'), 0)), *identity});
    }
    return devices;
}

/// The rights with which a descriptor was opened, as fdinfo tells them; none of them for one that only stands
/// for the file.
void takeRights(const QByteArray &info, DeviceHolder &holder) {
    const qsizetype place = info.indexOf("flags:");
    if (place < 0)
        return;
    const QByteArray rest = info.sliced(place + 6);
    const long flags = std::strtol(rest.constData(), nullptr, 8);
    if ((flags & O_PATH) != 0)
        return;
    const long access = flags & O_ACCMODE;
    holder.canRead = holder.canRead || access == O_RDONLY || access == O_RDWR;
    holder.canWrite = holder.canWrite || access == O_WRONLY || access == O_RDWR;
}

bool isOfThisUser(const QByteArray &process) {
    struct stat status {};
    return ::stat(process.constData(), &status) == 0 && status.st_uid == ::geteuid();
}

void addHolders(const QByteArray &proc, qint32 process, const QList<Device> &devices,
                QList<DeviceHolder> &holders) {
    const QByteArray path = proc + '/' + QByteArray::number(process);
    if (!isOfThisUser(path))
        return;
    const Folder folder(::opendir((path + "/fd").constData()));
    const int descriptor = folder ? ::dirfd(folder.get()) : -1;
    if (descriptor < 0)
        return;
    QList<DeviceHolder> found;
    std::array<char, PATH_MAX> link{};
    while (const dirent *const entry = ::readdir(folder.get())) {
        const ssize_t length = ::readlinkat(descriptor, entry->d_name, link.data(), link.size());
        const QByteArrayView target(link.data(), std::max<ssize_t>(length, 0));
        for (const Device &device : devices) {
            // The name is no proof, but spares asking every descriptor.
            if (!target.endsWith(device.ending) ||
                FileIdentity::of(descriptor, nameOf(*entry)) != device.identity)
                continue;
            auto holder = std::find_if(found.begin(), found.end(), [&](const DeviceHolder &other) {
                return other.device == device.path;
            });
            if (holder == found.end())
                holder = found.insert(found.end(), {process, device.path});
            takeRights(fileHead(path + "/fdinfo/" + nameOf(*entry)), *holder);
        }
    }
    holders += found;
}

} // namespace

std::optional<QList<DeviceHolder>> holdersOfDevices(const QSet<QByteArray> &paths,
                                                    const QByteArray &procFolder, const Deadline &deadline) {
    QList<DeviceHolder> holders;
    const QList<Device> devices = lookAt(paths);
    if (devices.isEmpty())
        return holders;
    const Folder folder(::opendir(procFolder.constData()));
    while (const dirent *const entry = folder ? ::readdir(folder.get()) : nullptr) {
        if (deadline.remaining() == std::chrono::milliseconds::zero())
            return std::nullopt;
        if (const int process = std::atoi(static_cast<const char *>(entry->d_name)); process > 0)
            addHolders(procFolder, process, devices, holders);
    }
    return holders;
}

bool hasMapped(qint32 process, const QByteArray &device, const QByteArray &procFolder) {
    constexpr qsizetype enough = 4 * 1024 * 1024;
    return fileHead(procFolder + '/' + QByteArray::number(process) + "/maps", enough)
        .contains(' ' + device + '\n');
}

} // namespace kestrin::desktop
