#include "desktop/quitting/TrayMenuReading.h"

#include "desktop/bus/BusValues.h"

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

/// What is said of one menu item, with the reader inside the dictionary's entry.
void readMenuProperty(sd_bus_message *message, TrayMenuItem &item) {
    const QByteArray name = readText(message);
    const char *type = nullptr;
    if (sd_bus_message_peek_type(message, nullptr, &type) <= 0 || !type)
        return;
    const QByteArray valueType(type);
    if (sd_bus_message_enter_container(message, 'v', type) <= 0)
        return;
    if (valueType == "s") {
        const QString value = QString::fromUtf8(readText(message));
        if (name == "label")
            item.label = value;
        else if (name == "icon-name")
            item.iconName = value;
        else if (name == "children-display")
            item.hasSubmenu = !value.isEmpty();
        else if (name == "type" || name == "toggle-type")
            item.isCommand = item.isCommand && (value.isEmpty() || value == "standard"_L1);
    } else if (valueType == "b") {
        int value = 1;
        sd_bus_message_read_basic(message, 'b', &value);
        if (name == "enabled")
            item.isEnabled = value != 0;
        else if (name == "visible")
            item.isVisible = value != 0;
    } else {
        sd_bus_message_skip(message, type);
    }
    sd_bus_message_exit_container(message);
}

/// `budget` is how many items there may still be.
bool readMenuItem(sd_bus_message *message, TrayMenuItem &item, std::size_t &budget) {
    if (budget == 0 || sd_bus_message_enter_container(message, 'r', "ia{sv}av") <= 0)
        return false;
    --budget;
    if (sd_bus_message_read_basic(message, 'i', &item.id) <= 0 ||
        sd_bus_message_enter_container(message, 'a', "{sv}") < 0)
        return false;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        readMenuProperty(message, item);
        if (sd_bus_message_exit_container(message) < 0)
            return false;
    }
    if (sd_bus_message_exit_container(message) < 0 || sd_bus_message_enter_container(message, 'a', "v") < 0)
        return false;
    while (sd_bus_message_enter_container(message, 'v', "(ia{sv}av)") > 0) {
        item.children.emplace_back();
        if (!readMenuItem(message, item.children.back(), budget) ||
            sd_bus_message_exit_container(message) < 0)
            return false;
    }
    return sd_bus_message_exit_container(message) >= 0 && sd_bus_message_exit_container(message) >= 0;
}

} // namespace

bool readTrayMenu(sd_bus_message *message, TrayMenuItem &root) {
    std::size_t budget = 2000;
    return readMenuItem(message, root, budget);
}

} // namespace kestrin::desktop
