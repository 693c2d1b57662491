// Sound and video servers of a test's own.
#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/prctl.h>

#include <csignal>
#include <memory>

namespace kestrin::samples {

/// A program that ends with this object, or with the test.
class Program : public QProcess {
  public:
    explicit Program(const QStringList &command) {
        setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        setStandardErrorFile(QProcess::nullDevice());
        start(command.first(), command.mid(1));
        if (!waitForStarted())
            qFatal("%s does not start.", qPrintable(command.first()));
    }
    ~Program() override { end(); }
    Q_DISABLE_COPY_MOVE(Program)

    qint32 process() const { return static_cast<qint32>(processId()); }
    void signal(int number) const { ::kill(process(), number); }
    void end() {
        if (state() == QProcess::NotRunning)
            return;
        kill();
        waitForFinished();
    }
};

/// A folder for sockets, and the servers in it, of which programs that begin later know nothing else. What
/// was in the environment is put back.
class MediaServer {
  public:
    MediaServer() {
        for (const char *const name :
             {"XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            set(name, QFile::encodeName(m_folder.path()));
        for (const char *const name : {"PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "PULSE_SERVER"})
            set(name, {});
    }
    MediaServer(const MediaServer &) = delete;
    MediaServer &operator=(const MediaServer &) = delete;
    ~MediaServer() {
        end();
        for (const auto &[name, value] : m_before)
            put(name, value);
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    void startPipeWire() {
        server = begin({QStringLiteral("pipewire")}, QStringLiteral("pipewire-0"));
        session = std::make_unique<Program>(QStringList{QStringLiteral("wireplumber")});
        pulse = begin({QStringLiteral("pipewire-pulse")}, QStringLiteral("pulse/native"));
        for (const char *const node : {"node.name=test-mic media.class=Audio/Source/Virtual",
                                       "node.name=test-sink media.class=Audio/Sink"})
            make(node);
    }
    void startPulseAudio() {
        server = begin(QStringLiteral("pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no "
                                      "--load=module-native-protocol-unix "
                                      "--load=module-null-source*source_name=test-mic "
                                      "--load=module-null-sink*sink_name=test-sink")
                           .replace(u' ', u'\n')
                           .replace(u'*', u' ')
                           .split(u'\n'),
                       QStringLiteral("pulse/native"));
    }
    void end() {
        for (auto *const program : {&pulse, &session, &server})
            program->reset();
    }

    /// The one that is asked; of PipeWire also the one that links, and the one for PulseAudio's clients.
    std::unique_ptr<Program> server;
    std::unique_ptr<Program> session;
    std::unique_ptr<Program> pulse;

  private:
    void set(const char *name, const QByteArray &value) {
        m_before.append({name, qgetenv(name)});
        put(name, value);
    }
    static void put(const char *name, const QByteArray &value) {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    std::unique_ptr<Program> begin(const QStringList &command, const QString &socket) {
        QFile::remove(path(socket));
        auto program = std::make_unique<Program>(command);
        if (!QTest::qWaitFor([&] { return QFile::exists(path(socket)); }, 10'000))
            qFatal("%s does not listen.", qPrintable(command.first()));
        return program;
    }
    /// When it is there for everybody. The server may not be ready at once to make one.
    static void make(const char *node) {
        const QString properties =
            QStringLiteral(
                "{ factory.name=support.null-audio-sink object.linger=true audio.position=[FL FR] %1 }")
                .arg(QLatin1StringView(node));
        Program program(
            {QStringLiteral("pw-cli"), QStringLiteral("create-node"), QStringLiteral("adapter"), properties});
        if (!program.waitForFinished() || program.exitCode() != 0)
            qFatal("There is no %s.", node);
    }

    QTemporaryDir m_folder;
    QList<std::pair<const char *, QByteArray>> m_before;
};

} // namespace kestrin::samples
