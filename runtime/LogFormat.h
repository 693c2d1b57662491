#pragma once

#include "foundation/RawValues.h"

namespace kestrin::runtime {

/// How events are written.
enum class LogFormat {
    text,  ///< for people
    json,  ///< one array; where events are followed as they come, one object a line
    jsonl, ///< one object a line
    csv,   ///< a heading, and one line each
};

constexpr auto rawValuesOf(LogFormat) {
    using enum LogFormat;
    return std::array{foundation::RawValue{text, "text"}, foundation::RawValue{json, "json"},
                      foundation::RawValue{jsonl, "jsonl"}, foundation::RawValue{csv, "csv"}};
}

} // namespace kestrin::runtime
