#include "cli/HumanOutput.h"

#include "runtime/StatusSummaries.h"

#include <QHash>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace shared;
using namespace engine;
using namespace runtime;

namespace {

const QString mark = u"*"_s;

QList<Cell> header(const QStringList &titles) {
    QList<Cell> cells;
    for (const QString &title : titles)
        cells.append({title, TextColour::strong});
    return cells;
}

TextColour colourOf(MacProtectionEventKind kind) {
    switch (kind) {
    case MacProtectionEventKind::actionFailed:
        return TextColour::bad;
    case MacProtectionEventKind::quitRequested:
    case MacProtectionEventKind::relaunchDetected:
        return TextColour::caution;
    default:
        return TextColour::plain;
    }
}

/// "1 application", "2 applications".
QString applications(qint64 count) {
    return QString::number(count) + (count == 1 ? u" application"_s : u" applications"_s);
}

Cell onOrOff(bool on) {
    return {on ? u"On"_s : u"Off"_s, on ? TextColour::good : TextColour::caution};
}

Cell privacyModeCell(const StatusReport &status) {
    if (!status.pausedUntil)
        return onOrOff(status.privacyModeOn);
    return {u"Paused until "_s + momentLabelFor(*status.pausedUntil, status.now), TextColour::caution};
}

QString monitorSentence(const StatusReport &status) {
    const Monitor &monitor = status.monitor;
    if (!monitor.problem.isEmpty())
        return status.monitorLabel();
    return status.monitorLabel() +
           (monitor.holder ? u" ("_s + *monitor.holder + u')' : u" (no program watches)"_s);
}

QString protectionSentence(const StatusReport &status) {
    if (status.protectedDefinitionIDs.isEmpty())
        return u"everything, because nothing is selected"_s;
    const QStringList &in = status.protectedKnownIDs;
    const QStringList &out = status.unprotectedDefinitionIDs;
    if (in.isEmpty())
        return u"none of "_s + QString::number(out.size()) + u" known applications, only unknown ones: "_s +
               status.protectedDefinitionIDs.join(u", "_s);
    const QString numbers = QString::number(in.size()) + u" of "_s + QString::number(in.size() + out.size()) +
                            u" known applications"_s;
    if (out.isEmpty())
        return numbers;
    // Whichever list is the shorter one.
    return out.size() < in.size() ? numbers + u", all but "_s + out.join(u", "_s)
                                  : numbers + u": "_s + in.join(u", "_s);
}

QString runningSentence(const StatusReport &status) {
    QStringList names;
    for (const RiskAppMatch &match : status.matches)
        names.append(match.app.localizedName);
    names.removeDuplicates();
    const QString numbers = applications(status.runningAppCount) + u", "_s +
                            QString::number(status.matches.size()) + u" protected"_s;
    return names.isEmpty() ? numbers : numbers + u": "_s + names.join(u", "_s);
}

QString enabledModesSentence(const QList<ModePreset> &modes) {
    QStringList names;
    for (const ModePreset &mode : modes) {
        if (mode.enabled)
            names.append(mode.name);
    }
    return names.isEmpty() ? u"none"_s : names.join(u", "_s);
}

Cell localTime(const QDateTime &date) {
    return {date.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s), TextColour::faint};
}

/// "Zoom (Microphone, Camera), parec (Microphone)".
QString liveSentence(const LiveReport &live) {
    if (!live.isOn)
        return u"Off"_s;
    if (live.sight.extent == Sight::Extent::none)
        return u"not known"_s;
    QStringList names;
    QHash<QString, QStringList> categories;
    for (const DeviceUse &use : live.uses) {
        if (!names.contains(use.localizedName))
            names.append(use.localizedName);
        categories[use.localizedName].append(userLabel(use.category));
    }
    for (QString &name : names) {
        QStringList &uses = categories[name];
        uses.removeDuplicates();
        name += u" ("_s + uses.join(u", "_s) + u')';
    }
    return names.isEmpty() ? u"nobody"_s : names.join(u", "_s);
}

QString wantedSentence(const std::optional<bool> &wanted) {
    if (!wanted)
        return u"nothing"_s;
    return *wanted ? u"Privacy Mode on"_s : u"Privacy Mode off"_s;
}

} // namespace

QString appsText(const QList<RunningMacApp> &apps, const Palette &palette) {
    if (apps.isEmpty())
        return u"No applications are running.\n"_s;
    QList<QList<Cell>> rows{header({u"PROCESS"_s, u"NAME"_s, u"IDENTIFIER"_s})};
    for (const RunningMacApp &app : apps)
        rows.append({QString::number(app.processIdentifier),
                     app.localizedName,
                     {app.bundleIdentifier.value_or(QString()), TextColour::faint}});
    return alignedLines(rows, palette);
}

