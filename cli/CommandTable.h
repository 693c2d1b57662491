// What kestrinctl can be asked: the one table that parsing, help and the tests of the completions go by.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kestrin::cli {

enum class Command {
    apps,
    catalog,
    check,
    watch,
    log,
    live,
    status,
    on,
    off,
    pause,
    resume,
    protect,
    unprotect,
    recommended,
    enforce,
    schedule,
    autostart,
    desktop,
    diagnostics,
};

/// What may follow a command, apart from options.
enum class CommandArguments {
    none,
    pauseEnd,        ///< a phrase that endOfPhrase() understands, in one word or several
    definitionIDs,   ///< one or more
    onOrOff,         ///< exactly one of the two words
    maybeOnOrOff,    ///< nothing, or one of the two words
    enableOrDisable, ///< exactly one of the two words
    presetSwitch,    ///< nothing, or "enable" or "disable" and one or more presets
    catalogChange,   ///< nothing, "add" and a name or --running, "remove" and identifiers, or "candidates"
};

struct CommandExample {
    QString call;
    QString tells;
};

struct CommandDescription {
    Command command;
    QString name;
    /// One line, for the list of commands.
    QString summary;
    /// What a person has to know before using it.
    QString details;
    QList<CommandExample> examples;
    CommandArguments arguments = CommandArguments::none;
    /// Its own options besides --help, spelled with their dashes.
    QStringList options{QStringLiteral("--json")};
    /// Those that are accepted only behind the word "add".
    QStringList addOptions = {};
};

/// Every command, in the order in which people are told of them.
const QList<CommandDescription> &commandTable();

/// Null when there is no such command.
const CommandDescription *findCommand(const QString &name);

/// The names of the table, in its order.
QStringList commandNames();

/// The identifiers that `protect` and `unprotect` always accept, besides those of own applications.
QStringList definitionIDs();
/// The identifiers that `schedule enable` and `schedule disable` accept.
QStringList presetIDs();

} // namespace kestrin::cli
