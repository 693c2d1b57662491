// What tells who uses a device: one class a way of looking.
#pragma once

#include "engine/MacRiskCategory.h"
#include "engine/workspace/Sight.h"
#include "foundation/Deadline.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace kestrin::desktop {

/// A stream or a device that a process has open.
struct SourceUse {
    engine::MacRiskCategory category = engine::MacRiskCategory::microphone;
    /// Of this user, as far as the source knows; never one of a server's own.
    qint32 process = 0;
    /// What the process calls itself there, made harmless and short; any process may claim anything.
    QString claimedName = {};
    /// The desktop-file id of its sandbox, as the server knows it; empty for others.
    QString sandboxId = {};

    bool operator==(const SourceUse &) const = default;
};

/// A conversation or watch of its own. Nothing blocks longer than its deadline, nothing throws, and what is
/// told beyond a sensible measure is left out. It costs no wake-up while nothing begins or ends. Main thread
/// only.
class UseSource : public QObject {
    Q_OBJECT

  public:
    /// Begins where it is closed. False when nobody answers.
    virtual bool open(const foundation::Deadline &deadline) = 0;
    virtual bool isOpen() const = 0;
    /// Nothing is connected to or watched any more.
    virtual void close() = 0;

    /// All of them now. No answer when what tells of them is silent or has gone.
    virtual std::optional<QList<SourceUse>> uses(const foundation::Deadline &deadline) = 0;

    /// What this source as such cannot see, as of the last answer; also why it is closed, where that hides
    /// something.
    virtual engine::Sight sight() { return {}; }
    /// Whether applications usually record sound through what this source asks, or would ask. Where no such
    /// source is open or tells by itself why it is not, that is told.
    virtual bool isSoundServer() const { return false; }

  Q_SIGNALS:
    /// From the event loop; what comes together may be told once, and what is told need not have changed
    /// anything.
    void changed();
    /// From the event loop; it is closed, and `open` begins anew.
    void lost();
    /// From the event loop, after `open` failed or it was lost, and unless it was closed since: whoever
    /// answers may be there by now.
    void appeared();
};

} // namespace kestrin::desktop
