// The rows of the pages' lists: what a row shows, derived from one record and nothing else.
#pragma once

#include "engine/MacProtectionEvent.h"
#include "engine/RiskAppMatch.h"
#include "runtime/LogQuery.h"
#include "shared/DomainRecords.h"

namespace kestrin::app {

/// What stands in one row. What a list has no use for is empty.
struct PageRow {
    Q_GADGET
    Q_PROPERTY(QString identifier MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString subtitle MEMBER subtitle CONSTANT)
    Q_PROPERTY(QString status MEMBER status CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(int tone MEMBER tone CONSTANT)
    Q_PROPERTY(bool on MEMBER on CONSTANT)
    Q_PROPERTY(bool own MEMBER own CONSTANT)

  public:
    QString id = {};
    QString title = {};
    QString subtitle = {};
    /// A word about how it stands, or when it was or will be.
    QString status = {};
    /// The name of a symbol.
    QString icon = {};
    /// A KestrinTone.
    int tone = 0;
    bool on = false;
    /// The user made it, and may remove it.
    bool own = false;

    bool operator==(const PageRow &) const = default;
};

/// A device, with how it is protected.
PageRow rowOf(const shared::ProtectionDevice &device);
/// A definition of the catalog, on if it is selected, with what is done with such an application.
PageRow rowOf(const engine::RiskAppDefinition &definition, bool selected, bool own);
/// A protected application that is running, by its own name, with what is done with it.
PageRow rowOf(const engine::RiskAppMatch &match);
/// A schedule preset, with its times.
PageRow rowOf(const shared::ModePreset &preset);
/// An event, with its local time of day. Its title is the application's name, also an empty one; the kind of
/// the event where there is none.
PageRow rowOf(const engine::MacProtectionEvent &event);
/// What events of this kind are called.
QString kindTitle(runtime::LogKind kind);
/// The same for one of them; where it tells of a device, that is what it is called.
QString kindTitle(const engine::MacProtectionEvent &event);

/// How many of the matches would be, or were, asked to quit.
int actionCountOf(const QList<engine::RiskAppMatch> &matches);

} // namespace kestrin::app
