#include "sample-app/BusObjects.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace kestrin::sample {

namespace {

constexpr const char *watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char *watcherPath = "/StatusNotifierWatcher";
constexpr const char *menuPath = "/Menu";

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

bool BusObjects::isWanted(const Options &options) {
    return options.has("gtk") || options.has("kde") || options.has("qt") || options.has("tray") ||
           options.has("watcher");
}

BusObjects::BusObjects(const Options &options) : m_options(options) {
    if (sd_bus_open_user(&m_bus) < 0) {
        std::fputs("sample-app cannot reach a session bus.\n", stderr);
        std::exit(1);
    }
    sd_bus_add_filter(m_bus, nullptr, receive, this);
    say("bus " + uniqueName());
    if (m_options.has("bus-name"))
        sd_bus_request_name(m_bus, m_options.value("bus-name").c_str(), 0);
    std::istringstream labels(m_options.value("menu", "Open,Quit"));
    for (std::string label; std::getline(labels, label, ',');)
        m_menu.push_back(label);
    if (m_options.has("watcher"))
        sd_bus_request_name(m_bus, watcherName, 0);
    const auto registered = [](sd_bus_message *message, void * /*self*/, sd_bus_error * /*error*/) {
        if (sd_bus_message_is_method_error(message, nullptr) <= 0)
            say("in tray");
        return 0;
    };
    if (m_options.has("tray"))
        sd_bus_call_method_async(m_bus, nullptr, watcherName, watcherPath, watcherName,
                                 "RegisterStatusNotifierItem", registered, this, "s", uniqueName().c_str());
}

BusObjects::~BusObjects() {
    sd_bus_flush_close_unref(m_bus);
}

std::string BusObjects::uniqueName() const {
    const char *name = nullptr;
    sd_bus_get_unique_name(m_bus, &name);
    return textOf(name);
}

/// The option that says how whoever asks there is dealt with.
std::string BusObjects::kindAt(const std::string &path, const std::string &interface) const {
    if (interface == "org.gtk.Actions" && (path == gtkPath || path == pathOf(m_options.value("bus-name"))))
        return "gtk";
    if (path == "/" || path == "/sample" || path == "/sample/MainWindow_1")
        return "kde";
    if (path == "/MainApplication")
        return "qt";
    if (path == watcherPath)
        return "watcher";
    return path == "/StatusNotifierItem" || path == menuPath ? "tray" : "";
}

int BusObjects::receive(sd_bus_message *message, void *self, sd_bus_error * /*error*/) {
    auto &objects = *static_cast<BusObjects *>(self);
    const std::string kind = objects.kindAt(textOf(sd_bus_message_get_path(message)),
                                            textOf(sd_bus_message_get_interface(message)));
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0 || !objects.m_options.has(kind))
        return 0;
    const std::string member = textOf(sd_bus_message_get_member(message));
    if (objects.m_options.value(kind) == "hangs")
        return 1;
    if (member == "Activate" || member == "activateAction" || member == "quit" || member == "Event")
        objects.obey(message, kind);
    else
        objects.answer(message, kind);
    return 1;
}

void BusObjects::obey(sd_bus_message *message, const std::string &kind) {
    const std::string manner = m_options.value(kind);
    std::uint32_t entry = 0;
    if (kind == "tray")
        sd_bus_message_read(message, "i", &entry);
    if (manner == "accepts" || manner == "leaves") {
        say("quit " + kind + (entry > 0 ? ' ' + m_menu.at(entry - 1) : ""));
        m_hasQuit = true;
    }
    if (manner == "accepts")
        sd_bus_reply_method_return(message, kind == "kde" ? "b" : "", 1);
    else if (manner == "refuses" || manner == "disabled")
        sd_bus_reply_method_errorf(message, "org.example.Refused", "No.");
}

void BusObjects::answer(sd_bus_message *message, const std::string &kind) {
    const std::string member = textOf(sd_bus_message_get_member(message));
    if (kind == "gtk")
        sd_bus_reply_method_return(message, "(bgav)", isEnabled(kind), "", 0);
    else if (kind == "tray")
        answerForTray(message, member);
    else if (kind == "watcher")
        answerForWatcher(message, member);
    else if (kind == "qt")
        sd_bus_reply_method_return(message, "s",
                                   "<node><interface name='org.qtproject.Qt.QCoreApplication'>"
                                   "<method name='quit'/></interface></node>");
    else if (member == "actionIsEnabled")
        sd_bus_reply_method_return(message, "b", isEnabled(kind));
    else
        sd_bus_reply_method_return(message, "s",
                                   textOf(sd_bus_message_get_path(message)) == "/"
                                       ? "<node><node name='sample'/></node>"
                                       : "<node><node name='MainWindow_1'/></node>");
}

void BusObjects::answerForTray(sd_bus_message *message, const std::string &member) {
    if (member == "AboutToShow") {
        sd_bus_reply_method_return(message, "b", 0);
    } else if (member == "GetLayout") {
        sd_bus_message *reply = nullptr;
        sd_bus_message_new_method_return(message, &reply);
        sd_bus_message_append(reply, "u", 1U);
        sd_bus_message_open_container(reply, 'r', "ia{sv}av");
        sd_bus_message_append(reply, "ia{sv}", 0, 0);
        sd_bus_message_open_container(reply, 'a', "v");
        // Each in a submenu of its own.
        for (int id = 1; const std::string &label : m_menu) {
            sd_bus_message_append(reply, "v", "(ia{sv}av)", 100 + id, 0, 1, "(ia{sv}av)", id, 2, "label", "s",
                                  label.c_str(), "enabled", "b", isEnabled("tray"), 0);
            ++id;
        }
        sd_bus_message_close_container(reply);
        sd_bus_message_close_container(reply);
        sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
    } else {
        const char *property = nullptr;
        sd_bus_message_read(message, "ss", nullptr, &property);
        const bool isMenu = textOf(property) == "Menu";
        sd_bus_reply_method_return(message, "v", isMenu ? "o" : "s", isMenu ? menuPath : "Sample Icon");
    }
}

void BusObjects::answerForWatcher(sd_bus_message *message, const std::string &member) {
    if (member == "Introspect") {
        // Toolkits read it before they believe in a tray.
        sd_bus_reply_method_return(message, "s",
                                   "<node><interface name='org.kde.StatusNotifierWatcher'>"
                                   "<property name='IsStatusNotifierHostRegistered' type='b' access='read'/>"
                                   "</interface></node>");
    } else if (member == "RegisterStatusNotifierItem") {
        const char *text = nullptr;
        sd_bus_message_read(message, "s", &text);
        const std::string service = textOf(text);
        m_icons.push_back(service.starts_with('/') ? textOf(sd_bus_message_get_sender(message)) + service
                                                   : service + "/StatusNotifierItem");
        say("icon " + m_icons.back());
        sd_bus_reply_method_return(message, "");
    } else {
        const char *property = nullptr;
        sd_bus_message_read(message, "ss", nullptr, &property);
        if (textOf(property) == "IsStatusNotifierHostRegistered") {
            sd_bus_reply_method_return(message, "v", "b", 1);
            return;
        }
        sd_bus_message *reply = nullptr;
        sd_bus_message_new_method_return(message, &reply);
        sd_bus_message_open_container(reply, 'v', "as");
        sd_bus_message_open_container(reply, 'a', "s");
        for (const std::string &icon : m_icons)
            sd_bus_message_append(reply, "s", icon.c_str());
        sd_bus_message_close_container(reply);
        sd_bus_message_close_container(reply);
        sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
    }
}

} // namespace kestrin::sample
