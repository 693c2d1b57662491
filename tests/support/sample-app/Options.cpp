#include "tests/support/sample-app/Options.h"

#include <charconv>
#include <functional>
#include <limits>
#include <map>

#include <unistd.h>

namespace kestrin::sample {

const char *const helpText =
    R"(Usage: sample-app [OPTION...] [--window [OPTION...]]...

Opens windows that look and behave as told, until all of them are closed. Options before the first --window are
those of every window; without any --window there is one.

  --title TEXT             the window's title
  --class INSTANCE/CLASS   WM_CLASS; --no-class leaves it out
  --gtk-id ID              _GTK_APPLICATION_ID
  --kde-entry ID           _KDE_NET_WM_DESKTOP_FILE
  --pid NUMBER             _NET_WM_PID (the true one unless told); --no-pid leaves it out
  --machine NAME           WM_CLIENT_MACHINE (this one unless told)
  --type TYPE              normal, dialog, utility, toolbar, menu, splash, dock, desktop or notification
  --skip-taskbar           _NET_WM_STATE_SKIP_TASKBAR
  --transient              belongs to the first window
  --malformed PROPERTY     class, pid, type, state, protocols or machine has a value that nobody expects
  --manner MANNER          closes (unless told), asks, no-delete, ignores, vanishes, reappears or flickers
  --windows COUNT          that many windows of the same kind
  --later                  is opened by a command only
  --window                 what follows belongs to one more window
  --reappear-after MS      how long an application that reappears is away; 200 unless told
  --commands               reads commands from standard input and ends with it: "open" opens one more window like
                           the last, "close" closes the last

What it offers on the session bus, each in a MANNER: accepts, refuses, hangs, is-busy (answers all but the command),
leaves (ends without an answer) or disabled:
  --gtk MANNER             the action "quit" of a GTK application
  --kde MANNER             the action "file_quit" of a KDE application's window
  --qt MANNER              the method "quit" of a Qt application
  --tray MANNER            a tray icon with a menu
  --menu LABELS            the labels of that menu, separated by commas; what follows a ">" is in a submenu
  --watcher MANNER         the list of the tray icons of others
  --bus-name NAME          a name that it owns
  --claim NAME             the name on the bus that its windows claim; the true one unless told
  --map FILE               has the file in its memory, as if it were one of its libraries

Prints what happens, a line each: "mapped N", "asked N" (to close window N), "dialog N", "closed N", "away", "back",
"bus NAME", "in tray", "quit gtk", "quit kde", "quit qt", "quit tray LABEL".
)";

