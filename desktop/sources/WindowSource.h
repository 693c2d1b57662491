// What tells which windows there are on a desktop, and closes them: one class a protocol.
#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/DesktopPatience.h"
#include "engine/workspace/Sight.h"
#include "foundation/Deadline.h"

#include <QList>
#include <QObject>

#include <optional>

namespace kestrin::desktop {

/// A window as its desktop's own list has it.
struct SourceWindow {
    /// Means something to the source alone, for as long as the window is there.
    quint64 id = 0;
    /// 0 when the source does not know.
    qint32 process = 0;
    /// The app id of a Wayland window is its class.
    ApplicationClaims claims;
    /// A task bar shows it.
    bool isRegular = true;

    /// Whether the window makes its process an application.
    bool counts() const { return process != 0 && isRegular; }

    bool operator==(const SourceWindow &) const = default;
};

inline const ApplicationClaims &claimsOf(const SourceWindow &window) {
    return window.claims;
}

/// A conversation of its own with the desktop; never Qt's. Nothing blocks longer than its deadline, nothing
/// throws, and what a desktop tells beyond a sensible measure is left out. It costs no wake-up while nothing
/// changes. Main thread only.
///
/// After `lost`, and after an answer that did not come in time where the protocol cannot go on from there, it
/// is closed, and `open` begins anew.
class WindowSource : public QObject {
    Q_OBJECT

  public:
    /// Opens the conversation where it is closed. False when nobody answers, or the desktop does not speak
    /// this protocol to us.
    virtual bool open(const foundation::Deadline &deadline) = 0;

    /// Whether the conversation goes on, as far as is known without asking.
    virtual bool isOpen() const = 0;

    /// All windows, in the desktop's order. No answer when the desktop is silent or has gone.
    virtual std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) = 0;

    /// Asks these windows to close, the way the user's own Close would. Whether at least one request was
    /// delivered.
    virtual bool close(const QList<SourceWindow> &windows, const foundation::Deadline &deadline) = 0;

    /// What this source as such cannot see.
    virtual engine::Sight sight() { return {}; }

  Q_SIGNALS:
    /// From the event loop: the windows may have changed. Told only after the first call of `windows`.
    void changed();
    /// From the event loop: the desktop has ended the conversation.
    void lost();
};

} // namespace kestrin::desktop
