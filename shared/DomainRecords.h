// The plain records that the desktop application shares with its mobile and watch companions. An `icon` is
// the name of a system image. Construction takes the fields in declaration order.
#pragma once

#include "foundation/JsonCoding.h"
#include "shared/ProtectionTone.h"
#include "shared/RiskKind.h"

#include <QDateTime>

namespace kestrin::shared {

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
            foundation::jsonField("id", &ProtectionDevice::id),
            foundation::jsonField("name", &ProtectionDevice::name),
            foundation::jsonField("detail", &ProtectionDevice::detail),
            foundation::jsonField("icon", &ProtectionDevice::icon),
            foundation::jsonField("status", &ProtectionDevice::status),
            foundation::jsonField("tone", &ProtectionDevice::tone),
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

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("id", &ProtectedApp::id),
            foundation::jsonField("name", &ProtectedApp::name),
            foundation::jsonField("group", &ProtectedApp::group),
            foundation::jsonField("risk", &ProtectedApp::risk),
            foundation::jsonField("icon", &ProtectedApp::icon),
            foundation::jsonField("enabled", &ProtectedApp::enabled),
        };
    }
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
            foundation::jsonField("id", &ModePreset::id),
            foundation::jsonField("name", &ModePreset::name),
            foundation::jsonField("detail", &ModePreset::detail),
            foundation::jsonField("schedule", &ModePreset::schedule),
            foundation::jsonField("icon", &ModePreset::icon),
            foundation::jsonField("enabled", &ModePreset::enabled),
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

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("id", &ActivityEvent::id),
            foundation::jsonField("title", &ActivityEvent::title),
            foundation::jsonField("detail", &ActivityEvent::detail),
            foundation::jsonField("time", &ActivityEvent::time),
            foundation::jsonField("date", &ActivityEvent::date),
            foundation::jsonField("category", &ActivityEvent::category),
            foundation::jsonField("icon", &ActivityEvent::icon),
            foundation::jsonField("tone", &ActivityEvent::tone),
        };
    }
};

} // namespace kestrin::shared
