#pragma once

#include "engine/PrivacyModeSettingsStoring.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace kestrin::engine {

/// The settings in one file: a JSON object, pretty-printed with sorted keys, readable by its owner only.
///
/// Every load reads the file. A file that is missing or malformed reads as the fallback and is left as it is
/// until the next save; a failed save leaves it too, and so does one that would change nothing. Synchronous,
/// any thread.
class JSONPrivacyModeSettingsStore final : public PrivacyModeSettingsStoring {
  public:
    /// Touches no file. `url` names a local file.
    JSONPrivacyModeSettingsStore(const QUrl &url, const PrivacyModeSettings &fallback)
        : m_path(url.toLocalFile())
        , m_fallback(fallback) {}

    PrivacyModeSettings load() override;
    [[nodiscard]] bool update(const std::function<void(PrivacyModeSettings &)> &change) override;
    QString file() const override { return m_path; }

  private:
    PrivacyModeSettings decoded(const std::optional<QByteArray> &text) const;

    QString m_path;
    PrivacyModeSettings m_fallback;
};

} // namespace kestrin::engine
