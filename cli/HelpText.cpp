#include "cli/HelpText.h"

#include "cli/TerminalText.h"

using namespace Qt::StringLiterals;

namespace kestrin::cli {

namespace {

constexpr qsizetype textWidth = 80;

/// The sentence in lines of at most `textWidth` columns.
QString wrapped(const QString &text) {
    QString lines;
    qsizetype column = 0;
    for (const QString &word : text.split(u' ')) {
        const bool breaks = column > 0 && column + 1 + word.size() > textWidth;
        if (column > 0)
            lines += breaks ? u'\n' : u' ';
        column = (breaks || column == 0 ? 0 : column + 1) + word.size();
        lines += word;
    }
    return lines + u'\n';
}

/// The table, moved to the right.
QString indented(const QList<QList<Cell>> &rows) {
    QList<QList<Cell>> moved;
    for (QList<Cell> row : rows) {
        row.first().text.prepend(u"  "_s);
        moved.append(row);
    }
    return alignedLines(moved, Palette(false));
}

/// The ways to call a command, without its options.
QStringList synopses(const CommandDescription &command) {
    const QString call = u"kestrinctl "_s + command.name;
    switch (command.arguments) {
    case CommandArguments::none:
        return {call};
    case CommandArguments::definitionIDs:
        return {call + u" ID..."_s};
    case CommandArguments::onOrOff:
        return {call + u" on|off"_s};
    case CommandArguments::maybeOnOrOff:
        return {call, call + u" on|off"_s};
    case CommandArguments::enableOrDisable:
        return {call + u" enable|disable"_s};
    case CommandArguments::presetSwitch:
        return {call, call + u" enable|disable ID..."_s};
    }
    return {call};
}

QString optionSpelling(const QString &option) {
    return option == u"--limit" ? u"--limit N"_s : option;
}

QString optionMeaning(const QString &option) {
    if (option == u"--json")
        return u"print JSON for programs"_s;
    if (option == u"--preview")
        return u"only preview, ask nobody to quit"_s;
    if (option == u"--limit")
        return u"print at most N events"_s;
    return u"show this"_s;
}

QString acceptedIDs(const CommandDescription &command) {
    if (command.arguments == CommandArguments::definitionIDs)
        return u"ID is one of "_s + definitionIDs().join(u", "_s) + u'.';
    if (command.arguments == CommandArguments::presetSwitch)
        return u"ID is one of "_s + presetIDs().join(u", "_s) + u'.';
    return {};
}

} // namespace

QString programHelp() {
    QList<QList<Cell>> commands;
    for (const CommandDescription &entry : commandTable())
        commands.append({entry.name, entry.summary});
    return u"kestrinctl controls Kestrin, the Privacy Mode of this desktop.\n\n"
           "Usage: kestrinctl COMMAND [OPTION...]\n\n"
           "Commands:\n"_s +
           indented(commands) + u"\nOptions:\n"_s +
           indented({{u"--json"_s, u"print JSON for programs (all commands but diagnostics)"_s},
                     {u"-h, --help"_s, u"explain a command with examples, or show this"_s},
                     {u"--version"_s, u"print the version"_s}}) +
           u"\nExamples:\n"_s +
           indented({{u"kestrinctl status"_s, u"how everything stands"_s},
                     {u"kestrinctl check --preview"_s, u"what a check would do now"_s},
                     {u"kestrinctl watch --help"_s, u"what watching means"_s}}) +
           u"\nExit status: 0 done, 1 could not, 2 used wrongly.\n"_s;
}

QString commandHelp(const CommandDescription &command) {
    QList<QList<Cell>> options;
    for (const QString &option : command.options)
        options.append({optionSpelling(option), optionMeaning(option)});
    options.append({u"-h, --help"_s, u"show this"_s});
    QList<QList<Cell>> examples;
    for (const CommandExample &example : command.examples)
        examples.append({example.call, example.tells});

    QString text = command.summary + u".\n\n"_s;
    QString label = u"Usage: "_s;
    for (const QString &synopsis : synopses(command)) {
        text += label + synopsis + (command.options.isEmpty() ? QString() : u" [OPTION...]"_s) + u'\n';
        label = QString(label.size(), u' ');
    }
    text += u'\n' + wrapped(command.details);
    if (const QString ids = acceptedIDs(command); !ids.isEmpty())
        text += u'\n' + wrapped(ids);
    return text + u"\nOptions:\n"_s + indented(options) + u"\nExamples:\n"_s + indented(examples);
}

QString versionText() {
    return QStringLiteral("kestrinctl " KESTRIN_VERSION "\n");
}

} // namespace kestrin::cli
