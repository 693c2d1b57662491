// A user's home with Kestrin's window in it: nothing real, apart from a temporary folder.
#pragma once

#include "app/Kestrin/pages/MacSection.h"
#include "app/Kestrin/program/LogWindow.h"
#include "app/Kestrin/program/ModuleObjects.h"
#include "app/Kestrin/program/Protection.h"
#include "app/Kestrin/program/ProtectionWindow.h"
#include "app/Kestrin/program/TrayCommands.h"
#include "engine/live/InMemoryDeviceUses.h"
#include "tests/support/Home.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace kestrin::samples {

/// Nothing is running yet, and schedules are off unless a test turns them on.
struct WindowHome : Home {
    /// What is seen goes first.
    struct Shown {
        std::unique_ptr<QQmlEngine> engine = app::makeEngine();
        app::Protection protection;
        app::ProtectionWindow window{*engine, protection.state};
        std::unique_ptr<app::LogWindow> log = {};
    };
    runtime::InMemoryInstalledApplications installed;
    engine::InMemoryDeviceUses deviceUses;
    runtime::InMemoryLoginItem loginItem;
    app::TrayCommands commands{loginItem, defaults};
    std::unique_ptr<Shown> shown;

    WindowHome() {
        workspace.remove(10);
        workspace.remove(11);
        defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
    }

    void open() {
        shown.reset(
            new Shown{.protection = app::Protection(defaults, deviceUses, surroundings(), installed)});
    }

    void openLog() {
        shown->log = std::make_unique<app::LogWindow>(*shown->engine, runtime(), installed, defaults);
    }

    QQuickWindow &window() const { return shown->window.window(); }
    runtime::MacProtectionRuntime &runtime() const { return shown->protection.runtime; }
    QQuickItem &root() const { return *window().contentItem()->childItems().constFirst(); }
    app::MacSection section() const {
        return static_cast<app::MacSection>(root().property("selectedSection").toInt());
    }
    /// As a shortcut or the sidebar does it.
    void select(app::MacSection section) const {
        QMetaObject::invokeMethod(&root(), "select", Q_ARG(int, static_cast<int>(section)));
    }
};

} // namespace kestrin::samples
