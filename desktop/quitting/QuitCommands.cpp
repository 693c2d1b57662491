#include "desktop/quitting/QuitCommands.h"

#include "desktop/quitting/BusObject.h"
#include "desktop/quitting/SessionBus.h"
#include "desktop/quitting/TrayMenu.h"

#include <QFile>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr const char busInterface[] = "org.freedesktop.DBus";
constexpr const char propertiesInterface[] = "org.freedesktop.DBus.Properties";
constexpr const char gtkActions[] = "org.gtk.Actions";
constexpr const char kdeWindow[] = "org.kde.KMainWindow";
constexpr const char trayWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr const char trayIcon[] = "org.kde.StatusNotifierItem";
constexpr const char trayMenu[] = "com.canonical.dbusmenu";

// More than any honest application has.
constexpr qsizetype mostChildren = 16;
constexpr std::size_t mostMenuItems = 2000;

BusMethod busMethod(const char *member) {
    return {busInterface, "/org/freedesktop/DBus", busInterface, member};
}

QByteArray readBytes(sd_bus_message *message, char type) {
    const char *text = nullptr;
    return sd_bus_message_read_basic(message, type, &text) > 0 ? QByteArray(text) : QByteArray();
}

QList<QByteArray> readStrings(sd_bus_message *message) {
    QList<QByteArray> strings;
    if (sd_bus_message_enter_container(message, 'a', "s") <= 0)
        return strings;
    for (QByteArray text = readBytes(message, 's'); !text.isNull(); text = readBytes(message, 's'))
        strings.append(text);
    sd_bus_message_exit_container(message);
    return strings;
}

/// A property that is a text or an object path.
QByteArray readTextVariant(sd_bus_message *message) {
    for (const char *type : {"s", "o"}) {
        if (sd_bus_message_enter_container(message, 'v', type) > 0)
            return readBytes(message, type[0]);
    }
    return {};
}

