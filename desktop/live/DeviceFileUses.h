// Cameras and microphones that programs open as files, past every server.
#pragma once

#include "desktop/live/DevicePlaces.h"
#include "desktop/live/UseSource.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <memory>

class QSocketNotifier;
struct inotify_event;

namespace kestrin::desktop {

/// The kernel tells that a device was opened or closed, and then it is looked by whom. Devices that come
/// later are followed.
///
/// Who was handed an open device by another process is seen when the next one is opened or closed.
class DeviceFileUses final : public UseSource {
    Q_OBJECT

  public:
    explicit DeviceFileUses(DevicePlaces places = {});
    ~DeviceFileUses() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_inotify >= 0; }
    void close() override;
    std::optional<QList<SourceUse>> uses(const foundation::Deadline &deadline) override;
    engine::Sight sight() override;

  private:
    using Clock = std::chrono::steady_clock;

    struct Device {
        /// When it was opened, unless something was closed since.
        std::optional<Clock::time_point> opened = std::nullopt;
    };

    bool watchFolder(const QByteArray &name);
    void watchDevices(const QByteArray &folder);
    bool watchDevice(const QByteArray &name);
    int watch(const QByteArray &path, quint32 events);
    void forget(int watch);
    void takeEvents();
    void take(const inotify_event &event);
    void takeOfFolder(const QByteArray &folder, const inotify_event &event);
    void lookSoon();
    void tellChanged();
    bool lookAtProcesses(const foundation::Deadline &deadline);

    const DevicePlaces m_places;
    int m_inotify = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// By the number of their watch; "" and "snd".
    QHash<int, QByteArray> m_folders;
    /// By their name within the folder of devices.
    QHash<QByteArray, Device> m_devices;
    QHash<int, QByteArray> m_names;
    bool m_isLeftOut = false;

    QTimer m_soon;
    QTimer m_settled;
    bool m_isStale = true;
    QList<SourceUse> m_uses;
    /// Of what somebody has open who cannot be found.
    QSet<engine::MacRiskCategory> m_unseen;
};

} // namespace kestrin::desktop
