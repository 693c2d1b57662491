#pragma once

#include "engine/RiskAppMatch.h"

#include <QSet>

namespace kestrin::engine {

/// The definitions that running applications are compared with. Their order decides: the first that matches
/// wins.
struct RiskAppCatalog {
    QList<RiskAppDefinition> definitions;

    /// The built-in twelve, built once on first use.
    static const QList<RiskAppDefinition> &defaultDefinitions();

    /// The first definition that the application matches by bundle identifier (letter case ignored) or by
    /// name (ends trimmed, letter case ignored). Both are tried on one definition before the next is looked
    /// at.
    std::optional<RiskAppDefinition> definition(const RunningMacApp &app) const;

    /// One match for each application that has a definition, in the order of the applications.
    QList<RiskAppMatch> matches(const QList<RunningMacApp> &apps) const;

    bool operator==(const RiskAppCatalog &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{foundation::jsonField("definitions", &RiskAppCatalog::definitions)};
    }
};

/// A name as the matcher compares it: ends trimmed, lower case.
QString normalizedAppName(const QString &name);

/// The ids of the built-in twelve.
QSet<QString> defaultDefinitionIDs();

} // namespace kestrin::engine
