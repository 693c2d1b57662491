// What the fuzz targets share.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace kestrin::fuzzing {

inline void require(bool holds, const char *rule) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken rule: %s\n", rule);
    std::abort();
}

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

inline QString anyText(FuzzedDataProvider &input, std::size_t most) {
    return QString::fromUtf8(QByteArray::fromStdString(input.ConsumeRandomLengthString(most)));
}

/// In a folder in memory, where fsync costs nothing, if the system has one.
inline QString scratchFile(const QString &name) {
    const QString memory = QStringLiteral("/dev/shm");
    static const QTemporaryDir folder((QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
                                      QStringLiteral("/kestrin-fuzz-XXXXXX"));
    return folder.filePath(name);
}

inline void writeFile(const QString &path, const QByteArray &text) {
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "the file can be written");
}

/// What Qt, which did not read it for us, makes of a text that we accepted. None for the one thing that it
/// does not accept: a number that no double can hold.
inline std::optional<QJsonDocument> secondOpinion(const QByteArray &text) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(text, &error);
    if (error.error == QJsonParseError::IllegalNumber)
        return std::nullopt;
    require(error.error == QJsonParseError::NoError, "what we read is JSON");
    return document;
}

} // namespace kestrin::fuzzing
