// Folders that only their owner may look into.
#pragma once

#include <QByteArray>
#include <QString>

namespace kestrin::foundation {

/// Makes the folder, and those above it that are missing, for its owner only, and returns whether it is there
/// now. One that is there stays as it is. Sets errno.
bool makePrivateFolder(const QByteArray &path);

/// Closes a folder of this user, and the files in it that have names of ours, to everybody else. A link is
/// not followed: where it leads to may be shared. For a folder that is ours alone, at the start of a program:
/// older versions were not strict about it.
void closeToOthers(const QString &folder);

/// Makes sure that what was renamed in a folder stays so when the power fails. False, with errno, when that
/// fails; file systems that cannot do it do not count.
bool syncFolder(int descriptor);

/// Of a file.
QByteArray folderOf(const QByteArray &path);

} // namespace kestrin::foundation
