#pragma once

#include <QString>

/// The fixed product texts.
namespace kestrin::shared::KestrinCopy {

inline const QString productName = QStringLiteral("Kestrin");
inline const QString coreTagline = QStringLiteral("Control your privacy with one tap.");
inline const QString privacyModeExplanation =
    QStringLiteral("When Privacy Mode is on, selected apps are included and status changes stay local.");
inline const QString riskAppLock = QStringLiteral("Choose apps to include in Privacy Mode.");
inline const QString macConnection = QStringLiteral("Add your Mac.");
inline const QString realisticRemote =
    QStringLiteral("The mobile app controls setup and status. The Mac app is the desktop protection engine.");

} // namespace kestrin::shared::KestrinCopy
