#include "tests/support/sample-app/BusObjects.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace kestrin::sample {

namespace {

constexpr const char *watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char *watcherPath = "/StatusNotifierWatcher";
constexpr const char *menuPath = "/Menu";

bool asks(BusManner manner) {
    return manner != BusManner::absent && manner != BusManner::hangs;
}

/// "org.example.Sample" as the path of its GTK application.
std::string pathOf(const std::string &name) {
    std::string path = '/' + name;
    std::replace(path.begin(), path.end(), '.', '/');
    return path;
}

std::string textOf(const char *text) {
    return text != nullptr ? text : "";
}

} // namespace

void say(const std::string &fact) {
    std::puts(fact.c_str());
    std::fflush(stdout);
}

std::unique_ptr<BusObjects> BusObjects::start(const BusOptions &options, std::function<void()> quit) {
    sd_bus *bus = nullptr;
    const char *name = nullptr;
    if (sd_bus_open_user(&bus) < 0 || sd_bus_get_unique_name(bus, &name) < 0) {
        std::fputs("sample-app cannot reach a session bus.\n", stderr);
        sd_bus_unref(bus);
        return nullptr;
    }
    std::unique_ptr<BusObjects> objects(new BusObjects(bus, options, std::move(quit)));
    say("bus " + std::string(name));
    return objects;
}

BusObjects::BusObjects(sd_bus *bus, const BusOptions &options, std::function<void()> quit)
    : m_bus(bus)
    , m_options(options)
    , m_quit(std::move(quit)) {
    sd_bus_add_filter(m_bus, nullptr, receive, this);
    if (!m_options.name.empty())
        sd_bus_request_name(m_bus, m_options.name.c_str(), 0);
    int id = 0;
    std::istringstream labels(m_options.menu);
    for (std::string label; std::getline(labels, label, ',');) {
        const std::size_t deeper = label.find('>');
        m_menu.children.push_back({++id, label.substr(0, deeper), {}});
        if (deeper != std::string::npos)
            m_menu.children.back().children.push_back({++id, label.substr(deeper + 1), {}});
    }
    if (m_options.watcher != BusManner::absent)
        watch();
    if (m_options.tray != BusManner::absent)
        showIcon();
}

BusObjects::~BusObjects() {
    sd_bus_flush_close_unref(m_bus);
}

bool BusObjects::process() {
    return sd_bus_process(m_bus, nullptr) > 0;
}

std::string BusObjects::claimedName() const {
    const char *name = nullptr;
    sd_bus_get_unique_name(m_bus, &name);
    return m_options.claimedName.empty() ? textOf(name) : m_options.claimedName;
}

int BusObjects::receive(sd_bus_message *message, void *self, sd_bus_error * /*error*/) {
    return sd_bus_message_is_method_call(message, nullptr, nullptr) > 0 &&
                   static_cast<BusObjects *>(self)->take(message)
               ? 1
               : 0;
}

/// False for what somebody else is to answer.
bool BusObjects::take(sd_bus_message *message) {
    const std::string path = textOf(sd_bus_message_get_path(message));
    const std::string interface = textOf(sd_bus_message_get_interface(message));
    const std::string member = textOf(sd_bus_message_get_member(message));
    if (path == watcherPath && m_options.watcher == BusManner::hangs)
        return true;
    if (interface == "org.gtk.Actions" && (path == gtkPath || path == pathOf(m_options.name)))
        return takeGtk(message, member);
    if (path == "/" || path == "/sample" || path == "/sample/MainWindow_1")
        return takeKde(message, member);
    if (path == "/MainApplication" && m_options.qt != BusManner::absent) {
        if (member == "quit")
            command(message, m_options.qt, "quit qt", "");
        else if (asks(m_options.qt))
            sd_bus_reply_method_return(message, "s",
                                       "<node><interface name='org.qtproject.Qt.QCoreApplication'>"
                                       "<method name='quit'/></interface></node>");
        return true;
    }
    if (path == "/StatusNotifierItem" || path == menuPath)
        return takeTray(message, member);
    return false;
}

/// Prints `fact` when the command is accepted, and answers "true" when that is its type.
void BusObjects::command(sd_bus_message *message, BusManner manner, const std::string &fact,
                         const char *types) {
    if (manner == BusManner::refuses || manner == BusManner::disabled) {
        say("refused");
        sd_bus_reply_method_errorf(message, "org.example.Refused", "No.");
    } else if (manner == BusManner::accepts || manner == BusManner::leaves) {
        say(fact);
        if (manner == BusManner::accepts)
            sd_bus_reply_method_return(message, types, 1);
        m_quit();
    } else {
        say("silent");
    }
}

bool BusObjects::takeGtk(sd_bus_message *message, const std::string &member) {
    if (m_options.gtk == BusManner::absent)
        return false;
    if (member == "Activate")
        command(message, m_options.gtk, "quit gtk", "");
    else if (asks(m_options.gtk))
        sd_bus_reply_method_return(message, "(bgav)", m_options.gtk != BusManner::disabled, "", 0);
    return true;
}

