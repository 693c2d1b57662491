#include "cli/HelpText.h"

#include "cli/TerminalText.h"
#include "engine/MacProtectionEvent.h"
#include "engine/RiskAppDefinition.h"
#include "runtime/LogFormat.h"

#include <algorithm>

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
    case CommandArguments::pauseEnd:
        return {call + u" DURATION"_s, call + u" until TIME"_s};
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
    case CommandArguments::catalogChange:
        return {call, call + u" add NAME"_s, call + u" add --running PROCESS-OR-NAME"_s,
                call + u" remove ID..."_s, call + u" candidates"_s};
    }
    return {call};
}

template <foundation::RawRepresentable Enumeration>
QString rawValuesListed() {
    QStringList names;
    for (const Enumeration value : foundation::allCases<Enumeration>())
        names.append(foundation::rawValue(value));
    return names.first(names.size() - 1).join(u", "_s) + u" or "_s + names.last();
}

struct OptionHelp {
    QString option;
    QString spelling;
    QString meaning;
};

OptionHelp helpOf(const QString &option) {
    static const QList<OptionHelp> known{
        {u"--json"_s, u"--json"_s, u"print JSON for programs"_s},
        {u"--preview"_s, u"--preview"_s, u"only preview, ask nobody to quit"_s},
        {u"--limit"_s, u"--limit N"_s, u"print at most N events"_s},
        {u"--all"_s, u"--all"_s, u"print however many there are"_s},
        {u"--since"_s, u"--since TIME"_s, u"print none that is older"_s},
        {u"--until"_s, u"--until TIME"_s, u"print none that is newer"_s},
        {u"--kind"_s, u"--kind KIND"_s, u"print this kind"_s},
        {u"--app"_s, u"--app NAME"_s, u"print those about an application, by its name or identifier"_s},
        {u"--search"_s, u"--search TEXT"_s, u"print those that say this"_s},
        {u"--follow"_s, u"--follow"_s, u"go on with those that come"_s},
        {u"--running"_s, u"--running PROCESS-OR-NAME"_s, u"add what runs, with its name and identifier"_s},
        {u"--identifier"_s, u"--identifier ID"_s,
         u"an identifier of the application to add; may be repeated"_s},
        {u"--alias"_s, u"--alias NAME"_s, u"a further name of it; may be repeated"_s},
        {u"--category"_s, u"--category C"_s,
         rawValuesListed<engine::MacRiskCategory>() + u"; may be repeated"_s},
        {u"--action"_s, u"--action A"_s,
         rawValuesListed<engine::RiskAppAction>() + u"; keepClosed unless told"_s},
        {u"--format"_s, u"--format FORMAT"_s, u"print them as "_s + rawValuesListed<runtime::LogFormat>()},
    };
    const auto found = std::find_if(known.cbegin(), known.cend(),
                                    [&](const OptionHelp &help) { return help.option == option; });
    return found == known.cend() ? OptionHelp{option, option, {}} : *found;
}

QString acceptedWords(const CommandDescription &command) {
    if (command.arguments == CommandArguments::definitionIDs)
        return u"ID is one of "_s + definitionIDs().join(u", "_s) +
               u", or that of an application of your own."_s;
    if (command.arguments == CommandArguments::pauseEnd)
        return u"DURATION is made of numbers and units (s, m, h or d). TIME is a time of day, which is the "
               u"next "
               "one, \"tomorrow\", which is its first moment, or a date and a time such as \"2026-11-27 9:00\"."_s;
    if (command.arguments == CommandArguments::presetSwitch)
        return u"ID is one of "_s + presetIDs().join(u", "_s) + u'.';
    if (command.options.contains(u"--kind"_s))
        return u"KIND is "_s + rawValuesListed<runtime::LogKind>() +
               u". Who begins or ceases to use microphone, camera or screen is a deviceUse."_s;
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
        options.append({helpOf(option).spelling, helpOf(option).meaning});
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
    if (const QString words = acceptedWords(command); !words.isEmpty())
        text += u'\n' + wrapped(words);
    return text + u"\nOptions:\n"_s + indented(options) + u"\nExamples:\n"_s + indented(examples);
}

QString versionText() {
    return QStringLiteral("kestrinctl " KESTRIN_VERSION "\n");
}

} // namespace kestrin::cli
