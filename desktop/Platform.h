// What this platform gives a program to stand on. Only the programs themselves ask for it, once, and hand it
// on.
#pragma once

#include "engine/live/DeviceUses.h"
#include "engine/workspace/Workspace.h"
#include "runtime/DesktopPermission.h"
#include "runtime/InstalledApplications.h"
#include "runtime/LoginItem.h"
#include "runtime/TimeChangeWatch.h"
#include "runtime/UserDefaults.h"

namespace kestrin::desktop {

/// Makes Qt use an event loop in which launches are heard. To be called by main() before it makes the
/// application object.
void prepareEventLoop();

/// The desktop that this process runs on. It is first spoken to by the first question.
std::unique_ptr<engine::Workspace> makeWorkspace();

/// Who uses microphone, camera or screen on it, called as `workspace` calls them, which outlives it. Nothing
/// is asked or watched before the first question. In a library of its own, KestrinDesktopLive.
std::unique_ptr<engine::DeviceUses> makeDeviceUses(engine::Workspace &workspace);

/// The preferences of this user.
std::unique_ptr<runtime::UserDefaults> makeUserDefaults();
/// Where a person finds them, for messages: a file, or the name of the platform's own domain.
QString userDefaultsLocation();

std::unique_ptr<runtime::TimeChangeWatch> makeTimeChangeWatch();

/// `program` is the absolute path of the window's program, empty for the one that is installed beside this
/// program or in PATH. Needs the application object.
std::unique_ptr<runtime::LoginItem> makeLoginItem(const QString &program = {});

/// What the menus of this desktop offer; nothing where that cannot be told.
std::unique_ptr<runtime::InstalledApplications> makeInstalledApplications();

/// Needs the application object when it is used.
std::unique_ptr<runtime::DesktopPermission> makeDesktopPermission();

} // namespace kestrin::desktop
