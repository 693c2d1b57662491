// A user's home in memory, which keeps a journal.
#pragma once

#include "runtime/MacProtectionRuntime.h"
#include "tests/support/Journal.h"

namespace kestrin::samples {

inline const QString modesKey = QStringLiteral("kestrin.mac.enabledModeIDs");

/// Zoom and an editor are running, nothing is selected, and it is noon and a second later at every look at
/// the clock.
struct MemoryHome {
    QStringList journal;
    JournalWorkspace workspace{journal};
    std::shared_ptr<JournalSettings> settings =
        std::make_shared<JournalSettings>(journal, engine::PrivacyModeSettings{true, {}});
    std::shared_ptr<JournalLog> log = std::make_shared<JournalLog>(journal);
    std::shared_ptr<engine::InMemoryOwnApplicationsStore> ownApplications =
        std::make_shared<engine::InMemoryOwnApplicationsStore>();
    /// "store", the last part of the key and, of a list, what is in it.
    runtime::InMemoryUserDefaults defaults;
    QDateTime now{QDate(2026, 3, 14), QTime(12, 0)};

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
                .clock = [this] { return now = now.addSecs(1); }};
    }
    /// What was asked since one last looked.
    QStringList asked() { return std::exchange(journal, {}); }
    /// Everything that was recorded, oldest first.
    QStringList story() const { return samples::story(*log); }
};

} // namespace kestrin::samples
