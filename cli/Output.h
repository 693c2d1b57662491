#pragma once

#include <QByteArray>
#include <QString>

namespace kestrin::cli {

/// A stream of this process, written in UTF-8 and all at once when flushed. Waits for a slow reader, but
/// drops the rest when the process is told to end meanwhile (TerminationSignals).
class Output {
  public:
    explicit Output(int descriptor) : m_descriptor(descriptor) {}

    void write(const QByteArray &bytes) { m_pending += bytes; }
    void write(const QString &text) { m_pending += text.toUtf8(); }

    /// Hands over what was written. False when that is not possible; nothing is accepted from then on.
    bool flush();

    /// Whether the reader went away. That is his right ("| head") and no mishap.
    bool isUnread() const;
    /// Whether writing failed in another way, a full disk for example, and how the system puts it.
    bool isBroken() const { return m_error != 0 && !isUnread(); }
    QString problem() const;

    int descriptor() const { return m_descriptor; }

  private:
    bool waitForReader() const;

    int m_descriptor;
    QByteArray m_pending;
    /// The system's number; 0 while all is well.
    int m_error = 0;
};

} // namespace kestrin::cli
