// Whether this user's login starts Kestrin in the background.
#pragma once

#include <QString>

namespace kestrin::runtime {

/// Every question is answered as things are now: the desktop's own settings may change them too. Main thread
/// only.
class LoginItem {
  public:
    virtual ~LoginItem() = default;

    /// Whether it is known what would be started. Without that, starting at login can be asked about and
    /// switched off, but not on.
    virtual bool hasProgram() const = 0;
    /// Where the choice is kept, for messages.
    virtual QString path() const = 0;
    /// What is at that place and is left alone, because it is no file, as a sentence; empty when nothing is.
    virtual QString obstacle() const { return {}; }
    virtual bool isEnabled() const = 0;
    /// Returns whether it is so afterwards. Switching on what is on already names the program anew.
    virtual bool setEnabled(bool enabled) = 0;
};

/// A choice that lives as long as the object.
class InMemoryLoginItem final : public LoginItem {
  public:
    bool hasProgram() const override { return true; }
    QString path() const override { return {}; }
    bool isEnabled() const override { return m_isEnabled; }
    bool setEnabled(bool enabled) override {
        m_isEnabled = enabled;
        return true;
    }

  private:
    bool m_isEnabled = false;
};

} // namespace kestrin::runtime
