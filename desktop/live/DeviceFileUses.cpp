#include "desktop/live/DeviceFileUses.h"

#include "desktop/applications/ProcessIdentity.h"
#include "desktop/live/DeviceHolders.h"
#include "desktop/live/DeviceKind.h"
#include "desktop/live/ServerProcess.h"

#include <QSocketNotifier>

#include <dirent.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

namespace {

/// The kernel tells of an open file before its process has it.
constexpr auto soon = 10ms;
/// By now whoever opens a device has it, and takes pictures.
constexpr auto settled = 500ms;
/// More cameras and sound cards than a desktop has.
constexpr qsizetype mostDevices = 128;

constexpr quint32 openAndClose = IN_OPEN | IN_CLOSE;
/// Permissions come a moment after the file.
constexpr quint32 coming = IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_ONLYDIR;

const QByteArray soundFolder = "snd";

MacRiskCategory categoryOf(DeviceKind kind) {
    return kind == DeviceKind::microphone ? MacRiskCategory::microphone : MacRiskCategory::camera;
}

/// Whether it gets pictures or sound from the device, and does not just give some to it.
bool takes(const DeviceHolder &holder, DeviceKind kind, const QByteArray &procFolder) {
    return holder.canRead && (kind != DeviceKind::virtualCamera || !holder.canWrite ||
                              hasMapped(holder.process, holder.device, procFolder));
}

QList<DeviceHolder> holdersOf(const QByteArray &device, QList<DeviceHolder> holders) {
    holders.removeIf([&device](const DeviceHolder &holder) { return holder.device != device; });
    return holders;
}

/// Whoever starts a program while a device is open may hand it on without knowing.
bool hasInherited(const DeviceHolder &holder, const QList<DeviceHolder> &all, const QByteArray &procFolder) {
    const qint32 parent = parentOfProcess(holder.process, procFolder);
    return std::any_of(all.cbegin(), all.cend(),
                       [parent](const DeviceHolder &other) { return other.process == parent; });
}

} // namespace

DeviceFileUses::DeviceFileUses(DevicePlaces places) : m_places(std::move(places)) {
    m_soon.setSingleShot(true);
    m_settled.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &DeviceFileUses::tellChanged);
    connect(&m_settled, &QTimer::timeout, this, &DeviceFileUses::tellChanged);
}

DeviceFileUses::~DeviceFileUses() {
    DeviceFileUses::close();
}

bool DeviceFileUses::open(const Deadline & /*deadline*/) {
    if (isOpen())
        return true;
    m_inotify = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (!isOpen())
        return false;
    if (!watchFolder({})) {
        close();
        return false;
    }
    watchFolder(soundFolder);
    m_notifier = std::make_unique<QSocketNotifier>(m_inotify, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &DeviceFileUses::takeEvents);
    return true;
}

void DeviceFileUses::close() {
    m_soon.stop();
    m_settled.stop();
    m_notifier.reset();
    if (isOpen())
        ::close(std::exchange(m_inotify, -1));
    m_folders.clear();
    m_devices.clear();
    m_names.clear();
    m_isLeftOut = false;
    m_isStale = true;
    m_uses.clear();
    m_unseen.clear();
}

bool DeviceFileUses::watchFolder(const QByteArray &name) {
    const int number = watch(name.isEmpty() ? m_places.devices : m_places.devices + '/' + name, coming);
    if (number < 0)
        return false;
    m_folders.insert(number, name);
    watchDevices(name);
    return true;
}

void DeviceFileUses::watchDevices(const QByteArray &folder) {
    const QByteArray prefix = folder.isEmpty() ? QByteArray() : folder + '/';
    DIR *const listing = ::opendir((m_places.devices + '/' + folder).constData());
    while (const dirent *const entry = listing ? ::readdir(listing) : nullptr)
        watchDevice(prefix + static_cast<const char *>(entry->d_name));
    if (listing)
        ::closedir(listing);
}

bool DeviceFileUses::watchDevice(const QByteArray &name) {
    if (m_devices.contains(name) || kindByName(name) == DeviceKind::other)
        return false;
    if (m_devices.size() >= mostDevices) {
        m_isLeftOut = true;
        return false;
    }
    const int number = watch(m_places.devices + '/' + name, openAndClose);
    if (number < 0)
        return false;
    m_devices.insert(name, {});
    m_names.insert(number, name);
    return true;
}

int DeviceFileUses::watch(const QByteArray &path, quint32 events) {
    const int number = ::inotify_add_watch(m_inotify, path.constData(), events);
    // What this user may not open no program of his can open.
    if (number < 0 && (errno == ENOSPC || errno == ENOMEM))
        m_isLeftOut = true;
    return number;
}

