#pragma once

#include "engine/RiskAppMatch.h"
#include "engine/live/DeviceUse.h"
#include "engine/workspace/Sight.h"
#include "shared/DomainRecords.h"

#include <QJsonObject>

#include <optional>

namespace kestrin::cli {

/// Who watches now.
struct Monitor {
    /// In his own words; absent when nobody does.
    std::optional<QString> holder;
    /// Why it is not known, as a sentence; otherwise empty.
    QString problem;

    /// Absent when it is not known.
    std::optional<bool> isThere() const {
        return problem.isEmpty() ? std::optional(holder.has_value()) : std::nullopt;
    }
};

/// Who uses microphone, camera or screen.
struct LiveReport {
    /// Otherwise it is not told, and nobody was asked.
    bool isOn = true;
    QList<engine::DeviceUse> uses;
    engine::Sight sight;
};

/// How everything stands, as a program beside the watching one sees it.
struct StatusReport {
    bool privacyModeOn = false;
    /// Absent unless it is paused.
    std::optional<QDateTime> pausedUntil;
    QDateTime now;
    bool enforceActions = false;
    Monitor monitor;
    /// What is selected; nothing protects everything.
    QStringList protectedDefinitionIDs;
    /// Of the catalog, in its order: those that are, and the rest.
    QStringList protectedKnownIDs;
    QStringList unprotectedDefinitionIDs;
    qint64 runningAppCount = 0;
    engine::Sight sight;
    QList<engine::RiskAppMatch> matches;
    LiveReport live;
    QList<shared::ModePreset> modes;
    /// Absent when no enabled preset has an opinion.
    std::optional<bool> scheduledPrivacyModeState;
    /// As the saved settings have it, by which launches and checks go.
    QList<shared::ProtectionDevice> devices;
    /// How large the activity log's file is, which nothing ever makes smaller.
    qint64 logBytes = 0;

    QString monitorLabel() const;
    QStringList enabledModeIDs() const;
    QJsonObject toJson() const;
};

} // namespace kestrin::cli
