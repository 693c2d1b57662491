#include "foundation/VisibleText.h"

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7f && unit < 0xa0) || unit == 0x2028 || unit == 0x2029;
}

bool reordersText(char16_t unit) {
    return unit == 0x061c || unit == 0x200e || unit == 0x200f || (unit >= 0x202a && unit <= 0x202e) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

bool isLoneSurrogate(const QString &text, qsizetype at) {
    const QChar unit = text.at(at);
    if (unit.isHighSurrogate())
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    return unit.isLowSurrogate() && (at == 0 || !text.at(at - 1).isHighSurrogate());
}

} // namespace

QString visibleText(const QString &text, bool keepsLines) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        const bool isKept = keepsLines && unit == u'\n';
        if (!isKept && (isControl(unit) || reordersText(unit) || isLoneSurrogate(text, i)))
            result += u"\\u"_s + QString::number(unit, 16).rightJustified(4, u'0');
        else
            result += text.at(i);
    }
    return result;
}

QByteArray visibleJson(const QByteArray &json) {
    // The encoder has spelled out what JSON itself forbids, so a line break is never part of a string.
    return visibleText(QString::fromUtf8(json), true).toUtf8();
}

} // namespace kestrin::foundation
