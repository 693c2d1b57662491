#pragma once

#include "engine/OwnApplicationsStoring.h"
#include "foundation/StoredFile.h"

namespace kestrin::engine {

/// The user's own applications in one file that has the form of a catalog: a JSON object with "definitions".
///
/// It is the one file of ours that people are expected to write themselves. So one that does not read as it
/// should is neither replaced nor set aside: it stays, byte for byte, until its owner has mended it or moved
/// it away. Synchronous, any thread.
class JSONOwnApplicationsStore final : public OwnApplicationsStoring {
  public:
    /// More than as many applications as are kept need, if they are not all as long as they may be.
    static constexpr qint64 sizeLimit = 16 * 1024 * 1024;

    /// Touches no file.
    explicit JSONOwnApplicationsStore(const QString &path) : m_file{path, sizeLimit} {}

    std::optional<QList<RiskAppDefinition>> stored() override;
    [[nodiscard]] foundation::StoreResult update(const Change &change) override;
    QString problem() override;
    QString file() const override { return m_file.path; }

  private:
    QString problemOf(const foundation::FileText &text) const;

    const foundation::StoredFile m_file;
};

} // namespace kestrin::engine
