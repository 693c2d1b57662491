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
/// the process or the machine stops, the path names either the old file or the complete new one, and after a
/// success it is the new one for good. The new file is readable and writable by its owner only. A symbolic
/// link that leads to a file is followed, a broken one replaced; anything else at the path that is no file
/// makes the call fail. A failed call changes nothing, unless it is the folder that cannot be synced in the
/// end: then the new file is there, and may be lost with the power. The caller keeps other writers out
/// (FolderLock), so that two never meet.
bool replacePrivateFile(const QString &path, std::initializer_list<std::string_view> pieces);

/// The same in two steps, for those who have something left to find out while the disk is already at work.
/// Without a commit nothing has changed.
class PrivateFileReplacement {
  public:
    /// Writes the new file beside the old one, under its name with something behind it that no other file has
    /// there.
    PrivateFileReplacement(const QString &path, std::initializer_list<std::string_view> pieces,
                           const QByteArray &suffix = ".new");
    PrivateFileReplacement(const PrivateFileReplacement &) = delete;
    PrivateFileReplacement &operator=(const PrivateFileReplacement &) = delete;
    ~PrivateFileReplacement();

    /// Puts it in the old one's place, once. False when something has failed, now or before.
    bool commit();
    /// The same, and keeps the old one beside it under a name of its own, which no file has so far. Where the
    /// system gives a file no second name there is a moment in which the path names none.
    bool commitBesideOld();

    /// Why it has failed, as a sentence.
    QString problem() const;
    /// Where the old one is now, if it was kept.
    QString keptOld() const;

  private:
    void fail();
    bool sync();
    bool moveIn();
    bool keepOldAside();
    void takeBackAside();

    const QString m_path;
    QByteArray m_target;
    QByteArray m_temporary;
    QByteArray m_aside;
    /// Of the folder that both are in.
    int m_folder = -1;
    int m_descriptor = -1;
    int m_error = 0;
    /// What has the new file's name, as a sentence, if something that is no file does.
    QString m_obstacle;
};

} // namespace kestrin::foundation
