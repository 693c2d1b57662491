#pragma once

#include "app/Kestrin/log/ApplicationPictures.h"
#include "app/Kestrin/rows/PageRows.h"
#include "runtime/LogIndex.h"

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <QDate>

#include <vector>

namespace kestrin::app {

/// The lines of the log window: the events that are asked for, newest first, and above those of a day a line
/// that names it. Everything is made from the index when a view asks for it. Lines can be selected, and stay
/// so when new ones come above them.
class LogLines : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("They come with MacLog.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)

  public:
    enum Role { IsDay = Qt::UserRole, Title, Message, Kind, Time, Symbol, Tone, Picture, Selected };

    /// Both outlive this object.
    LogLines(const runtime::LogIndex &index, const ApplicationPictures &pictures, QObject *parent = nullptr);

    /// Shows these of the index, oldest first, and nothing is selected. `today` has a name of its own.
    void show(const runtime::LogIndex::Numbers &events, const QDate &today);
    /// The index has one more event, which is asked for. Returns how many lines there are more.
    int prepend(quint32 event);
    /// Another day has begun.
    void setToday(const QDate &today);

    int count() const;
    qsizetype eventCount() const { return static_cast<qsizetype>(m_events.size()); }
    int selectedCount() const { return m_selectedCount; }
    /// These are newest first.
    runtime::LogIndex::Numbers shown() const { return {m_events.crbegin(), m_events.crend()}; }
    runtime::LogIndex::Numbers selected() const;

    Q_INVOKABLE bool isDay(int line) const { return place(line).isDay; }
    /// A time of day that takes as much room as any.
    Q_INVOKABLE static QString widestTime();
    /// The name of the day that a line is of, and how many events of it are shown.
    Q_INVOKABLE QString dayAt(int line) const;
    Q_INVOKABLE QString dayCountAt(int line) const;
    /// The event that is so many events further down, or as far as there are any; -1 where there is none.
    Q_INVOKABLE int eventFrom(int line, int steps) const;

    /// Selects the one event.
    Q_INVOKABLE void choose(int line);
    /// Selects it, or not any more, beside the others.
    Q_INVOKABLE void toggle(int line);
    /// Selects all from the one that was chosen last up to this one.
    Q_INVOKABLE void extendTo(int line);
    Q_INVOKABLE void selectAll();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();
    void selectionChanged();

  private:
    /// Events of one day that follow each other.
    struct Day {
        QDate date;
        /// Until when, in milliseconds since 1970.
        qint64 begin;
        qint64 end;
        std::size_t first; ///< in m_events
    };
    /// What is in a line.
    struct Place {
        std::size_t day;
        std::size_t event; ///< in m_events
        bool isDay;
    };

    bool isOfLastDay(quint32 event) const;
    void beginDay(quint32 event);
    std::size_t endOf(std::size_t day) const;
    Place place(int line) const;
    int lineOf(std::size_t event) const;
    QVariant dayData(std::size_t day, int role) const;
    QVariant eventData(quint32 number, int role) const;
    void tellSelection();

    const runtime::LogIndex &m_index;
    const ApplicationPictures &m_pictures;
    QDate m_today;
    // Both oldest first, so that what is new comes to the end.
    runtime::LogIndex::Numbers m_events;
    std::vector<Day> m_days;
    /// For each of the events.
    std::vector<bool> m_selected;
    int m_selectedCount = 0;
    /// From where on a selection is extended.
    std::optional<std::size_t> m_anchor;
    /// The roles of one line are asked for one after the other.
    mutable std::optional<quint32> m_lastEvent;
    mutable PageRow m_lastRow;
};

} // namespace kestrin::app
