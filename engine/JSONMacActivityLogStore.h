#pragma once

#include "engine/MacActivityLogStoring.h"
#include "foundation/StoredFile.h"

#include <QUrl>

namespace kestrin::engine {

/// The activity log in one file: a compact JSON array of events, newest first, readable by its owner only.
///
/// Every call reads the file, so that stores over one file, in one process or in several, see each other's
/// events; appends of several processes wait for each other. Reading is all or nothing: a file with one
/// malformed event reads as empty, and the next append sets it aside. A failed write leaves the file as it
/// was. Synchronous, any thread.
class JSONMacActivityLogStore final : public MacActivityLogStoring {
  public:
    /// Touches no file. `url` names a local file.
    explicit JSONMacActivityLogStore(const QUrl &url);

    [[nodiscard]] foundation::StoreResult tryAppend(const MacProtectionEvent &event) override;
    QList<MacProtectionEvent> recent(qsizetype limit) override;
    bool readAll(const LogReading &reading) override;
    QString problem() override;
    QString file() const override { return m_file.path; }

  private:
    const foundation::StoredFile m_file;
};

} // namespace kestrin::engine
