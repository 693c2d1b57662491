#include "engine/MacRiskCategory.h"
#include "engine/RiskAppAction.h"

#include <QStringList>

namespace kestrin::engine {

QString userLabel(MacRiskCategory category) {
    switch (category) {
    case MacRiskCategory::microphone:
        return QStringLiteral("Microphone");
    case MacRiskCategory::camera:
        return QStringLiteral("Camera");
    case MacRiskCategory::screenCapture:
        return QStringLiteral("Screen capture");
    case MacRiskCategory::aiTool:
        return QStringLiteral("AI tool");
    case MacRiskCategory::videoCall:
        return QStringLiteral("Video call");
    case MacRiskCategory::browser:
        return QStringLiteral("Browser");
    }
    return {};
}

QString userLabels(const QList<MacRiskCategory> &categories, const QString &separator) {
    QStringList labels;
    for (const MacRiskCategory category : categories)
        labels.append(userLabel(category));
    return labels.join(separator);
}

QString userLabel(RiskAppAction action) {
    switch (action) {
    case RiskAppAction::allow:
        return QStringLiteral("Allow");
    case RiskAppAction::quit:
        return QStringLiteral("Quit");
    case RiskAppAction::keepClosed:
        return QStringLiteral("Keep closed");
    }
    return {};
}

} // namespace kestrin::engine
