#include "desktop/live/DesktopDeviceUses.h"

#include <QStringList>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto leastPause = 50ms;
/// Who comes back says so. This is for where that cannot be watched, and each time wakes an idle machine.
constexpr auto retry = 10min;

} // namespace

DesktopDeviceUses::DesktopDeviceUses(std::vector<std::unique_ptr<UseSource>> sources, Workspace &workspace,
                                     QString blindSpot)
    : m_blindSpot(std::move(blindSpot))
    , m_users(workspace) {
    for (auto &source : sources)
        m_parts.push_back({std::move(source)});
    for (Part &part : m_parts)
        follow(part);
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_again, [this] {
        const bool opens = std::exchange(m_opensClosed, false);
        if (isWatched())
            askAndTell(opens ? Closed::open : Closed::leave);
    });
    m_again.setSingleShot(true);
    QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { askAndTell(Closed::open); });
}

void DesktopDeviceUses::follow(Part &part) {
    QObject::connect(part.source.get(), &UseSource::changed, &m_again, [this, &part] {
        part.isStale = true;
        askLater();
    });
    QObject::connect(part.source.get(), &UseSource::lost, &m_again, [this] { askLater(); });
    QObject::connect(part.source.get(), &UseSource::appeared, &m_again, [this] {
        m_opensClosed = true;
        askLater();
    });
}

void DesktopDeviceUses::askLater() {
    const auto pause = std::chrono::ceil<std::chrono::milliseconds>(m_asked + leastPause - Clock::now());
    if (!m_soon.isActive())
        m_soon.start(std::max(pause, 0ms));
}

void DesktopDeviceUses::ask(Closed closed) {
    const Deadline deadline(m_patience);
    bool areAllAnswered = true;
    auto left = static_cast<int>(m_parts.size());
    for (Part &part : m_parts) {
        // The silence of one is not to silence the others.
        const Deadline own(deadline.remaining() / left--);
        areAllAnswered = isAnswered(part, closed, own) && areAllAnswered;
    }
    m_asked = Clock::now();
    if (areAllAnswered)
        m_again.stop();
    else if (!m_again.isActive())
        m_again.start(retry);
}

bool DesktopDeviceUses::isAnswered(Part &part, Closed closed, const Deadline &deadline) {
    UseSource &source = *part.source;
    if (!source.isOpen())
        part.isStale = true;
    if (source.isOpen() || (closed == Closed::open && source.open(deadline))) {
        if (!part.isStale)
            return true;
        if (auto uses = source.uses(deadline)) {
            part.uses = *std::move(uses);
            part.isStale = false;
            return true;
        }
    }
    // Who is only slow has not ended what was seen.
    if (!source.isOpen())
        part.uses.clear();
    return false;
}

void DesktopDeviceUses::askAndTell(Closed closed) {
    ask(closed);
    m_broadcast.adopt(usesOfAll());
    const Sight sight = sightOfAll();
    if (std::exchange(m_sight, sight) != sight)
        m_broadcast.tellSightChanged();
}

QList<DeviceUse> DesktopDeviceUses::usesOfAll() {
    QList<DeviceUse> all;
    for (const Part &part : m_parts) {
        for (const SourceUse &use : part.uses) {
            const DeviceUser user = m_users.of(use);
            all.append(
                {use.category, user.process, user.name, user.identifier, QDateTime::currentDateTimeUtc()});
        }
    }
    return all;
}

QList<DeviceUse> DesktopDeviceUses::uses() {
    if (isWatched())
        return m_broadcast.uses();
    askAndTell(Closed::open);
    const QList<DeviceUse> uses = m_broadcast.uses();
    release();
    return uses;
}

std::unique_ptr<DeviceUseSubscription> DesktopDeviceUses::subscribe(DeviceUseHandlers handlers) {
    // Nobody hears of what is there already.
    if (!isWatched())
        askAndTell(Closed::open);
    // Who ends his subscription may be about to begin another one.
    const auto ended = [this] {
        const auto releaseUnwatched = [this] {
            if (!isWatched())
                release();
        };
        QMetaObject::invokeMethod(&m_again, releaseUnwatched, Qt::QueuedConnection);
    };
    return m_broadcast.subscribe(std::move(handlers), ended);
}

Sight DesktopDeviceUses::sight() {
    if (isWatched())
        return m_sight;
    askAndTell(Closed::open);
    release();
    return m_sight;
}

void DesktopDeviceUses::release() {
    m_soon.stop();
    m_again.stop();
    for (Part &part : m_parts) {
        part.source->close();
        part.uses.clear();
    }
    m_broadcast.adopt({});
}

Sight DesktopDeviceUses::sightOfAll() const {
    const auto isOpen = [](const Part &part) { return part.source->isOpen(); };
    if (std::none_of(m_parts.cbegin(), m_parts.cend(), isOpen))
        return {
            Sight::Extent::none,
            u"Neither the sound server nor the cameras of this system can be asked, so it is not known who "
            "listens, watches or records."_s,
            {},
            {}};
    QStringList reasons;
    QStringList remedies;
    const bool isSoundTold = std::any_of(m_parts.cbegin(), m_parts.cend(), [](const Part &part) {
        return part.source->isSoundServer() && (part.source->isOpen() || !part.source->sight().isFull());
    });
    if (!isSoundTold)
        reasons.append(u"No sound server answers, so most programs that use the microphone are not seen."_s);
    for (const Part &part : m_parts) {
        const Sight sight = part.source->sight();
        reasons.append(sight.reason);
        remedies.append(sight.remedy);
    }
    reasons.append(m_blindSpot);
    for (QStringList *const list : {&reasons, &remedies}) {
        list->removeAll(QString());
        list->removeDuplicates();
    }
    if (reasons.isEmpty())
        return {};
    return {Sight::Extent::partial, reasons.join(u' '), remedies.join(u' '), {}};
}

} // namespace kestrin::desktop
