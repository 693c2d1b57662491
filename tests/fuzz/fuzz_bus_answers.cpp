// What members of the session bus say of themselves: introspection as a text, and menus as a tree.

#include "desktop/quitting/BusObject.h"
#include "desktop/quitting/TrayMenu.h"
#include "tests/fuzz/Fuzzing.h"

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::desktop;
using namespace kestrin::fuzzing;

namespace {

/// Each line an item: how deep it is, what it is like, and its label.
TrayMenuItem menuOf(const QList<QByteArray> &lines, QHash<qint32, TrayMenuItem> &items) {
    TrayMenuItem root;
    for (qsizetype i = 0; i < lines.size() && i < 500; ++i) {
        TrayMenuItem item;
        item.id = static_cast<qint32>(i + 1);
        const QByteArray &line = lines[i];
        const auto bits = static_cast<unsigned>(line.isEmpty() ? 0 : line[0]);
        item.isEnabled = (bits & 1U) == 0;
        item.isVisible = (bits & 2U) == 0;
        item.isCommand = (bits & 4U) == 0;
        item.iconName = (bits & 8U) != 0 ? u"application-exit"_s : QString();
        item.label = QString::fromUtf8(line.mid(1));
        items.insert(item.id, item);
        TrayMenuItem *parent = &root;
        for (unsigned depth = bits >> 4U; depth > 0 && !parent->children.empty(); --depth)
            parent = &parent->children.back();
        parent->children.push_back(item);
    }
    return root;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray input = bytesOf(data, size);
    const BusObject object = BusObject::fromIntrospection(QString::fromUtf8(input));
    require(!object.children.contains(QString()), "children have names");
    for (const QString &interface : object.plainMethods.keys())
        require(object.interfaces.contains(interface), "methods belong to an interface");

    QHash<qint32, TrayMenuItem> items;
    const QStringList words = quitWords({u"de"_s});
    const QStringList names{u"App"_s};
    if (const auto chosen = quitItem(menuOf(input.split('\n'), items), words, names)) {
        const TrayMenuItem item = items.value(*chosen);
        require(item.isEnabled && item.isVisible && item.isCommand, "a user could choose it");
        require(meansQuit(item.label, words, names) || item.iconName == u"application-exit",
                "it says that it quits");
    }
    return 0;
}
