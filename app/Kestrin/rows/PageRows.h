// The rows of the pages' lists: what a row shows, derived from one record and nothing else. A `tone` is a
// KestrinTone, an `icon` the name of a symbol.
#pragma once

#include "design/KestrinTone.h"
#include "engine/MacProtectionEvent.h"
#include "engine/RiskAppMatch.h"
#include "shared/DomainRecords.h"

namespace kestrin::app {

/// A device on the pages Home and Devices.
struct DeviceRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString detail MEMBER detail CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString status MEMBER status CONSTANT)
    Q_PROPERTY(int tone MEMBER tone CONSTANT)

  public:
    QString id;
    QString name;
    QString detail;
    QString icon;
    QString status;
    int tone = 0;

    bool operator==(const DeviceRow &) const = default;
    static DeviceRow from(const shared::ProtectionDevice &device);
};

/// A definition of the catalog on the page Apps, selected or not.
struct DefinitionRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString displayName MEMBER displayName CONSTANT)
    Q_PROPERTY(QString categories MEMBER categories CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString action MEMBER action CONSTANT)
    Q_PROPERTY(int tone MEMBER tone CONSTANT)
    Q_PROPERTY(bool selected MEMBER selected CONSTANT)

  public:
    QString id;
    QString displayName;
    QString categories;
    QString icon;
    QString action;
    int tone = 0;
    bool selected = false;

    bool operator==(const DefinitionRow &) const = default;
    static DefinitionRow from(const engine::RiskAppDefinition &definition, bool selected);
};

/// A protected application that is running, on the page Apps.
struct MatchRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString categories MEMBER categories CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString action MEMBER action CONSTANT)
    Q_PROPERTY(int tone MEMBER tone CONSTANT)

  public:
    QString id;
    /// The running application's own, not the definition's.
    QString name;
    QString categories;
    QString icon;
    QString action;
    int tone = 0;

    bool operator==(const MatchRow &) const = default;
    static MatchRow from(const engine::RiskAppMatch &match);
};

/// A schedule preset on the page Schedule.
struct PresetRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString detail MEMBER detail CONSTANT)
    Q_PROPERTY(QString schedule MEMBER schedule CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(bool on MEMBER on CONSTANT)

  public:
    QString id;
    QString name;
    QString detail;
    QString schedule;
    QString icon;
    bool on = false;

    bool operator==(const PresetRow &) const = default;
    static PresetRow from(const shared::ModePreset &preset);
};

/// An event on the page Activity.
struct EventRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString message MEMBER message CONSTANT)
    Q_PROPERTY(QString time MEMBER time CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(int tone MEMBER tone CONSTANT)

  public:
    QString id;
    /// The application's name, also an empty one; the kind of the event where there is none.
    QString title;
    QString message;
    /// Local time of day.
    QString time;
    QString icon;
    int tone = 0;

    bool operator==(const EventRow &) const = default;
    static EventRow from(const engine::MacProtectionEvent &event);
};

/// How many of the matches would be, or were, asked to quit.
int actionCountOf(const QList<engine::RiskAppMatch> &matches);

} // namespace kestrin::app
