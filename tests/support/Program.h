// Programs of a test's own.
#pragma once

#include <QProcess>

#include <sys/prctl.h>

#include <csignal>

namespace kestrin::samples {

/// A program that ends with this object, or with the test.
class Program : public QProcess {
  public:
    explicit Program(const QStringList &command) {
        setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        setStandardErrorFile(QProcess::nullDevice());
        start(command.first(), command.mid(1));
        if (!waitForStarted())
            qFatal("%s does not start.", qUtf8Printable(command.first()));
    }
    ~Program() override {
        kill();
        waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Program)

    qint32 process() const { return static_cast<qint32>(processId()); }
    void signal(int number) const { ::kill(process(), number); }
    /// All that it has to say, as soon as it ends.
    QByteArray output() {
        if (state() != QProcess::NotRunning && !waitForFinished())
            qFatal("%s does not end.", qUtf8Printable(program()));
        return readAllStandardOutput();
    }
};

} // namespace kestrin::samples
