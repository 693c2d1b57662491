#include "runtime/CurrentCatalog.h"

#include "foundation/FileWatch.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

CurrentCatalog::CurrentCatalog(std::shared_ptr<OwnApplicationsStoring> store, StoreReport report)
    : m_store(std::move(store))
    , m_report(std::move(report)) {
    read();
}

CurrentCatalog::~CurrentCatalog() = default;

QList<RiskAppDefinition> CurrentCatalog::own() const {
    return m_catalog.definitions.mid(RiskAppCatalog::defaultDefinitions().size());
}

QSet<QString> CurrentCatalog::ids() const {
    QSet<QString> ids;
    for (const RiskAppDefinition &definition : m_catalog.definitions)
        ids.insert(definition.id);
    return ids;
}

bool CurrentCatalog::isOwn(const QString &id) const {
    return !defaultDefinitionIDs().contains(id) && (!m_isReadable || findDefinition(m_catalog, id));
}

StoreResult CurrentCatalog::add(const OwnApplication &application, QString &id) {
    return update([&](QList<RiskAppDefinition> &own) {
        QString refusal = appendOwn(application, own);
        if (refusal.isEmpty())
            id = own.last().id;
        return refusal;
    });
}

StoreResult CurrentCatalog::restore(const RiskAppDefinition &definition, qsizetype place) {
    return update([&](QList<RiskAppDefinition> &own) {
        const OwnApplication application{.name = definition.displayName,
                                         .identifiers = definition.bundleIdentifiers,
                                         .aliases = definition.aliases,
                                         .categories = definition.categories,
                                         .action = definition.defaultAction};
        QString refusal = appendOwn(application, own);
        if (!refusal.isEmpty())
            return refusal;
        own.removeLast();
        const bool isTaken = findDefinition(catalogWith(own), definition.id);
        if (isTaken)
            return u"\"%1\" is another application now."_s.arg(definition.id);
        own.insert(std::min(place, own.size()), definition);
        return QString();
    });
}

StoreResult CurrentCatalog::remove(const QStringList &ids) {
    return update([&](QList<RiskAppDefinition> &own) {
        own.removeIf([&](const RiskAppDefinition &definition) { return ids.contains(definition.id); });
        return QString();
    });
}

StoreResult CurrentCatalog::update(const OwnApplicationsStoring::Change &change) {
    QList<RiskAppDefinition> changed;
    StoreResult result = m_store->update([&](QList<RiskAppDefinition> &own) {
        QString refusal = change(own);
        changed = own;
        return refusal;
    });
    if (result.isKept())
        adopt(changed);
    return result;
}

void CurrentCatalog::reload() {
    m_report({read(), {}});
}

/// Returns why that cannot be.
QString CurrentCatalog::read() {
    auto own = m_store->stored();
    QString problem = own ? QString() : m_store->problem();
    // What was in the way may have gone by now.
    if (!own && problem.isEmpty())
        own = m_store->stored();
    m_isReadable = own.has_value();
    if (own)
        adopt(*own);
    return problem;
}

void CurrentCatalog::follow() {
    const QString file = m_store->file();
    if (file.isEmpty() || m_watch)
        return;
    m_watch = std::make_unique<FileWatch>(file);
    connect(m_watch.get(), &FileWatch::changed, this, &CurrentCatalog::reload);
    // It may have changed before it was watched.
    reload();
}

void CurrentCatalog::adopt(const QList<RiskAppDefinition> &own) {
    m_isReadable = true;
    const RiskAppCatalog catalog = catalogWith(own);
    if (catalog == m_catalog)
        return;
    m_catalog = catalog;
    m_matcher = RiskAppMatcher(m_catalog);
    Q_EMIT changed();
}

} // namespace kestrin::runtime