/// What is said of one menu item, with the reader inside the dictionary's entry.
void readMenuProperty(sd_bus_message *message, TrayMenuItem &item) {
    const QByteArray name = readBytes(message, 's');
    const char *type = nullptr;
    if (sd_bus_message_peek_type(message, nullptr, &type) <= 0 || !type)
        return;
    const QByteArray valueType(type);
    if (sd_bus_message_enter_container(message, 'v', type) <= 0)
        return;
    if (valueType == "s") {
        const QString value = QString::fromUtf8(readBytes(message, 's'));
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

/// (ia{sv}av), as deep as the bus lets messages be. False when it is something else, or too much of it.
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

/// The conversation with one application, from its names to a command that it accepts.
class QuitConversation {
  public:
    QuitConversation(SessionBus &bus, const QuitTarget &target, std::chrono::milliseconds patience)
        : m_bus(bus)
        , m_target(target)
        , m_patience(patience)
        , m_start(std::chrono::steady_clock::now()) {}

    bool reachesAcceptance();

  private:
    /// In the order of preference. What each of them needs to know is asked for at the same time.
    enum Step : std::size_t { gtk, qt, tray, stepCount };
    using Answer = SessionBus::Answer;
    /// Sends the command and says whether it could; what is given is called with the answer.
    using Command = std::function<bool(const std::function<void()> &)>;

    struct Search {
        int openQuestions = 0;
        /// Those that were found and not yet given.
        QList<Command> commands;
    };

    template <typename... Arguments>
    void ask(Search &search, const BusMethod &method, Answer answer, const char *types = "",
             Arguments... arguments);
    void askForProperty(const QByteArray &owner, const QByteArray &path, const char *interface,
                        const char *property, Answer answer);
    void introspect(const QByteArray &owner, const QByteArray &path,
                    std::function<void(const BusObject &)> answer);
    template <typename... Arguments>
    void offer(Step step, const BusMethod &method, const char *types, Arguments... arguments);

    Deadline share(std::size_t step) const;
    bool findOwnNames();
    void askForProcess(const QByteArray &uniqueName);
    void askForOwner(const QByteArray &name);
    void startSearches();
    void searchGtkActions(const QByteArray &owner, const QByteArray &path);
    void searchKdeWindows(const QByteArray &owner);
    void searchQtApplication(const QByteArray &owner);
    void searchTrayIcons(const QByteArray &watcher);
    void searchTrayMenu(const TrayIconAddress &icon);
    void readTrayMenu(const BusMethod &event, sd_bus_message *reply, const QStringList &names);
    bool isAcceptance(sd_bus_message *reply) const;
    bool acceptsWithin(Step step);
    std::optional<Command> takeCommand(Step last);
    /// The process's own unique name behind a name; null when it is somebody else's.
    QByteArray ownerIfOwn(const QByteArray &name) const;

    SessionBus &m_bus;
    const QuitTarget &m_target;
    const std::chrono::milliseconds m_patience;
    const std::chrono::steady_clock::time_point m_start;
    QList<QByteArray> m_ownUniqueNames;
    /// All names that are not unique.
    QHash<QByteArray, QByteArray> m_owners;
    QList<QuitTarget::GtkApplication> m_askedGtkApplications;
    Search m_names;
    std::array<Search, stepCount> m_searches;
    bool m_isAccepted = false;
};

/// The point in time by which the first `steps` shares of the patience are used up.
Deadline QuitConversation::share(std::size_t steps) const {
    const auto end = m_start + m_patience * static_cast<int>(steps) / static_cast<int>(stepCount);
    return Deadline(std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()));
}

template <typename... Arguments>
void QuitConversation::ask(Search &search, const BusMethod &method, Answer answer, const char *types,
                           Arguments... arguments) {
    const auto answered = [&search, answer = std::move(answer)](sd_bus_message *reply) {
        if (!SessionBus::isError(reply))
            answer(reply);
        --search.openQuestions;
    };
    if (m_bus.call(method, answered, types, arguments...))
        ++search.openQuestions;
}

void QuitConversation::askForProperty(const QByteArray &owner, const QByteArray &path, const char *interface,
                                      const char *property, Answer answer) {
    ask(m_searches[tray], {owner, path, propertiesInterface, "Get"}, std::move(answer), "ss", interface,
        property);
}

void QuitConversation::introspect(const QByteArray &owner, const QByteArray &path,
                                  std::function<void(const BusObject &)> answer) {
    ask(m_searches[qt], {owner, path, "org.freedesktop.DBus.Introspectable", "Introspect"},
        [answer = std::move(answer)](sd_bus_message *reply) {
            answer(BusObject::fromIntrospection(QString::fromUtf8(readBytes(reply, 's'))));
        });
}

template <typename... Arguments>
void QuitConversation::offer(Step step, const BusMethod &method, const char *types, Arguments... arguments) {
    m_searches[step].commands.append([=, this](const std::function<void()> &settle) {
        const auto answered = [this, settle](sd_bus_message *reply) {
            m_isAccepted = m_isAccepted || isAcceptance(reply);
            settle();
        };
        return m_bus.call(method, answered, types, arguments...);
    });
}

bool QuitConversation::isAcceptance(sd_bus_message *reply) const {
    // Some end before their answer is on its way.
    if (SessionBus::isError(reply))
        return m_bus.tellsOfLeaving(reply);
    // Some say in their answer whether they did it.
    int did = 1;
    if (sd_bus_message_has_signature(reply, "b") > 0)
        sd_bus_message_read_basic(reply, 'b', &did);
    return did != 0;
}

bool QuitConversation::reachesAcceptance() {
    if (!findOwnNames())
        return false;
    startSearches();
    return acceptsWithin(gtk) || acceptsWithin(qt) || acceptsWithin(tray);
}

QByteArray QuitConversation::ownerIfOwn(const QByteArray &name) const {
    const QByteArray owner = name.startsWith(':') ? name : m_owners.value(name);
    return m_ownUniqueNames.contains(owner) ? owner : QByteArray();
}

/// The bus itself tells which process is behind a name. Most applications have none, and those are not kept
/// waiting for what the other names are about.
bool QuitConversation::findOwnNames() {
    const auto settle = [this] {
        return m_bus.waitUntil([this] { return m_names.openQuestions == 0; }, share(stepCount));
    };
    QList<QByteArray> names;
    ask(m_names, busMethod("ListNames"), [&names](sd_bus_message *reply) { names = readStrings(reply); });
    if (!settle())
        return false;
    for (const QByteArray &name : std::as_const(names)) {
        if (name.startsWith(':'))
            askForProcess(name);
    }
    if (!settle() || m_ownUniqueNames.isEmpty())
        return false;
    for (const QByteArray &name : std::as_const(names)) {
        if (!name.startsWith(':'))
            askForOwner(name);
    }
    return settle();
}

void QuitConversation::askForProcess(const QByteArray &uniqueName) {
    const auto answered = [this, uniqueName](sd_bus_message *reply) {
        quint32 process = 0;
        if (sd_bus_message_read_basic(reply, 'u', &process) > 0 &&
            process == static_cast<quint32>(m_target.process))
            m_ownUniqueNames.append(uniqueName);
    };
    ask(m_names, busMethod("GetConnectionUnixProcessID"), answered, "s", uniqueName.constData());
}

void QuitConversation::askForOwner(const QByteArray &name) {
    const auto answered = [this, name](sd_bus_message *reply) {
        m_owners.insert(name, readBytes(reply, 's'));
    };
    ask(m_names, busMethod("GetNameOwner"), answered, "s", name.constData());
}

void QuitConversation::startSearches() {
    for (const QuitTarget::GtkApplication &application : m_target.gtkApplications) {
        if (const QByteArray owner = ownerIfOwn(application.busName); !owner.isNull())
            searchGtkActions(owner, application.objectPath);
    }
    for (auto name = m_owners.cbegin(); name != m_owners.cend(); ++name) {
        if (m_ownUniqueNames.contains(name.value()))
            searchGtkActions(name.value(), gtkObjectPath(name.key()));
    }
    for (const QByteArray &owner : std::as_const(m_ownUniqueNames)) {
        searchKdeWindows(owner);
        searchQtApplication(owner);
    }
    if (const QByteArray watcher = m_owners.value(trayWatcher); !watcher.isEmpty())
        searchTrayIcons(watcher);
}

void QuitConversation::searchGtkActions(const QByteArray &owner, const QByteArray &path) {
    if (m_askedGtkApplications.contains({owner, path}))
        return;
    m_askedGtkApplications.append({owner, path});
    const auto answered = [=, this](sd_bus_message *reply) {
        int isEnabled = 0;
        const char *parameterType = nullptr;
        if (sd_bus_message_enter_container(reply, 'r', "bgav") > 0 &&
            sd_bus_message_read(reply, "bg", &isEnabled, &parameterType) > 0 && isEnabled != 0 &&
            parameterType[0] == '\0')
            offer(gtk, {owner, path, gtkActions, "Activate"}, "sava{sv}", "quit", 0U, 0U);
    };
    ask(m_searches[gtk], {owner, path, gtkActions, "Describe"}, answered, "s", "quit");
}

/// The action behind Quit in a KDE application's own menu, which every one of its main windows has.
void QuitConversation::searchKdeWindows(const QByteArray &owner) {
    const auto askWindow = [=, this](const QByteArray &path) {
        ask(
            m_searches[qt], {owner, path, kdeWindow, "actionIsEnabled"},
            [=, this](sd_bus_message *reply) {
                int isEnabled = 0;
                if (sd_bus_message_read(reply, "b", &isEnabled) > 0 && isEnabled != 0)
                    offer(qt, {owner, path, kdeWindow, "activateAction"}, "s", "file_quit");
            },
            "s", "file_quit");
    };
    introspect(owner, "/", [=, this](const BusObject &root) {
        for (const QString &child : root.children.first(std::min(root.children.size(), mostChildren))) {
            const QByteArray path = '/' + child.toUtf8();
            introspect(owner, path, [=](const BusObject &application) {
                for (const QString &window : application.children) {
                    if (window.startsWith("MainWindow_"_L1)) {
                        // One of them is enough: it quits the application.
                        askWindow(path + '/' + window.toUtf8());
                        return;
                    }
                }
            });
        }
    });
}

void QuitConversation::searchQtApplication(const QByteArray &owner) {
    const QByteArray path = "/MainApplication";
    introspect(owner, path, [=, this](const BusObject &application) {
        for (const QString &name : application.interfaces) {
            if (!application.plainMethods.value(name).contains("quit"_L1))
                continue;
            QFile memoryMap(u"/proc/%1/maps"_s.arg(m_target.process));
            const bool isQt = name == "org.qtproject.Qt.QCoreApplication"_L1;
            if (isQt && !(memoryMap.open(QIODevice::ReadOnly) && asksBeforeItQuits(memoryMap.readAll())))
                continue;
            if (isQt || name.startsWith("org.kde."_L1))
                offer(qt, {owner, path, name.toUtf8(), "quit"}, "");
        }
    });
}

void QuitConversation::searchTrayIcons(const QByteArray &watcher) {
    askForProperty(watcher, "/StatusNotifierWatcher", trayWatcher, "RegisteredStatusNotifierItems",
                   [this](sd_bus_message *reply) {
                       if (sd_bus_message_enter_container(reply, 'v', "as") <= 0)
                           return;
                       for (const QByteArray &text : readStrings(reply)) {
                           const TrayIconAddress icon = TrayIconAddress::parse(text);
                           if (const QByteArray owner = ownerIfOwn(icon.busName); !owner.isNull())
                               searchTrayMenu({owner, icon.objectPath});
                       }
                   });
}

void QuitConversation::searchTrayMenu(const TrayIconAddress &icon) {
    const auto names = std::make_shared<QStringList>(m_target.names);
    for (const char *property : {"Title", "Id"}) {
        askForProperty(icon.busName, icon.objectPath, trayIcon, property, [names](sd_bus_message *reply) {
            names->append(QString::fromUtf8(readTextVariant(reply)));
        });
    }
    askForProperty(icon.busName, icon.objectPath, trayIcon, "Menu", [=, this](sd_bus_message *reply) {
        const QByteArray path = readTextVariant(reply);
        // Some fill their menu only when somebody is about to look at it.
        ask(
            m_searches[tray], {icon.busName, path, trayMenu, "AboutToShow"}, [](sd_bus_message *) {}, "i", 0);
        const auto answered = [=, this](sd_bus_message *layout) {
            readTrayMenu({icon.busName, path, trayMenu, "Event"}, layout, *names);
        };
        ask(m_searches[tray], {icon.busName, path, trayMenu, "GetLayout"}, answered, "iias", 0, -1, 0U);
    });
}

void QuitConversation::readTrayMenu(const BusMethod &event, sd_bus_message *reply, const QStringList &names) {
    quint32 revision = 0;
    TrayMenuItem menu;
    std::size_t budget = mostMenuItems;
    if (sd_bus_message_read_basic(reply, 'u', &revision) <= 0 || !readMenuItem(reply, menu, budget))
        return;
    const QStringList words = quitWords(QLocale::system().uiLanguages());
    if (const std::optional<qint32> item = quitItem(menu, words, names))
        offer(tray, event, "isvu", *item, "clicked", "i", 0, 0U);
}

/// Waits for what the step is still looking for, and gives commands until one is accepted. A command of an
/// earlier step whose answer was late counts too.
bool QuitConversation::acceptsWithin(Step step) {
    const Deadline deadline = share(step + 1);
    const auto hasCommand = [this, step] {
        return std::any_of(m_searches.begin(), m_searches.begin() + step + 1,
                           [](const Search &search) { return !search.commands.isEmpty(); });
    };
    do {
        m_bus.waitUntil([&] { return m_isAccepted || hasCommand() || m_searches[step].openQuestions == 0; },
                        deadline);
        const std::optional<Command> command = m_isAccepted ? std::nullopt : takeCommand(step);
        if (!command)
            break;
        const auto isSettled = std::make_shared<bool>(false);
        if ((*command)([isSettled] { *isSettled = true; }))
            m_bus.waitUntil([&] { return m_isAccepted || *isSettled; }, deadline);
    } while (!m_isAccepted && deadline.remaining().count() > 0);
    return m_isAccepted;
}

std::optional<QuitConversation::Command> QuitConversation::takeCommand(Step last) {
    for (std::size_t step = 0; step <= last; ++step) {
        if (!m_searches[step].commands.isEmpty())
            return m_searches[step].commands.takeFirst();
    }
    return std::nullopt;
}

} // namespace

