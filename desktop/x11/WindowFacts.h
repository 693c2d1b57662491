// What one window tells about itself, read from raw properties that any client may have written.
#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/x11/X11Atoms.h"

#include <QByteArrayView>
#include <QString>
#include <QVarLengthArray>

#include <optional>

namespace kestrin::desktop {

/// A window's property as the X server hands it out: items of `format` bits, those of 16 and 32 bits in this
/// machine's byte order. A property that is not there has type 0 and no bytes.
struct RawProperty {
    quint32 type = 0;
    quint8 format = 0;
    QByteArrayView bytes;
};

using PropertyItems = QVarLengthArray<quint32, 16>;

/// The whole 32-bit items of a property of that type; none when it has another type or format.
PropertyItems propertyItems(const RawProperty &property, quint32 type);

/// A text property without its final NUL. Clients write UTF-8 under any text type; what is no UTF-8 is
/// Latin-1.
QString propertyText(const RawProperty &property);

/// The facts about a window that the workspace needs. What a malformed property should have told is absent.
struct WindowFacts {
    ApplicationClaims claims;
    /// The type is one that a task bar shows, or none is told.
    bool hasShownType = true;
    bool skipsTaskbar = false;
    bool takesPartInClosing = false;
    /// What the client says, which is worth something only on the client's own machine.
    qint32 claimedProcess = 0;
    QString clientMachine;

    /// Whether a task bar would show the window.
    bool isRegular() const { return hasShownType && !skipsTaskbar; }

    void takeWindowClass(const RawProperty &property);
    void takeWindowType(const RawProperty &property, const X11Atoms &atoms);
    void takeWindowState(const RawProperty &property, const X11Atoms &atoms);
    void takeProtocols(const RawProperty &property, const X11Atoms &atoms);
    void takeProcess(const RawProperty &property);

    bool operator==(const WindowFacts &) const = default;
};

/// The window that a property of type WINDOW names; 0 when it names none.
quint32 propertyWindow(const RawProperty &property);

/// Whether WM_STATE says that the window is minimised.
bool isIconic(const RawProperty &property, const X11Atoms &atoms);

/// Whether a WM_CLIENT_MACHINE names the machine called `hostName`. Either may carry its domain or not.
bool isSameMachine(const QString &clientMachine, const QString &hostName);

} // namespace kestrin::desktop