QString catalogText(const RiskAppCatalog &catalog, const QSet<QString> &selection, const Palette &palette) {
    const PrivacyModeSettings settings{true, selection};
    QList<QList<Cell>> rows{header({QString(), u"ID"_s, u"NAME"_s, u"ACTION"_s, u"CATEGORIES"_s})};
    for (const RiskAppDefinition &definition : catalog.definitions)
        rows.append({{settings.protects(definition) ? mark : QString(), TextColour::good},
                     definition.id,
                     definition.displayName,
                     userLabel(definition.defaultAction),
                     userLabels(definition.categories, u", "_s)});
    return alignedLines(rows, palette) + palette.paint(TextColour::faint, u"* protected"_s) + u'\n';
}

QString candidatesText(const QList<AddableApplication> &applications) {
    QString text;
    for (const AddableApplication &application : applications)
        text +=
            visibleText(application.name) + (application.isRunning ? u"\trunning\n"_s : u"\tinstalled\n"_s);
    return text;
}

QString runResultText(const PrivacyModeRunResult &result, qint64 runningAppCount, const Palette &palette) {
    QString text;
    for (const MacProtectionEvent &event : result.events)
        text += palette.paint(colourOf(event.kind), visibleText(event.message)) + u'\n';
    const bool wasEvaluated =
        !result.events.isEmpty() && result.events.first().kind == MacProtectionEventKind::privacyModeOn;
    if (!wasEvaluated)
        return text;
    return text + QString::number(result.matches.size()) + u" of "_s + QString::number(runningAppCount) +
           (runningAppCount == 1 ? u" running application matched.\n"_s
                                 : u" running applications matched.\n"_s);
}

LogLinePaint paintOf(MacProtectionEventKind kind, const Palette &palette) {
    const auto in = [palette](TextColour colour) {
        return [palette, colour](const QString &text) { return palette.paint(colour, text); };
    };
    return {.time = in(TextColour::faint), .message = in(colourOf(kind))};
}

QString usesText(const QList<DeviceUse> &uses, const Palette &palette) {
    if (uses.isEmpty())
        return u"Nobody uses the microphone, a camera or the screen.\n"_s;
    QList<QList<Cell>> rows{header({u"PROCESS"_s, u"NAME"_s, u"USES"_s, u"IDENTIFIER"_s})};
    for (const DeviceUse &use : uses)
        rows.append({QString::number(use.processIdentifier),
                     use.localizedName,
                     userLabel(use.category),
                     {use.bundleIdentifier.value_or(QString()), TextColour::faint}});
    return alignedLines(rows, palette);
}

QString useEventText(const QDateTime &date, const QString &sentence, const Palette &palette) {
    return alignedLines({{localTime(date), sentence}}, palette);
}

QString liveSwitchText(bool on) {
    return on ? u"Kestrin tells who uses microphone, camera or screen.\n"_s
              : u"Kestrin does not tell who uses microphone, camera or screen.\n"_s;
}

QString sightOfUsesText(const Sight &sight) {
    return sight.isFull() ? u"All who use microphone, camera or screen can be seen now."_s : sight.text();
}

QString statusText(const StatusReport &status, const Palette &palette) {
    const auto label = [](const QString &text) { return Cell{text, TextColour::strong}; };
    const bool monitored = status.monitor.holder.has_value();
    QList<QList<Cell>> rows{
        {label(u"Privacy Mode"_s), privacyModeCell(status)},
        {label(u"Monitor"_s), {monitorSentence(status), monitored ? TextColour::good : TextColour::caution}},
        {label(u"Actions"_s), actionsLabelFor(status.enforceActions)},
        {label(u"Protected"_s), protectionSentence(status)},
        {label(u"Running"_s), runningSentence(status)},
        {label(u"Live use"_s), liveSentence(status.live)},
        {label(u"Schedules"_s), enabledModesSentence(status.modes)},
        {label(u"Schedules want"_s), wantedSentence(status.scheduledPrivacyModeState)},
        {label(u"Activity log"_s),
         QLocale::c().formattedDataSize(status.logBytes, 1, QLocale::DataSizeSIFormat)},
    };
    if (!status.live.sight.isFull())
        rows.insert(6, {label(u"Not seen"_s), {status.live.sight.text(), TextColour::faint}});
    return alignedLines(rows, palette);
}

QString scheduleText(const QList<ModePreset> &modes, const std::optional<bool> &wanted,
                     const Palette &palette) {
    QList<QList<Cell>> rows{header({QString(), u"ID"_s, u"NAME"_s, u"TIMES"_s, u"WHAT IT DOES"_s})};
    for (const ModePreset &mode : modes)
        rows.append({{mode.enabled ? mark : QString(), TextColour::good},
                     mode.id,
                     mode.name,
                     mode.schedule,
                     mode.detail});
    return alignedLines(rows, palette) +
           palette.paint(TextColour::faint,
                         u"* enabled; now the schedules want "_s + wantedSentence(wanted) + u'.') +
           u'\n';
}

QString autostartText(bool startsAtLogin) {
    return startsAtLogin ? u"Kestrin starts at login.\n"_s : u"Kestrin does not start at login.\n"_s;
}

} // namespace kestrin::cli
