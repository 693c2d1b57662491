#pragma once

#include <QString>

namespace kestrin::foundation {

/// Opens a file that is only there to be locked, and makes it when it is missing: only its owner can open it,
/// so that nobody else can hold the lock. Returns its descriptor; -1, and the reason as a sentence, when
/// something else has its name or it cannot be opened. Never waits.
int openLockFile(const QString &path, QString &problem);

/// Why such a file cannot be opened, as a sentence.
QString describeLockFile(const QString &path, int error);

/// Whether the path still leads to the open file: it may have been removed or replaced since.
bool isStillAt(const QString &path, int descriptor);

} // namespace kestrin::foundation
