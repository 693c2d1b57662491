#include "desktop/quitting/TrayQuit.h"

#include "desktop/bus/BusValues.h"
#include "desktop/quitting/TrayMenuReading.h"

#include <QLocale>

#include <memory>

namespace kestrin::desktop {

namespace {

constexpr const char watcherInterface[] = "org.kde.StatusNotifierWatcher";
constexpr const char iconInterface[] = "org.kde.StatusNotifierItem";
constexpr const char menuInterface[] = "com.canonical.dbusmenu";

/// More than any honest application has.
constexpr int maximumIcons = 8;

} // namespace

void TrayQuit::search(const QuitTarget &target, const OwnBusNames &names) {
    const QByteArray watcher = names.anybodyBehind(watcherInterface);
    if (watcher.isEmpty())
        return;
    const auto answered = [this, &target, &names](sd_bus_message *reply) {
        if (sd_bus_message_enter_container(reply, 'v', "as") <= 0)
            return;
        int left = maximumIcons;
        for (const QByteArray &text : readTexts(reply)) {
            const Object icon = iconRegisteredAs(text);
            const QByteArray owner = names.ownerIfOwn(icon.owner);
            if (owner.isNull())
                continue;
            searchMenu({owner, icon.path}, target.names);
            if (--left == 0)
                break;
        }
    };
    askForProperty({watcher, "/StatusNotifierWatcher"}, watcherInterface, "RegisteredStatusNotifierItems",
                   answered);
}

/// The path is absent from many.
TrayQuit::Object TrayQuit::iconRegisteredAs(const QByteArray &text) {
    const qsizetype slash = text.indexOf('/');
    if (slash < 0)
        return {text, "/StatusNotifierItem"};
    QByteArray name = text.first(slash);
    if (name.endsWith('@'))
        name.chop(1);
    return {name, text.sliced(slash)};
}

void TrayQuit::searchMenu(const Object &icon, const QStringList &names) {
    const auto allNames = std::make_shared<QStringList>(names);
    for (const char *property : {"Title", "Id"}) {
        askForProperty(icon, iconInterface, property, [allNames](sd_bus_message *reply) {
            allNames->append(QString::fromUtf8(readTextVariant(reply)));
        });
    }
    askForProperty(icon, iconInterface, "Menu", [this, icon, allNames](sd_bus_message *reply) {
        const Object menu{icon.owner, readTextVariant(reply)};
        // Some fill their menu only when somebody is about to look at it.
        ask(
            {menu.owner, menu.path, menuInterface, "AboutToShow"}, [](sd_bus_message *) {}, "i", 0);
        const auto answered = [this, menu, allNames](sd_bus_message *layout) {
            readMenu(menu, layout, *allNames);
        };
        ask({menu.owner, menu.path, menuInterface, "GetLayout"}, answered, "iias", 0, -1, 0U);
    });
}

void TrayQuit::readMenu(const Object &menu, sd_bus_message *layout, const QStringList &names) {
    quint32 revision = 0;
    TrayMenuItem root;
    if (sd_bus_message_read_basic(layout, 'u', &revision) <= 0 || !readTrayMenu(layout, root))
        return;
    const QStringList words = quitWords(QLocale::system().uiLanguages());
    if (const std::optional<qint32> item = quitItem(root, words, names))
        offer({menu.owner, menu.path, menuInterface, "Event"}, "isvu", *item, "clicked", "i", 0, 0U);
}

void TrayQuit::askForProperty(const Object &object, const char *interface, const char *property,
                              SessionBus::Answer answer) {
    ask({object.owner, object.path, "org.freedesktop.DBus.Properties", "Get"}, std::move(answer), "ss",
        interface, property);
}

} // namespace kestrin::desktop
