#include "desktop/applications/DesktopEntry.h"

#include "desktop/applications/DesktopEntryText.h"

#include <QtGlobal>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

/// Whether an argument of the command line makes a browser open one site as an application.
bool opensSite(QByteArrayView commandLine) {
    for (const QByteArrayView argument : {QByteArrayView("--app="), QByteArrayView("--app-id=")}) {
        for (qsizetype at = commandLine.indexOf(argument); at >= 0;
             at = commandLine.indexOf(argument, at + 1)) {
            if (at > 0 && QByteArrayView(" \t\r\"").contains(commandLine[at - 1]))
                return true;
        }
    }
    return false;
}

/// Cuts the first word off a command line. Words may be in quotes, inside which a backslash stands before
/// what would otherwise end or mean something.
QString takeWord(QStringView &commandLine) {
    commandLine = commandLine.trimmed();
    QString word;
    const bool isQuoted = commandLine.startsWith(u'"');
    qsizetype at = isQuoted ? 1 : 0;
    for (; at < commandLine.size() && (isQuoted ? commandLine[at] != u'"' : !commandLine[at].isSpace());
         ++at) {
        if (isQuoted && commandLine[at] == u'\\' && at + 1 < commandLine.size())
            ++at;
        word.append(commandLine[at]);
    }
    commandLine = commandLine.sliced(std::min(at + (isQuoted ? 1 : 0), commandLine.size()));
    return word;
}

/// The program that the line starts, or that "env" starts with other variables.
QString programOf(QStringView commandLine) {
    QString word = takeWord(commandLine);
    if (word != "env"_L1 && !word.endsWith("/env"_L1))
        return word;
    do {
        word = takeWord(commandLine);
    } while (word.contains(u'='));
    return word;
}

/// Collects the keys of the one group.
class EntryReader {
  public:
    explicit EntryReader(const EntryLocales &locales) : m_locales(locales) {}

    void takeKey(QByteArrayView key, QByteArrayView value) {
        if (key.startsWith("Name") && (key.size() == 4 || key[4] == '['))
            takeName(key.sliced(4), value);
        else if (key == QByteArrayView("Type"))
            m_entry.isApplication = value == QByteArrayView("Application");
        else if (key == QByteArrayView("StartupWMClass"))
            m_entry.windowClass = desktopEntryString(value);
        else if (key == QByteArrayView("Hidden"))
            m_entry.isHidden = desktopEntryBoolean(value);
        else if (key == QByteArrayView("NoDisplay"))
            m_entry.isOutsideMenus = desktopEntryBoolean(value);
        else if (key == QByteArrayView("Icon"))
            m_entry.icon = desktopEntryString(value);
        else if (key == QByteArrayView("Terminal"))
            m_entry.needsTerminal = desktopEntryBoolean(value);
        else if (key == QByteArrayView("Exec"))
            takeCommandLine(value);
    }

    DesktopEntry entry() const {
        DesktopEntry entry = m_entry;
        entry.name = desktopEntryString(m_name);
        return entry;
    }

  private:
    void takeCommandLine(QByteArrayView value) {
        m_entry.isWebApplication = opensSite(value);
        m_entry.program = programOf(desktopEntryString(value));
    }

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
    DesktopEntryKeys keys(text);
    EntryReader reader(locales);
    while (keys.next())
        reader.takeKey(keys.key(), keys.value());
    if (!keys.hasGroup())
        return std::nullopt;
    return reader.entry();
}

} // namespace kestrin::desktop
