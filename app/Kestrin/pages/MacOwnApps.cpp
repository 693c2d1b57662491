#include "app/Kestrin/pages/MacOwnApps.h"

#include "app/Kestrin/rows/ShownText.h"
#include "design/KestrinTone.h"
#include "foundation/VisibleText.h"

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace foundation;
using namespace design;
using namespace engine;
using namespace runtime;

namespace {

/// Long enough to read the line and to reach it by keyboard.
constexpr std::chrono::seconds undoTime(10);

template <typename Enumeration>
QStringList allLabels() {
    QStringList labels;
    for (const Enumeration value : allCases<Enumeration>())
        labels.append(userLabel(value));
    return labels;
}

PageRow candidateRow(const AddableApplication &application, qsizetype number) {
    return {.id = QString::number(number),
            .title = shownName(application.name),
            .subtitle = visibleText(application.identifier.value_or(QString())),
            .status = application.isRunning ? u"Running"_s : QString(),
            .icon = application.icon,
            .tone = static_cast<int>(KestrinTone::Protected)};
}

} // namespace

MacOwnApps::MacOwnApps(MacProtectionRuntime &runtime, InstalledApplications &installed, QObject *parent)
    : QObject(parent)
    , m_runtime(runtime)
    , m_installed(installed) {
    m_undoTime.setSingleShot(true);
    m_undoTime.setInterval(undoTime);
    connect(&m_undoTime, &QTimer::timeout, this, &MacOwnApps::forget);
}

QStringList MacOwnApps::categoryLabels() {
    return allLabels<MacRiskCategory>();
}

QStringList MacOwnApps::actionLabels() {
    return allLabels<RiskAppAction>();
}

QString MacOwnApps::look() {
    m_candidates = addableApplications(m_runtime.catalog(), m_runtime.runningApps(), m_installed.list());
    setSearch({});
    fill();
    return visibleText(m_runtime.ownApplicationsProblem());
}

QString MacOwnApps::putFirst(const QString &name, const QString &identifier) {
    const RunningMacApp app{0, name, identifier.isEmpty() ? std::nullopt : std::optional(identifier), {}};
    // As it would be listed if it were the only one.
    QList<AddableApplication> first = addableApplications(m_runtime.catalog(), {app}, {});
    if (first.isEmpty())
        return {};
    const auto isSame = [&](const AddableApplication &other) {
        return other.name == name && other.identifier == app.bundleIdentifier;
    };
    const auto listed = std::find_if(m_candidates.cbegin(), m_candidates.cend(), isSame);
    first.first().isRunning = false;
    if (listed != m_candidates.cend())
        first.first() = *listed;
    m_candidates.removeIf(isSame);
    m_candidates = first + m_candidates;
    fill();
    return QString::number(0);
}

bool MacOwnApps::isRunning(const QString &candidate) const {
    return m_candidates.value(candidate.toInt()).isRunning;
}

void MacOwnApps::setSearch(const QString &search) {
    if (search == m_search)
        return;
    m_search = search;
    Q_EMIT searchChanged();
    fill();
}

void MacOwnApps::fill() {
    QList<PageRow> rows;
    const QString wanted = m_search.trimmed();
    for (qsizetype number = 0; number < m_candidates.size(); ++number) {
        const AddableApplication &candidate = m_candidates.at(number);
        if (candidate.name.contains(wanted, Qt::CaseInsensitive) ||
            candidate.identifier.value_or(QString()).contains(wanted, Qt::CaseInsensitive))
            rows.append(candidateRow(candidate, number));
    }
    m_rows->setRows(rows);
}

QString MacOwnApps::add(const QString &candidate, const QVariantList &categories, int action) {
    const AddableApplication chosen = m_candidates.value(candidate.toInt());
    OwnApplication application{.name = chosen.name};
    if (chosen.identifier)
        application.identifiers = {*chosen.identifier};
    for (const QVariant &category : categories)
        application.categories.append(static_cast<MacRiskCategory>(category.toInt()));
    application.action = static_cast<RiskAppAction>(action);
    const Outcome outcome = m_runtime.addOwnApplication(application);
    return visibleText(outcome.catalog.isKept() ? outcome.settings.problem : outcome.catalog.problem);
}

void MacOwnApps::remove(const QString &id) {
    auto removed = m_runtime.removedApplication(id);
    if (!removed || !m_runtime.removeOwnApplications({id}).isKept())
        return;
    m_removed = std::move(removed);
    m_undoTime.start();
    Q_EMIT removedChanged();
}

void MacOwnApps::undoRemoval() {
    if (m_removed)
        m_runtime.restoreOwnApplication(*m_removed);
    forget();
}

void MacOwnApps::forget() {
    m_undoTime.stop();
    m_removed.reset();
    Q_EMIT removedChanged();
}

QString MacOwnApps::removedName() const {
    return m_removed ? shownName(m_removed->definition.displayName) : QString();
}

} // namespace kestrin::app
