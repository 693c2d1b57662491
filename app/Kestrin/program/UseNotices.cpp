#include "app/Kestrin/program/UseNotices.h"

#include "app/Kestrin/rows/ShownText.h"
#include "app/Kestrin/rows/UseTexts.h"
#include "engine/OwnApplications.h"

#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace engine;
using namespace runtime;

namespace {

QString keyOf(const DeviceUse &use, const QString &sentence) {
    return use.bundleIdentifier.value_or(QString()) + u'\n' + sentence;
}

} // namespace

UseNotices::UseNotices(Protection &protection, std::chrono::milliseconds patience, Now now, QObject *parent)
    : QObject(parent)
    , m_protection(protection)
    , m_patience(patience)
    , m_now(std::move(now)) {
    MacProtectionRuntime &runtime = protection.runtime;
    connect(&protection.liveUse, &LiveUse::began, this, &UseNotices::tellBegun);
    connect(&runtime, &MacProtectionRuntime::quitRequested, this, &UseNotices::takeRequest);
    // Whoever is started from then on is asked by nobody.
    const auto forget = [this] {
        if (!m_protection.runtime.enforceActions() || !m_protection.privacyMode.isOn())
            m_asked.clear();
    };
    connect(&runtime, &MacProtectionRuntime::enforceActionsChanged, this, forget);
    connect(&protection.privacyMode, &PrivacyModeFlag::changed, this, forget);
}

bool UseNotices::isUnknown(const DeviceUse &use) const {
    return definitionOf(use).isEmpty() && !isKestrinsName(use.localizedName);
}

QList<MacRiskCategory> UseNotices::categoriesOf(const DeviceUse &use) const {
    QList<MacRiskCategory> categories;
    for (const DeviceUse &other : m_protection.liveUse.uses()) {
        const bool isSame =
            other.localizedName == use.localizedName && other.bundleIdentifier == use.bundleIdentifier;
        if (isSame && !categories.contains(other.category))
            categories.append(other.category);
    }
    // It may be over by now.
    if (!categories.contains(use.category))
        categories.append(use.category);
    std::sort(categories.begin(), categories.end());
    return categories;
}

QString UseNotices::askAgain(const DeviceUse &use) {
    // What becomes of this is news.
    m_limit.forget(keyOf(use, goingOnSentence(use)));
    const QList<MacProtectionEvent> events = m_protection.runtime.askAgain(use);
    if (events.isEmpty())
        return shownUse(use).localizedName + u" cannot be asked to quit now."_s;
    return events.last().kind == MacProtectionEventKind::quitRequested ? QString()
                                                                       : shownMessage(events.last());
}

void UseNotices::tellBegun(const DeviceUse &use) {
    const QString definition = definitionOf(use);
    if (m_asked.contains(definition))
        lookLater(definition);
    if (m_limit.admits(keyOf(use, startedSentence(use)), m_now()))
        Q_EMIT began(use);
}

void UseNotices::takeRequest(const MacProtectionEvent &event) {
    // The switch to enforcing has the same kind and names no application.
    if (!event.appName)
        return;
    const QString definition =
        definitionOf({MacRiskCategory::microphone, 0, *event.appName, event.bundleIdentifier, {}});
    if (definition.isEmpty())
        return;
    m_asked.insert(definition);
    lookLater(definition);
}

void UseNotices::lookLater(const QString &definition) {
    if (m_pending.contains(definition))
        return;
    m_pending.insert(definition);
    QTimer::singleShot(m_patience, this, [this, definition] { look(definition); });
}

void UseNotices::look(const QString &definition) {
    m_pending.remove(definition);
    const MacProtectionRuntime &runtime = m_protection.runtime;
    if (!m_asked.contains(definition) || !runtime.asksToQuit(definition))
        return;
    for (const DeviceUse &use : m_protection.liveUse.uses()) {
        if (definitionOf(use) == definition && m_limit.admits(keyOf(use, goingOnSentence(use)), m_now())) {
            Q_EMIT goingOn(use);
            // One question an application.
            return;
        }
    }
}

QString UseNotices::definitionOf(const DeviceUse &use) const {
    const auto found = m_protection.runtime.catalog().definition(
        {use.processIdentifier, use.localizedName, use.bundleIdentifier, {}});
    return found ? found->id : QString();
}

} // namespace kestrin::app
