#pragma once

#include "app/Kestrin/rows/RecordListModel.h"
#include "runtime/AddableApplications.h"
#include "runtime/MacProtectionRuntime.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QTimer>
#include <QVariantList>

namespace kestrin::app {

/// What the window does about applications of the user's own: the candidates that can be added, as they were
/// when one last looked, and for some seconds the one that was removed last.
class MacOwnApps : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one.")
    /// Those whose name or identifier holds what is searched for.
    Q_PROPERTY(kestrin::app::RecordListModel *candidates MEMBER m_rows CONSTANT)
    Q_PROPERTY(QString search MEMBER m_search WRITE setSearch NOTIFY searchChanged)
    /// In the order of their values, which `add` takes.
    Q_PROPERTY(QStringList categoryLabels READ categoryLabels CONSTANT)
    Q_PROPERTY(QStringList actionLabels READ actionLabels CONSTANT)
    /// Empty when nothing can be undone.
    Q_PROPERTY(QString removedName READ removedName NOTIFY removedChanged)

  public:
    /// Both outlive this object.
    MacOwnApps(runtime::MacProtectionRuntime &runtime, runtime::InstalledApplications &installed,
               QObject *parent = nullptr);

    void setSearch(const QString &search);
    static QStringList categoryLabels();
    static QStringList actionLabels();
    QString removedName() const;

    /// Lists anew what could be added, and searches for nothing. Returns why nothing can be added now, as a
    /// sentence; empty when it can be.
    Q_INVOKABLE QString look();
    /// Puts this one before the other candidates, whether or not it is one of them. Returns what `add` takes;
    /// empty when it cannot be added, because the catalog knows it.
    Q_INVOKABLE QString putFirst(const QString &name, const QString &identifier);
    /// Whether this candidate has windows.
    Q_INVOKABLE bool isRunning(const QString &candidate) const;
    /// Adds one of the candidates, and protects it. Returns why that cannot be, as a sentence; empty when it
    /// is done.
    Q_INVOKABLE QString add(const QString &candidate, const QVariantList &categories, int action);
    Q_INVOKABLE void remove(const QString &id);
    Q_INVOKABLE void undoRemoval();

  Q_SIGNALS:
    void searchChanged();
    void removedChanged();

  private:
    void fill();
    void forget();

    runtime::MacProtectionRuntime &m_runtime;
    runtime::InstalledApplications &m_installed;
    RecordListModel *const m_rows = new RecordListModel(this);
    QList<runtime::AddableApplication> m_candidates;
    QString m_search;
    std::optional<runtime::RemovedApplication> m_removed;
    QTimer m_undoTime;
};

} // namespace kestrin::app
