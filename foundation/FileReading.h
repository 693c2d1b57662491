// Reading small files, without ever waiting: a pipe or a device is no file.
#pragma once

#include "foundation/FileStamp.h"

#include <QByteArray>
#include <QString>

#include <limits>
#include <optional>

namespace kestrin::foundation {

/// How it stands with a file that is to be read.
enum class FileState {
    readable,
    missing,  ///< also a link that leads nowhere
    denied,   ///< this user may not read it
    notAFile, ///< a folder, a pipe, a socket or a device
    tooLarge, ///< larger than the reader has said
    failed,   ///< it cannot be read at this moment
};

/// A regular file that is open for reading, if it is readable.
class ReadableFile {
  public:
    explicit ReadableFile(const QByteArray &path, qint64 limit = std::numeric_limits<qint64>::max());
    ReadableFile(const ReadableFile &) = delete;
    ReadableFile &operator=(const ReadableFile &) = delete;
    ~ReadableFile();

    FileState state() const { return m_state; }
    /// The system's number of what is in the way.
    int error() const { return m_error; }
    const FileStamp &stamp() const { return m_stamp; }
    /// Whether only its owner may read and write it.
    bool isPrivate() const { return m_isPrivate; }

    /// Reads until the room is full or the file ends, and returns how much that was; -1 when that fails.
    qsizetype read(char *room, qsizetype size);

  private:
    void fail(int error);

    int m_descriptor = -1;
    FileState m_state = FileState::readable;
    int m_error = 0;
    FileStamp m_stamp;
    bool m_isPrivate = false;
};

/// The bytes of a file, if it is readable.
struct FileText {
    FileState state = FileState::missing;
    QByteArray bytes;
    int error = 0;
    bool isPrivate = false;
};

/// Reads all of a file of at most `limit` bytes. At least `spare` more bytes behind the end may be read,
/// whatever they hold; vectorised parsers look ahead.
FileText readFile(const QString &path, qint64 limit, qsizetype spare = 0);

/// The bytes of a regular file; none when it is larger than `limit` or cannot be read to its end.
std::optional<QByteArray> readWholeFile(const QString &path, qint64 limit);

/// At most the first `limit` bytes of a regular file, into a buffer that may be used again and again. Returns
/// the file's stamp; none when it cannot be read, and then the buffer is empty.
std::optional<FileStamp> readFileHead(const QByteArray &path, qsizetype limit, QByteArray &head);
/// As much of it as the kernel usually tells in a file about a process, and empty when it cannot be read.
QByteArray fileHead(const QByteArray &path, qsizetype limit = 4096);

} // namespace kestrin::foundation
