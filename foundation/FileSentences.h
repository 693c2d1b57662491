// What is wrong with a file of ours, for people: a sentence that names it, says why, and what can be done.
#pragma once

#include "foundation/FileReading.h"

namespace kestrin::foundation {

/// A call of the system failed with this number, so the file or folder "cannot be `done`".
QString describeFailure(const QString &path, const QString &done, int error);

/// Why a file cannot be read; empty where nothing is wrong, or where there is no file.
QString describeUnreadable(const QString &path, FileState state, int error, qint64 limit);

/// What has the name of a file of ours and is none; a link is not followed. Empty where nothing is in the
/// way.
QString describeObstacle(const QString &path);

} // namespace kestrin::foundation
