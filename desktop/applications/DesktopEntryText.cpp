#include "desktop/applications/DesktopEntryText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

QByteArrayView trimmed(QByteArrayView text) {
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

/// Cuts the first line, without its end, off the text.
QByteArrayView takeLine(QByteArrayView &text) {
    const qsizetype length = std::find(text.cbegin(), text.cend(), '\n') - text.cbegin();
    const QByteArrayView line = text.first(length);
    text = text.sliced(std::min<qsizetype>(length + 1, text.size()));
    return trimmed(line);
}

char unescaped(char c) {
    switch (c) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return c;
    }
}

} // namespace

DesktopEntryKeys::DesktopEntryKeys(QByteArrayView text) : m_rest(text) {
    if (m_rest.startsWith("\xEF\xBB\xBF"))
        m_rest = m_rest.sliced(3);
}

bool DesktopEntryKeys::next() {
    while (!m_rest.isEmpty()) {
        const QByteArrayView line = takeLine(m_rest);
        if (line.isEmpty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            // Of the next group nothing is of interest.
            if (m_inside)
                m_rest = {};
            m_inside = m_inside || line == QByteArrayView("[Desktop Entry]");
            continue;
        }
        const qsizetype separator = line.indexOf('=');
        if (!m_inside || separator <= 0)
            continue;
        m_key = trimmed(line.first(separator));
        m_value = trimmed(line.sliced(separator + 1));
        return true;
    }
    return false;
}

QString desktopEntryString(QByteArrayView value) {
    if (!value.contains('\\'))
        return QString::fromUtf8(value);
    QByteArray plain;
    plain.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            plain.append(value[i]);
            continue;
        }
        const char next = value[++i];
        if (unescaped(next) == next && next != '\\')
            plain.append('\\');
        plain.append(unescaped(next));
    }
    return QString::fromUtf8(plain);
}

bool desktopEntryBoolean(QByteArrayView value) {
    return value == QByteArrayView("true") || value == QByteArrayView("1");
}

QByteArray desktopEntryValue(const QString &string) {
    return string.toUtf8()
        .replace('\\', "\\\\")
        .replace('\n', "\\n")
        .replace('\t', "\\t")
        .replace('\r', "\\r");
}

QString desktopEntryArgument(const QString &argument) {
    const QString reserved = u" \t\n\"'\\><~|&;$*?#()`"_s;
    bool needsQuotes = false;
    QString inside;
    for (const QChar c : argument) {
        needsQuotes = needsQuotes || reserved.contains(c);
        if (u"\"`$\\"_s.contains(c))
            inside += u'\\';
        // A single one would begin a field code.
        inside += c == u'%' ? u"%%"_s : QString(c);
    }
    return needsQuotes ? u'"' + inside + u'"' : inside;
}

} // namespace kestrin::desktop
