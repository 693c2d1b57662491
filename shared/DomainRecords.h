// The plain records that the desktop application shares with its mobile and watch companions. An `icon` is
// the name of a system image. Every field is set at construction, in declaration order.
#pragma once

#include "foundation/JsonCoding.h"
#include "shared/ProtectionTone.h"
#include "shared/RiskKind.h"

#include <QDateTime>

namespace kestrin {

/// A device of the user and how it is protected.
struct ProtectionDevice {
    QString id;
    QString name;
    QString detail;
    QString icon;
    QString status;
    ProtectionTone tone = ProtectionTone::neutral;

    bool operator==(const ProtectionDevice &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            jsonField("id", &ProtectionDevice::id),         jsonField("name", &ProtectionDevice::name),
            jsonField("detail", &ProtectionDevice::detail), jsonField("icon", &ProtectionDevice::icon),
            jsonField("status", &ProtectionDevice::status), jsonField("tone", &ProtectionDevice::tone),
        };
    }
};

/// An application as the mobile companion lists it.
struct ProtectedApp {
    QString id;
    QString name;
    QString group;
    RiskKind risk = RiskKind::mic;
    QString icon;
    bool enabled = false;

    bool operator==(const ProtectedApp &) const = default;
};

/// A schedule preset. `schedule` is a text for people and never parsed; the time range belongs to the id.
struct ModePreset {
    QString id;
    QString name;
    QString detail;
    QString schedule;
    QString icon;
    bool enabled = false;

    bool operator==(const ModePreset &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            jsonField("id", &ModePreset::id),         jsonField("name", &ModePreset::name),
            jsonField("detail", &ModePreset::detail), jsonField("schedule", &ModePreset::schedule),
            jsonField("icon", &ModePreset::icon),     jsonField("enabled", &ModePreset::enabled),
        };
    }
};

/// An entry of the companion's activity feed; the desktop engine's own log has MacProtectionEvent.
struct ActivityEvent {
    QString id;
    QString title;
    QString detail;
    QString time;
    QDateTime date;
    QString category;
    QString icon;
    ProtectionTone tone = ProtectionTone::neutral;

    bool operator==(const ActivityEvent &) const = default;
};

} // namespace kestrin
