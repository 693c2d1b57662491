#include "desktop/x11/DesktopReading.h"

#include <QHash>
#include <QSet>
#include <QSysInfo>

#include <xcb/res.h>

#include <unistd.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace kestrin::desktop {

using namespace foundation;

namespace {

using Property = PendingReply<xcb_get_property_reply_t>;
using Outcome = X11Connection::Outcome;

/// Asks for at most `items` times four bytes of a property, whatever its type.
Property ask(X11Connection &connection, quint32 window, quint32 property, quint32 items) {
    return {connection,
            xcb_get_property(connection.xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, items)};
}

RawProperty rawProperty(const xcb_get_property_reply_t *reply) {
    if (!reply)
        return {};
    return {reply->type, reply->format,
            QByteArrayView(static_cast<const char *>(xcb_get_property_value(reply)),
                           xcb_get_property_value_length(reply))};
}

// More than any honest client needs; a longer property is read up to here.
constexpr quint32 clientListItems = 16384;
constexpr quint32 textItems = 256;
constexpr quint32 atomItems = 64;

/// The questions about one window, all under way at once.
struct WindowQuestions {
    Property windowClass;
    Property windowType;
    Property windowState;
    Property gtkApplicationId;
    Property kdeDesktopFile;

    WindowQuestions(X11Connection &connection, quint32 window)
        : windowClass(ask(connection, window, core_atoms::wmClass, textItems))
        , windowType(ask(connection, window, connection.atoms().windowType, atomItems))
        , windowState(ask(connection, window, connection.atoms().windowState, atomItems))
        , gtkApplicationId(ask(connection, window, connection.atoms().gtkApplicationId, textItems))
        , kdeDesktopFile(ask(connection, window, connection.atoms().kdeDesktopFile, textItems)) {}

    /// Absent when the window has gone; `outcome` tells.
    std::optional<WindowFacts> answers(const X11Atoms &atoms, const Deadline &deadline, Outcome &outcome) {
        const auto classReply = windowClass.take(deadline, outcome);
        if (!classReply)
            return std::nullopt;
        WindowFacts facts;
        facts.takeWindowClass(rawProperty(classReply.get()));
        facts.takeWindowType(rawProperty(windowType.take(deadline).get()), atoms);
        facts.takeWindowState(rawProperty(windowState.take(deadline).get()), atoms);
        facts.claims.gtkApplicationId = propertyText(rawProperty(gtkApplicationId.take(deadline).get()));
        facts.claims.kdeDesktopFile = propertyText(rawProperty(kdeDesktopFile.take(deadline, outcome).get()));
        if (outcome == Outcome::refused)
            return std::nullopt;
        return facts;
    }
};

/// Which processes are behind the clients that the windows belong to, from the server itself.
class ClientProcesses {
  public:
    explicit ClientProcesses(X11Connection &connection) : m_connection(connection) {}

    void askFor(quint32 window) {
        const quint32 client = clientOf(window);
        if (!m_connection.server().tellsProcesses || m_questions.contains(client))
            return;
        const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        m_questions.emplace(client,
                            Question(m_connection, xcb_res_query_client_ids(m_connection.xcb(), 1, &spec)));
    }

    /// 0 when the server does not know.
    qint32 processOf(quint32 window, const Deadline &deadline) {
        const quint32 client = clientOf(window);
        const auto question = m_questions.find(client);
        if (question != m_questions.end()) {
            m_processes.insert(client, answer(question->second.take(deadline).get()));
            m_questions.erase(question);
        }
        return m_processes.value(client, 0);
    }

  private:
    using Question = PendingReply<xcb_res_query_client_ids_reply_t>;

    quint32 clientOf(quint32 window) const { return window & ~m_connection.server().resourceMask; }

    static qint32 answer(const xcb_res_query_client_ids_reply_t *reply) {
        if (!reply)
            return 0;
        for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0;
             xcb_res_client_id_value_next(&ids)) {
            const bool tellsProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
            if (tellsProcess && xcb_res_client_id_value_value_length(ids.data) > 0)
                return static_cast<qint32>(*xcb_res_client_id_value_value(ids.data));
        }
        return 0;
    }

