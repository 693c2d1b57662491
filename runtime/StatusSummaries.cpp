#include "runtime/StatusSummaries.h"

#include "runtime/Pause.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace shared;
using namespace engine;

QString monitorLabelFor(const std::optional<bool> &isMonitoring, bool enforceActions) {
    if (!isMonitoring)
        return u"Unknown"_s;
    return *isMonitoring ? actionsLabelFor(enforceActions) : u"Off"_s;
}

QString actionsLabelFor(bool enforceActions) {
    return enforceActions ? u"Enforcing"_s : u"Preview"_s;
}

QString lastCheckedLabelFor(const std::optional<QDateTime> &lastChecked) {
    return lastChecked ? timeOfDayLabelFor(*lastChecked) : u"Not checked yet"_s;
}

QString timeOfDayLabelFor(const QDateTime &date) {
    static const QLocale locale;
    // Hours and minutes; some locales have seconds in their short style.
    static const QString format = locale.timeFormat(QLocale::ShortFormat).remove(u":ss"_s);
    return locale.toString(date.toLocalTime().time(), format);
}

QString momentLabelFor(const QDateTime &date, const QDateTime &now) {
    const QDate day = date.toLocalTime().date();
    if (day == now.toLocalTime().date())
        return timeOfDayLabelFor(date);
    if (date == startOfTomorrow(now))
        return u"tomorrow"_s;
    return QLocale::c().dayName(day.dayOfWeek()) + u", "_s + timeOfDayLabelFor(date);
}

QList<ProtectionDevice> devicesFor(bool isEnabled, bool enforceActions) {
    QString macDetail = u"Privacy Mode paused on this Mac"_s;
    if (isEnabled)
        macDetail = enforceActions ? u"Selected protected apps are monitored and quit requests are sent"_s
                                   : u"Selected protected apps are monitored in preview mode"_s;
    return {
        {u"macbook"_s, u"MacBook Pro"_s, macDetail, u"laptopcomputer"_s, isEnabled ? u"On"_s : u"Off"_s,
         isEnabled ? ProtectionTone::protected_ : ProtectionTone::attention},
        {u"iphone"_s, u"iPhone"_s, u"Use the mobile app for iPhone/iPad Screen Time setup"_s, u"iphone"_s,
         u"Mobile app"_s, ProtectionTone::link},
        {u"watch"_s, u"Apple Watch"_s, u"Quick toggle follows the iPhone app"_s, u"applewatch"_s,
         u"Companion"_s, ProtectionTone::neutral},
    };
}

qint64 enabledScheduleCountOf(const QList<ModePreset> &modes) {
    return std::count_if(modes.cbegin(), modes.cend(), [](const ModePreset &mode) { return mode.enabled; });
}

qint64 actionEventCountOf(const QList<MacProtectionEvent> &events) {
    return std::count_if(events.cbegin(), events.cend(), [](const MacProtectionEvent &event) {
        return event.kind == MacProtectionEventKind::quitRequested ||
               event.kind == MacProtectionEventKind::dryRun ||
               event.kind == MacProtectionEventKind::actionFailed;
    });
}

QString diagnosticsTextFor(const DiagnosticsValues &values) {
    return u"Kestrin Mac diagnostics\nRelaunch monitor: "_s +
           monitorLabelFor(values.isMonitoring, values.enforceActions) + u"\nMac app actions: "_s +
           actionsLabelFor(values.enforceActions) + u"\nSelected protected apps: "_s +
           QString::number(values.protectedDefinitionCount) + u"\nRunning apps scanned: "_s +
           QString::number(values.runningAppCount) + u"\nProtected app matches: "_s +
           QString::number(values.matchCount);
}

} // namespace kestrin::runtime
