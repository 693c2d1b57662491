#pragma once

#include "engine/OwnApplications.h"
#include "engine/OwnApplicationsStoring.h"
#include "engine/RiskAppMatcher.h"
#include "runtime/ReportedStores.h"

#include <QObject>

#include <memory>

namespace kestrin::foundation {
class FileWatch;
}

namespace kestrin::runtime {

/// The catalog as it is now: the built-in definitions, and behind them the user's own applications. Whoever
/// wants to know what Kestrin knows asks here. Own applications that cannot be read any more are nobody's
/// choice: then those that were read last hold. Main thread only.
class CurrentCatalog : public QObject {
    Q_OBJECT

  public:
    /// Reads. `report` hears what becomes of each later reading.
    CurrentCatalog(std::shared_ptr<engine::OwnApplicationsStoring> store, StoreReport report);
    ~CurrentCatalog() override;

    const engine::RiskAppCatalog &catalog() const { return m_catalog; }
    const engine::RiskAppMatcher &matcher() const { return m_matcher; }
    /// The part of it that the user added.
    QList<engine::RiskAppDefinition> own() const;
    QSet<QString> ids() const;
    /// Whether the user added it. What is unknown may be his as long as that cannot be read.
    bool isOwn(const QString &id) const;
    /// Whether the own applications could be read the last time.
    bool isReadable() const { return m_isReadable; }
    /// Why the own applications cannot be read now, as a sentence; empty when they can be.
    QString problem() { return m_store->problem(); }

    /// Adds it as the last one and gives its id.
    [[nodiscard]] foundation::StoreResult add(const engine::OwnApplication &application, QString &id);
    /// Puts one back in front of what is at that place of the own applications now, unless its id or one of
    /// its names or identifiers has been given away meanwhile.
    [[nodiscard]] foundation::StoreResult restore(const engine::RiskAppDefinition &definition,
                                                  qsizetype place);
    /// Removes those of these that are there.
    [[nodiscard]] foundation::StoreResult remove(const QStringList &ids);

    /// Reads again what another process may have changed.
    void reload();
    /// Does so by itself from now on.
    void follow();

  Q_SIGNALS:
    void changed();

  private:
    foundation::StoreResult update(const engine::OwnApplicationsStoring::Change &change);
    QString read();
    void adopt(const QList<engine::RiskAppDefinition> &own);

    const std::shared_ptr<engine::OwnApplicationsStoring> m_store;
    const StoreReport m_report;
    engine::RiskAppCatalog m_catalog = engine::catalogWith({});
    engine::RiskAppMatcher m_matcher{m_catalog};
    bool m_isReadable = false;
    /// Present for a store that is a file, once it is followed.
    std::unique_ptr<foundation::FileWatch> m_watch;
};

} // namespace kestrin::runtime