void DeviceFileUses::forget(int watch) {
    m_folders.remove(watch);
    m_devices.remove(m_names.take(watch));
    lookSoon();
}

void DeviceFileUses::takeEvents() {
    alignas(inotify_event) std::array<char, 16384> room{};
    // What is behind them is told next time; nobody may keep us here.
    const ssize_t length = ::read(m_inotify, room.data(), room.size());
    for (ssize_t place = 0; place < length;) {
        const auto &event = *reinterpret_cast<const inotify_event *>(room.data() + place);
        place += static_cast<ssize_t>(sizeof event + event.len);
        take(event);
    }
}

void DeviceFileUses::take(const inotify_event &event) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        for (const QByteArray &folder : m_folders.values())
            watchDevices(folder);
        for (Device &device : m_devices)
            device.opened.reset();
        return lookSoon();
    }
    if ((event.mask & IN_IGNORED) != 0)
        return forget(event.wd);
    if (const auto folder = m_folders.constFind(event.wd); folder != m_folders.cend())
        return takeOfFolder(QByteArray(*folder), event);
    const auto device = m_devices.find(m_names.value(event.wd));
    if (device == m_devices.end())
        return;
    device->opened.reset();
    if ((event.mask & IN_OPEN) != 0) {
        device->opened = Clock::now();
        m_settled.start(settled);
    }
    lookSoon();
}

void DeviceFileUses::takeOfFolder(const QByteArray &folder, const inotify_event &event) {
    const QByteArray name(event.len > 0 ? static_cast<const char *>(event.name) : "");
    const bool isNew = folder.isEmpty() && name == soundFolder
                           ? watchFolder(name)
                           : watchDevice(folder.isEmpty() ? name : folder + '/' + name);
    if (!isNew)
        return;
    // Somebody may have been faster with it.
    lookSoon();
    m_settled.start(settled);
}

void DeviceFileUses::lookSoon() {
    if (!m_soon.isActive())
        m_soon.start(soon);
}

void DeviceFileUses::tellChanged() {
    m_isStale = true;
    Q_EMIT changed();
}

std::optional<QList<SourceUse>> DeviceFileUses::uses(const Deadline &deadline) {
    if (!isOpen())
        return std::nullopt;
    if (m_isStale && !lookAtProcesses(deadline))
        return std::nullopt;
    return m_uses;
}

bool DeviceFileUses::lookAtProcesses(const Deadline &deadline) {
    QSet<QByteArray> paths;
    for (auto [name, device] : m_devices.asKeyValueRange())
        paths.insert(m_places.devices + '/' + name);
    const auto holders = holdersOfDevices(paths, m_places.processes, deadline);
    if (!holders)
        return false;
    m_isStale = false;
    m_uses.clear();
    m_unseen.clear();
    for (auto [name, device] : m_devices.asKeyValueRange()) {
        const DeviceKind kind = kindOfDevice(name, m_places);
        if (kind == DeviceKind::other)
            continue;
        const QList<DeviceHolder> ofThis = holdersOf(m_places.devices + '/' + name, *holders);
        for (const DeviceHolder &holder : ofThis) {
            const SourceUse use{categoryOf(kind), holder.process};
            if (takes(holder, kind, m_places.processes) && !m_uses.contains(use) &&
                !hasInherited(holder, ofThis, m_places.processes) &&
                !isServerProcess(ProcessIdentity::of(holder.process, m_places.processes)))
                m_uses.append(use);
        }
        // The last that was heard of it is that somebody opened it.
        if (ofThis.isEmpty() && device.opened && Clock::now() - *device.opened >= settled / 2)
            m_unseen.insert(categoryOf(kind));
    }
    std::sort(m_uses.begin(), m_uses.end(), [](const SourceUse &left, const SourceUse &right) {
        return std::pair(left.process, left.category) < std::pair(right.process, right.category);
    });
    return true;
}

Sight DeviceFileUses::sight() {
    if (!isOpen() || m_isLeftOut)
        return {Sight::Extent::partial,
                u"The system does not let Kestrin watch every camera and sound card, so programs that use "
                "one directly may not be seen."_s,
                {},
                {}};
    if (m_unseen.isEmpty())
        return {};
    const QString device = m_unseen.contains(MacRiskCategory::camera) ? u"camera"_s : u"microphone"_s;
    return {Sight::Extent::partial,
            u"A program uses the %1, and the system does not tell Kestrin which one."_s.arg(device),
            {},
            {}};
}

} // namespace kestrin::desktop
