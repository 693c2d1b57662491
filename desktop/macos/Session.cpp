// What desktop/session/ declares, for macOS, which has no session bus: it starts a program once by itself,
// always has a menu bar, and shows notices through the icon there.

#include "desktop/session/DesktopNotices.h"
#include "desktop/session/RunningInstance.h"
#include "desktop/session/SaveDialog.h"
#include "desktop/session/TrayHost.h"

namespace kestrin::desktop {

RunningInstance::Answer RunningInstance::activateRunning(const QString &, const foundation::Deadline &) {
    return Answer::none;
}

bool RunningInstance::claim() {
    return false;
}

TrayHost::TrayHost(QObject *parent) : QObject(parent) {
    QMetaObject::invokeMethod(this, &TrayHost::ask, Qt::QueuedConnection);
}

void TrayHost::ask() {
    m_isPresent = true;
    Q_EMIT changed();
}

SaveDialog::SaveDialog(QObject *parent) : QObject(parent) {}

void SaveDialog::look() {}

void SaveDialog::open(const QString &, quintptr) {}

void SaveDialog::take(uint, const QVariantMap &) {}

DesktopNotices::DesktopNotices(QObject *parent) : QObject(parent) {}

bool DesktopNotices::show(const QString &, const Offer &, const Told &) {
    return false;
}

void DesktopNotices::takeAction(uint, const QString &) {}

void DesktopNotices::takeToken(uint, const QString &) {}

void DesktopNotices::forget(uint) {}

} // namespace kestrin::desktop
