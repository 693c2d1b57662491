// The JSON form of a record, declared once as a list of its fields, and the two operations over it.
//
// A record has a static `jsonFields()` that returns a tuple of jsonField("key", &Record::member). Optional
// members are left out when absent and may be missing or null when read; every other key is required. Unknown
// keys are ignored. Enumerations are their raw value, dates ISO 8601 text in UTC with whole seconds, UUIDs
// their 36 characters, sets arrays without an order. Reading is strict: a missing key, a wrong type or an
// unknown raw value fails the whole text.
#pragma once

#include <QByteArray>

#include <optional>
#include <string_view>
#include <tuple>

namespace kestrin::foundation {

template <typename Record, typename Value>
struct JsonField {
    std::string_view key;
    Value Record::*member;
};

template <typename Record, typename Value>
constexpr JsonField<Record, Value> jsonField(std::string_view key, Value Record::*member) {
    return {key, member};
}

template <typename Type>
concept JsonRecord = requires {
    Type::jsonFields();
};

enum class JsonLayout {
    compact, ///< one line, no spaces
    pretty,  ///< indented; keys in alphabetical order, as in every text that is written
};

/// The value as UTF-8 text. Defined where a record's own file instantiates it (see JsonEncoding.h).
template <typename Value>
QByteArray encodeJson(const Value &value, JsonLayout layout = JsonLayout::compact);

/// The value that `text` holds, or none when the text is not exactly one such value. Never throws, whatever
/// the bytes. Defined where a record's own file instantiates it (see JsonDecoding.h).
template <typename Value>
std::optional<Value> decodeJson(const QByteArray &text);

} // namespace kestrin::foundation
