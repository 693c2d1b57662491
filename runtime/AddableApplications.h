#pragma once

#include "engine/RiskAppCatalog.h"
#include "runtime/InstalledApplications.h"

#include <optional>

namespace kestrin::runtime {

/// An application that no definition knows.
struct AddableApplication {
    QString name;
    std::optional<QString> identifier;
    /// Empty when it is not installed as this one, or has none.
    QString icon;
    bool isRunning = false;
};

/// What could be added to the catalog, each once: those that run, in the order of the listing, and then the
/// installed ones.
QList<AddableApplication> addableApplications(const engine::RiskAppCatalog &catalog,
                                              const QList<engine::RunningMacApp> &running,
                                              const QList<InstalledApplication> &installed);

} // namespace kestrin::runtime
