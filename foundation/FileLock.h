// A claim that one process has and others can see.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrin::foundation {

/// Holds an exclusive advisory lock (flock) on a file for as long as it lives. The system gives the lock back
/// when the process ends, however it ends. Any thread.
class FileLock {
  public:
    /// Locks the file at `path`, which is made (readable by its owner only) when it is missing, and does not
    /// wait. The holder's `note` is left in it for those who come too late. None when somebody else has it,
    /// or, with the reason as a sentence, when it cannot be locked at all.
    static std::optional<FileLock> tryLockFile(const QString &path, const QByteArray &note, QString &problem);

    /// Whether somebody holds the lock on the file at `path` now, and the note that he left. Where that
    /// cannot be told, none and the reason as a sentence.
    static std::optional<QByteArray> holderOf(const QString &path, QString &problem);

    FileLock(FileLock &&other) noexcept;
    FileLock &operator=(FileLock &&other) noexcept;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock();

    /// Whether others who come to the path find this lock: the file may have been removed since.
    bool isAt(const QString &path) const;

  private:
    explicit FileLock(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace kestrin::foundation
