#pragma once

#include "desktop/bus/BusQuestions.h"

#include <QByteArray>
#include <QHash>
#include <QList>

namespace kestrin::desktop {

/// Which names on the bus are those of one process. The bus itself tells; what a name or a window claims does
/// not count. Outlives its questions to the bus.
class OwnBusNames {
  public:
    OwnBusNames(SessionBus &bus, qint32 process) : m_questions(bus), m_process(process) {}

    /// False when the process has no name, or the bus did not tell by the deadline. Most applications have
    /// none, and those are not kept waiting for what the other names are about.
    bool find(const foundation::Deadline &deadline);

    const QList<QByteArray> &uniqueNames() const { return m_uniqueNames; }
    /// The unique name behind each of the process's other names.
    QHash<QByteArray, QByteArray> wellKnownNames() const;
    /// The process's own unique name behind a name; null when it is somebody else's.
    QByteArray ownerIfOwn(const QByteArray &name) const;
    /// Whoever is behind a name that is not unique; null when nobody has it.
    QByteArray anybodyBehind(const QByteArray &name) const { return m_owners.value(name); }

  private:
    void askForProcess(const QByteArray &uniqueName);
    void askForOwner(const QByteArray &name);

    BusQuestions m_questions;
    const qint32 m_process;
    /// Everybody's.
    QList<QByteArray> m_allNames;
    QList<QByteArray> m_uniqueNames;
    /// Of all names that are not unique.
    QHash<QByteArray, QByteArray> m_owners;
};

} // namespace kestrin::desktop