bool BusObjects::takeKde(sd_bus_message *message, const std::string &member) {
    if (m_options.kde == BusManner::absent)
        return false;
    const std::string path = textOf(sd_bus_message_get_path(message));
    if (member == "activateAction")
        command(message, m_options.kde, "quit kde", "b");
    else if (!asks(m_options.kde))
        return true;
    else if (member == "actionIsEnabled")
        sd_bus_reply_method_return(message, "b", m_options.kde != BusManner::disabled);
    else
        sd_bus_reply_method_return(message, "s",
                                   path == "/" ? "<node><node name='sample'/></node>"
                                               : "<node><node name='MainWindow_1'/></node>");
    return true;
}

bool BusObjects::takeTray(sd_bus_message *message, const std::string &member) {
    if (m_options.tray == BusManner::absent)
        return false;
    if (member == "Event") {
        int id = 0;
        sd_bus_message_read(message, "i", &id);
        std::string label;
        for (const MenuEntry &entry : m_menu.children) {
            if (entry.id == id)
                label = entry.label;
            for (const MenuEntry &child : entry.children)
                label = child.id == id ? child.label : label;
        }
        command(message, m_options.tray, "quit tray " + label, "");
    } else if (!asks(m_options.tray)) {
        return true;
    } else if (member == "AboutToShow") {
        sd_bus_reply_method_return(message, "b", 0);
    } else if (member == "GetLayout") {
        sd_bus_message *reply = nullptr;
        sd_bus_message_new_method_return(message, &reply);
        sd_bus_message_append(reply, "u", 1U);
        appendMenu(reply, m_menu);
        sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
    } else {
        const char *interface = nullptr;
        const char *property = nullptr;
        sd_bus_message_read(message, "ss", &interface, &property);
        if (textOf(property) == "Menu")
            sd_bus_reply_method_return(message, "v", "o", menuPath);
        else
            sd_bus_reply_method_return(message, "v", "s", "Sample Icon");
    }
    return true;
}

void BusObjects::appendMenu(sd_bus_message *reply, const MenuEntry &entry) const {
    sd_bus_message_open_container(reply, 'r', "ia{sv}av");
    sd_bus_message_append(reply, "i", entry.id);
    sd_bus_message_append(reply, "a{sv}", 2, "label", "s", entry.label.c_str(), "enabled", "b",
                          m_options.tray != BusManner::disabled);
    sd_bus_message_open_container(reply, 'a', "v");
    for (const MenuEntry &child : entry.children) {
        sd_bus_message_open_container(reply, 'v', "(ia{sv}av)");
        appendMenu(reply, child);
        sd_bus_message_close_container(reply);
    }
    sd_bus_message_close_container(reply);
    sd_bus_message_close_container(reply);
}

void BusObjects::showIcon() {
    const char *name = nullptr;
    sd_bus_get_unique_name(m_bus, &name);
    sd_bus_call_method_async(m_bus, nullptr, watcherName, watcherPath, watcherName,
                             "RegisterStatusNotifierItem", registered, this, "s", name);
}

int BusObjects::registered(sd_bus_message *message, void * /*self*/, sd_bus_error * /*error*/) {
    if (sd_bus_message_is_method_error(message, nullptr) <= 0)
        say("in tray");
    return 0;
}

// Toolkits introspect it before they believe in a tray. The macros are C.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wc99-extensions"
#endif
const sd_bus_vtable BusObjects::watcherTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", BusObjects::registerIcon,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("RegisterStatusNotifierHost", "s", "", BusObjects::registerIcon,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("RegisteredStatusNotifierItems", "as", BusObjects::readIcons, 0, 0),
    SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", BusObjects::readIcons, 0, 0),
    SD_BUS_PROPERTY("ProtocolVersion", "i", BusObjects::readIcons, 0, 0),
    SD_BUS_SIGNAL("StatusNotifierItemRegistered", "s", 0),
    SD_BUS_SIGNAL("StatusNotifierHostRegistered", "", 0),
    SD_BUS_VTABLE_END,
};
#pragma GCC diagnostic pop

void BusObjects::watch() {
    sd_bus_add_object_vtable(m_bus, nullptr, watcherPath, watcherName, watcherTable, this);
    sd_bus_request_name(m_bus, watcherName, 0);
}

int BusObjects::registerIcon(sd_bus_message *message, void *self, sd_bus_error * /*error*/) {
    const char *text = nullptr;
    if (sd_bus_message_read(message, "s", &text) < 0)
        return -1;
    const std::string service(text);
    const std::string icon = service.front() == '/' ? textOf(sd_bus_message_get_sender(message)) + service
                                                    : service + "/StatusNotifierItem";
    static_cast<BusObjects *>(self)->m_icons.push_back(icon);
    say("icon " + icon);
    return sd_bus_reply_method_return(message, "");
}

int BusObjects::readIcons(sd_bus * /*bus*/, const char * /*path*/, const char * /*interface*/,
                          const char *property, sd_bus_message *reply, void *self, sd_bus_error * /*error*/) {
    if (std::strcmp(property, "RegisteredStatusNotifierItems") != 0)
        return sd_bus_message_append(reply, property[0] == 'I' ? "b" : "i", property[0] == 'I' ? 1 : 0);
    sd_bus_message_open_container(reply, 'a', "s");
    for (const std::string &icon : static_cast<BusObjects *>(self)->m_icons)
        sd_bus_message_append(reply, "s", icon.c_str());
    return sd_bus_message_close_container(reply);
}

} // namespace kestrin::sample
