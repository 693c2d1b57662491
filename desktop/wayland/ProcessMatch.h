// Which process a window belongs to where the compositor does not tell.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kestrin::desktop {

/// A process that may show windows, and what the system tells of it.
struct MatchCandidate {
    qint32 process = 0;
    /// It is a client of the compositor, or runs in a sandbox that may be one; not only of XWayland.
    bool isNative = true;
    /// The id under which its sandbox was installed.
    QString sandboxId = {};
    /// The application that the session manager started it for. Whatever that starts in turn has the same.
    QString unitId = {};
    QString executable = {};
    /// What it calls itself, of which the kernel keeps 15 bytes.
    QString commandName = {};
    /// The classes of its X11 windows, one for each window.
    QStringList windowClasses = {};
    /// It has come lately, and shows no window that is known to be its own.
    bool isNew = false;
    /// Other windows with the same app id are its own.
    bool hasSuchWindows = false;
};

/// What is known of the application that a window claims to belong to.
struct MatchQuestion {
    QString appId;
    /// How many windows claim it.
    qsizetype windows = 1;
    /// The owner of the name on the session bus that equals the app id; 0 when there is none.
    qint32 busOwner = 0;
    /// The id of its desktop entry; empty when there is none.
    QString entryId = {};
    /// What the entry starts: the path as it is written, or found, and as it is with all links followed.
    QString program = {};
    QString resolvedProgram = {};
    /// The window has come since the last look. A client connects before it shows a window, so who is new
    /// tells nothing about the windows of before.
    bool isNew = false;
};

/// The one process that all the evidence leaves, the strongest first: the name on the bus, the sandbox, the
/// session manager's unit, the entry's program, the program's name, and that it is new. 0 when none is left,
/// or more than one.
qint32 matchingProcess(const MatchQuestion &question, const QList<MatchCandidate> &candidates);

} // namespace kestrin::desktop
