// The windows of a sway desktop, native ones and those of XWayland.
#pragma once

#include "desktop/sources/WindowSource.h"
#include "desktop/sway/SwayConnection.h"

#include <memory>

class QSocketNotifier;

namespace kestrin::desktop {

/// Sway names the process of each window, tells of new ones, and closes them as its own "kill" does, which
/// asks the client. Main thread only.
class SwayWindows final : public WindowSource {
    Q_OBJECT

  public:
    /// The path of sway's socket (SWAYSOCK).
    explicit SwayWindows(const QByteArray &path);
    ~SwayWindows() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_connection.isOpen(); }
    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) override;
    bool close(const QList<SourceWindow> &windows, const foundation::Deadline &deadline) override;

  private:
    std::optional<QByteArray> ask(SwayConnection::Message message, const QByteArray &payload,
                                  const foundation::Deadline &deadline);
    void takeEvents();
    void tellNews();
    void dropNotifier();
    void endIfLost();

    const QByteArray m_path;
    SwayConnection m_connection;
    /// A child: where no event loop is left to delete it later, it goes with this.
    QSocketNotifier *m_notifier = nullptr;
    bool m_hasNews = false;
};

} // namespace kestrin::desktop
