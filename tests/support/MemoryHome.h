// A user's home in memory, which keeps a journal.
#pragma once

#include "runtime/MacProtectionRuntime.h"
#include "tests/support/Journal.h"

namespace kestrin::samples {

inline const QString modesKey = QStringLiteral("kestrin.mac.enabledModeIDs");

/// Zoom and an editor are running.
struct MemoryHome : Journaled {
    std::shared_ptr<engine::InMemoryOwnApplicationsStore> ownApplications =
        std::make_shared<engine::InMemoryOwnApplicationsStore>();
    /// "store", the last part of the key and, of a list, what is in it.
    runtime::InMemoryUserDefaults defaults;

    MemoryHome() {
        workspace.add(running(u"Zoom"_s, 10, u"us.zoom.xos"_s));
        workspace.add(running(u"Editor"_s, 11));
        QObject::connect(&defaults, &runtime::UserDefaults::changed, &defaults, [this](const QString &key) {
            const QStringList list = defaults.stringArray(key).value_or(QStringList());
            journal.append((QStringList{u"store"_s, key.section(u'.', -1)} + list).join(u' '));
        });
    }

    runtime::MacProtectionSurroundings surroundings() {
        return {.workspace = workspace,
                .settingsStore = settings,
                .logStore = log,
                .ownApplications = ownApplications,
                .clock = clock};
    }
    /// Everything that was recorded, oldest first.
    QStringList story() const { return samples::story(*log); }
};

} // namespace kestrin::samples
