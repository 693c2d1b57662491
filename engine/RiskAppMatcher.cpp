#include "engine/RiskAppMatcher.h"

#include <algorithm>
#include <string>

namespace kestrin::engine {

namespace {

/// Equal for two identifiers exactly when a comparison that ignores case finds them equal. That folds each
/// character by itself; QString::toCaseFolded() makes two letters of some.
QString folded(const QString &identifier) {
    std::u32string characters = identifier.toStdU32String();
    for (char32_t &character : characters)
        character = QChar::toCaseFolded(character);
    return QString::fromStdU32String(characters);
}

void insertFirst(QHash<QString, qsizetype> &index, const QString &key, qsizetype position) {
    if (!index.contains(key))
        index.insert(key, position);
}

} // namespace

RiskAppMatcher::RiskAppMatcher(const RiskAppCatalog &catalog) : m_definitions(catalog.definitions) {
    for (qsizetype position = 0; position < m_definitions.size(); ++position) {
        const RiskAppDefinition &definition = m_definitions.at(position);
        for (const QString &identifier : definition.bundleIdentifiers)
            insertFirst(m_byIdentifier, folded(identifier), position);
        insertFirst(m_byName, normalizedAppName(definition.displayName), position);
        for (const QString &alias : definition.aliases)
            insertFirst(m_byName, normalizedAppName(alias), position);
    }
}

const RiskAppDefinition *RiskAppMatcher::definition(const RunningMacApp &app) const {
    const qsizetype none = m_definitions.size();
    const qsizetype byName = m_byName.value(normalizedAppName(app.localizedName), none);
    const qsizetype byIdentifier =
        app.bundleIdentifier ? m_byIdentifier.value(folded(*app.bundleIdentifier), none) : none;
    // The earlier one wins, whichever test it is that it passes.
    const qsizetype first = std::min(byName, byIdentifier);
    return first == none ? nullptr : &m_definitions.at(first);
}

QList<RiskAppMatch> RiskAppMatcher::matches(const QList<RunningMacApp> &apps) const {
    QList<RiskAppMatch> result;
    for (const RunningMacApp &app : apps) {
        if (const RiskAppDefinition *found = definition(app))
            result.append({app, *found});
    }
    return result;
}

} // namespace kestrin::engine
