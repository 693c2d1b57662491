#include "desktop/applications/SessionUnit.h"

#include <QByteArray>
#include <QList>

#include <algorithm>

namespace kestrin::desktop {

namespace {

int valueOfHexDigit(char digit) {
    const qsizetype at = QByteArrayView("0123456789abcdef").indexOf(digit);
    return static_cast<int>(at);
}

/// The session manager writes some characters of an id as "\x2d".
QString unescaped(QByteArrayView text) {
    QByteArray plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isEscape = text.sliced(i).startsWith("\\x") && i + 3 < text.size();
        const int high = isEscape ? valueOfHexDigit(text[i + 2]) : -1;
        const int low = isEscape ? valueOfHexDigit(text[i + 3]) : -1;
        if (high < 0 || low < 0) {
            plain.append(text[i]);
            continue;
        }
        plain.append(static_cast<char>(high * 16 + low));
        i += 3;
    }
    return QString::fromUtf8(plain);
}

/// "app[-launcher]-ID-NUMBER.scope", "app[-launcher]-ID@NUMBER.service" or "app[-launcher]-ID.service".
QString idOfUnit(QByteArrayView unit) {
    if (!unit.startsWith("app-"))
        return {};
    if (unit.endsWith(".scope"))
        unit = unit.first(std::max<qsizetype>(unit.lastIndexOf('-'), 0));
    else if (unit.endsWith(".service"))
        unit = unit.contains('@') ? unit.first(unit.indexOf('@')) : unit.chopped(8);
    else
        return {};
    return unit.size() > 4 ? unescaped(unit.sliced(unit.lastIndexOf('-') + 1)) : QString();
}

} // namespace

QString unitIdOfControlGroup(QByteArrayView text) {
    QString id;
    for (const QByteArray &line : text.toByteArray().split('\n')) {
        for (const QByteArray &part : line.split('/')) {
            if (const QString found = idOfUnit(part); !found.isEmpty())
                id = found;
        }
    }
    return id;
}

} // namespace kestrin::desktop
