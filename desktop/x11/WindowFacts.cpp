#include "desktop/x11/WindowFacts.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <algorithm>

namespace kestrin::desktop {

namespace {

QString decoded(QByteArrayView bytes) {
    // Without state, what is cut off at the end is an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

QByteArrayView upToNul(QByteArrayView bytes) {
    return bytes.first(std::find(bytes.cbegin(), bytes.cend(), '\0') - bytes.cbegin());
}

/// Without any bytes when it is no text.
QByteArrayView textBytes(PropertyReply *property) {
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(property)),
            xcb_get_property_value_length(property)};
}

} // namespace

std::span<const xcb_atom_t> propertyAtoms(PropertyReply *property) {
    xcb_ewmh_get_atoms_reply_t atoms{};
    if (xcb_ewmh_get_atoms_from_reply(&atoms, property) == 0)
        return {};
    return {atoms.atoms, atoms.atoms_len};
}

QString propertyText(PropertyReply *property) {
    return decoded(upToNul(textBytes(property)));
}

xcb_window_t propertyWindow(PropertyReply *property) {
    xcb_window_t window = 0;
    return xcb_ewmh_get_window_from_reply(&window, property) != 0 ? window : 0;
}

void WindowFacts::takeWindowClass(PropertyReply *property) {
    const QByteArrayView bytes = textBytes(property);
    const QByteArrayView instance = upToNul(bytes);
    claims.instanceName = decoded(instance);
    if (instance.size() < bytes.size())
        claims.className = decoded(upToNul(bytes.sliced(instance.size() + 1)));
}

void WindowFacts::takeWindowType(PropertyReply *property, const xcb_ewmh_connection_t &hints) {
    const xcb_atom_t shown[] = {hints._NET_WM_WINDOW_TYPE_NORMAL, hints._NET_WM_WINDOW_TYPE_DIALOG};
    const xcb_atom_t notShown[] = {
        hints._NET_WM_WINDOW_TYPE_DESKTOP,    hints._NET_WM_WINDOW_TYPE_DOCK,
        hints._NET_WM_WINDOW_TYPE_TOOLBAR,    hints._NET_WM_WINDOW_TYPE_MENU,
        hints._NET_WM_WINDOW_TYPE_UTILITY,    hints._NET_WM_WINDOW_TYPE_SPLASH,
        hints._NET_WM_WINDOW_TYPE_POPUP_MENU, hints._NET_WM_WINDOW_TYPE_DROPDOWN_MENU,
        hints._NET_WM_WINDOW_TYPE_TOOLTIP,    hints._NET_WM_WINDOW_TYPE_NOTIFICATION,
        hints._NET_WM_WINDOW_TYPE_COMBO,      hints._NET_WM_WINDOW_TYPE_DND};
    // Clients list their types by preference; private ones of some toolkit come before those that all know.
    for (const xcb_atom_t type : propertyAtoms(property)) {
        if (std::ranges::count(shown, type) > 0)
            return;
        if (std::ranges::count(notShown, type) > 0) {
            hasShownType = false;
            return;
        }
    }
}

void WindowFacts::takeWindowState(PropertyReply *property, const xcb_ewmh_connection_t &hints) {
    skipsTaskbar = std::ranges::count(propertyAtoms(property), hints._NET_WM_STATE_SKIP_TASKBAR) > 0;
}

bool isIconic(PropertyReply *property, const X11Atoms &atoms) {
    constexpr quint32 iconicState = 3;
    return property && property->type == atoms.wmState && property->format == 32 && property->value_len > 0 &&
           *static_cast<const quint32 *>(xcb_get_property_value(property)) == iconicState;
}

} // namespace kestrin::desktop
