#pragma once

#include "runtime/LoginItem.h"
#include "runtime/UserDefaults.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::app {

/// What the tray's menu can do beside steering the protection, and what others ask about the same.
class TrayCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has them.")
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin WRITE setStartsAtLogin NOTIFY startsAtLoginChanged FINAL)
    /// What closing the window does where there is a tray; false also as long as nobody has answered.
    Q_PROPERTY(bool staysWhenClosed READ staysWhenClosed WRITE setStaysWhenClosed NOTIFY
                   staysWhenClosedChanged FINAL)
    Q_PROPERTY(bool hasTray MEMBER m_hasTray NOTIFY waysBackChanged FINAL)
    /// Whether somebody finds the program again that has no window.
    Q_PROPERTY(bool hasWayBack READ hasWayBack NOTIFY waysBackChanged FINAL)

  public:
    /// Both outlive this object.
    TrayCommands(runtime::LoginItem &loginItem, runtime::UserDefaults &defaults, QObject *parent = nullptr)
        : QObject(parent)
        , m_loginItem(loginItem)
        , m_defaults(defaults) {}

    bool startsAtLogin() const { return m_loginItem.isEnabled(); }
    /// What could not be stored is not so, and the menu shows it.
    void setStartsAtLogin(bool starts) {
        report(m_loginItem.setEnabled(starts));
        Q_EMIT startsAtLoginChanged();
    }

    bool isAskedWhenClosed() const { return !m_defaults.boolean(staysWhenClosedKey); }
    bool staysWhenClosed() const { return m_defaults.boolean(staysWhenClosedKey).value_or(false); }
    void setStaysWhenClosed(bool stays) {
        report(m_defaults.setBoolean(staysWhenClosedKey, stays));
        Q_EMIT staysWhenClosedChanged();
    }

    bool hasWayBack() const { return m_hasTray || m_isReachable; }
    void setTray(bool isThere) {
        m_hasTray = isThere;
        Q_EMIT waysBackChanged();
    }
    /// By starting the program again.
    void setReachable(bool isReachable) {
        m_isReachable = isReachable;
        Q_EMIT waysBackChanged();
    }

    /// Others change it too, in files that nobody watches.
    Q_INVOKABLE void refresh() {
        Q_EMIT startsAtLoginChanged();
        Q_EMIT staysWhenClosedChanged();
    }
    Q_INVOKABLE void openWindow() { Q_EMIT windowWanted(); }
    Q_INVOKABLE void openLog() { Q_EMIT logWanted(); }
    Q_INVOKABLE void quit() { Q_EMIT quitWanted(); }

  Q_SIGNALS:
    void startsAtLoginChanged();
    void staysWhenClosedChanged();
    void waysBackChanged();
    /// Something was not stored; a sentence.
    void storageFailed(const QString &sentence);
    void windowWanted();
    void logWanted();
    void quitWanted();

  private:
    inline static const QString staysWhenClosedKey = QStringLiteral("kestrin.mac.staysWhenClosed");

    void report(const foundation::StoreResult &result) {
        if (!result.isKept())
            Q_EMIT storageFailed(result.problem);
    }

    runtime::LoginItem &m_loginItem;
    runtime::UserDefaults &m_defaults;
    bool m_hasTray = false;
    bool m_isReachable = false;
};

} // namespace kestrin::app
