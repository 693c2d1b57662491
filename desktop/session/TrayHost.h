#pragma once

#include <QObject>

namespace kestrin::desktop {

/// Whether the desktop has a place for icons of programs that run in the background. Panels come late and
/// are started anew, so it may change at any time. Main thread.
class TrayHost : public QObject {
    Q_OBJECT

  public:
    /// Answers later, by `changed`, when the answer is yes.
    explicit TrayHost(QObject *parent = nullptr);

    bool isPresent() const { return m_isPresent; }

  Q_SIGNALS:
    void changed();

  private Q_SLOTS:
    void ask();

  private:
    void set(bool isPresent);

    bool m_isPresent = false;
};

} // namespace kestrin::desktop