bool acceptsQuitCommand(const QuitTarget &target, std::chrono::milliseconds patience) {
    const auto bus = SessionBus::connect();
    return bus && QuitConversation(*bus, target, patience).reachesAcceptance();
}

QByteArray gtkObjectPath(const QByteArray &applicationId) {
    QByteArray path = '/' + applicationId;
    path.replace('.', '/');
    path.replace('-', '_');
    return path;
}

TrayIconAddress TrayIconAddress::parse(const QByteArray &text) {
    const qsizetype slash = text.indexOf('/');
    if (slash < 0)
        return {text, "/StatusNotifierItem"};
    QByteArray name = text.first(slash);
    if (name.endsWith('@'))
        name.chop(1);
    return {name, text.sliced(slash)};
}

bool asksBeforeItQuits(QByteArrayView memoryMap) {
    static constexpr char before[] = "/libQt";
    static constexpr char after[] = "Core.so";
    for (qsizetype at = memoryMap.indexOf(before); at >= 0; at = memoryMap.indexOf(before, at + 1)) {
        qsizetype end = at + static_cast<qsizetype>(std::strlen(before));
        int version = 0;
        for (; end < memoryMap.size() && memoryMap[end] >= '0' && memoryMap[end] <= '9' && version < 1000;
             ++end)
            version = version * 10 + (memoryMap[end] - '0');
        if (version >= 6 && memoryMap.sliced(end).startsWith(after))
            return true;
    }
    return false;
}

} // namespace kestrin::desktop
