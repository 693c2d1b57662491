// What people read: one function for each kind of answer. Every line ends in a line break.
#pragma once

#include "cli/StatusReport.h"
#include "cli/TerminalText.h"
#include "engine/PrivacyModeRunResult.h"
#include "engine/PrivacyModeSettings.h"
#include "engine/RiskAppCatalog.h"
#include "engine/live/DeviceUse.h"
#include "runtime/AddableApplications.h"
#include "runtime/LogText.h"

#include <QSet>

namespace kestrin::cli {

QString appsText(const QList<engine::RunningMacApp> &apps, const Palette &palette);

/// `selection` as the settings hold it: an empty one protects everything.
QString catalogText(const engine::RiskAppCatalog &catalog, const QSet<QString> &selection,
                    const Palette &palette);

/// A name, a tabulator and "running" or "installed" a line, which the completions of the shells read.
QString candidatesText(const QList<runtime::AddableApplication> &applications);

QString runResultText(const engine::PrivacyModeRunResult &result, qint64 runningAppCount,
                      const Palette &palette);

/// The colours in which the line of an event is shown.
runtime::LogLinePaint paintOf(engine::MacProtectionEventKind kind, const Palette &palette);

QString usesText(const QList<engine::DeviceUse> &uses, const Palette &palette);
/// One line, as those of `eventsText`.
QString useEventText(const QDateTime &date, const QString &sentence, const Palette &palette);

/// Whether that is told.
QString liveSwitchText(bool on);
/// For who has been told of another sight of the uses.
QString sightOfUsesText(const engine::Sight &sight);

QString statusText(const StatusReport &status, const Palette &palette);

QString scheduleText(const QList<shared::ModePreset> &modes, const std::optional<bool> &wanted,
                     const Palette &palette);

QString autostartText(bool startsAtLogin);

} // namespace kestrin::cli
