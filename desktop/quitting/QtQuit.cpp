#include "desktop/quitting/QtQuit.h"

#include "desktop/bus/BusValues.h"
#include "foundation/FileReading.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr const char kdeWindow[] = "org.kde.KMainWindow";
constexpr const char kdeQuit[] = "file_quit";

// More than any honest application has.
constexpr qsizetype mostChildren = 16;
constexpr qint64 largestMemoryMap = 256 * 1024 * 1024;

/// Since Qt 6 QCoreApplication::quit asks the windows first. Before that it ends the program, and what is not
/// saved is lost.
bool asksBeforeItQuits(qint32 process) {
    static const QRegularExpression library(u"/libQt([6-9]|[1-9][0-9]+)Core\\.so"_s);
    const auto memoryMap = readWholeFile(u"/proc/%1/maps"_s.arg(process), largestMemoryMap);
    return memoryMap && library.match(QString::fromUtf8(*memoryMap)).hasMatch();
}

} // namespace

void QtQuit::search(const QuitTarget &target, const OwnBusNames &names) {
    for (const QByteArray &owner : names.uniqueNames()) {
        searchKdeWindows(owner);
        searchMainObject(owner, target.process);
    }
}

void QtQuit::searchKdeWindows(const QByteArray &owner) {
    introspect(owner, "/", [this, owner](const BusObject &root) {
        for (const QString &child : root.children.first(std::min(root.children.size(), mostChildren))) {
            const QByteArray path = '/' + child.toUtf8();
            introspect(owner, path, [this, owner, path](const BusObject &application) {
                const auto window =
                    std::find_if(application.children.cbegin(), application.children.cend(),
                                 [](const QString &name) { return name.startsWith("MainWindow_"_L1); });
                // One of them is enough: it quits the application.
                if (window != application.children.cend())
                    searchAction(owner, path + '/' + window->toUtf8());
            });
        }
    });
}

void QtQuit::searchAction(const QByteArray &owner, const QByteArray &window) {
    const auto answered = [this, owner, window](sd_bus_message *reply) {
        int isEnabled = 0;
        if (sd_bus_message_read(reply, "b", &isEnabled) > 0 && isEnabled != 0)
            offer({owner, window, kdeWindow, "activateAction"}, "s", kdeQuit);
    };
    ask({owner, window, kdeWindow, "actionIsEnabled"}, answered, "s", kdeQuit);
}

void QtQuit::searchMainObject(const QByteArray &owner, qint32 process) {
    const QByteArray path = "/MainApplication";
    introspect(owner, path, [this, owner, path, process](const BusObject &application) {
        for (const QString &name : application.interfaces) {
            if (!application.plainMethods.value(name).contains("quit"_L1))
                continue;
            const bool isQt = name == "org.qtproject.Qt.QCoreApplication"_L1;
            if (isQt ? asksBeforeItQuits(process) : name.startsWith("org.kde."_L1))
                offer({owner, path, name.toUtf8(), "quit"});
        }
    });
}

void QtQuit::introspect(const QByteArray &owner, const QByteArray &path,
                        std::function<void(const BusObject &)> answer) {
    ask({owner, path, "org.freedesktop.DBus.Introspectable", "Introspect"},
        [answer = std::move(answer)](sd_bus_message *reply) {
            answer(BusObject::fromIntrospection(QString::fromUtf8(readText(reply))));
        });
}

} // namespace kestrin::desktop
