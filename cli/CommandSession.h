// What a call works with, from the first command to the last line.
#pragma once

#include "cli/Output.h"
#include "cli/StatusReport.h"
#include "cli/TerminalText.h"
#include "engine/live/DeviceUses.h"
#include "runtime/DesktopPermission.h"
#include "runtime/InstalledApplications.h"
#include "runtime/LoginItem.h"
#include "runtime/MacProtectionRuntime.h"
#include "runtime/PrivacyModeFlag.h"

namespace kestrin::cli {

enum class ExitStatus {
    done = 0,
    couldNot = 1,
    usedWrongly = 2,
};

/// Where kestrinctl lives. Tests give it an in-memory desktop and files of their own.
struct CommandSurroundings {
    runtime::UserDefaults &defaults;
    /// Where a person finds the user defaults.
    QString defaultsLocation;
    /// Where Kestrin keeps its files.
    QString supportFolder;
    runtime::MacProtectionSurroundings runtime;
    runtime::LoginItem &loginItem;
    runtime::DesktopPermission &permission;
    runtime::InstalledApplications &installed;
    engine::DeviceUses &deviceUses;
    Output &out;
    Output &err;
    Palette palette{false};

    /// One line on standard error.
    void say(const QString &sentence) const;
    /// The same, for a call that ends with it.
    ExitStatus couldNot(const QString &sentence) const;
};

/// The runtime, and the Privacy Mode flag that steers it, for the length of one call.
class CommandSession {
  public:
    enum class Desktop { seen, ignored };

    /// A call that has no use for the running applications ignores the desktop and is spared the connection.
    CommandSession(CommandSurroundings &surroundings, Desktop desktop);

    CommandSurroundings &surroundings;
    runtime::MacProtectionRuntime runtime;
    runtime::PrivacyModeFlag flag;

    Monitor monitor() const;
    /// Where nobody watches, a pause that is over is ended by whoever comes next.
    [[nodiscard]] runtime::Outcome endPause();
    StatusReport status() const;
    LiveReport live() const;

    /// Makes the flag the saved one, as starting the runtime does: where the two disagree (a call was killed
    /// between its two writes, or somebody edited a file) the flag is what the user was shown. For calls that
    /// act by the saved one. A watching program keeps them together by itself and is not interfered with;
    /// where they agree nothing is written, so that a check leaves no settings behind.
    [[nodiscard]] runtime::Outcome settleFlag();
};

} // namespace kestrin::cli
