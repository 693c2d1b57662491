// What a sample application is told to be.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::sample {

enum class Manner {
    /// Closes the window that it is asked to close.
    closes,
    /// Opens a dialog instead, and stays.
    asks,
    /// Does not take part in WM_DELETE_WINDOW.
    noDelete,
    /// Takes part, and does nothing.
    ignores,
    /// Ends as soon as its first window is shown.
    vanishes,
    /// Closes its last window and shows a new one after a while.
    reappears,
    /// Replaces each window by a new one as soon as it is shown, until it is ended.
    flickers,
};

struct WindowOptions {
    std::string title = "A title that is nobody's name";
    /// Both parts of WM_CLASS; absent for a window without.
    std::optional<std::string> instanceName = "sample-app";
    std::string className = "Sample-app";
    std::string gtkApplicationId;
    std::string kdeDesktopFile;
    /// Of _NET_WM_WINDOW_TYPE, in lower case; empty for a window without.
    std::string type;
    bool skipsTaskbar = false;
    /// Is opened by a command only.
    bool isLater = false;
    /// Belongs to the application's first window.
    bool isTransient = false;
    /// What _NET_WM_PID says; absent for a window without.
    std::optional<std::uint32_t> claimedProcess;
    /// What WM_CLIENT_MACHINE says.
    std::string machine;
    /// Names of properties that get a value no reader expects.
    std::set<std::string> malformed;
    Manner manner = Manner::closes;
};

/// How an object on the bus deals with who asks for it.
enum class BusManner {
    absent,
    /// Does what it is asked to do.
    accepts,
    /// Answers questions, and the command with an error.
    refuses,
    /// Answers nothing.
    hangs,
    /// Answers questions, and the command never.
    isBusy,
    /// Answers questions, and ends at the command without an answer.
    leaves,
    /// Says that the command is not to be had now.
    disabled,
};

/// What the application offers on the session bus.
struct BusOptions {
    /// The action "quit" of a GTK application.
    BusManner gtk = BusManner::absent;
    /// The action behind Quit of a KDE application's window.
    BusManner kde = BusManner::absent;
    /// The method "quit" of a Qt application.
    BusManner qt = BusManner::absent;
    /// A tray icon with a menu.
    BusManner tray = BusManner::absent;
    /// Keeps the tray icons of others.
    BusManner watcher = BusManner::absent;
    /// Owned in addition; empty for none.
    std::string name;
    /// What the windows say about whose GTK application they are; empty for the true one.
    std::string claimedName;
    /// Separated by commas; what follows a ">" is in a submenu.
    std::string menu = "Open,Quit";

    bool isAnything() const {
        return gtk != BusManner::absent || kde != BusManner::absent || qt != BusManner::absent ||
               tray != BusManner::absent || watcher != BusManner::absent || !name.empty();
    }
};

struct Options {
    std::vector<WindowOptions> windows;
    std::uint32_t reappearsAfterMilliseconds = 200;
    bool takesCommands = false;
    BusOptions bus;
    /// A file that is part of the process's memory, as a library would be; empty for none.
    std::string mappedFile;
};

/// The options; or what is to be printed instead: the help, or one sentence that says what is wrong.
struct Help {};
using ParsedOptions = std::variant<Options, Help, std::string>;

ParsedOptions parseOptions(const std::vector<std::string> &arguments);

extern const char *const helpText;

} // namespace kestrin::sample
