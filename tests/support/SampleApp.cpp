#include "tests/support/SampleApp.h"

#include "tests/support/Files.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QThread>

#include <csignal>
#include <map>

using namespace Qt::StringLiterals;

namespace kestrin::samples {

using namespace engine;

namespace {

constexpr const char *windowManagerVariable = "KESTRIN_DESKTOP_WM_PID";

/// Those that tests have started themselves, by the variable that tells their process ids; the first ones are
/// children of tools/with-desktop.
std::map<std::string, Program> children;

void start(const char *variable, const QStringList &command) {
    const Program &child = children.try_emplace(variable, command).first->second;
    qputenv(variable, QByteArray::number(child.process()));
}

bool isOnX11() {
    return qgetenv("KESTRIN_DESKTOP_KIND") == "x11";
}

const char *serverVariable() {
    return isOnX11() ? "KESTRIN_DESKTOP_XVFB_PID" : "KESTRIN_DESKTOP_COMPOSITOR_PID";
}

/// A process by its id, and only when it has one.
qint32 sendSignal(const char *variable, int signal) {
    const qint32 pid = qEnvironmentVariableIntValue(variable);
    if (pid <= 1)
        qFatal("%s is not set; this test runs inside tools/with-desktop.", variable);
    ::kill(pid, signal);
    return pid;
}

void end(const char *variable, int signal) {
    const qint32 pid = sendSignal(variable, signal);
    const auto own = children.find(variable);
    if (own != children.end() ? !own->second.waitForFinished()
                              : !waitBlocking([pid] { return ::kill(pid, 0) != 0; }))
        qFatal("Process %d does not end.", pid);
    children.erase(variable);
    qunsetenv(variable);
}

} // namespace

bool waitBlocking(const std::function<bool()> &fact) {
    QElapsedTimer timer;
    timer.start();
    while (!fact()) {
        if (timer.hasExpired(10000))
            return false;
        QThread::msleep(5);
    }
    return true;
}

/// The sample application under the name that its class says, as programs usually have it.
static QString programFor(const QString &options) {
    static const QRegularExpression pattern(u"--class [^ /]*/(\\S+)"_s);
    const QString name = pattern.match(options).captured(1);
    if (name.isEmpty())
        return QStringLiteral(SAMPLE_APP);
    const QString link = qEnvironmentVariable("KESTRIN_DESKTOP") + u"/tmp/"_s + name;
    QFile::link(QStringLiteral(SAMPLE_APP), link);
    return link;
}

SampleApp::SampleApp(const QString &options, const QStringList &further) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] {
        while (m_process.canReadLine())
            m_lines.append(QString::fromUtf8(m_process.readLine().trimmed()));
    });
    m_process.start(programFor(options), options.split(u' ', Qt::SkipEmptyParts) + further);
    if (!m_process.waitForStarted())
        qFatal("The sample application does not start.");
    m_pid = static_cast<qint32>(m_process.processId());
}

SampleApp::~SampleApp() {
    kill();
}

QString SampleApp::told(const QString &word) const {
    for (const QString &line : m_lines) {
        if (line.startsWith(word + u' '))
            return line.sliced(word.size() + 1);
    }
    return {};
}

void SampleApp::open() {
    m_process.write("open\n");
    m_process.waitForBytesWritten();
}

void SampleApp::kill() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void installEntry(const QString &id, const QString &name, const QStringList &furtherLines) {
    write(qEnvironmentVariable("KESTRIN_DESKTOP_SHARE") + u"/applications/"_s + id + u".desktop"_s,
          u"[Desktop Entry]\nType=Application\nExec=sample-app\nName=%1\n%2\n"_s
              .arg(name, furtherLines.join(u'\n'))
              .toUtf8());
}

QList<qint32> running(Workspace &workspace) {
    QList<qint32> pids;
    for (const WorkspaceApplication &application : workspace.runningApplications())
        pids.append(application.processIdentifier);
    return pids;
}

QStringList identities(Workspace &workspace) {
    QStringList all;
    for (const WorkspaceApplication &application : workspace.runningApplications())
        all.append(application.localizedName.value_or(u"no name"_s) + u", "_s +
                   application.bundleIdentifier.value_or(u"no identifier"_s));
    return all;
}

Launches::Launches(Workspace &workspace)
    : subscription(workspace.subscribeToLaunches(
          [this](const WorkspaceApplication &application) { pids.append(application.processIdentifier); })) {}

void display::stopWindowManager(int signal) {
    end(windowManagerVariable, signal);
}

void display::startWindowManager() {
    // Runs when the windows have been adopted. What the window manager says on the root window comes earlier.
    const QString ready = qEnvironmentVariable("KESTRIN_DESKTOP") + u"/ready"_s;
    QFile::remove(ready);
    start(windowManagerVariable, {u"openbox"_s, u"--sm-disable"_s, u"--startup"_s, u"touch "_s + ready});
    if (!waitBlocking([&] { return QFile::exists(ready); }))
        qFatal("The window manager does not become ready.");
}

void display::signalServer(int signal) {
    sendSignal(serverVariable(), signal);
}

void display::killServer() {
    end(serverVariable(), SIGKILL);
    children.erase(windowManagerVariable);
    qunsetenv(windowManagerVariable);
}

static void restartXServer() {
    start(serverVariable(),
          {u"Xvfb"_s, qEnvironmentVariable("DISPLAY"), u"-screen"_s, u"0"_s, u"1600x1200x24"_s,
           u"-nolisten"_s, u"tcp"_s, u"-noreset"_s, u"-auth"_s, qEnvironmentVariable("XAUTHORITY")});
    if (!waitBlocking([] { return QProcess::execute(u"xprop"_s, {u"-root"_s}) == 0; }))
        qFatal("The X server does not come back.");
    display::startWindowManager();
}

void display::restartServer() {
    if (isOnX11())
        return restartXServer();
    start(serverVariable(), {qEnvironmentVariable("KESTRIN_DESKTOP_COMPOSITOR")});
    const QStringList visit{u"--wayland"_s, u"--windows"_s, u"0"_s};
    if (!waitBlocking([&] { return QProcess::execute(QStringLiteral(SAMPLE_APP), visit) == 0; }))
        qFatal("The compositor does not come back.");
}

} // namespace kestrin::samples
