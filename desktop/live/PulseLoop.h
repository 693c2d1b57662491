// PulseAudio's main loop inside of Qt's.
#pragma once

#include "desktop/live/PulseLibrary.h"
#include "foundation/Deadline.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

class QSocketNotifier;

namespace kestrin::desktop {

/// Runs the library's own loop, which keeps no descriptor or timer of its own accord, whenever one of those
/// that it waits for is due. Main thread only.
class PulseLoop : public QObject {
    Q_OBJECT

  public:
    explicit PulseLoop(const PulseLibrary &library);
    ~PulseLoop() override;

    pa_mainloop_api *api() const { return m_library.mainloop_get_api(m_loop); }

    /// Does all that can be done without waiting, and goes on from the event loop.
    void run();
    /// Returns when something has been done, or the time is over.
    void waitOnce(const foundation::Deadline &deadline);

  Q_SIGNALS:
    /// From the event loop, when something has been done.
    void ran();

  private:
    enum class Way {
        look, ///< what is ready now
        wait, ///< until something is
        note, ///< only remember what would be waited for
    };

    static int poll(pollfd *descriptors, unsigned long count, int timeout, void *self);
    int turn(Way way, int microseconds);
    void goOnLater();
    void wake();

    const PulseLibrary &m_library;
    pa_mainloop *m_loop;
    Way m_way = Way::look;
    std::vector<pollfd> m_descriptors;
    int m_timeout = -1;
    std::vector<std::unique_ptr<QSocketNotifier, void (*)(QSocketNotifier *)>> m_notifiers;
    QTimer m_timer;
};

} // namespace kestrin::desktop
