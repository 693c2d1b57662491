#pragma once

#include "foundation/Deadline.h"

#include <QString>

#include <chrono>

namespace kestrin::foundation {

/// Keeps other processes from changing the stored files of a folder of ours, for as long as it lives. The
/// system gives the lock back when the process ends, however it ends.
///
/// The lock is the file "store.lock" in the folder. Who comes takes the first place behind everybody else by
/// locking one byte of it, and it is his turn when nobody is in front of him any more: nobody overtakes.
/// Holders are in the middle of one read and one write; after a second of waiting they are taken to have been
/// stopped, and writing beside them could lose something. A thread that has waited for that long waits for
/// nobody during the next second, so that several changes in a row cost one second and not several. Any
/// thread.
class FolderLock {
  public:
    static constexpr std::chrono::milliseconds patience{1000};

    /// Makes the folder when it is missing.
    explicit FolderLock(const QString &folder);
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;
    ~FolderLock();

    bool isHeld() const { return m_problem.isEmpty(); }
    /// Why it is not held, as a sentence.
    const QString &problem() const { return m_problem; }

  private:
    bool isSettled(const QString &folder, const QString &path, const Deadline &deadline);

    int m_descriptor = -1;
    QString m_problem;
};

} // namespace kestrin::foundation
