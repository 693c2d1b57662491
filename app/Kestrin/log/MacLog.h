#pragma once

#include "app/Kestrin/log/ApplicationPictures.h"
#include "app/Kestrin/log/LogLines.h"
#include "runtime/LogFormat.h"
#include "runtime/LogIndex.h"
#include "runtime/MacProtectionRuntime.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::app {

/// What the log window shows and does. It holds the whole log for as long as it lives, and follows it.
class MacLog : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The log window has one.")
    Q_PROPERTY(kestrin::app::LogLines *lines MEMBER m_lines CONSTANT)
    /// What is searched for, and which kinds and applications are shown, by their places in these lists; all
    /// of them where none is chosen.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY filterChanged)
    Q_PROPERTY(QStringList kindTitles READ kindTitles CONSTANT)
    Q_PROPERTY(QStringList appNames READ appNames NOTIFY appsChanged)
    Q_PROPERTY(QStringList appPictures READ appPictures NOTIFY appsChanged)
    Q_PROPERTY(QList<int> kinds READ kinds NOTIFY filterChanged)
    Q_PROPERTY(QList<int> apps READ apps NOTIFY filterChanged)
    Q_PROPERTY(bool filtered READ isFiltered NOTIFY filterChanged)
    /// Of how many events the log is, and how large its file.
    Q_PROPERTY(int total READ total NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QString selection READ selection NOTIFY selectionChanged)
    /// Why the log cannot be read, as a sentence; empty when it can be.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// The desktop has a dialog for choosing a file; nobody knows before somebody looks.
    Q_PROPERTY(bool hasFileDialog READ hasFileDialog NOTIFY fileDialogFound)
    /// In what forms a log can be exported.
    Q_PROPERTY(QStringList formats READ formats CONSTANT)

  public:
    /// Both outlive this object.
    MacLog(runtime::MacProtectionRuntime &runtime, runtime::InstalledApplications &installed,
           QObject *parent = nullptr);

    QString search() const { return m_query.text; }
    void setSearch(const QString &search);
    static QStringList kindTitles();
    QStringList appNames() const;
    QStringList appPictures() const;
    QList<int> kinds() const;
    QList<int> apps() const;
    bool isFiltered() const { return m_query != runtime::LogQuery(); }
    int total() const { return static_cast<int>(m_index.size()); }
    QString summary() const;
    /// "3 selected".
    QString selection() const;
    QString problem() const { return m_problem; }
    static QStringList formats();
    bool hasFileDialog() const { return m_hasFileDialog; }
    void setHasFileDialog();

    Q_INVOKABLE void lookForFileDialog() { Q_EMIT fileDialogWanted(); }
    /// Opens it; what is chosen there is told by `fileChosen`.
    Q_INVOKABLE void chooseFile(const QString &suggested);
    Q_INVOKABLE void toggleKind(int place);
    Q_INVOKABLE void toggleApp(int place);
    Q_INVOKABLE void clearKinds();
    Q_INVOKABLE void clearApps();
    Q_INVOKABLE void clearFilters();
    /// Days have other names when a new one has begun.
    Q_INVOKABLE void lookAtToday();
    /// Puts the selected events on the clipboard, as lines of text.
    Q_INVOKABLE void copy() const;
    /// Where a file of this format goes unless somebody says otherwise.
    Q_INVOKABLE QString suggestedFile(int format) const;
    Q_INVOKABLE bool isThere(const QString &file) const;
    /// Writes the selected events, or all that are shown. Returns why that cannot be, as a sentence; empty
    /// when it is done.
    Q_INVOKABLE QString exportTo(const QString &file, int format, bool onlySelected) const;

  Q_SIGNALS:
    void filterChanged();
    void appsChanged();
    void selectionChanged();
    void changed();
    void fileDialogWanted();
    void fileDialogFound();
    void fileWanted(const QString &suggested);
    void fileChosen(const QString &file);
    /// Other lines are shown than before.
    void shown();
    /// One event was put above the others, with so many lines.
    void grew(int lines);

  private:
    void follow();
    void reload();
    void append(const engine::MacProtectionEvent &event);
    void adoptFilter();
    void show();
    QByteArray textOf(const runtime::LogIndex::Numbers &events, runtime::LogFormat format) const;

    runtime::MacProtectionRuntime &m_runtime;
    const ApplicationPictures m_pictures;
    runtime::LogIndex m_index;
    runtime::LogQuery m_query;
    QStringList m_names;
    QString m_problem;
    qint64 m_size = 0;
    bool m_hasFileDialog = false;
    LogLines *const m_lines = new LogLines(m_index, m_pictures, this);
};

} // namespace kestrin::app
