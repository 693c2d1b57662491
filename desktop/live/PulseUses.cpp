#include "desktop/live/PulseUses.h"

#include "desktop/applications/ProcessIdentity.h"
#include "desktop/live/DeviceClients.h"
#include "desktop/live/PulseLoop.h"
#include "desktop/live/SocketWatch.h"
#include "foundation/FileReading.h"

#include <QFileInfo>
#include <QSet>

#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace engine;
using namespace foundation;

namespace {

constexpr qsizetype maximumStreams = 5000;

/// Empty when the user has chosen a server of another machine.
QByteArray pulseSocket() {
    const QByteArray chosen = qgetenv("PULSE_SERVER");
    if (!chosen.isEmpty()) {
        const QByteArray path = chosen.startsWith("unix:") ? chosen.sliced(5) : chosen;
        return path.startsWith('/') ? path : QByteArray();
    }
    QByteArray folder = qgetenv("PULSE_RUNTIME_PATH");
    if (folder.isEmpty())
        folder = qgetenv("XDG_RUNTIME_DIR") + "/pulse";
    return folder.startsWith('/') ? folder + "/native" : QByteArray();
}

/// From the note that both kinds of server leave beside their socket; it spares us the library.
bool isServedByPipeWire(const QByteArray &socket) {
    const QByteArray note = fileHead(socket.first(socket.lastIndexOf('/')) + "/pid");
    const qint32 server = note.trimmed().toInt();
    return server > 0 && ProcessIdentity::of(server).executableName().startsWith("pipewire"_L1);
}

} // namespace

/// The conversation with one server. Nothing that the library calls back here destroys it.
class PulseUses::Connection {
  public:
    Connection(const PulseLibrary &library, const QByteArray &socket);
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection();

    PulseLoop &loop() { return m_loop; }
    bool isBroken() const;
    /// Whether it is PipeWire that answers.
    bool isPipeWire() const { return m_isPipeWire; }
    /// Asks for the streams of now and waits for all of them. False when that was not so by the deadline;
    /// then takeLateAnswer() tells of it later.
    bool catchUp(const Deadline &deadline);
    bool takeLateAnswer() { return isReady() && m_due == 0 && std::exchange(m_isLate, false); }
    bool takeChange() { return std::exchange(m_isChanged, false); }
    QList<SourceUse> uses() const;

  private:
    struct Stream {
        quint32 source = 0;
        qint32 process = 0;
        QString name;
    };

    bool isReady() const { return m_library.context_get_state(m_context) == PA_CONTEXT_READY; }
    void introduce();
    void ask();
    void expect(pa_operation *operation);
    void readServer(const pa_server_info *server);
    void readSource(const pa_source_info *source, int end);
    void readStream(const pa_source_output_info *stream, int end);

    const PulseLibrary &m_library;
    PulseLoop m_loop;
    pa_context *m_context;
    bool m_isIntroduced = false;
    bool m_isPipeWire = false;
    bool m_isChanged = false;
    bool m_isLate = false;
    /// Answers that have not come.
    int m_due = 0;
    QSet<quint32> m_microphones;
    QList<Stream> m_streams;
};

