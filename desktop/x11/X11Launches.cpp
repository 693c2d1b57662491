#include "desktop/x11/X11Launches.h"

#include "desktop/x11/LaunchWatcher.h"

#include <QSocketNotifier>

#include <utility>

namespace kestrin::desktop {

using namespace foundation;

X11Launches::X11Launches(ApplicationRecords &records) : Launches(records) {}

X11Launches::~X11Launches() {
    stop();
}

void X11Launches::connected(X11Connection &connection, const Deadline &deadline) {
    m_connection = &connection;
    Launches::connected(deadline);
}

std::unique_ptr<LaunchFinder> X11Launches::startFinding(const Deadline &deadline) {
    auto watcher = std::make_unique<LaunchWatcher>(*m_connection, deadline);
    m_watcher = watcher.get();
    m_notifier =
        new QSocketNotifier(xcb_get_file_descriptor(m_connection->xcb()), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] { takeEvents(); });
    return watcher;
}

void X11Launches::stopFinding() {
    // Perhaps in the middle of the notifier's own signal.
    m_notifier->setEnabled(false);
    std::exchange(m_notifier, nullptr)->deleteLater();
    m_watcher = nullptr;
}

void X11Launches::takeEvents() {
    // A server that did not answer is asked again once it does, whoever has read that it does. Events may
    // come along with that, so it is looked at before them.
    bool isConcerned = m_watcher->isBehind() && !m_connection->owesAnswers();
    while (const XcbMessage<xcb_generic_event_t> event{xcb_poll_for_event(m_connection->xcb())})
        isConcerned = m_watcher->concerns(*event) || isConcerned;
    if (m_connection->isBroken()) {
        Q_EMIT serverLost();
        return;
    }
    if (isConcerned)
        findLaunches(Deadline(desktopPatience));
    tellLaunches();
}

} // namespace kestrin::desktop
