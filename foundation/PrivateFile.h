// Files that only their owner may read and write.
#pragma once

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <string_view>

namespace kestrin::foundation {

/// The bytes as the standard library likes them; they stay the array's.
inline std::string_view viewOf(const QByteArray &bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// Writes all bytes to a descriptor, however many calls that takes.
bool writeAll(int descriptor, std::string_view bytes);

/// Puts the pieces, one after the other, in the place of the file at `path`. Whatever happens and whenever
/// the process or the machine stops, the path names either the old file or the complete new one. The new file
/// is readable and writable by its owner only. A symbolic link that leads to a file is followed; anything
/// else at the path that is no file makes the call fail, and a failed call changes nothing. The caller holds
/// the lock of the folder (FileLock::lockFolder), so that two writers never meet.
bool replacePrivateFile(const QString &path, std::initializer_list<std::string_view> pieces);

/// The same in two steps, for those who have something left to find out while the disk is already at work.
/// Without a commit nothing has changed.
class PrivateFileReplacement {
  public:
    /// Writes the new file beside the old one.
    PrivateFileReplacement(const QString &path, std::initializer_list<std::string_view> pieces);
    PrivateFileReplacement(const PrivateFileReplacement &) = delete;
    PrivateFileReplacement &operator=(const PrivateFileReplacement &) = delete;
    ~PrivateFileReplacement();

    /// Puts it in the old one's place, once. False when something has failed, now or before.
    bool commit();

  private:
    QByteArray m_target;
    QByteArray m_temporary;
    int m_descriptor = -1;
};

/// Where the file really is: `path` itself, or what a symbolic link to an existing file leads to.
QString followedPath(const QString &path);

} // namespace kestrin::foundation
