#include "desktop/live/PipeWireUses.h"

#include "desktop/live/PipeWireGraph.h"
#include "desktop/live/PipeWireLibrary.h"
#include "desktop/live/SocketWatch.h"

#include <QFileInfo>
#include <QSocketNotifier>

#include <poll.h>
#include <pthread.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace engine;
using namespace foundation;

namespace {

/// Whether the conversation goes on after an error that is no single object's. Who has asked about a client
/// that has just gone, and forgets it, is told that it was never there.
bool isHarmless(int error) {
    return error == -ENOENT || error == -ESTALE || error == -EACCES || error == -EPERM;
}

/// Where a server would begin to listen.
QByteArray pipeWireSocket() {
    QByteArray name = qgetenv("PIPEWIRE_REMOTE");
    if (name.isEmpty())
        name = "pipewire-0";
    QByteArray folder = qgetenv("PIPEWIRE_RUNTIME_DIR");
    if (folder.isEmpty())
        folder = qgetenv("XDG_RUNTIME_DIR");
    return name.startsWith('/') ? name : folder + '/' + name;
}

bool isServerThere() {
    const QString socket = QFile::decodeName(pipeWireSocket());
    // Where the library looks too, for a server of all users.
    return QFileInfo::exists(socket) || QFileInfo::exists(u"/run/pipewire/"_s + QFileInfo(socket).fileName());
}

} // namespace

// Before its version 1.4 the library's functions were macros that cast in C's way, and are made of
// expressions that only GCC has and Clang has taken over.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"

/// The conversation with one server. Nothing that the library calls back here destroys it.
class PipeWireUses::Connection {
  public:
    /// Whether it works out is told by isBroken().
    explicit Connection(const PipeWireLibrary &library);
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection();

    bool isBroken() const { return m_isBroken; }
    int descriptor() const { return pw_loop_get_fd(m_loop); }
    PipeWireGraph &graph() { return m_graph; }

    /// Takes what the server has said by now.
    void take();
    /// Returns when everything that has happened at the server until now is known. False when that was not so
    /// by the deadline; then takeLateAnswer() tells of it later.
    bool catchUp(const Deadline &deadline);
    bool takeLateAnswer();

  private:
    /// A client of whom the server is asked to tell more.
    struct Question {
        Question(Connection *asker, quint32 client, pw_proxy *answerer)
            : connection(asker)
            , id(client)
            , proxy(answerer) {}
        Question(const Question &) = delete;
        Question &operator=(const Question &) = delete;
        ~Question() {
            spa_hook_remove(&listener);
            connection->m_library.proxy_destroy(proxy);
        }

        Connection *connection;
        quint32 id;
        pw_proxy *proxy;
        spa_hook listener{};
    };

    void stop(pw_data_loop *thread) const;
    void announced(quint32 id, const char *type, const spa_dict &properties);
    void askAboutClients();
    void forget(quint32 id);
    bool roundTrip(const Deadline &deadline);

    const PipeWireLibrary &m_library;
    pw_loop *m_loop = nullptr;
    pw_context *m_context = nullptr;
    pw_core *m_core = nullptr;
    pw_registry *m_registry = nullptr;
    spa_hook m_coreListener{};
    spa_hook m_registryListener{};
    std::unordered_map<quint32, std::unique_ptr<Question>> m_questions;
    PipeWireGraph m_graph;
    int m_asked = 0;
    int m_answered = 0;
    bool m_isLate = false;
    bool m_isBroken = true;
};

