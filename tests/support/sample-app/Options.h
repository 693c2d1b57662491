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

struct Options {
    std::vector<WindowOptions> windows;
    std::uint32_t reappearsAfterMilliseconds = 200;
    bool takesCommands = false;
};

/// The options; or what is to be printed instead: the help, or one sentence that says what is wrong.
struct Help {};
using ParsedOptions = std::variant<Options, Help, std::string>;

ParsedOptions parseOptions(const std::vector<std::string> &arguments);

extern const char *const helpText;

} // namespace kestrin::sample