    X11Connection &m_connection;
    std::unordered_map<quint32, Question> m_questions;
    QHash<quint32, qint32> m_processes;
};

bool isRunning(qint32 process) {
    return ::access(("/proc/" + QByteArray::number(process)).constData(), F_OK) == 0;
}

/// For the windows whose client is not a local one: what they say themselves, where that is about this
/// machine.
void askWindowsForProcesses(X11Connection &connection, QList<DesktopWindow> &windows,
                            const Deadline &deadline) {
    struct Questions {
        DesktopWindow *window;
        Property process;
        Property machine;
    };
    std::vector<Questions> questions;
    for (DesktopWindow &window : windows) {
        if (window.process == 0)
            questions.push_back({&window, ask(connection, window.id, connection.atoms().windowPid, 1),
                                 ask(connection, window.id, core_atoms::wmClientMachine, textItems)});
    }
    if (questions.empty())
        return;
    connection.flush();
    const QString hostName = QSysInfo::machineHostName();
    for (Questions &question : questions) {
        WindowFacts &facts = question.window->facts;
        facts.takeProcess(rawProperty(question.process.take(deadline).get()));
        facts.clientMachine = propertyText(rawProperty(question.machine.take(deadline).get()));
        if (facts.claimedProcess > 0 && isSameMachine(facts.clientMachine, hostName) &&
            isRunning(facts.claimedProcess))
            question.window->process = facts.claimedProcess;
    }
}

std::optional<QList<quint32>> clientList(X11Connection &connection, const Deadline &deadline) {
    Property question = ask(connection, connection.root(), connection.atoms().clientList, clientListItems);
    connection.flush();
    Outcome outcome{};
    const auto reply = question.take(deadline, outcome);
    if (outcome == Outcome::silent)
        return std::nullopt;
    QList<quint32> windows;
    QSet<quint32> seen{0, connection.root()};
    for (const quint32 window : propertyItems(rawProperty(reply.get()), core_atoms::window)) {
        const qsizetype before = seen.size();
        seen.insert(window);
        if (seen.size() > before)
            windows.append(window);
    }
    return windows;
}

} // namespace

const DesktopWindow &DesktopApplication::representative() const {
    const auto best = [this](auto isGood) { return std::find_if(windows.cbegin(), windows.cend(), isGood); };
    auto found = best([](const DesktopWindow &window) {
        return window.facts.claims.isNamed() && !window.facts.claims.isSite();
    });
    if (found == windows.cend())
        found = best([](const DesktopWindow &window) { return window.facts.claims.isNamed(); });
    return found == windows.cend() ? windows.first() : *found;
}

QList<DesktopApplication> DesktopReading::applications() const {
    QList<DesktopApplication> applications;
    QHash<qint32, qsizetype> places;
    for (const DesktopWindow &window : windows) {
        if (!window.counts())
            continue;
        const auto known = places.constFind(window.process);
        if (known != places.cend()) {
            applications[*known].windows.append(window);
            continue;
        }
        places.insert(window.process, applications.size());
        applications.append({window.process, {window}});
    }
    return applications;
}

std::optional<DesktopReading> DesktopReading::take(X11Connection &connection, const Deadline &deadline) {
    const std::optional<QList<quint32>> list = clientList(connection, deadline);
    if (!list)
        return std::nullopt;

    ClientProcesses processes(connection);
    std::vector<WindowQuestions> questions;
    questions.reserve(static_cast<std::size_t>(list->size()));
    for (const quint32 window : *list) {
        questions.emplace_back(connection, window);
        processes.askFor(window);
    }
    connection.flush();

    DesktopReading reading;
    reading.windows.reserve(list->size());
    for (std::size_t i = 0; i < questions.size(); ++i) {
        Outcome outcome{};
        const quint32 window = list->at(static_cast<qsizetype>(i));
        auto facts = questions[i].answers(connection.atoms(), deadline, outcome);
        if (outcome == Outcome::silent)
            return std::nullopt;
        if (facts)
            reading.windows.append({window, processes.processOf(window, deadline), *std::move(facts)});
    }
    askWindowsForProcesses(connection, reading.windows, deadline);
    return reading;
}

