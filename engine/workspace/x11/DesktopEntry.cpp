#include "engine/workspace/x11/DesktopEntry.h"

#include <QtGlobal>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace kestrin {

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

/// A value of type string. An escape that does not exist stands for itself.
QString stringValue(QByteArrayView value) {
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

bool booleanValue(QByteArrayView value) {
    return value == QByteArrayView("true") || value == QByteArrayView("1");
}

/// Whether an argument of the command line makes a browser open one site as an application.
bool opensSite(QByteArrayView commandLine) {
    for (const QByteArrayView argument : {QByteArrayView("--app="), QByteArrayView("--app-id=")}) {
        for (qsizetype at = commandLine.indexOf(argument); at >= 0;
             at = commandLine.indexOf(argument, at + 1)) {
            if (at > 0 && (isBlank(commandLine[at - 1]) || commandLine[at - 1] == '"'))
                return true;
        }
    }
    return false;
}

/// Collects the keys of the one group.
class EntryReader {
  public:
    explicit EntryReader(const EntryLocales &locales) : m_locales(locales) {}

    void takeKey(QByteArrayView line) {
        const qsizetype separator = line.indexOf('=');
        if (separator <= 0)
            return;
        const QByteArrayView key = trimmed(line.first(separator));
        const QByteArrayView value = trimmed(line.sliced(separator + 1));
        if (key.startsWith("Name") && (key.size() == 4 || key[4] == '['))
            takeName(key.sliced(4), value);
        else if (key == QByteArrayView("Type"))
            m_entry.isApplication = value == QByteArrayView("Application");
        else if (key == QByteArrayView("StartupWMClass"))
            m_entry.windowClass = stringValue(value);
        else if (key == QByteArrayView("Hidden"))
            m_entry.isHidden = booleanValue(value);
        else if (key == QByteArrayView("NoDisplay"))
            m_entry.isOutsideMenus = booleanValue(value);
        else if (key == QByteArrayView("Exec"))
            m_entry.isWebApplication = opensSite(value);
    }

    DesktopEntry entry() const {
        DesktopEntry entry = m_entry;
        entry.name = stringValue(m_name);
        return entry;
    }

  private:
    void takeName(QByteArrayView suffix, QByteArrayView value) {
        qsizetype rank = m_locales.size();
        if (!suffix.isEmpty()) {
            if (suffix.size() < 3 || suffix.back() != ']')
                return;
            const QByteArrayView locale = suffix.sliced(1, suffix.size() - 2);
            rank = std::find(m_locales.cbegin(), m_locales.cend(), locale) - m_locales.cbegin();
            if (rank == m_locales.size())
                return;
        }
        if (rank <= m_nameRank && !value.isEmpty()) {
            m_name = value;
            m_nameRank = rank;
        }
    }

    const EntryLocales &m_locales;
    DesktopEntry m_entry;
    QByteArrayView m_name;
    qsizetype m_nameRank = std::numeric_limits<qsizetype>::max();
};

} // namespace

EntryLocales entryLocales(QByteArrayView localeName) {
    QByteArrayView rest = localeName;
    const auto cutOff = [&rest](char separator) {
        const qsizetype at = rest.indexOf(separator);
        const QByteArrayView tail = at < 0 ? QByteArrayView() : rest.sliced(at);
        if (at >= 0)
            rest = rest.first(at);
        return tail.toByteArray();
    };
    const QByteArray modifier = cutOff('@');
    cutOff('.');
    const QByteArray country = cutOff('_');
    const QByteArray language = rest.toByteArray();
    if (language.isEmpty() || language == "C" || language == "POSIX")
        return {};
    EntryLocales locales;
    for (const QByteArray &locale :
         {language + country + modifier, language + country, language + modifier, language}) {
        if (!locales.contains(locale))
            locales.append(locale);
    }
    return locales;
}

EntryLocales entryLocalesOfEnvironment() {
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return entryLocales(value);
    }
    return {};
}

std::optional<DesktopEntry> DesktopEntry::parse(QByteArrayView text, const EntryLocales &locales) {
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    EntryReader reader(locales);
    bool inside = false;
    while (!text.isEmpty()) {
        const QByteArrayView line = takeLine(text);
        if (line.isEmpty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            if (inside)
                break;
            inside = line == QByteArrayView("[Desktop Entry]");
        } else if (inside) {
            reader.takeKey(line);
        }
    }
    if (!inside)
        return std::nullopt;
    return reader.entry();
}

} // namespace kestrin
