#include "desktop/x11/DesktopReading.h"

#include "desktop/x11/PropertyQuestion.h"

#include <QHash>
#include <QSet>

#include <xcb/res.h>

#include <algorithm>
#include <span>
#include <unordered_map>
#include <vector>

namespace kestrin::desktop {

using namespace foundation;

namespace {

using Outcome = X11Connection::Outcome;

/// The questions about one window, all under way at once.
struct WindowQuestions {
    PropertyQuestion windowClass;
    PropertyQuestion windowType;
    PropertyQuestion windowState;
    PropertyQuestion gtkApplicationId;
    PropertyQuestion kdeDesktopFile;

    WindowQuestions(X11Connection &connection, quint32 window)
        : windowClass(connection, window, XCB_ATOM_WM_CLASS, PropertyQuestion::textLength)
        , windowType(connection, window, connection.hints()._NET_WM_WINDOW_TYPE,
                     PropertyQuestion::atomsLength)
        , windowState(connection, window, connection.hints()._NET_WM_STATE, PropertyQuestion::atomsLength)
        , gtkApplicationId(connection, window, connection.atoms().gtkApplicationId,
                           PropertyQuestion::textLength)
        , kdeDesktopFile(connection, window, connection.atoms().kdeDesktopFile,
                         PropertyQuestion::textLength) {}

    /// Absent when the window has gone; `outcome` tells.
    std::optional<WindowFacts> answers(const xcb_ewmh_connection_t &hints, const Deadline &deadline,
                                       Outcome &outcome) {
        const auto classReply = windowClass.take(deadline, outcome);
        if (!classReply)
            return std::nullopt;
        WindowFacts facts;
        facts.takeWindowClass(classReply.get());
        facts.takeWindowType(windowType.take(deadline).get(), hints);
        facts.takeWindowState(windowState.take(deadline).get(), hints);
        facts.claims.gtkApplicationId = propertyText(gtkApplicationId.take(deadline).get());
        facts.claims.kdeDesktopFile = propertyText(kdeDesktopFile.take(deadline, outcome).get());
        if (outcome == Outcome::refused)
            return std::nullopt;
        return facts;
    }
};

/// Which processes are behind the clients that the windows belong to, from the server itself, which knows it
/// of those on its own machine. What windows say of their processes is not believed: a client from elsewhere
/// could name any process of this machine, and have it asked to quit.
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
    qint32 processOf(quint32 window, const Deadline &deadline, Outcome &outcome) {
        const quint32 client = clientOf(window);
        const auto question = m_questions.find(client);
        if (question != m_questions.end()) {
            m_processes.insert(client, answer(question->second.take(deadline, outcome).get()));
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

std::optional<QList<quint32>> clientList(X11Connection &connection, const Deadline &deadline) {
    PropertyQuestion question(connection, connection.root(), connection.hints()._NET_CLIENT_LIST,
                              PropertyQuestion::listLength);
    connection.flush();
    Outcome outcome{};
    const auto reply = question.take(deadline, outcome);
    if (outcome == Outcome::silent)
        return std::nullopt;
    QList<quint32> windows;
    QSet<quint32> seen{0, connection.root()};
    xcb_ewmh_get_windows_reply_t list{};
    if (xcb_ewmh_get_windows_from_reply(&list, reply.get()) == 0)
        return windows;
    for (const quint32 window : std::span(list.windows, list.windows_len)) {
        const qsizetype before = seen.size();
        seen.insert(window);
        if (seen.size() > before)
            windows.append(window);
    }
    return windows;
}

} // namespace

std::optional<DesktopApplication> DesktopReading::application(qint32 process) const {
    const QList<DesktopApplication> all = applications();
    const auto isIt = [process](const DesktopApplication &candidate) { return candidate.process == process; };
    const auto found = std::find_if(all.cbegin(), all.cend(), isIt);
    return found == all.cend() ? std::nullopt : std::optional(*found);
}

std::optional<DesktopReading> DesktopReading::take(X11Connection &connection, const Deadline &deadline) {
    const auto list = connection.isSilent() ? std::nullopt : clientList(connection, deadline);
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
        auto facts = questions[i].answers(connection.hints(), deadline, outcome);
        const qint32 process = facts ? processes.processOf(window, deadline, outcome) : 0;
        // Without its process a window would count for nobody, and its application as ended.
        if (outcome == Outcome::silent)
            return std::nullopt;
        if (facts)
            reading.windows.append({window, process, *std::move(facts)});
    }
    return reading;
}

QList<QuitTarget::GtkApplication>
gtkApplicationsOf(X11Connection &connection, const QList<DesktopWindow> &windows, const Deadline &deadline) {
    struct Questions {
        PropertyQuestion busName;
        PropertyQuestion objectPath;
    };
    std::vector<Questions> questions;
    for (const DesktopWindow &window : windows)
        questions.push_back(
            {{connection, window.id, connection.atoms().gtkBusName, PropertyQuestion::textLength},
             {connection, window.id, connection.atoms().gtkApplicationPath, PropertyQuestion::textLength}});
    connection.flush();
    QList<QuitTarget::GtkApplication> applications;
    for (Questions &question : questions) {
        const auto text = [&deadline](PropertyQuestion &property) {
            return propertyText(property.take(deadline).get()).toUtf8();
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
        PropertyQuestion state;
    };
    std::vector<Questions> questions;
    for (const quint32 window : windows)
        questions.push_back({{connection, xcb_get_window_attributes(connection.xcb(), window)},
                             {connection, window, connection.atoms().wmState, 2}});
    connection.flush();
    QList<quint32> result;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        Questions &question = questions[static_cast<std::size_t>(i)];
        Outcome outcome{};
        const auto attributes = question.attributes.take(deadline, outcome);
        const auto state = attributes ? question.state.take(deadline, outcome) : nullptr;
        // Without an answer everything is as it was.
        if (outcome == Outcome::silent)
            result.append(windows[i]);
        else if (attributes && (attributes->map_state != XCB_MAP_STATE_UNMAPPED ||
                                isIconic(state.get(), connection.atoms())))
            result.append(windows[i]);
    }
    return result;
}

} // namespace kestrin::desktop
