// Whether the desktop shows its windows to Kestrin.
#pragma once

#include <QString>

namespace kestrin::runtime {

/// Some desktops show to no program what runs before their user says so. Nothing here waits for longer than a
/// few seconds. Main thread only.
class DesktopPermission {
  public:
    struct Answer {
        bool isDone = false;
        /// What came of it, for people: one sentence, or a few.
        QString sentence;
    };

    virtual ~DesktopPermission() = default;

    /// Lets this Kestrin see. Done is also what was so before.
    virtual Answer enable() = 0;
    /// Takes back what `enable` did, whichever program called it.
    virtual Answer disable() = 0;
};

/// Where nobody has to be asked.
class NoDesktopPermission final : public DesktopPermission {
  public:
    Answer enable() override { return nothingToDo(); }
    Answer disable() override { return nothingToDo(); }

  private:
    static Answer nothingToDo() {
        return {true, QStringLiteral("On this desktop there is nothing that Kestrin needs to be allowed.")};
    }
};

} // namespace kestrin::runtime