WindowManager windowManagerOf(X11Connection &connection, const Deadline &deadline) {
    const X11Atoms &atoms = connection.atoms();
    Property check = ask(connection, connection.root(), atoms.supportingWmCheck, 1);
    Property supported = ask(connection, connection.root(), atoms.supported, 4096);
    connection.flush();
    const quint32 window = propertyWindow(rawProperty(check.take(deadline).get()));
    if (window == 0)
        return WindowManager::absent;
    // The property outlives its window manager; the window does not.
    Property ownCheck = ask(connection, window, atoms.supportingWmCheck, 1);
    connection.flush();
    if (propertyWindow(rawProperty(ownCheck.take(deadline).get())) != window)
        return WindowManager::absent;
    const auto supportedReply = supported.take(deadline);
    const PropertyItems hints = propertyItems(rawProperty(supportedReply.get()), core_atoms::atom);
    if (!hints.contains(atoms.clientList))
        return WindowManager::absent;
    return hints.contains(atoms.closeWindow) ? WindowManager::closesWindows : WindowManager::listsWindows;
}

QList<quint32> windowsThatTakePartInClosing(X11Connection &connection, const QList<DesktopWindow> &windows,
                                            const Deadline &deadline) {
    std::vector<Property> questions;
    for (const DesktopWindow &window : windows)
        questions.push_back(ask(connection, window.id, connection.atoms().wmProtocols, atomItems));
    connection.flush();
    QList<quint32> result;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        WindowFacts facts;
        const auto reply = questions[static_cast<std::size_t>(i)].take(deadline);
        facts.takeProtocols(rawProperty(reply.get()), connection.atoms());
        if (facts.takesPartInClosing)
            result.append(windows[i].id);
    }
    return result;
}

QList<QuitTarget::GtkApplication>
gtkApplicationsOf(X11Connection &connection, const QList<DesktopWindow> &windows, const Deadline &deadline) {
    struct Questions {
        Property busName;
        Property objectPath;
    };
    std::vector<Questions> questions;
    for (const DesktopWindow &window : windows)
        questions.push_back({ask(connection, window.id, connection.atoms().gtkBusName, textItems),
                             ask(connection, window.id, connection.atoms().gtkApplicationPath, textItems)});
    connection.flush();
    QList<QuitTarget::GtkApplication> applications;
    for (Questions &question : questions) {
        const auto text = [&deadline](Property &property) {
            return propertyText(rawProperty(property.take(deadline).get())).toUtf8();
        };
        const QuitTarget::GtkApplication application{text(question.busName), text(question.objectPath)};
        if (!application.busName.isEmpty() && !application.objectPath.isEmpty() &&
            !applications.contains(application))
            applications.append(application);
    }
    return applications;
}

QList<quint32> windowsInUse(X11Connection &connection, const QList<quint32> &windows,
                            const Deadline &deadline) {
    struct Questions {
        PendingReply<xcb_get_window_attributes_reply_t> attributes;
        Property state;
    };
    std::vector<Questions> questions;
    for (const quint32 window : windows)
        questions.push_back({{connection, xcb_get_window_attributes(connection.xcb(), window)},
                             ask(connection, window, connection.atoms().wmState, 2)});
    connection.flush();
    QList<quint32> result;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        Questions &question = questions[static_cast<std::size_t>(i)];
        Outcome outcome{};
        const auto attributes = question.attributes.take(deadline, outcome);
        const auto state = question.state.take(deadline);
        // Without an answer everything is as it was.
        if (outcome == Outcome::silent)
            result.append(windows[i]);
        else if (attributes && (attributes->map_state != XCB_MAP_STATE_UNMAPPED ||
                                isIconic(rawProperty(state.get()), connection.atoms())))
            result.append(windows[i]);
    }
    return result;
}

} // namespace kestrin::desktop
