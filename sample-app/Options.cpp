#include "sample-app/Options.h"

#include <cstdio>
#include <cstdlib>
#include <set>

namespace kestrin::sample {

namespace {

const std::set<std::string> knownOptions{
    "bus-name", "claim",  "class", "commands", "gtk",     "gtk-id", "kde",          "kde-entry",
    "later",    "manner", "map",   "menu",     "pid",     "qt",     "skip-taskbar", "times",
    "title",    "tray",   "type",  "watcher",  "wayland", "window", "windows",
};

} // namespace

Instructions parseArguments(const std::vector<std::string> &arguments) {
    Instructions result;
    std::string name;
    for (const std::string &word : arguments) {
        const bool isName = word.starts_with("--");
        if (isName)
            name = word.substr(2);
        if (!knownOptions.contains(name)) {
            std::fprintf(stderr, "sample-app does not know \"%s\".\n", word.c_str());
            std::exit(2);
        }
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
