#pragma once

#include "runtime/LoginItem.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::app {

/// What the tray's menu can do beside steering the protection.
class TrayCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has them.")
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin WRITE setStartsAtLogin NOTIFY startsAtLoginChanged FINAL)

  public:
    /// The item outlives this object.
    explicit TrayCommands(runtime::LoginItem &loginItem, QObject *parent = nullptr)
        : QObject(parent)
        , m_loginItem(loginItem) {}

    bool startsAtLogin() const { return m_loginItem.isEnabled(); }
    /// What could not be stored is not so, and the menu shows it.
    void setStartsAtLogin(bool starts) {
        const foundation::StoreResult result = m_loginItem.setEnabled(starts);
        Q_EMIT startsAtLoginChanged();
        if (!result.isKept())
            Q_EMIT startAtLoginFailed(result.problem);
    }

    /// Others change it too, in files that nobody watches.
    Q_INVOKABLE void refresh() { Q_EMIT startsAtLoginChanged(); }
    Q_INVOKABLE void openWindow() { Q_EMIT windowWanted(); }
    Q_INVOKABLE void quit() { Q_EMIT quitWanted(); }

  Q_SIGNALS:
    void startsAtLoginChanged();
    /// A sentence.
    void startAtLoginFailed(const QString &sentence);
    void windowWanted();
    void quitWanted();

  private:
    runtime::LoginItem &m_loginItem;
};

} // namespace kestrin::app
