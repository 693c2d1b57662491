#pragma once

#include "engine/PrivacyModeSettingsStoring.h"
#include "foundation/StoredFile.h"

#include <QUrl>

namespace kestrin::engine {

/// The settings in one file: a JSON object, pretty-printed with sorted keys, readable by its owner only.
///
/// Every load reads the file. A file that is missing or malformed reads as the fallback and is left as it is
/// until the next save, which sets it aside; a failed save leaves it too, and so does one that would change
/// nothing. Synchronous, any thread.
class JSONPrivacyModeSettingsStore final : public PrivacyModeSettingsStoring {
  public:
    /// Settings that are larger are none of ours.
    static constexpr qint64 sizeLimit = 1024 * 1024;

    /// Touches no file. `url` names a local file.
    JSONPrivacyModeSettingsStore(const QUrl &url, const PrivacyModeSettings &fallback)
        : m_file{url.toLocalFile(), sizeLimit}
        , m_fallback(fallback) {}

    PrivacyModeSettings load() override { return stored().value_or(m_fallback); }
    std::optional<PrivacyModeSettings> stored() override;
    [[nodiscard]] foundation::StoreResult update(const Change &change) override;
    QString problem() override;
    QString file() const override { return m_file.path; }

  private:
    const foundation::StoredFile m_file;
    const PrivacyModeSettings m_fallback;
};

} // namespace kestrin::engine
