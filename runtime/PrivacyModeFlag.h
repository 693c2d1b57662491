#pragma once

#include "runtime/Outcome.h"
#include "runtime/Pause.h"
#include "runtime/UserDefaults.h"

namespace kestrin::runtime {

class MacProtectionRuntime;

/// The Privacy Mode flag of whoever shows or steers the runtime: it is kept in the user defaults (on, unless
/// stored otherwise), and every change of it is handed to the runtime; once the runtime was started here,
/// also the changes that other processes make.
class PrivacyModeFlag : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY changed)

  public:
    static const QString key;

    /// Both outlive the flag. The runtime's setter is installed at once and removed with the flag.
    PrivacyModeFlag(UserDefaults &defaults, MacProtectionRuntime &runtime, QObject *parent = nullptr);
    ~PrivacyModeFlag() override;

    /// Where a pause is over it is, whether or not anybody has turned it on yet.
    bool isOn() const;
    /// Hands the value to the runtime, also when it is the present one, which mends settings that disagree;
    /// the runtime records a change only. Ends a pause.
    Outcome setOn(bool on);
    /// Absent when Privacy Mode is on, and when it is off for good.
    std::optional<QDateTime> pausedUntil() const;
    /// Off now, and on again then. Takes the place of another pause; where Privacy Mode is off for good,
    /// nothing happens. `until` lies in the future.
    Outcome pause(const QDateTime &until);
    /// Starts the runtime with this flag.
    void startRuntime();

  Q_SIGNALS:
    /// The runtime has already been told.
    void changed();

  private:
    Outcome store(bool on);
    void follow(const QString &changedKey);

    UserDefaults &m_defaults;
    MacProtectionRuntime &m_runtime;
    bool m_known;
};

} // namespace kestrin::runtime
