// Real applications on a real desktop, for tests that run inside tools/with-desktop.
#pragma once

#include "engine/workspace/Workspace.h"
#include "tests/support/Program.h"

#include <functional>

namespace kestrin::samples {

/// One running sample application (sample-app), ended at the latest with this object. What it
/// says arrives with the event loop.
class SampleApp {
  public:
    /// `options` are words with spaces between, `further` those that have spaces in them.
    explicit SampleApp(const QString &options = {}, const QStringList &further = {});
    SampleApp(const SampleApp &) = delete;
    SampleApp &operator=(const SampleApp &) = delete;
    ~SampleApp();

    qint32 pid() const { return m_pid; }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// How often it has said this line.
    qsizetype said(const QString &line) const { return m_lines.count(line); }
    /// What follows this word in the first line that begins with it; empty when none does.
    QString told(const QString &word) const;
    /// Opens one more window of an application with --commands.
    void open();
    /// Ends it from outside, as a crash would.
    void kill();

  private:
    QProcess m_process;
    qint32 m_pid = 0;
    QStringList m_lines;
};

/// Installs a desktop entry that only this desktop sees. `id` has no ".desktop".
void installEntry(const QString &id, const QString &name, const QStringList &furtherLines = {});

/// The process ids of the running applications.
QList<qint32> running(engine::Workspace &workspace);

/// What they are called and the identifiers that they have, as "Zoom, us.zoom.xos".
QStringList identities(engine::Workspace &workspace);

/// The process ids of everything that was launched since.
struct Launches {
    explicit Launches(engine::Workspace &workspace);

    QList<qint32> pids;
    std::unique_ptr<engine::LaunchSubscription> subscription;
};

/// The window manager of this desktop, and its compositor or, on x11, its X server, which a test may end and
/// start again.
namespace display {
/// With SIGTERM it takes leave; with SIGKILL what it told about the windows stays behind.
void stopWindowManager(int signal);
/// Returns when it has adopted the windows.
void startWindowManager();
void signalServer(int signal);
void killServer();
/// In its place; on x11 with a window manager.
void restartServer();
} // namespace display

/// Waits for a fact without running the event loop; false when it takes longer than a generous while.
bool waitBlocking(const std::function<bool()> &fact);

} // namespace kestrin::samples