PipeWireUses::Connection::Connection(const PipeWireLibrary &library) : m_library(library) {
    m_loop = m_library.loop_new(nullptr);
    if (!m_loop)
        return;
    pw_loop_enter(m_loop);
    // Of all that a client is usually made of we need the protocol only, and nothing that is heard or seen.
    m_context =
        m_library.context_new(m_loop, m_library.properties_new(PW_KEY_CONFIG_NAME, "null", nullptr), 0);
    if (!m_context)
        return;
    if (pw_data_loop *const thread = m_library.context_get_data_loop(m_context))
        stop(thread);
    if (!m_library.context_load_module(m_context, "libpipewire-module-protocol-native", nullptr, nullptr))
        return;
    m_core = m_library.context_connect(m_context, nullptr, 0);
    if (!m_core)
        return;
    static const pw_core_events coreEvents = [] {
        pw_core_events events{};
        events.version = PW_VERSION_CORE_EVENTS;
        events.done = [](void *self, quint32 id, int number) {
            if (id == PW_ID_CORE)
                static_cast<Connection *>(self)->m_answered = number;
        };
        events.error = [](void *self, quint32 id, int /*number*/, int result, const char * /*message*/) {
            if (id == PW_ID_CORE && !isHarmless(result))
                static_cast<Connection *>(self)->m_isBroken = true;
        };
        return events;
    }();
    pw_core_add_listener(m_core, &m_coreListener, &coreEvents, this);
    m_registry = pw_core_get_registry(m_core, PW_VERSION_REGISTRY, 0);
    if (!m_registry)
        return;
    static constexpr pw_registry_events registryEvents{
        .version = PW_VERSION_REGISTRY_EVENTS,
        .global =
            [](void *self, quint32 id, quint32 /*permissions*/, const char *type, quint32 /*version*/,
               const spa_dict *properties) {
                if (type && properties)
                    static_cast<Connection *>(self)->announced(id, type, *properties);
            },
        .global_remove = [](void *self, quint32 id) { static_cast<Connection *>(self)->forget(id); },
    };
    pw_registry_add_listener(m_registry, &m_registryListener, &registryEvents, this);
    m_isBroken = false;
}

PipeWireUses::Connection::~Connection() {
    m_questions.clear();
    if (m_registry) {
        spa_hook_remove(&m_registryListener);
        m_library.proxy_destroy(reinterpret_cast<pw_proxy *>(m_registry));
    }
    if (m_core) {
        spa_hook_remove(&m_coreListener);
        m_library.core_disconnect(m_core);
    }
    if (m_context)
        m_library.context_destroy(m_context);
    if (m_loop) {
        pw_loop_leave(m_loop);
        m_library.loop_destroy(m_loop);
    }
}

/// One that is stopped in the moment in which it begins goes on, and is waited for without an end. What it is
/// asked to do before it runs is done by whoever asks.
void PipeWireUses::Connection::stop(pw_data_loop *thread) const {
    pthread_t runner{};
    const auto tellWhoRuns = [](spa_loop *, bool, quint32, const void *, size_t, void *answer) {
        *static_cast<pthread_t *>(answer) = ::pthread_self();
        return 0;
    };
    const auto isRunning = [&] {
        m_library.data_loop_invoke(thread, tellWhoRuns, 0, nullptr, 0, true, &runner);
        return ::pthread_equal(runner, ::pthread_self()) == 0;
    };
    while (!isRunning())
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    m_library.data_loop_stop(thread);
}

void PipeWireUses::Connection::announced(quint32 id, const char *type, const spa_dict &properties) {
    const QByteArrayView kind(type);
    if (kind == PW_TYPE_INTERFACE_Node)
        m_graph.addNode(id, properties);
    else if (kind == PW_TYPE_INTERFACE_Link)
        m_graph.addLink(id, properties);
    else if (kind == PW_TYPE_INTERFACE_Client)
        m_graph.addClient(id, properties);
}

void PipeWireUses::Connection::forget(quint32 id) {
    m_graph.remove(id);
    m_questions.erase(id);
}

void PipeWireUses::Connection::askAboutClients() {
    static constexpr pw_client_events events{
        .version = PW_VERSION_CLIENT_EVENTS,
        .info =
            [](void *data, const pw_client_info *info) {
                const auto *const question = static_cast<Question *>(data);
                if (info && info->props)
                    question->connection->m_graph.describeClient(question->id, *info->props);
            },
        .permissions = nullptr,
    };
    const QSet<quint32> clients = m_graph.takeUndescribedClients();
    for (const quint32 id : clients) {
        auto *const proxy = static_cast<pw_proxy *>(
            pw_registry_bind(m_registry, id, PW_TYPE_INTERFACE_Client, PW_VERSION_CLIENT, 0));
        if (!proxy)
            continue;
        auto question = std::make_unique<Question>(this, id, proxy);
        pw_client_add_listener(reinterpret_cast<pw_client *>(proxy), &question->listener, &events,
                               question.get());
        m_questions.insert_or_assign(id, std::move(question));
    }
}

void PipeWireUses::Connection::take() {
    if (pw_loop_iterate(m_loop, 0) < 0)
        m_isBroken = true;
    if (!m_isBroken)
        askAboutClients();
}

