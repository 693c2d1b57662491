// A text of ours that several processes read and change.
#pragma once

#include "foundation/FileReading.h"
#include "foundation/FolderLock.h"
#include "foundation/PrivateFile.h"
#include "foundation/StoreResult.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <string_view>

namespace kestrin::foundation {

/// The rules for every file that Kestrin stores something in:
///
/// - It is read, changed and written under one lock (StoredFileChange), and replaced whole.
/// - What cannot be read at this moment stays as it is, and cannot be written either. The same goes for what
///   is no file, or larger than `limit`.
/// - What is there and may not be read, or does not read as it should, is set aside under another name before
///   a new file takes its own ("activity-log.json.damaged-2026-11-25T19-04-11"). Nothing is erased.
///
/// An empty file is one in which nothing is stored.
struct StoredFile {
    QString path;
    qint64 limit = 0;

    FileText read(qsizetype spare = 0) const { return readFile(path, limit, spare); }
    /// Why a text that was read cannot be used, as a sentence; empty when it can be.
    QString problemOf(const FileText &text) const;
    /// Why what is stored cannot be used now, as a sentence; empty when it can be, or nothing is stored.
    QString problem(const std::function<bool(const QByteArray &)> &isUsable, qsizetype spare = 0) const;
};

/// One change of a stored file, from the reading on until it is replaced. The lock is held meanwhile.
class StoredFileChange {
  public:
    /// Locks and reads. Where that fails nothing can be written, but what could be read is there to be seen.
    explicit StoredFileChange(const StoredFile &file, qsizetype spare = 0);

    /// What was read.
    const FileText &text() const { return m_text; }
    /// What the file holds; empty where nothing is stored or nothing can be read.
    const QByteArray &former() const { return m_text.bytes; }
    /// Whether nothing is in the way of writing so far.
    bool isPossible() const { return m_result.isKept(); }

    /// Begins to write the new text beside the old one.
    void write(std::initializer_list<std::string_view> pieces);
    /// Puts it in the old one's place. With `keepOld`, because the old one does not read as it should, that
    /// one is set aside.
    [[nodiscard]] StoreResult commit(bool keepOld = false);
    [[nodiscard]] StoreResult replaceBy(const QByteArray &text, bool keepOld);

  private:
    const StoredFile m_file;
    const FolderLock m_lock;
    const FileText m_text;
    StoreResult m_result;
    std::unique_ptr<PrivateFileReplacement> m_replacement;
};

} // namespace kestrin::foundation
