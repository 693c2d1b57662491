#include "app/Kestrin/log/LogLines.h"

#include "app/Kestrin/rows/ShownText.h"
#include "runtime/StatusSummaries.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace engine;
using namespace runtime;

namespace {

QString dayName(const QDate &date, const QDate &today) {
    // In the language of the window.
    const QString name = QLocale::c().toString(date, u"dddd, d MMMM yyyy"_s);
    if (date == today)
        return u"Today, "_s + name;
    return date == today.addDays(-1) ? u"Yesterday, "_s + name : name;
}

} // namespace

LogLines::LogLines(const LogIndex &index, const ApplicationPictures &pictures, QObject *parent)
    : QAbstractListModel(parent)
    , m_index(index)
    , m_pictures(pictures) {}

void LogLines::show(const LogIndex::Numbers &events, const QDate &today) {
    beginResetModel();
    m_today = today;
    m_events.clear();
    m_days.clear();
    m_lastEvent.reset();
    for (const quint32 event : events) {
        if (!isOfLastDay(event))
            beginDay(event);
        m_events.push_back(event);
    }
    m_selected.assign(m_events.size(), false);
    m_selectedCount = 0;
    m_anchor.reset();
    endResetModel();
    Q_EMIT countChanged();
    Q_EMIT selectionChanged();
}

int LogLines::prepend(quint32 event) {
    const bool isNewDay = !isOfLastDay(event);
    // Below the line that names the day.
    const int line = isNewDay ? 0 : 1;
    const int lines = isNewDay ? 2 : 1;
    beginInsertRows({}, line, line + lines - 1);
    if (isNewDay)
        beginDay(event);
    m_events.push_back(event);
    m_selected.push_back(false);
    endInsertRows();
    Q_EMIT dataChanged(index(0), index(0));
    Q_EMIT countChanged();
    return lines;
}

void LogLines::setToday(const QDate &today) {
    if (today == m_today)
        return;
    m_today = today;
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1), {Title});
}

int LogLines::count() const {
    return static_cast<int>(m_events.size() + m_days.size());
}

LogIndex::Numbers LogLines::selected() const {
    LogIndex::Numbers numbers;
    for (std::size_t event = m_events.size(); event-- > 0;) {
        if (m_selected[event])
            numbers.push_back(m_events[event]);
    }
    return numbers;
}

bool LogLines::isOfLastDay(quint32 event) const {
    const qint64 time = m_index.millisecondsAt(event);
    return !m_days.empty() && time >= m_days.back().begin && time < m_days.back().end;
}

void LogLines::beginDay(quint32 event) {
    // Once a day: local times are expensive to come by.
    const QDate date = QDateTime::fromMSecsSinceEpoch(m_index.millisecondsAt(event)).date();
    m_days.push_back({.date = date,
                      .begin = date.startOfDay().toMSecsSinceEpoch(),
                      .end = date.addDays(1).startOfDay().toMSecsSinceEpoch(),
                      .first = m_events.size()});
}

std::size_t LogLines::endOf(std::size_t day) const {
    return day + 1 < m_days.size() ? m_days[day + 1].first : m_events.size();
}

LogLines::Place LogLines::place(int line) const {
    // Counted from the last line, a day is its events and then the line that names it.
    const std::size_t fromLast = static_cast<std::size_t>(count() - 1 - line);
    const auto lineOfFirst = [this](const Day &day) {
        return day.first + static_cast<std::size_t>(&day - m_days.data());
    };
    const auto next =
        std::upper_bound(m_days.cbegin(), m_days.cend(), fromLast,
                         [&](std::size_t wanted, const Day &day) { return wanted < lineOfFirst(day); });
    const auto day = static_cast<std::size_t>(next - m_days.cbegin()) - 1;
    const std::size_t event = fromLast - day;
    return {day, event, event == endOf(day)};
}

int LogLines::lineOf(std::size_t event) const {
    const auto day =
        std::upper_bound(m_days.cbegin(), m_days.cend(), event,
                         [](std::size_t wanted, const Day &each) { return wanted < each.first; }) -
        m_days.cbegin() - 1;
    return count() - 1 - static_cast<int>(event) - static_cast<int>(day);
}

