#include "app/Kestrin/pages/MacLiveUse.h"

#include "app/Kestrin/rows/UseTexts.h"

#include <algorithm>
#include <utility>

namespace kestrin::app {

using namespace engine;
using namespace runtime;

namespace {

constexpr std::chrono::milliseconds moment(1000);

/// Whether both are the same to those who read of them.
bool areAlike(const DeviceUse &a, const DeviceUse &b) {
    return a.category == b.category && a.localizedName == b.localizedName;
}

} // namespace

MacLiveUse::MacLiveUse(LiveUse &use, QObject *parent) : QObject(parent), m_use(use) {
    m_later.setSingleShot(true);
    m_later.setTimerType(Qt::PreciseTimer);
    m_later.setInterval(moment);
    connect(&m_later, &QTimer::timeout, this, &MacLiveUse::follow);
    connect(&m_use, &LiveUse::usesChanged, this, &MacLiveUse::follow);
    connect(&m_use, &LiveUse::switched, this, &MacLiveUse::switched);
}

void MacLiveUse::setOn(bool on) {
    static_cast<void>(m_use.setOn(on));
    // A menu that was clicked shows another value already.
    Q_EMIT switched();
}

void MacLiveUse::follow() {
    const auto before = std::pair(lines(), sentences());
    const Clock::time_point now = Clock::now();
    QList<DeviceUse> begun = m_use.uses();
    for (Shown &shown : m_shown) {
        const auto goesOn =
            begun.removeIf([&](const DeviceUse &use) { return areAlike(use, shown.use); }) > 0;
        if (goesOn)
            shown.ended.reset();
        else if (!shown.ended)
            shown.ended = now;
    }
    while (!begun.isEmpty()) {
        m_shown.append({begun.first(), {}});
        begun.removeIf([&](const DeviceUse &use) { return areAlike(use, m_shown.last().use); });
    }
    // Who switches it off wants to see nothing of it.
    m_shown.removeIf(
        [&](const Shown &shown) { return shown.ended && (!isOn() || now - *shown.ended >= moment); });
    const bool isEnding = std::any_of(m_shown.cbegin(), m_shown.cend(),
                                      [](const Shown &shown) { return shown.ended.has_value(); });
    if (isEnding && !m_later.isActive())
        m_later.start();
    if (std::pair(lines(), sentences()) != before)
        Q_EMIT changed();
}

QList<DeviceUse> MacLiveUse::shownUses() const {
    QList<DeviceUse> uses;
    for (const Shown &shown : m_shown)
        uses.append(shown.use);
    return uses;
}

QStringList MacLiveUse::lines() const {
    return useLines(shownUses());
}

QString MacLiveUse::sentences() const {
    return useSentences(shownUses());
}

QString MacLiveUse::symbol() const {
    return useSymbol(shownUses());
}

} // namespace kestrin::app
