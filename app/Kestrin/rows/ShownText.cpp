#include "app/Kestrin/rows/ShownText.h"

#include "foundation/VisibleText.h"

#include <algorithm>

namespace kestrin::app {

using namespace foundation;
using namespace engine;

namespace {

constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

bool hasRightToLeft(const QString &text) {
    const QList<uint> characters = text.toUcs4();
    return std::any_of(characters.cbegin(), characters.cend(), [](uint character) {
        const QChar::Direction direction = QChar::direction(character);
        return direction == QChar::DirR || direction == QChar::DirAL;
    });
}

} // namespace

QString shownName(const QString &name) {
    const QString visible = visibleText(name);
    return hasRightToLeft(visible) ? firstStrongIsolate + visible + popDirectionalIsolate : visible;
}

QString shownMessage(const MacProtectionEvent &event) {
    QString message = visibleText(event.message);
    const QString name = event.appName.value_or(QString());
    if (!name.isEmpty())
        message.replace(visibleText(name), shownName(name));
    return message;
}

} // namespace kestrin::app
