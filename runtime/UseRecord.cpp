#include "runtime/UseRecord.h"

#include "foundation/RawValues.h"

#include <QSet>

#include <algorithm>

namespace kestrin::runtime {

using namespace engine;

QString UseRecord::Entry::sentence() const {
    switch (happening) {
    case Happening::began:
        return startedSentence(use);
    case Happening::ended:
        return stoppedSentence(use);
    case Happening::wasThere:
    case Happening::hasBegun:
        break;
    }
    return goingOnSentence(use);
}

UseRecord::UseRecord(const Limits &limits) : m_limits(limits) {}

QString UseRecord::keyOf(const DeviceUse &use) {
    return foundation::rawValue(use.category) + u'\n' + use.localizedName + u'\n' +
           use.bundleIdentifier.value_or(QString());
}

void UseRecord::begin(const QList<DeviceUse> &uses, Time now) {
    end();
    adopt(uses, Happening::wasThere, now);
}

void UseRecord::end() {
    for (Application &application : m_applications)
        application.isUsing = application.isToldUsing = false;
}

void UseRecord::follow(const QList<DeviceUse> &uses, Time now) {
    adopt(uses, Happening::began, now);
    // Who has not been told of lately is as new when he comes again.
    m_applications.removeIf([now](const Applications::iterator &entry) {
        return !entry->isUsing && !entry->isToldUsing && entry->budget.isWhole(now);
    });
}

void UseRecord::adopt(const QList<DeviceUse> &uses, Happening beginning, Time now) {
    QSet<QString> current;
    for (const DeviceUse &use : uses)
        current.insert(keyOf(use));
    for (auto [key, application] : m_applications.asKeyValueRange()) {
        if (application.isUsing && !current.contains(key))
            change(application, false, now);
    }
    // In the order in which they began.
    for (const DeviceUse &use : uses) {
        Application &application = m_applications[keyOf(use)];
        if (application.isUsing)
            continue;
        application.use = use;
        application.beginning = beginning;
        change(application, true, now);
    }
}

void UseRecord::change(Application &application, bool isUsing, Time now) {
    application.isUsing = isUsing;
    application.changed = now;
    application.place = ++m_changes;
}

UseRecord::Applications::iterator UseRecord::longestOwed(std::optional<Time> allowedAt) {
    auto found = m_applications.end();
    for (auto candidate = m_applications.begin(); candidate != m_applications.end(); ++candidate) {
        const bool isAllowed = !allowedAt || candidate->budget.next(m_limits.each) <= *allowedAt;
        if (candidate->isOwed() && isAllowed &&
            (found == m_applications.end() || candidate->place < found->place))
            found = candidate;
    }
    return found;
}

UseRecord::Entry UseRecord::tell(Application &application, Time now) {
    application.isToldUsing = application.isUsing;
    if (!application.isUsing)
        return {application.use, Happening::ended};
    const bool isLate = application.beginning == Happening::began && application.changed < now;
    return {application.use, isLate ? Happening::hasBegun : application.beginning};
}

std::optional<UseRecord::Entry> UseRecord::takeDue(Time now) {
    if (m_all.next(m_limits.all) > now)
        return {};
    const auto found = longestOwed(now);
    if (found == m_applications.end())
        return {};
    m_all.spend(m_limits.all, now);
    found->budget.spend(m_limits.each, now);
    return tell(*found, now);
}

std::optional<UseRecord::Time> UseRecord::due() const {
    std::optional<Time> earliest;
    for (const Application &application : m_applications) {
        const Time next = std::max(application.budget.next(m_limits.each), m_all.next(m_limits.all));
        if (application.isOwed() && (!earliest || next < *earliest))
            earliest = next;
    }
    return earliest;
}

QList<UseRecord::Entry> UseRecord::takeRest(Time now) {
    QList<Entry> rest;
    for (auto owed = longestOwed({}); owed != m_applications.end() && rest.size() < m_limits.all.atOnce;
         owed = longestOwed({}))
        rest.append(tell(*owed, now));
    return rest;
}

} // namespace kestrin::runtime
