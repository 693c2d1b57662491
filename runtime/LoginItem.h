// Whether this user's login starts Kestrin in the background.
#pragma once

#include "foundation/StoreResult.h"

namespace kestrin::runtime {

/// Every question is answered as things are now: the desktop's own settings may change them too. Main thread
/// only.
class LoginItem {
  public:
    virtual ~LoginItem() = default;

    /// Whether it is known what would be started. Without that, starting at login can be asked about and
    /// switched off, but not on.
    virtual bool hasProgram() const = 0;
    virtual bool isEnabled() const = 0;
    /// Is kept when it is so afterwards. Switching on what is on already names the program anew.
    virtual foundation::StoreResult setEnabled(bool enabled) = 0;
};

/// A choice that lives as long as the object.
class InMemoryLoginItem final : public LoginItem {
  public:
    bool hasProgram() const override { return true; }
    bool isEnabled() const override { return m_isEnabled; }
    foundation::StoreResult setEnabled(bool enabled) override {
        m_isEnabled = enabled;
        return {};
    }

  private:
    bool m_isEnabled = false;
};

} // namespace kestrin::runtime
