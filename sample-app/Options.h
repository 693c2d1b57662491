// What a sample application is told to be.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kestrin::sample {

/// By name, without the dashes. One that has no value is there, and empty.
class Options {
  public:
    bool has(const std::string &name) const { return m_values.contains(name); }
    std::string value(const std::string &name, const std::string &otherwise = {}) const {
        return has(name) ? m_values.at(name) : otherwise;
    }
    void set(const std::string &name, const std::string &value) { m_values[name] = value; }

  private:
    std::map<std::string, std::string> m_values;
};

struct Instructions {
    Options application;
    std::vector<Options> windows;
};

/// Ends the process when one of the options is not known. Those before the first --window are those of every
/// window. A MANNER is accepts, refuses, hangs, is-busy (answers all but the command), leaves (ends without
/// an answer) or disabled.
///
///     --bus-name      a name that it owns on the session bus
///     --claim         the name on the bus that its windows claim; the true one unless told
///     --class         INSTANCE/CLASS, or none. The class is the app id of a Wayland window
///     --commands      reads "open" and ends with standard input
///     --gtk           MANNER of the action "quit" of a GTK application
///     --gtk-id        _GTK_APPLICATION_ID
///     --kde           MANNER of the action "file_quit" of a KDE application's window
///     --kde-entry     _KDE_NET_WM_DESKTOP_FILE
///     --later         is opened by a command only
///     --manner        closes, no-delete, ignores, asks (opens one more window in place of closing) or
///     flickers
///     --map           a file that it has in its memory, as if it were one of its libraries
///     --menu          the labels of the tray icon's menu, with commas between
///     --pid           _NET_WM_PID, the true one unless told, or none
///     --qt            MANNER of the method "quit" of a Qt application
///     --skip-taskbar  _NET_WM_STATE_SKIP_TASKBAR
///     --times         says when its windows are shown and asked to close, in nanoseconds of the steady clock
///     --title         the window's title
///     --tray          MANNER of a tray icon with a menu
///     --type          _NET_WM_WINDOW_TYPE, such as DOCK
///     --watcher       MANNER of the list of the tray icons of others
///     --wayland       is a client of a Wayland compositor, not of an X server
///     --window        what follows belongs to one more window
///     --windows       that many of the same kind
Instructions parseArguments(const std::vector<std::string> &arguments);

} // namespace kestrin::sample
