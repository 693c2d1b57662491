// A user's home with Kestrin's window in it: nothing real, apart from a temporary folder.
#pragma once

#include "app/Kestrin/MacSection.h"
#include "app/Kestrin/ModuleObjects.h"
#include "app/Kestrin/Protection.h"
#include "app/Kestrin/ProtectionWindow.h"
#include "engine/JSONMacActivityLogStore.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "runtime/JSONUserDefaults.h"
#include "tests/support/Samples.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <memory>

namespace kestrin::samples {

/// The clock stands still at a morning. Schedules are off unless a test turns them on.
struct WindowHome {
    QTemporaryDir folder;
    InMemoryWorkspace workspace;
    JSONUserDefaults defaults{folder.filePath(u"config/user-defaults.json"_s)};
    QDateTime now{QDate(2026, 3, 14), QTime(9, 26, 53), Qt::LocalTime};
    /// What is seen goes first.
    struct Shown {
        std::unique_ptr<QQmlEngine> engine = makeEngine();
        Protection protection;
        ProtectionWindow window{*engine};
    };
    std::unique_ptr<Shown> shown;

    WindowHome() { defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {}); }

    QString support() const { return folder.filePath(u"data/Kestrin"_s); }
    JSONMacActivityLogStore log() const {
        return JSONMacActivityLogStore(QUrl::fromLocalFile(support() + u"/activity-log.json"_s));
    }

    void open() {
        shown.reset(new Shown{
            .protection =
                Protection(defaults, {support(), &workspace, [this] { return now; }, nullptr, nullptr})});
        shown->window.open(shown->protection.state);
    }

    QQuickWindow &window() const { return *shown->window.window(); }
    MacProtectionRuntime &runtime() const { return shown->protection.runtime; }
    QQuickItem &root() const { return *window().contentItem()->childItems().constFirst(); }
    MacSection section() const { return static_cast<MacSection>(root().property("selectedSection").toInt()); }
    /// As a shortcut or the sidebar does it.
    void select(MacSection section) const {
        QMetaObject::invokeMethod(&root(), "select", Q_ARG(int, static_cast<int>(section)));
    }
};

} // namespace kestrin::samples
