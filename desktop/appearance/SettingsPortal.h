#pragma once

#include "design/DesktopPreferences.h"

#include <QVariant>

#include <memory>

class QDBusArgument;
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
    void takeAll(const QDBusArgument &spaces);
    void take(const QString &space, const QString &key, const QVariant &value);

    /// What the portal says in its own name, and GNOME's setting, which is older and known to more portals.
    /// One of them is enough.
    struct Wish {
        bool portals = false;
        bool gnomes = false;

        bool isWished() const { return portals || gnomes; }
    };
    Wish m_motion;
    Wish m_contrast;
};

} // namespace kestrin::desktop