bool PipeWireUses::Connection::roundTrip(const Deadline &deadline) {
    m_asked = pw_core_sync(m_core, PW_ID_CORE, 0);
    // What was asked goes out with the loop's next turn.
    for (;;) {
        take();
        if (m_isBroken || m_answered == m_asked)
            return !m_isBroken;
        const auto remaining = deadline.remaining();
        if (remaining.count() == 0)
            return false;
        pollfd server{descriptor(), POLLIN, 0};
        ::poll(&server, 1, static_cast<int>(remaining.count()));
    }
}

bool PipeWireUses::Connection::catchUp(const Deadline &deadline) {
    if (m_isBroken)
        return false;
    qsizetype questions = 0;
    do {
        questions = std::ssize(m_questions);
        m_isLate = !roundTrip(deadline);
        // The answers to what was asked on the way are still due.
    } while (!m_isLate && std::ssize(m_questions) > questions);
    return !m_isLate;
}

bool PipeWireUses::Connection::takeLateAnswer() {
    return m_answered == m_asked && std::exchange(m_isLate, false);
}

#pragma GCC diagnostic pop

PipeWireUses::PipeWireUses() = default;

PipeWireUses::~PipeWireUses() {
    close();
}

bool PipeWireUses::open(const Deadline &deadline) {
    if (m_isOpen)
        return true;
    // It watches before it looks, so that nobody can come in between.
    watch();
    if (!m_connection && !connectToServer())
        return false;
    // One that is silent may still answer, and is kept.
    m_isOpen = m_connection->catchUp(deadline);
    if (m_connection->isBroken())
        disconnectFromServer();
    else if (m_isOpen)
        m_watch.reset();
    return m_isOpen;
}

bool PipeWireUses::connectToServer() {
    m_lacksLibrary = false;
    if (!isServerThere())
        return false;
    const PipeWireLibrary *const library = PipeWireLibrary::loaded();
    m_lacksLibrary = library == nullptr;
    if (!library)
        return false;
    m_connection = std::make_unique<Connection>(*library);
    listen();
    return true;
}

void PipeWireUses::close() {
    m_isOpen = false;
    m_watch.reset();
    disconnectFromServer();
}

std::optional<QList<SourceUse>> PipeWireUses::uses(const Deadline &deadline) {
    if (!m_isOpen)
        return {};
    const bool isKnown = m_connection->catchUp(deadline);
    if (m_connection->isBroken())
        QMetaObject::invokeMethod(this, &PipeWireUses::hear, Qt::QueuedConnection);
    if (!isKnown)
        return {};
    m_connection->graph().takeChange();
    return m_connection->graph().uses();
}

Sight PipeWireUses::sight() {
    if (!m_lacksLibrary)
        return {};
    return {
        Sight::Extent::partial,
        u"Programs that use microphone, camera or screen through PipeWire are not seen, because its client "
        "library is not installed."_s,
        u"Install libpipewire."_s, Sight::Help::none};
}

bool PipeWireUses::isSoundServer() const {
    return m_lacksLibrary || (m_connection && m_connection->graph().hasSound());
}

void PipeWireUses::watch() {
    m_watch = std::make_unique<SocketWatch>(pipeWireSocket());
    connect(m_watch.get(), &SocketWatch::appeared, this, &PipeWireUses::appeared);
}

void PipeWireUses::listen() {
    if (m_connection->isBroken())
        return;
    m_notifier = new QSocketNotifier(m_connection->descriptor(), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &PipeWireUses::hear);
}

void PipeWireUses::disconnectFromServer() {
    // It may be the one that calls.
    if (m_notifier) {
        m_notifier->setEnabled(false);
        std::exchange(m_notifier, nullptr)->deleteLater();
    }
    m_connection.reset();
}

void PipeWireUses::hear() {
    if (!m_connection)
        return;
    m_connection->take();
    const bool isAnswered = m_connection->takeLateAnswer();
    if (m_connection->isBroken()) {
        disconnectFromServer();
        if (std::exchange(m_isOpen, false)) {
            watch();
            Q_EMIT lost();
        }
    } else if (!m_isOpen) {
        if (isAnswered)
            Q_EMIT appeared();
    } else if (m_connection->graph().takeChange() || isAnswered) {
        Q_EMIT changed();
    }
}

} // namespace kestrin::desktop
