// How JSON becomes values, on top of simdjson's On-Demand reader. Included only by the files that instantiate
// decodeJson or a scan for their records: simdjson's header is large.
//
// Every read can also be made without a target: it then checks the same rules and builds nothing, which is
// what reading the newest eight of 100,000 events needs.
#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/JsonSyntax.h"
#include "foundation/RawValues.h"

#include <QSet>

#include <simdjson.h>

#include <cstring>
#include <limits>
#include <type_traits>

namespace kestrin::foundation::json {

namespace od = simdjson::ondemand;

/// What a read may rely on.
struct ReadContext {
    /// False when the text holds no backslash at all, so that every string stands for itself.
    bool hasEscapes = true;
};

/// The token without the white space behind it.
inline std::string_view trimmedToken(od::value &value) {
    std::string_view token = value.raw_json_token();
    while (!token.empty() &&
           (token.back() == ' ' || token.back() == '\n' || token.back() == '\t' || token.back() == '\r'))
        token.remove_suffix(1);
    return token;
}

/// The characters between the quotes of a string without escapes.
inline bool plainString(od::value &value, const ReadContext &context, std::string_view &text) {
    const std::string_view token = trimmedToken(value);
    // Strings are known to be closed, and without escapes there is nothing but the two quotes.
    if (token.size() < 2 || token.front() != '"')
        return false;
    text = token.substr(1, token.size() - 2);
    if (context.hasEscapes && std::memchr(text.data(), '\\', text.size()) != nullptr)
        return false;
    // On-Demand skips what nobody took, and takes a skipped string that a colon follows for a key.
    return value.get_raw_json_string().error() == simdjson::SUCCESS;
}

/// The text of any string. It is valid until the next string of the same parser is read.
inline bool anyString(od::value &value, const ReadContext &context, std::string_view &text) {
    if (plainString(value, context, text))
        return true;
    return value.get_string().get(text) == simdjson::SUCCESS;
}

inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// How deep ignored values may nest. Reading them is recursive, and a file must not be able to use up the
/// stack.
inline constexpr int maximumDepth = 512;

/// Whether an ignored value is well-formed all the way down. On-Demand alone would skip it unread.
bool isWellFormed(od::value value, const ReadContext &context, int depthLeft = maximumDepth);

/// The key of a field without its escapes. The simdjson of Ubuntu 24.04 wants to be told that halves of
/// characters are errors, which that of Debian 12 takes for granted.
template <class Field>
auto unescapedKey(Field &field) {
    if constexpr (requires { field.unescaped_key(); })
        return field.unescaped_key();
    else
        return field.unescaped_key(false);
}

inline bool isWellFormedObject(od::value &value, const ReadContext &context, int depthLeft) {
    od::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS)
        return false;
    for (auto result : object) {
        od::field field;
        std::string_view key;
        if (std::move(result).get(field) != simdjson::SUCCESS ||
            unescapedKey(field).get(key) != simdjson::SUCCESS ||
            !isWellFormed(field.value(), context, depthLeft))
            return false;
    }
    return true;
}

inline bool isWellFormedArray(od::value &value, const ReadContext &context, int depthLeft) {
    od::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        return false;
    for (auto result : array) {
        od::value element;
        if (std::move(result).get(element) != simdjson::SUCCESS || !isWellFormed(element, context, depthLeft))
            return false;
    }
    return true;
}

inline bool isWellFormed(od::value value, const ReadContext &context, int depthLeft) {
    const std::string_view token = trimmedToken(value);
    switch (token.empty() ? '\0' : token.front()) {
    case '{':
        return depthLeft > 0 && isWellFormedObject(value, context, depthLeft - 1);
    case '[':
        return depthLeft > 0 && isWellFormedArray(value, context, depthLeft - 1);
    case '"': {
        std::string_view text;
        return anyString(value, context, text);
    }
    default:
        return token == "true" || token == "false" || token == "null" || isNumber(token);
    }
}

inline bool read(od::value &value, const ReadContext &, bool *out) {
    const std::string_view token = trimmedToken(value);
    if (token != "true" && token != "false")
        return false;
    if (out)
        *out = token == "true";
    return true;
}

template <typename Integer>
requires std::is_same_v<Integer, qint32> || std::is_same_v<Integer, qint64>
bool read(od::value &value, const ReadContext &, Integer *out) {
    std::int64_t number = 0;
    if (value.get_int64().get(number) != simdjson::SUCCESS || number < std::numeric_limits<Integer>::min() ||
        number > std::numeric_limits<Integer>::max())
        return false;
    if (out)
        *out = static_cast<Integer>(number);
    return true;
}

inline bool read(od::value &value, const ReadContext &context, QString *out) {
    std::string_view text;
    if (!anyString(value, context, text))
        return false;
    if (out)
        *out = toQString(text);
    return true;
}

inline bool read(od::value &value, const ReadContext &context, QUuid *out) {
    std::string_view text;
    if (!anyString(value, context, text) || !isUuid(text))
        return false;
    if (out)
        *out = uuidFrom(text);
    return true;
}

inline bool read(od::value &value, const ReadContext &context, QDateTime *out) {
    std::string_view text;
    if (!anyString(value, context, text) || !isDate(text))
        return false;
    if (out)
        *out = dateFrom(text);
    return true;
}