QString LogLines::widestTime() {
    return timeOfDayLabelFor(QDateTime(QDate(2026, 1, 1), QTime(22, 58)));
}

QString LogLines::dayAt(int line) const {
    return line < 0 || line >= count() ? QString() : dayData(place(line).day, Title).toString();
}

QString LogLines::dayCountAt(int line) const {
    return line < 0 || line >= count() ? QString() : dayData(place(line).day, Time).toString();
}

int LogLines::eventFrom(int line, int steps) const {
    if (m_events.empty())
        return -1;
    const auto last = static_cast<qint64>(m_events.size()) - 1;
    // A line that names a day stands for the event below it, and none at all for the one above the first.
    const qint64 from = line < 0 ? last + 1 : static_cast<qint64>(place(std::min(line, count() - 1)).event);
    return lineOf(static_cast<std::size_t>(std::clamp<qint64>(from - steps, 0, last)));
}

void LogLines::choose(int line) {
    if (line < 0 || line >= count() || isDay(line))
        return;
    m_anchor = place(line).event;
    m_selected.assign(m_events.size(), false);
    m_selected[*m_anchor] = true;
    tellSelection();
}

void LogLines::toggle(int line) {
    if (line < 0 || line >= count() || isDay(line))
        return;
    m_anchor = place(line).event;
    m_selected[*m_anchor] = !m_selected[*m_anchor];
    tellSelection();
}

void LogLines::extendTo(int line) {
    if (line < 0 || line >= count() || isDay(line))
        return;
    const std::size_t event = place(line).event;
    if (!m_anchor)
        m_anchor = event;
    m_selected.assign(m_events.size(), false);
    for (std::size_t each = std::min(*m_anchor, event); each <= std::max(*m_anchor, event); ++each)
        m_selected[each] = true;
    tellSelection();
}

void LogLines::selectAll() {
    m_selected.assign(m_events.size(), true);
    tellSelection();
}

void LogLines::tellSelection() {
    m_selectedCount = static_cast<int>(std::count(m_selected.cbegin(), m_selected.cend(), true));
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1), {Selected});
    Q_EMIT selectionChanged();
}

int LogLines::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant LogLines::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Place found = place(index.row());
    switch (role) {
    case IsDay:
        return found.isDay;
    case Selected:
        return !found.isDay && m_selected[found.event];
    default:
        return found.isDay ? dayData(found.day, role) : eventData(m_events[found.event], role);
    }
}

QVariant LogLines::dayData(std::size_t day, int role) const {
    switch (role) {
    case Title:
        return dayName(m_days[day].date, m_today);
    case Time:
        return shownEventCount(static_cast<qsizetype>(endOf(day) - m_days[day].first));
    case Tone:
        return 0;
    case Message:
    case Kind:
    case Symbol:
    case Picture:
        return QString();
    default:
        return {};
    }
}

QVariant LogLines::eventData(quint32 number, int role) const {
    const MacProtectionEvent event = m_index.at(number);
    if (m_lastEvent != number) {
        m_lastRow = rowOf(event);
        m_lastEvent = number;
    }
    switch (role) {
    case Title:
        return m_lastRow.title;
    case Message:
        return m_lastRow.subtitle;
    case Kind:
        return event.appName ? kindTitle(event) : QString();
    case Time:
        return m_lastRow.status;
    case Symbol:
        return m_lastRow.icon;
    case Tone:
        return m_lastRow.tone;
    case Picture:
        return m_pictures.of(event);
    default:
        return {};
    }
}

QHash<int, QByteArray> LogLines::roleNames() const {
    return {{IsDay, "isDay"},   {Title, "title"}, {Message, "message"}, {Kind, "kind"},        {Time, "time"},
            {Symbol, "symbol"}, {Tone, "tone"},   {Picture, "picture"}, {Selected, "selected"}};
}

} // namespace kestrin::app
