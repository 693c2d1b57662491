// Reading small files, without ever waiting: a pipe or a device is no file.
#pragma once

#include "foundation/FileStamp.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrin::foundation {

/// Opens a regular file for reading and returns its descriptor, -1 when there is none; `size` is its size in
/// bytes.
int openForReading(const QString &path, qint64 &size);

/// The bytes of a regular file; none when it cannot be read to its end. At least `spare` more bytes behind
/// the end may be read, whatever they hold; vectorised parsers look ahead.
std::optional<QByteArray> readWholeFile(const QString &path, qsizetype spare = 0);

/// At most the first `limit` bytes of a regular file, into a buffer that may be used again and again. Returns
/// the file's stamp; none when it cannot be read, and then the buffer is empty.
std::optional<FileStamp> readFileHead(const QByteArray &path, qsizetype limit, QByteArray &head);

} // namespace kestrin::foundation
