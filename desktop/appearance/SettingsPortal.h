#pragma once

#include "design/DesktopPreferences.h"

#include <QVariant>

#include <memory>

class QDBusVariant;

namespace kestrin::desktop {

/// The preferences as the desktop's settings portal (org.freedesktop.portal.Settings) tells them on the
/// session bus, with the changes it signals.
class SettingsPortal : public design::DesktopPreferences {
    Q_OBJECT

  public:
    /// Null where there is no session bus. Nothing is started to find one.
    static std::unique_ptr<design::DesktopPreferences> connectToSession();

  private Q_SLOTS:
    void settingChanged(const QString &space, const QString &key, const QDBusVariant &value);

  private:
    void readAll();
    void take(const QString &space, const QString &key, const QVariant &value);
};

} // namespace kestrin::desktop