namespace {

const std::map<std::string, Manner> manners{
    {"closes", Manner::closes},     {"asks", Manner::asks},         {"no-delete", Manner::noDelete},
    {"ignores", Manner::ignores},   {"vanishes", Manner::vanishes}, {"reappears", Manner::reappears},
    {"flickers", Manner::flickers},
};
const std::map<std::string, BusManner> busManners{
    {"accepts", BusManner::accepts}, {"refuses", BusManner::refuses}, {"hangs", BusManner::hangs},
    {"is-busy", BusManner::isBusy},  {"leaves", BusManner::leaves},   {"disabled", BusManner::disabled},
};
const std::set<std::string> types{"normal", "dialog", "utility", "toolbar",     "menu",
                                  "splash", "dock",   "desktop", "notification"};
const std::set<std::string> properties{"class", "pid", "type", "state", "protocols", "machine"};

std::optional<std::uint32_t> number(const std::string &text, std::uint32_t most) {
    std::uint32_t value = 0;
    const char *end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stopped == end && value <= most ? std::optional(value) : std::nullopt;
}

std::string listed(const std::set<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

/// Reads the arguments one by one; the first that is wrong ends it.
class Parser {
  public:
    Parser() {
        char host[256] = "";
        ::gethostname(host, sizeof host - 1);
        m_defaults.machine = host;
        m_defaults.claimedProcess = static_cast<std::uint32_t>(::getpid());
    }

    ParsedOptions parse(const std::vector<std::string> &arguments) {
        for (std::size_t i = 0; i < arguments.size() && m_error.empty(); ++i) {
            const std::string &name = arguments[i];
            if (name == "--help")
                return Help{};
            if (const auto flag = m_flags.find(name); flag != m_flags.end())
                flag->second();
            else if (const auto option = m_valued.find(name); option == m_valued.end())
                m_error = "sample-app does not know \"" + name + "\"; see sample-app --help.";
            else if (++i == arguments.size())
                m_error = "sample-app needs a value after " + name + ".";
            else if (const std::string wanted = option->second(arguments[i]); !wanted.empty())
                m_error = "sample-app cannot use \"" + arguments[i] + "\" for " + name + "; it takes " +
                          wanted + ".";
        }
        if (!m_error.empty())
            return m_error;
        if (m_options.windows.empty())
            m_options.windows.assign(m_count, m_defaults);
        return m_options;
    }

  private:
    WindowOptions &window() { return m_options.windows.empty() ? m_defaults : m_options.windows.back(); }

    std::string takeText(std::string WindowOptions::*field, const std::string &value) {
        window().*field = value;
        return {};
    }
    std::string takeNumber(std::uint32_t &field, const std::string &value, std::uint32_t most) {
        const auto parsed = number(value, most);
        field = parsed.value_or(0);
        return parsed ? std::string() : "a number up to " + std::to_string(most);
    }
    std::string takeClass(const std::string &value) {
        const std::size_t slash = value.find('/');
        if (slash == std::string::npos)
            return "INSTANCE/CLASS";
        window().instanceName = value.substr(0, slash);
        window().className = value.substr(slash + 1);
        return {};
    }
    std::string takeManner(const std::string &value) {
        const auto found = manners.find(value);
        if (found == manners.end())
            return "closes, asks, no-delete, ignores, vanishes, reappears or flickers";
        window().manner = found->second;
        return {};
    }
    std::string takeBusManner(BusManner BusOptions::*field, const std::string &value) {
        const auto found = busManners.find(value);
        if (found == busManners.end())
            return "accepts, refuses, hangs, is-busy, leaves or disabled";
        m_options.bus.*field = found->second;
        return {};
    }
    static std::string takeInto(std::string &field, const std::string &value) {
        field = value;
        return {};
    }
    std::string takeProcess(const std::string &value) {
        std::uint32_t process = 0;
        std::string wanted = takeNumber(process, value, std::numeric_limits<std::uint32_t>::max());
        window().claimedProcess = process;
        return wanted;
    }
    std::string takeType(const std::string &value) {
        window().type = value;
        return types.contains(value) ? std::string() : listed(types);
    }
    std::string takeMalformed(const std::string &value) {
        window().malformed.insert(value);
        return properties.contains(value) ? std::string() : listed(properties);
    }

    Options m_options;
    WindowOptions m_defaults;
    std::uint32_t m_count = 1;
    std::string m_error;

    const std::map<std::string, std::function<void()>> m_flags{
        {"--no-class", [this] { window().instanceName.reset(); }},
        {"--no-pid", [this] { window().claimedProcess.reset(); }},
        {"--skip-taskbar", [this] { window().skipsTaskbar = true; }},
        {"--later", [this] { window().isLater = true; }},
        {"--transient", [this] { window().isTransient = true; }},
        {"--window", [this] { m_options.windows.push_back(m_defaults); }},
        {"--commands", [this] { m_options.takesCommands = true; }},
    };
    /// Each returns what it takes when the value was something else.
    const std::map<std::string, std::function<std::string(const std::string &)>> m_valued{
        {"--title", [this](const auto &value) { return takeText(&WindowOptions::title, value); }},
        {"--gtk-id", [this](const auto &value) { return takeText(&WindowOptions::gtkApplicationId, value); }},
        {"--kde-entry",
         [this](const auto &value) { return takeText(&WindowOptions::kdeDesktopFile, value); }},
        {"--machine", [this](const auto &value) { return takeText(&WindowOptions::machine, value); }},
        {"--class", [this](const auto &value) { return takeClass(value); }},
        {"--pid", [this](const auto &value) { return takeProcess(value); }},
        {"--type", [this](const auto &value) { return takeType(value); }},
        {"--malformed", [this](const auto &value) { return takeMalformed(value); }},
        {"--manner", [this](const auto &value) { return takeManner(value); }},
        {"--windows", [this](const auto &value) { return takeNumber(m_count, value, 1000); }},
        {"--gtk", [this](const auto &value) { return takeBusManner(&BusOptions::gtk, value); }},
        {"--kde", [this](const auto &value) { return takeBusManner(&BusOptions::kde, value); }},
        {"--qt", [this](const auto &value) { return takeBusManner(&BusOptions::qt, value); }},
        {"--tray", [this](const auto &value) { return takeBusManner(&BusOptions::tray, value); }},
        {"--watcher", [this](const auto &value) { return takeBusManner(&BusOptions::watcher, value); }},
        {"--menu", [this](const auto &value) { return takeInto(m_options.bus.menu, value); }},
        {"--bus-name", [this](const auto &value) { return takeInto(m_options.bus.name, value); }},
        {"--claim", [this](const auto &value) { return takeInto(m_options.bus.claimedName, value); }},
        {"--map", [this](const auto &value) { return takeInto(m_options.mappedFile, value); }},
        {"--reappear-after",
         [this](const auto &value) {
             return takeNumber(m_options.reappearsAfterMilliseconds, value, 600000);
         }},
    };
};

} // namespace

ParsedOptions parseOptions(const std::vector<std::string> &arguments) {
    return Parser().parse(arguments);
}

} // namespace kestrin::sample
