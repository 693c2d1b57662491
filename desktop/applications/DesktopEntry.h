// One application as its desktop entry file describes it.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

namespace kestrin::desktop {

/// The names under which texts in the user's language may be found, best first ("de_AT@euro", "de_AT",
/// "de@euro", "de"); empty for a user who wants the untranslated texts.
using EntryLocales = QList<QByteArray>;

/// The locales that belong to the name of one, such as "de_AT.UTF-8@euro".
EntryLocales entryLocales(QByteArrayView localeName);
/// Those of the environment: LC_ALL, LC_MESSAGES or LANG, whichever is the first that is set.
EntryLocales entryLocalesOfEnvironment();

/// What is needed of a desktop entry to recognise an application's windows and to name it.
struct DesktopEntry {
    QString name;
    /// Empty when the entry does not tell.
    QString windowClass;
    bool isApplication = false;
    /// Deleted by the user: the file stands for no entry, and hides those of the same id behind it.
    bool isHidden = false;
    /// Not for menus. It is an application all the same.
    bool isOutsideMenus = false;
    /// Opens a site inside a browser instead of being a program of its own.
    bool isWebApplication = false;
    /// What it starts: a path, or a name to be looked for; empty when the entry does not tell.
    QString program = {};
    /// A name in the theme, or a path; empty when the entry does not tell.
    QString icon = {};
    /// Runs inside a terminal, whose windows it has.
    bool needsTerminal = false;

    /// Reads the group "Desktop Entry" of a file's text, and nothing behind it. What cannot be understood is
    /// left out; none when the group is missing. Bytes that are no UTF-8 become replacement characters.
    static std::optional<DesktopEntry> parse(QByteArrayView text, const EntryLocales &locales);

    bool operator==(const DesktopEntry &) const = default;
};

} // namespace kestrin::desktop
