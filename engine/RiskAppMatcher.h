#pragma once

#include "engine/RiskAppCatalog.h"

#include <QHash>

namespace kestrin::engine {

/// Finds what RiskAppCatalog finds, for many applications at once: the catalog's names and identifiers are
/// looked at once, and not once an application. Worth it where a user has added hundreds. A copy costs
/// nothing.
class RiskAppMatcher {
  public:
    /// A catalog will do wherever a matcher is asked for.
    RiskAppMatcher(const RiskAppCatalog &catalog);

    /// As RiskAppCatalog::definition.
    const RiskAppDefinition *definition(const RunningMacApp &app) const;
    /// As RiskAppCatalog::matches.
    QList<RiskAppMatch> matches(const QList<RunningMacApp> &apps) const;

  private:
    QList<RiskAppDefinition> m_definitions;
    /// The first definition that has it.
    QHash<QString, qsizetype> m_byIdentifier;
    QHash<QString, qsizetype> m_byName;
};

} // namespace kestrin::engine
