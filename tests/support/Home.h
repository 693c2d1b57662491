// A user's home without a window: files, preferences and what is running.
#pragma once

#include "desktop/defaults/JSONUserDefaults.h"
#include "engine/JSONMacActivityLogStore.h"
#include "engine/JSONPrivacyModeSettingsStore.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "runtime/FileStores.h"
#include "runtime/MacProtectionRuntime.h"
#include "tests/support/Samples.h"

#include <QTemporaryDir>

namespace kestrin::samples {

/// Zoom and an editor are running; nothing is stored yet. The clock stands still at noon, when Away wants
/// Privacy Mode on.
struct Home {
    QTemporaryDir folder;
    engine::InMemoryWorkspace workspace;
    QDateTime now{QDate(2026, 3, 14), QTime(12, 0)};
    desktop::JSONUserDefaults defaults{preferences()};
    engine::JSONPrivacyModeSettingsStore settings{
        QUrl::fromLocalFile(support() + u"/privacy-mode-settings.json"_s), {true, {}}};
    engine::JSONMacActivityLogStore log{QUrl::fromLocalFile(support() + u"/activity-log.json"_s)};

    Home() {
        workspace.add(running(u"Zoom"_s, 10, u"us.zoom.xos"_s));
        workspace.add(running(u"Editor"_s, 11));
    }

    QString preferences() const { return folder.filePath(u"config/user-defaults.json"_s); }
    QString support() const { return folder.filePath(u"data/Kestrin"_s); }
    runtime::MacProtectionSurroundings surroundings() {
        return {.workspace = workspace,
                .settingsStore = runtime::settingsStoreIn(support()),
                .logStore = runtime::activityLogIn(support()),
                .ownApplications = runtime::ownApplicationsIn(support()),
                .clock = [this] { return now; }};
    }
    QStringList story() { return samples::story(log); }
};

} // namespace kestrin::samples
