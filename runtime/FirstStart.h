#pragma once

#include "runtime/UserDefaults.h"

namespace kestrin::runtime {

/// Whether a new user has still to be told what Kestrin does. Once begun that never comes again, and it never
/// comes to somebody who has used Kestrin before.
class FirstStart {
  public:
    /// The user default that keeps it: false while it is still to come, absent for those who never saw it.
    static const QString key;

    /// Looks what is stored, so it is to be made before this start stores anything. `defaults` outlives it.
    FirstStart(UserDefaults &defaults, const QString &supportFolder);

    bool isDue() const { return m_isDue; }
    /// Remembers that it was begun. False when that cannot be remembered: it would come again.
    bool begin();
    /// Nobody sees it now, and what this start stores must not be taken for a user's.
    void putOff();

  private:
    UserDefaults &m_defaults;
    bool m_isDue;
};

} // namespace kestrin::runtime
