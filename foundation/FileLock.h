// A lock between processes.
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace kestrin::foundation {

/// Holds an exclusive advisory lock (flock) on a file or a folder for as long as it lives. The system gives
/// the lock back when the process ends, however it ends. Any thread.
class FileLock {
  public:
    /// Locks an existing folder, so that nothing has to be created for it. Waits for at most `patience`; none
    /// when the folder is missing or somebody else keeps the lock longer.
    static std::optional<FileLock> lockFolder(const QString &folder, std::chrono::milliseconds patience);

    /// For those who are about to change the file at `path`: locks its folder, which is made when it is
    /// missing. Waits longer than any change takes: who still holds the lock then is stopped, and writing
    /// beside him could lose something.
    static std::optional<FileLock> lockFolderOf(const QString &path);

    /// Locks the file at `path`, which is made (readable by its owner only) when it is missing, and does not
    /// wait. The holder's `note` is left in it for those who come too late.
    static std::optional<FileLock> tryLockFile(const QString &path, const QByteArray &note);

    /// Whether somebody holds the lock on the file at `path` now, and the note that he left.
    static std::optional<QByteArray> holderOf(const QString &path);

    FileLock(FileLock &&other) noexcept;
    FileLock &operator=(FileLock &&other) noexcept;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock();

  private:
    explicit FileLock(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace kestrin::foundation
