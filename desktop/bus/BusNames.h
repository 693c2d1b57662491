#pragma once

#include "foundation/Deadline.h"

#include <QHash>
#include <QMultiHash>
#include <QStringList>

namespace kestrin::desktop {

/// Which names the processes have on the session bus, as the bus itself tells.
class BusNames {
  public:
    /// On a connection of their own. As many as are told by the deadline.
    static BusNames all(const foundation::Deadline &deadline);

    /// Apart from unique ones; sorted.
    QStringList of(qint32 process) const;

    /// The process behind each of these names; those that nobody owns are left out.
    static QHash<QString, qint32> owners(const QStringList &names, const foundation::Deadline &deadline);

  private:
    QMultiHash<qint32, QString> m_names;
};

} // namespace kestrin::desktop
