// Values that many tests need.
#pragma once

#include "engine/MacActivityLogStoring.h"
#include "engine/MacProtectionEvent.h"
#include "engine/RiskAppCatalog.h"
#include "engine/workspace/Workspace.h"
#include "foundation/UniversalTime.h"

#include <algorithm>

namespace kestrin::samples {

using namespace Qt::StringLiterals;

inline engine::RunningMacApp app(const QString &name, qint32 processIdentifier = 100,
                                 const std::optional<QString> &bundleIdentifier = std::nullopt) {
    return {processIdentifier, name, bundleIdentifier, std::nullopt};
}

inline engine::WorkspaceApplication running(const QString &name, qint32 processIdentifier,
                                            const std::optional<QString> &bundleIdentifier = std::nullopt) {
    return {engine::ActivationPolicy::regular, name, processIdentifier, bundleIdentifier, std::nullopt};
}

inline engine::MacProtectionEvent event(const QString &message) {
    return engine::MacProtectionEvent::create(
        QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 589), foundation::universalTime),
        engine::MacProtectionEventKind::dryRun, message);
}

inline QStringList messages(const QList<engine::MacProtectionEvent> &events) {
    QStringList texts;
    for (const engine::MacProtectionEvent &event : events)
        texts.append(event.message);
    return texts;
}

inline QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

/// Everything that a log holds, oldest first.
inline QStringList story(engine::MacActivityLogStoring &log) {
    QStringList texts = messages(log.recent(1000));
    std::reverse(texts.begin(), texts.end());
    return texts;
}

} // namespace kestrin::samples
