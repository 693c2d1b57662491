#include "foundation/TimePhrase.h"

#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

struct Unit {
    const char *name;
    qint64 seconds;
    int months = 0;
};

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

/// Longer names have an "s" or not.
constexpr std::array units{
    Unit{"s", 1},        Unit{"sec", 1},   Unit{"second", 1},   Unit{"m", minute},
    Unit{"min", minute}, Unit{"h", hour},  Unit{"hr", hour},    Unit{"hour", hour},
    Unit{"d", day},      Unit{"day", day}, Unit{"w", 7 * day},  Unit{"week", 7 * day},
    Unit{"month", 0, 1}, Unit{"y", 0, 12}, Unit{"year", 0, 12}, Unit{"minute", minute},
};

const Unit *findUnit(const QString &word) {
    static constexpr Unit monthInOneLetter{"M", 0, 1};
    if (word == u"M")
        return &monthInOneLetter;
    const QString name = word.toLower();
    const auto found = std::find_if(units.begin(), units.end(), [&](const Unit &unit) {
        const QLatin1StringView known(unit.name);
        return name == known || (known.size() > 1 && name == known + u's');
    });
    return found == units.end() ? nullptr : &*found;
}

/// `now` and the spans of time, all of them backwards or forwards.
std::optional<QDateTime> shifted(const QDateTime &now, const QString &spans, int direction) {
    static const QRegularExpression pattern(u"\\G\\s*([0-9]{1,9})\\s*([A-Za-z]+)\\s*"_s);
    QDateTime moment = now;
    qsizetype end = 0;
    while (end < spans.size()) {
        const QRegularExpressionMatch match = pattern.match(spans, end);
        const Unit *unit = match.hasMatch() ? findUnit(match.captured(2)) : nullptr;
        if (!unit)
            return std::nullopt;
        const int count = match.captured(1).toInt();
        // Whoever goes back further than there were years means everything.
        constexpr int mostMonths = 12 * 2000;
        moment = unit->months > 0
                     ? moment.addMonths(direction *
                                        int(std::min<qint64>(qint64{count} * unit->months, mostMonths)))
                     : moment.addSecs(direction * count * unit->seconds);
        end = match.capturedEnd();
    }
    return end > 0 && moment.isValid() ? std::optional(moment) : std::nullopt;
}

std::optional<QDateTime> secondsSinceTheEpoch(const QString &number) {
    bool isNumber = false;
    const qint64 seconds = number.toLongLong(&isNumber);
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(seconds);
    return isNumber && moment.isValid() ? std::optional(moment) : std::nullopt;
}

/// A time that the clocks leave out is the one that they show instead.
QDateTime at(const QDateTime &dayOf, const QTime &time) {
    QDateTime moment = dayOf;
    moment.setTime(time);
    return moment.isValid() ? moment : dayOf.date().startOfDay().addMSecs(time.msecsSinceStartOfDay());
}

std::optional<QDateTime> onTheCalendar(const QString &phrase, const QDateTime &now) {
    static const QRegularExpression pattern(u"^(?:(\\d{4}-\\d{2}-\\d{2})|(today|yesterday|tomorrow))?(?:(?:^|"
                                            u"\\s+|(?<=\\d)T)(\\d{1,2}:\\d{2}(?::\\d{2})?))?"
                                            "(\\s*UTC|Z)?$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(phrase);
    if (!match.hasMatch() || phrase.isEmpty())
        return std::nullopt;
    QDateTime moment = match.captured(4).isEmpty() ? now : now.toUTC();
    QDate date = moment.date();
    if (const QString written = match.captured(1); !written.isEmpty())
        date = QDate::fromString(written, Qt::ISODate);
    else if (const QString word = match.captured(2).toLower(); !word.isEmpty())
        date = date.addDays(word == u"yesterday" ? -1 : word == u"tomorrow" ? 1 : 0);
    else if (match.captured(3).isEmpty())
        return std::nullopt;
    QTime time(0, 0);
    if (const QString written = match.captured(3); !written.isEmpty())
        time = QTime::fromString(written, written.count(u':') == 2 ? u"H:mm:ss"_s : u"H:mm"_s);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    moment.setDate(date);
    return at(moment, time);
}

} // namespace

std::optional<QDateTime> timeOfPhrase(const QString &phrase, const QDateTime &now) {
    const QString words = phrase.trimmed();
    if (words.compare(u"now", Qt::CaseInsensitive) == 0)
        return now;
    if (words.startsWith(u'@'))
        return secondsSinceTheEpoch(words.mid(1));
    if (words.startsWith(u'-') || words.startsWith(u'+'))
        return shifted(now, words.mid(1), words.startsWith(u'-') ? -1 : 1);
    if (words.endsWith(u" ago", Qt::CaseInsensitive))
        return shifted(now, words.chopped(4), -1);
    return onTheCalendar(words, now);
}

std::optional<QDateTime> endOfPhrase(const QString &phrase, const QDateTime &now) {
    static const QRegularExpression pattern(u"^\\s*until\\s+(.*)$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression timeOfDay(u"^\\d{1,2}:"_s);
    const QRegularExpressionMatch match = pattern.match(phrase);
    if (!match.hasMatch()) {
        const auto end = shifted(now, phrase, 1);
        return end && *end > now ? end : std::nullopt;
    }
    const QString words = match.captured(1);
    auto end = timeOfPhrase(words, now);
    if (end && *end <= now && timeOfDay.match(words).hasMatch())
        end = timeOfPhrase(u"tomorrow "_s + words, now);
    return end && *end > now ? end : std::nullopt;
}

} // namespace kestrin::foundation
