#pragma once

#include "engine/MacProtectionEvent.h"
#include "foundation/StoreResult.h"

#include <QList>

#include <functional>

namespace kestrin::engine {

/// What is done with the events of a log that is read.
struct LogReading {
    std::function<void()> begin;
    std::function<void(const MacProtectionEvent &)> take;
};

/// The activity log, newest event first. Nothing ever fails from the caller's point of view, unless he asks.
class MacActivityLogStoring {
  public:
    virtual ~MacActivityLogStoring() = default;

    /// Records the event as the newest.
    void append(const MacProtectionEvent &event) { static_cast<void>(tryAppend(event)); }
    /// The same, for those who have to know whether it is recorded now.
    [[nodiscard]] virtual foundation::StoreResult tryAppend(const MacProtectionEvent &event) = 0;
    /// The newest events, at most `limit` of them. A negative limit is a programming error and stops the
    /// program.
    virtual QList<MacProtectionEvent> recent(qsizetype limit) = 0;
    /// Gives all events away one by one, newest first, for whoever has no room for all of them. False when
    /// they cannot be read; then, as whenever `begin` is called again, those that were given are none.
    virtual bool readAll(const LogReading &reading) = 0;

    /// Why what is recorded cannot be read now and reads as nothing, as a sentence; empty when it can be.
    virtual QString problem() { return {}; }
    /// The file that changes when other processes record something; empty where they cannot.
    virtual QString file() const { return {}; }
};

/// A log that lives as long as the object.
class InMemoryMacActivityLogStore : public MacActivityLogStoring {
  public:
    /// `events` come newest first.
    explicit InMemoryMacActivityLogStore(const QList<MacProtectionEvent> &events = {}) : m_events(events) {}

    [[nodiscard]] foundation::StoreResult tryAppend(const MacProtectionEvent &event) override;
    QList<MacProtectionEvent> recent(qsizetype limit) override;
    bool readAll(const LogReading &reading) override;

  private:
    QList<MacProtectionEvent> m_events;
};

} // namespace kestrin::engine
