// The names that this program and window managers share, as the numbers that one X server gave them.
#pragma once

#include <QtGlobal>

#include <array>

namespace kestrin::desktop {

/// The numbers differ from server to server; zero is no atom.
struct X11Atoms {
    quint32 utf8String = 0;

    quint32 clientList = 0;
    quint32 supported = 0;
    quint32 supportingWmCheck = 0;
    quint32 closeWindow = 0;

    quint32 wmState = 0;
    quint32 wmProtocols = 0;
    quint32 wmDeleteWindow = 0;
    quint32 windowPid = 0;
    quint32 gtkApplicationId = 0;
    quint32 gtkBusName = 0;
    quint32 gtkApplicationPath = 0;
    quint32 kdeDesktopFile = 0;

    quint32 windowState = 0;
    quint32 skipTaskbar = 0;

    quint32 windowType = 0;
    quint32 typeNormal = 0;
    quint32 typeDialog = 0;
    quint32 typeDesktop = 0;
    quint32 typeDock = 0;
    quint32 typeToolbar = 0;
    quint32 typeMenu = 0;
    quint32 typeUtility = 0;
    quint32 typeSplash = 0;
    quint32 typeDropdownMenu = 0;
    quint32 typePopupMenu = 0;
    quint32 typeTooltip = 0;
    quint32 typeNotification = 0;
    quint32 typeCombo = 0;
    quint32 typeDragAndDrop = 0;
};

/// The numbers that every server gives: those of the core protocol.
namespace core_atoms {
inline constexpr quint32 atom = 4;
inline constexpr quint32 cardinal = 6;
inline constexpr quint32 window = 33;
inline constexpr quint32 wmClientMachine = 36;
inline constexpr quint32 wmClass = 67;
} // namespace core_atoms

struct X11AtomName {
    quint32 X11Atoms::*number;
    const char *name;
};

inline constexpr X11AtomName x11AtomNames[] = {
    {&X11Atoms::utf8String, "UTF8_STRING"},
    {&X11Atoms::clientList, "_NET_CLIENT_LIST"},
    {&X11Atoms::supported, "_NET_SUPPORTED"},
    {&X11Atoms::supportingWmCheck, "_NET_SUPPORTING_WM_CHECK"},
    {&X11Atoms::closeWindow, "_NET_CLOSE_WINDOW"},
    {&X11Atoms::wmState, "WM_STATE"},
    {&X11Atoms::wmProtocols, "WM_PROTOCOLS"},
    {&X11Atoms::wmDeleteWindow, "WM_DELETE_WINDOW"},
    {&X11Atoms::windowPid, "_NET_WM_PID"},
    {&X11Atoms::gtkApplicationId, "_GTK_APPLICATION_ID"},
    {&X11Atoms::gtkBusName, "_GTK_UNIQUE_BUS_NAME"},
    {&X11Atoms::gtkApplicationPath, "_GTK_APPLICATION_OBJECT_PATH"},
    {&X11Atoms::kdeDesktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
    {&X11Atoms::windowState, "_NET_WM_STATE"},
    {&X11Atoms::skipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
    {&X11Atoms::windowType, "_NET_WM_WINDOW_TYPE"},
    {&X11Atoms::typeNormal, "_NET_WM_WINDOW_TYPE_NORMAL"},
    {&X11Atoms::typeDialog, "_NET_WM_WINDOW_TYPE_DIALOG"},
    {&X11Atoms::typeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP"},
    {&X11Atoms::typeDock, "_NET_WM_WINDOW_TYPE_DOCK"},
    {&X11Atoms::typeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR"},
    {&X11Atoms::typeMenu, "_NET_WM_WINDOW_TYPE_MENU"},
    {&X11Atoms::typeUtility, "_NET_WM_WINDOW_TYPE_UTILITY"},
    {&X11Atoms::typeSplash, "_NET_WM_WINDOW_TYPE_SPLASH"},
    {&X11Atoms::typeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"},
    {&X11Atoms::typePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU"},
    {&X11Atoms::typeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP"},
    {&X11Atoms::typeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION"},
    {&X11Atoms::typeCombo, "_NET_WM_WINDOW_TYPE_COMBO"},
    {&X11Atoms::typeDragAndDrop, "_NET_WM_WINDOW_TYPE_DND"},
};

} // namespace kestrin::desktop
