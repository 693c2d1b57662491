#include "runtime/Pause.h"

#include "foundation/JsonEncoding.h"
#include "foundation/JsonSyntax.h"
#include "foundation/UniversalTime.h"

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;

namespace {

/// Clocks are corrected by seconds all the time.
constexpr std::chrono::seconds setBackUnnoticed{60};

std::optional<QDateTime> dateIn(const QString &text) {
    const std::string written = text.toStdString();
    return json::isDate(written) ? std::optional(json::dateFrom(written)) : std::nullopt;
}

QStringList textsOf(const std::optional<Pause> &pause) {
    if (!pause)
        return {};
    return {toJsonValue(pause->since).toString(), toJsonValue(pause->until).toString()};
}

std::optional<Pause> pauseIn(const QStringList &texts) {
    if (texts.size() != 2)
        return std::nullopt;
    const auto since = dateIn(texts.first());
    const auto until = dateIn(texts.last());
    return since && until && *since < *until ? std::optional(Pause{*since, *until}) : std::nullopt;
}

QDateTime wholeSeconds(const QDateTime &moment) {
    return QDateTime::fromSecsSinceEpoch(moment.toSecsSinceEpoch(), universalTime);
}

} // namespace

const QString Pause::key = u"kestrin.mac.pause"_s;

Pause Pause::between(const QDateTime &since, const QDateTime &until) {
    return {wholeSeconds(since), wholeSeconds(until)};
}

std::optional<Pause> Pause::stored(const UserDefaults &defaults) {
    return pauseIn(defaults.stringArray(key).value_or(QStringList()));
}

bool Pause::isOver(const QDateTime &now) const {
    return now >= until || now.addSecs(setBackUnnoticed.count()) < since;
}

Pause Pause::movedBack(std::chrono::seconds by) const {
    return {since.addSecs(-by.count()), until.addSecs(-by.count())};
}

StoreResult Pause::store(UserDefaults &defaults) const {
    return defaults.setStringArray(key, textsOf(*this));
}

StoreResult Pause::replaceBy(UserDefaults &defaults, const std::optional<Pause> &other) const {
    return defaults.updateStringArray(key, [&](const std::optional<QStringList> &stored) {
        const QStringList texts = stored.value_or(QStringList());
        return pauseIn(texts) == *this ? textsOf(other) : texts;
    });
}

QDateTime startOfTomorrow(const QDateTime &now) {
    return now.toLocalTime().date().addDays(1).startOfDay();
}

} // namespace kestrin::runtime
