// What the program is to others on the desktop's session bus.
#pragma once

#include "foundation/Deadline.h"

#include <QObject>

namespace kestrin::desktop {

/// The one running instance of the user, by the name of its desktop entry (org.freedesktop.Application).
/// Where there is no bus nothing is ever claimed or found. Main thread.
class RunningInstance : public QObject {
    Q_OBJECT

  public:
    enum class Answer {
        none,         ///< nobody has the name, or it does not answer
        activated,    ///< it has brought its window to the front
        otherDisplay, ///< it is on another display of this user
    };

    using QObject::QObject;

    /// Asks the running instance to show its window, and waits for the answer. `token` is what the desktop
    /// gave this program for being started (XDG activation), and may be empty.
    static Answer activateRunning(const QString &token, const foundation::Deadline &deadline);

    /// Takes the name and answers from now on. False when there is no bus or somebody else has the name.
    bool claim();

  Q_SIGNALS:
    /// Another start of the program asks for the window; with its token.
    void activated(const QString &token);
};

} // namespace kestrin::desktop
