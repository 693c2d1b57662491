// Sound and video servers of a test's own.
#pragma once

#include "desktop/sources/LocalSocket.h"
#include "tests/support/Program.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace kestrin::samples {

/// A folder for sockets, and the servers in it. Programs that begin later know nothing else, until the next
/// one is made.
class MediaServer {
  public:
    MediaServer() {
        for (const char *const name :
             {"XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            qputenv(name, QFile::encodeName(m_folder.path()));
        for (const char *const name : {"PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "PULSE_SERVER"})
            qunsetenv(name);
    }
    MediaServer(const MediaServer &) = delete;
    MediaServer &operator=(const MediaServer &) = delete;
    ~MediaServer() { end(); }

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
        server = begin(QStringLiteral("pulseaudio,-n,--daemonize=no,--exit-idle-time=-1,--use-pid-file=no,"
                                      "--load=module-native-protocol-unix,"
                                      "--load=module-null-source source_name=test-mic,"
                                      "--load=module-null-sink sink_name=test-sink")
                           .split(u','),
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
    std::unique_ptr<Program> begin(const QStringList &command, const QString &socket) {
        QFile::remove(path(socket));
        auto program = std::make_unique<Program>(command);
        // It makes its socket a moment before it listens there.
        const auto listens = [&] { return desktop::LocalSocket().connect(QFile::encodeName(path(socket))); };
        if (!QTest::qWaitFor(listens, 10'000))
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
};

} // namespace kestrin::samples
