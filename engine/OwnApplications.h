// The user's own applications: definitions that stand behind the built-in ones.
#pragma once

#include "engine/RiskAppCatalog.h"

#include <QStringList>

#include <optional>

namespace kestrin::engine {

/// Far above what anybody needs, so that no file and no list can grow without end.
struct OwnApplicationLimits {
    static constexpr qsizetype applications = 2000;
    /// Of a name or an identifier, in UTF-16 units.
    static constexpr qsizetype textLength = 200;
    /// Identifiers, or further names, of one application.
    static constexpr qsizetype textsPerApplication = 20;
};

/// What somebody says of an application that is to be added.
struct OwnApplication {
    QString name;
    QStringList identifiers = {};
    /// Further names.
    QStringList aliases = {};
    QList<MacRiskCategory> categories = {};
    RiskAppAction action = RiskAppAction::keepClosed;
};

/// Whether it is Kestrin that is called so, which must not close itself.
bool isKestrinsName(const QString &name);

/// The built-in definitions, and behind them these.
RiskAppCatalog catalogWith(const QList<RiskAppDefinition> &own);

/// Null when the catalog has no definition with this id.
const RiskAppDefinition *findDefinition(const RiskAppCatalog &catalog, const QString &id);

/// Why these cannot be a user's own applications, as the part of a sentence that follows "because"; empty
/// when they can. For what was written by anybody.
QString flawOf(const QList<RiskAppDefinition> &own);

/// Appends a definition of the application: with trimmed texts, each once, and an id that is made of the name
/// and that nobody else has. Returns why that cannot be, as a sentence, and changes nothing then; empty when
/// it is done. What the catalog knows already by one of its names or identifiers is not added.
[[nodiscard]] QString appendOwn(const OwnApplication &application, QList<RiskAppDefinition> &own);

} // namespace kestrin::engine
