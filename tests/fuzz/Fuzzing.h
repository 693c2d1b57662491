// What the fuzz targets share.
#pragma once

#include <QByteArray>
#include <QJsonDocument>

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

namespace kestrin::foundation {}
namespace kestrin::engine {}
namespace kestrin::desktop {}

// A target is nobody's header.
using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::desktop;
using namespace kestrin::fuzzing;
