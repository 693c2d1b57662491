#include "app/Kestrin/rows/ShownText.h"

#include "foundation/VisibleText.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

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

QString shownNumber(qsizetype number) {
    // In the language of the window.
    static const QLocale english(QLocale::English, QLocale::UnitedStates);
    return english.toString(static_cast<qlonglong>(number));
}

QString shownEventCount(qsizetype count) {
    return shownNumber(count) + (count == 1 ? u" event"_s : u" events"_s);
}

QString shownMessage(const MacProtectionEvent &event) {
    QString message = visibleText(event.message);
    const QString name = event.appName.value_or(QString());
    if (!name.isEmpty())
        message.replace(visibleText(name), shownName(name));
    return message;
}

} // namespace kestrin::app
