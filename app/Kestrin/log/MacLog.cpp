#include "app/Kestrin/log/MacLog.h"

#include "app/Kestrin/rows/ShownText.h"
#include "foundation/VisibleText.h"
#include "runtime/LogExport.h"
#include "runtime/LogText.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace foundation;
using namespace engine;
using namespace runtime;

namespace {

template <typename Value>
void toggleIn(QList<Value> &list, const Value &value) {
    if (!list.removeOne(value))
        list.append(value);
}

/// As people type it.
QString absolute(const QString &file) {
    const QString path = file.trimmed();
    if (path == u"~" || path.startsWith(u"~/"))
        return QDir::homePath() + path.mid(1);
    return QDir(QDir::homePath()).absoluteFilePath(path);
}

} // namespace

MacLog::MacLog(MacProtectionRuntime &runtime, InstalledApplications &installed, QObject *parent)
    : QObject(parent)
    , m_runtime(runtime)
    , m_pictures(installed.list()) {
    reload();
    connect(m_lines, &LogLines::selectionChanged, this, &MacLog::selectionChanged);
    connect(&m_runtime, &MacProtectionRuntime::recentEventsChanged, this, &MacLog::follow);
}

void MacLog::setSearch(const QString &search) {
    if (search == m_query.text)
        return;
    m_query.text = search;
    adoptFilter();
}

QStringList MacLog::kindTitles() {
    QStringList titles;
    for (const LogKind kind : allCases<LogKind>())
        titles.append(kindTitle(kind));
    return titles;
}

QStringList MacLog::appNames() const {
    QStringList names;
    for (const QString &name : m_names)
        names.append(shownName(name));
    return names;
}

QStringList MacLog::appPictures() const {
    QStringList pictures;
    for (const QString &name : m_names)
        pictures.append(m_pictures.ofName(name));
    return pictures;
}

QList<int> MacLog::kinds() const {
    QList<int> places;
    for (const LogKind kind : m_query.kinds)
        places.append(static_cast<int>(kind));
    return places;
}

QList<int> MacLog::apps() const {
    QList<int> places;
    for (const QString &name : m_query.names)
        places.append(static_cast<int>(m_names.indexOf(name)));
    return places;
}

QString MacLog::summary() const {
    const QString size = QLocale::c().formattedDataSize(m_size, 1, QLocale::DataSizeSIFormat);
    const QString found = isFiltered() ? shownNumber(m_lines->eventCount()) + u" of "_s : QString();
    return found + shownEventCount(m_index.size()) + u", "_s + size;
}

QString MacLog::selection() const {
    return shownNumber(m_lines->selectedCount()) + u" selected"_s;
}

QStringList MacLog::formats() {
    return {u"Text"_s, u"JSON"_s, u"JSON lines"_s, u"CSV"_s};
}

void MacLog::setHasFileDialog() {
    m_hasFileDialog = true;
    Q_EMIT fileDialogFound();
}

void MacLog::chooseFile(const QString &suggested) {
    Q_EMIT fileWanted(absolute(suggested));
}

void MacLog::toggleKind(int place) {
    toggleIn(m_query.kinds, static_cast<LogKind>(place));
    adoptFilter();
}

void MacLog::toggleApp(int place) {
    toggleIn(m_query.names, m_names.at(place));
    adoptFilter();
}

void MacLog::clearKinds() {
    m_query.kinds.clear();
    adoptFilter();
}

void MacLog::clearApps() {
    m_query.names.clear();
    adoptFilter();
}

void MacLog::clearFilters() {
    m_query = {};
    adoptFilter();
}

void MacLog::adoptFilter() {
    show();
    Q_EMIT filterChanged();
}

void MacLog::show() {
    m_lines->show(m_index.find(m_query), m_runtime.now().toLocalTime().date());
    Q_EMIT shown();
    Q_EMIT changed();
}

void MacLog::lookAtToday() {
    m_lines->setToday(m_runtime.now().toLocalTime().date());
}

/// The runtime has the newest events, and nearly always what is new is among them.
void MacLog::follow() {
    lookAtToday();
    const QList<MacProtectionEvent> &newest = m_runtime.recentEvents();
    const QUuid known = m_index.size() > 0 ? m_index.idAt(m_index.size() - 1) : QUuid();
    const auto firstKnown =
        std::find_if(newest.cbegin(), newest.cend(), [&](const auto &event) { return event.id == known; });
    if (firstKnown == newest.cend()) {
        reload();
        return;
    }
    if (firstKnown == newest.cbegin())
        return;
    for (auto event = firstKnown; event != newest.cbegin();)
        append(*--event);
    m_size = QFileInfo(m_runtime.logStore().file()).size();
    Q_EMIT changed();
}

void MacLog::append(const MacProtectionEvent &event) {
    m_index.append(event);
    if (m_query.accepts(event))
        Q_EMIT grew(m_lines->prepend(static_cast<quint32>(m_index.size() - 1)));
    if (event.appName && !m_names.contains(*event.appName)) {
        m_names = m_index.names();
        Q_EMIT appsChanged();
        Q_EMIT filterChanged();
    }
}

/// All of it, at first, and when more than a few events are new or the file has become another one.
void MacLog::reload() {
    MacActivityLogStoring &log = m_runtime.logStore();
    std::optional<LogIndex> read = LogIndex::of(log);
    m_problem = read ? QString() : visibleText(log.problem());
    LogIndex index = std::move(read).value_or(LogIndex());
    m_size = QFileInfo(log.file()).size();
    const qsizetype before = m_index.size();
    const bool hasGrown =
        before > 0 && index.size() >= before && index.idAt(before - 1) == m_index.idAt(before - 1);
    if (hasGrown) {
        for (qsizetype number = before; number < index.size(); ++number)
            append(index.at(number));
        Q_EMIT changed();
        return;
    }
    m_index = std::move(index);
    m_names = m_index.names();
    m_query.names.removeIf([this](const QString &name) { return !m_names.contains(name); });
    Q_EMIT appsChanged();
    adoptFilter();
}

QByteArray MacLog::textOf(const LogIndex::Numbers &events, LogFormat format) const {
    return logText(
        static_cast<qsizetype>(events.size()),
        [&](qsizetype i) { return m_index.at(events[static_cast<std::size_t>(i)]); }, format);
}

void MacLog::copy() const {
    QString text = QString::fromUtf8(textOf(m_lines->selected(), LogFormat::text));
    // One line alone is pasted into the middle of others.
    if (m_lines->selectedCount() == 1)
        text.chop(1);
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

QString MacLog::suggestedFile(int format) const {
    static const QStringList suffixes{u".txt"_s, u".json"_s, u".jsonl"_s, u".csv"_s};
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString date = m_runtime.now().toLocalTime().date().toString(Qt::ISODate);
    return (QDir(folder).exists() ? folder : QDir::homePath()) + u"/activity-log-"_s + date +
           suffixes.at(format);
}

bool MacLog::isThere(const QString &file) const {
    return QFileInfo::exists(absolute(file));
}

QString MacLog::exportTo(const QString &file, int format, bool onlySelected) const {
    const LogIndex::Numbers events = onlySelected ? m_lines->selected() : m_lines->shown();
    return visibleText(
        runtime::exportTo(absolute(file), textOf(events, static_cast<LogFormat>(format))).problem);
}

} // namespace kestrin::app