PulseUses::Connection::Connection(const PulseLibrary &library, const QByteArray &socket)
    : m_library(library)
    , m_loop(library)
    , m_context(library.context_new(m_loop.api(), "Kestrin")) {
    if (m_context)
        m_library.context_connect(m_context, "unix:" + socket, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

PulseUses::Connection::~Connection() {
    if (!m_context)
        return;
    m_library.context_set_subscribe_callback(m_context, nullptr, nullptr);
    m_library.context_disconnect(m_context);
    m_library.context_unref(m_context);
}

bool PulseUses::Connection::isBroken() const {
    if (!m_context)
        return true;
    const pa_context_state_t state = m_library.context_get_state(m_context);
    return state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED;
}

void PulseUses::Connection::expect(pa_operation *operation) {
    if (!operation)
        return;
    ++m_due;
    m_library.operation_unref(operation);
}

void PulseUses::Connection::introduce() {
    m_isIntroduced = true;
    m_library.context_set_subscribe_callback(
        m_context,
        [](pa_context *, pa_subscription_event_type_t, quint32, void *self) {
            static_cast<Connection *>(self)->m_isChanged = true;
        },
        this);
    const auto done = [](pa_context *, int, void *self) { --static_cast<Connection *>(self)->m_due; };
    expect(m_library.context_subscribe(m_context, PA_SUBSCRIPTION_MASK_SOURCE_OUTPUT, done, this));
    expect(m_library.context_get_server_info(
        m_context,
        [](pa_context *, const pa_server_info *server, void *self) {
            static_cast<Connection *>(self)->readServer(server);
        },
        this));
}

void PulseUses::Connection::ask() {
    m_microphones.clear();
    m_streams.clear();
    expect(m_library.context_get_source_info_list(
        m_context,
        [](pa_context *, const pa_source_info *source, int end, void *self) {
            static_cast<Connection *>(self)->readSource(source, end);
        },
        this));
    expect(m_library.context_get_source_output_info_list(
        m_context,
        [](pa_context *, const pa_source_output_info *stream, int end, void *self) {
            static_cast<Connection *>(self)->readStream(stream, end);
        },
        this));
}

void PulseUses::Connection::readServer(const pa_server_info *server) {
    --m_due;
    m_isPipeWire = server && server->server_name && std::strstr(server->server_name, "PipeWire");
}

void PulseUses::Connection::readSource(const pa_source_info *source, int end) {
    if (end != 0)
        --m_due;
    else if (source->monitor_of_sink == PA_INVALID_INDEX && m_microphones.size() < maximumStreams)
        m_microphones.insert(source->index);
}

void PulseUses::Connection::readStream(const pa_source_output_info *stream, int end) {
    if (end != 0) {
        --m_due;
        return;
    }
    const auto property = [&](const char *name) { return m_library.proplist_gets(stream->proplist, name); };
    if (m_streams.size() < maximumStreams)
        m_streams.append({stream->source, claimedProcess(property(PA_PROP_APPLICATION_PROCESS_ID)),
                          claimedName(property(PA_PROP_APPLICATION_NAME))});
}

bool PulseUses::Connection::catchUp(const Deadline &deadline) {
    bool hasAsked = false;
    m_isLate = false;
    while (!isBroken()) {
        // An answer that comes late is still waited for: it is not of now.
        if (isReady() && m_due == 0) {
            if (hasAsked || m_isPipeWire)
                break;
            if (!m_isIntroduced) {
                introduce();
            } else {
                ask();
                hasAsked = true;
            }
        }
        if (deadline.remaining().count() == 0) {
            m_isLate = true;
            break;
        }
        m_loop.waitOnce(deadline);
    }
    m_loop.run();
    return !isBroken() && !m_isLate;
}

QList<SourceUse> PulseUses::Connection::uses() const {
    QList<SourceUse> uses;
    for (const Stream &stream : m_streams) {
        const SourceUse use{MacRiskCategory::microphone, stream.process, stream.name, {}};
        if (m_microphones.contains(stream.source) && mayUseDevices(use.process) && !uses.contains(use))
            uses.append(use);
    }
    return uses;
}

PulseUses::PulseUses() = default;

PulseUses::~PulseUses() {
    close();
}

bool PulseUses::open(const Deadline &deadline) {
    if (m_isOpen)
        return true;
    const QByteArray socket = pulseSocket();
    if (socket.isEmpty())
        return false;
    // It watches before it looks, so that nobody can come in between.
    watch();
    m_lacksLibrary = false;
    if (isServedByPipeWire(socket)) {
        m_connection.reset();
        return m_isOpen = true;
    }
    if (!m_connection && !connectTo(socket))
        return false;
    // One that is silent may still answer, and is kept.
    m_isOpen = m_connection->catchUp(deadline);
    if (m_connection->isBroken() || m_connection->isPipeWire())
        m_connection.reset();
    else if (m_isOpen)
        m_watch.reset();
    return m_isOpen;
}

bool PulseUses::connectTo(const QByteArray &socket) {
    if (!QFileInfo::exists(QFile::decodeName(socket)))
        return false;
    const PulseLibrary *const library = PulseLibrary::loaded();
    m_lacksLibrary = library == nullptr;
    if (!library)
        return false;
    m_connection = std::make_unique<Connection>(*library, socket);
    connect(&m_connection->loop(), &PulseLoop::ran, this, &PulseUses::hear, Qt::QueuedConnection);
    return true;
}

void PulseUses::close() {
    m_isOpen = false;
    m_watch.reset();
    m_connection.reset();
}

std::optional<QList<SourceUse>> PulseUses::uses(const Deadline &deadline) {
    if (!m_isOpen)
        return {};
    if (!m_connection)
        return QList<SourceUse>();
    const bool isKnown = m_connection->catchUp(deadline);
    if (m_connection->isBroken())
        QMetaObject::invokeMethod(this, &PulseUses::hear, Qt::QueuedConnection);
    if (!isKnown)
        return {};
    m_connection->takeChange();
    return m_connection->uses();
}

void PulseUses::watch() {
    m_watch = std::make_unique<SocketWatch>(pulseSocket());
    connect(m_watch.get(), &SocketWatch::appeared, this, [this] {
        m_isOpen = false;
        Q_EMIT appeared();
    });
}

Sight PulseUses::sight() {
    if (!m_lacksLibrary)
        return {};
    return {Sight::Extent::partial,
            u"Programs that record through PulseAudio are not seen, because its client library is not "
            "installed."_s,
            u"Install libpulse."_s, Sight::Help::none};
}

void PulseUses::hear() {
    if (!m_connection)
        return;
    const bool isAnswered = m_connection->takeLateAnswer();
    if (m_connection->isBroken()) {
        m_connection.reset();
        if (std::exchange(m_isOpen, false)) {
            watch();
            Q_EMIT lost();
        }
    } else if (!m_isOpen) {
        if (isAnswered)
            Q_EMIT appeared();
    } else if (m_connection->takeChange() || isAnswered) {
        Q_EMIT changed();
    }
}

} // namespace kestrin::desktop