template <RawRepresentable Enumeration>
bool read(od::value &value, const ReadContext &context, Enumeration *out) {
    std::string_view text;
    if (!anyString(value, context, text))
        return false;
    for (const auto &entry : rawValues<Enumeration>) {
        if (entry.text == text) {
            if (out)
                *out = entry.value;
            return true;
        }
    }
    return false;
}

template <JsonRecord Record>
bool read(od::value &value, const ReadContext &context, Record *out);

template <typename Element, typename Add>
bool readElements(od::value &value, const ReadContext &context, bool keep, Add add) {
    od::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        return false;
    for (auto result : array) {
        od::value item;
        Element element{};
        if (std::move(result).get(item) != simdjson::SUCCESS ||
            !read(item, context, keep ? &element : nullptr))
            return false;
        if (keep)
            add(std::move(element));
    }
    return true;
}

template <typename Element>
bool read(od::value &value, const ReadContext &context, QList<Element> *out) {
    // Of a key that comes twice the last one counts.
    if (out)
        out->clear();
    return readElements<Element>(value, context, out != nullptr,
                                 [&](Element &&element) { out->append(std::move(element)); });
}

inline bool read(od::value &value, const ReadContext &context, QSet<QString> *out) {
    if (out)
        out->clear();
    return readElements<QString>(value, context, out != nullptr,
                                 [&](QString &&element) { out->insert(std::move(element)); });
}

template <typename Value>
bool read(od::value &value, const ReadContext &context, std::optional<Value> *out) {
    if (value.raw_json_token().front() == 'n' && trimmedToken(value) == "null") {
        if (out)
            out->reset();
        return true;
    }
    return read(value, context, out ? &out->emplace() : nullptr);
}

template <typename>
inline constexpr bool isOptional = false;
template <typename Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

/// Whether the key is spelled without escapes and equals `name`. The raw key ends at its closing quote.
inline bool equalsPlainKey(const char *raw, std::string_view name) {
    return std::memcmp(raw, name.data(), name.size()) == 0 && raw[name.size()] == '"';
}

template <JsonRecord Record>
bool readField(od::field &field, const ReadContext &context, Record *out, unsigned &seen) {
    std::string_view spelledOut;
    const char *const raw = field.key().raw();
    if (context.hasEscapes && unescapedKey(field).get(spelledOut) != simdjson::SUCCESS)
        return false;
    const auto isKey = [&](std::string_view name) {
        return context.hasEscapes ? spelledOut == name : equalsPlainKey(raw, name);
    };

    bool known = false;
    bool right = false;
    unsigned bit = 1;
    const auto tryField = [&](const auto &candidate) {
        if (!known && isKey(candidate.key)) {
            known = true;
            seen |= bit;
            od::value value = field.value();
            using Value = std::remove_reference_t<decltype(std::declval<Record &>().*candidate.member)>;
            Value *const target = out ? &(out->*candidate.member) : nullptr;
            right = read(value, context, target);
        }
        bit <<= 1;
    };
    std::apply([&](const auto &...candidates) { (tryField(candidates), ...); }, Record::jsonFields());
    return known ? right : isWellFormed(field.value(), context);
}

/// One bit for each field that must be there.
template <JsonRecord Record>
constexpr unsigned requiredFields() {
    unsigned required = 0;
    unsigned bit = 1;
    const auto add = [&]<typename Value>(const JsonField<Record, Value> &) {
        required |= isOptional<Value> ? 0 : bit;
        bit <<= 1;
    };
    std::apply([&](const auto &...fields) { (add(fields), ...); }, Record::jsonFields());
    return required;
}

template <JsonRecord Record>
bool read(od::value &value, const ReadContext &context, Record *out) {
    od::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS)
        return false;
    unsigned seen = 0;
    for (auto result : object) {
        od::field field;
        if (std::move(result).get(field) != simdjson::SUCCESS || !readField(field, context, out, seen))
            return false;
    }
    constexpr unsigned required = requiredFields<Record>();
    return (seen & required) == required;
}

/// Reads a whole document, which must hold one object or array and nothing behind it. `text` must be followed
/// by simdjson::SIMDJSON_PADDING readable bytes.
template <typename Value>
bool readDocument(od::parser &parser, std::string_view text, Value *out) {
    const ReadContext context{std::memchr(text.data(), '\\', text.size()) != nullptr};
    od::document document;
    od::value root;
    const simdjson::padded_string_view padded(text.data(), text.size(),
                                              text.size() + simdjson::SIMDJSON_PADDING);
    if (parser.iterate(padded).get(document) != simdjson::SUCCESS ||
        document.get_value().get(root) != simdjson::SUCCESS || !read(root, context, out))
        return false;
    // Only at the very end is there no next token to point at.
    const char *rest = nullptr;
    return document.current_location().get(rest) == simdjson::OUT_OF_BOUNDS;
}

} // namespace kestrin::foundation::json

namespace kestrin::foundation {

template <typename Value>
std::optional<Value> decodeJson(const QByteArray &text) {
    const simdjson::padded_string padded(text.constData(), static_cast<std::size_t>(text.size()));
    simdjson::ondemand::parser parser;
    Value value{};
    if (!json::readDocument(parser, std::string_view(padded), &value))
        return std::nullopt;
    return value;
}

} // namespace kestrin::foundation
