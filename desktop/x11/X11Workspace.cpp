#include "desktop/x11/X11Workspace.h"

#include "desktop/x11/DesktopReading.h"
#include "desktop/x11/WindowManager.h"
#include "desktop/x11/X11Connector.h"
#include "desktop/x11/X11Launches.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

X11Workspace::X11Workspace(const QString &display)
    : m_display(display)
    , m_connector(std::make_unique<X11Connector>(QFile::encodeName(display)))
    , m_launches(std::make_unique<X11Launches>(m_records)) {
    QObject::connect(m_launches.get(), &X11Launches::serverLost, m_launches.get(), [this] { drop(); });
    QObject::connect(m_launches.get(), &X11Launches::wanted, m_launches.get(),
                     [this] { connection(Deadline(desktopPatience)); });
}

X11Workspace::~X11Workspace() = default;

X11Connection *X11Workspace::connection(const Deadline &deadline) {
    if (m_connection && m_connection->isBroken())
        drop();
    if (!m_connection) {
        m_connection = m_connector->connect(deadline);
        if (m_connection)
            m_launches->connected(*m_connection, deadline);
    }
    m_launches->serverIsAsked(deadline);
    return m_connection.get();
}

void X11Workspace::drop() {
    m_launches->disconnected();
    m_connection.reset();
}

QList<WorkspaceApplication> X11Workspace::list(const Deadline &deadline) {
    X11Connection *const server = connection(deadline);
    const auto reading = server ? DesktopReading::take(*server, deadline) : std::nullopt;
    if (!reading)
        return {};
    m_records.refreshForAll();
    QList<WorkspaceApplication> records;
    for (const DesktopApplication &application : reading->applications()) {
        if (auto record = m_records.recordOf(application.process, application.claims()))
            records.append(*std::move(record));
    }
    return records;
}

Termination X11Workspace::quit(qint32 process, const Deadline &deadline) {
    if (m_records.isGone(process))
        return Termination::gone;
    X11Connection *const server = connection(deadline);
    const auto reading = server ? DesktopReading::take(*server, deadline) : std::nullopt;
    if (!reading)
        return ApplicationRecords::unanswered(process);
    const auto application = reading->application(process);
    if (!application)
        return Termination::gone;
    m_records.refresh();
    const auto record = m_records.recordOf(process, application->claims());
    if (!record)
        return Termination::gone;
    QuitTarget target = QuitTarget::of(*record);
    target.gtkApplications = gtkApplicationsOf(*server, application->windows, deadline);
    const bool isAsked =
        m_patience.acceptsQuitCommand(target) || closeWindows(*server, application->windows, deadline);
    return isAsked ? Termination::delivered : Termination::refused;
}

std::unique_ptr<LaunchSubscription> X11Workspace::listen(LaunchHandler handler, const Deadline &deadline) {
    connection(deadline);
    return m_launches->subscribe(std::move(handler), deadline);
}

X11Launches &X11Workspace::launches() {
    return *m_launches;
}

Sight X11Workspace::look(const Deadline &deadline) {
    const QString reason = obstacle(deadline);
    return reason.isEmpty() ? Sight() : Sight{Sight::Extent::none, reason, {}, Sight::Help::none};
}

QString X11Workspace::obstacle(const Deadline &deadline) {
    const QString consequence = u", so no running applications can be seen."_s;
    if (m_display.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY"))
        return u"There is no desktop session here"_s + consequence;
    const QString display = m_display.isEmpty() ? qEnvironmentVariable("DISPLAY") : m_display;
    X11Connection *const server = connection(deadline);
    if (!server)
        return u"The display \""_s + display + u"\" cannot be reached"_s + consequence;
    if (!server->server().tellsProcesses)
        return u"The display \""_s + display +
               u"\" is reached over a network, or does not tell whose its windows are"_s + consequence;
    if (!server->isSilent() && windowManagerOf(*server, deadline) != WindowManager::absent)
        return {};
    return (server->isSilent() ? u"The display \""_s + display + u"\" does not answer"_s
                               : u"No window manager on the display \""_s + display +
                                     u"\" tells which windows there are"_s) +
           consequence;
}

} // namespace kestrin::desktop
