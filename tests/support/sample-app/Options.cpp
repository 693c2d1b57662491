#include "tests/support/sample-app/Options.h"

#include <cstdio>
#include <cstdlib>

namespace kestrin::sample {

namespace {

const std::map<std::string, const char *> meanings{
    {"bus-name", "a name that it owns on the session bus"},
    {"claim", "the name on the bus that its windows claim; the true one unless told"},
    {"class", "INSTANCE/CLASS, or none"},
    {"commands", "reads \"open\" and \"close\" (the last window) from standard input, and ends with it"},
    {"gtk", "MANNER of the action \"quit\" of a GTK application"},
    {"gtk-id", "_GTK_APPLICATION_ID"},
    {"kde", "MANNER of the action \"file_quit\" of a KDE application's window"},
    {"kde-entry", "_KDE_NET_WM_DESKTOP_FILE"},
    {"later", "is opened by a command only"},
    {"machine", "WM_CLIENT_MACHINE"},
    {"malformed", "every property has a type, a format or a text that nobody expects"},
    {"manner", "closes, asks, no-delete, ignores, vanishes or flickers"},
    {"map", "a file that it has in its memory, as if it were one of its libraries"},
    {"menu", "the labels of the tray icon's menu, with commas between; what follows a \">\" is in a submenu"},
    {"pid", "_NET_WM_PID, the true one unless told, or none"},
    {"qt", "MANNER of the method \"quit\" of a Qt application"},
    {"skip-taskbar", "_NET_WM_STATE_SKIP_TASKBAR"},
    {"title", "the window's title"},
    {"tray", "MANNER of a tray icon with a menu"},
    {"type", "_NET_WM_WINDOW_TYPE, such as DOCK"},
    {"watcher", "MANNER of the list of the tray icons of others"},
    {"window", "what follows belongs to one more window"},
    {"windows", "that many of the same kind"},
};

[[noreturn]] void explain(const std::string &unknown) {
    std::fprintf(
        stderr,
        "sample-app does not know \"%s\". Options before the first --window are those of every window; "
        "a MANNER is accepts, refuses, hangs, is-busy (answers all but the command), leaves (ends "
        "without an answer) or disabled:\n",
        unknown.c_str());
    for (const auto &[name, meaning] : meanings)
        std::fprintf(stderr, "  --%s  %s\n", name.c_str(), meaning);
    std::exit(2);
}

} // namespace

Instructions parseArguments(const std::vector<std::string> &arguments) {
    Instructions result;
    std::string name;
    for (const std::string &word : arguments) {
        const bool isName = word.starts_with("--");
        if (isName)
            name = word.substr(2);
        if (!meanings.contains(name))
            explain(word);
        if (name == "window")
            result.windows.push_back(result.application);
        else
            (result.windows.empty() ? result.application : result.windows.back())
                .set(name, isName ? "" : word);
    }
    if (result.windows.empty())
        result.windows.assign(std::stoul(result.application.value("windows", "1")), result.application);
    return result;
}

} // namespace kestrin::sample
