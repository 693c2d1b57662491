// The stores as the runtime hands them to the engine: it hears what becomes of everything that is stored.
#pragma once

#include "engine/MacActivityLogStoring.h"
#include "engine/PrivacyModeSettingsStoring.h"
#include "engine/RiskAppActionPerforming.h"

#include <functional>
#include <memory>
#include <optional>

namespace kestrin::runtime {

using StoreReport = std::function<void(const foundation::StoreResult &)>;

class ReportedLog final : public engine::MacActivityLogStoring {
  public:
    ReportedLog(std::shared_ptr<engine::MacActivityLogStoring> log, StoreReport report);

    [[nodiscard]] foundation::StoreResult tryAppend(const engine::MacProtectionEvent &event) override;
    QList<engine::MacProtectionEvent> recent(qsizetype limit) override { return m_log->recent(limit); }
    bool readAll(const engine::LogReading &reading) override { return m_log->readAll(reading); }
    QString problem() override { return m_log->problem(); }
    QString file() const override { return m_log->file(); }

  private:
    const std::shared_ptr<engine::MacActivityLogStoring> m_log;
    const StoreReport m_report;
};

/// Settings that cannot be used any more are nobody's choice: then those that were read or saved last hold.
class RememberedSettings final : public engine::PrivacyModeSettingsStoring {
  public:
    /// `everything` gives the ids that are selected as long as nobody has chosen, besides those of the
    /// fallback.
    RememberedSettings(std::shared_ptr<engine::PrivacyModeSettingsStoring> settings, StoreReport loaded,
                       StoreReport saved, std::function<QSet<QString>()> everything);

    engine::PrivacyModeSettings load() override;
    [[nodiscard]] foundation::StoreResult update(const Change &change) override;
    QString problem() override { return m_settings->problem(); }
    QString file() const override { return m_settings->file(); }

    /// Whether somebody has chosen what was loaded last. A fallback for what cannot be used is nobody's
    /// choice.
    bool areChosen() const { return m_areChosen; }

  private:
    engine::PrivacyModeSettings withEverything(engine::PrivacyModeSettings fallback) const;

    const std::shared_ptr<engine::PrivacyModeSettingsStoring> m_settings;
    const StoreReport m_loaded;
    const StoreReport m_saved;
    const std::function<QSet<QString>()> m_everything;
    std::optional<engine::PrivacyModeSettings> m_last;
    bool m_areChosen = true;
};

/// Asks nobody to quit by settings that nobody has chosen.
class CarefulPerformer final : public engine::RiskAppActionPerforming {
  public:
    CarefulPerformer(std::shared_ptr<engine::RiskAppActionPerforming> performer,
                     std::shared_ptr<const RememberedSettings> settings);

    engine::RiskAppActionResult requestQuit(const engine::RunningMacApp &app) override;

  private:
    const std::shared_ptr<engine::RiskAppActionPerforming> m_performer;
    const std::shared_ptr<const RememberedSettings> m_settings;
};

} // namespace kestrin::runtime
