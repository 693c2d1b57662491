// Enumerations that carry a string: their raw value, which is also their JSON form.
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace kestrin {

/// One case of an enumeration and the text that stands for it in files and messages.
template <typename Enumeration>
struct RawValue {
    Enumeration value;
    std::string_view text;
};

// Clang 14 does not find this by itself.
template <typename Enumeration>
RawValue(Enumeration, std::string_view) -> RawValue<Enumeration>;

/// Specialised beside an enumeration: `static constexpr std::array entries` of RawValue, in case order.
template <typename Enumeration>
struct RawValues;

template <typename Enumeration>
concept RawRepresentable = requires {
    RawValues<Enumeration>::entries.size();
};

template <RawRepresentable Enumeration>
constexpr std::string_view rawText(Enumeration value) {
    for (const auto &entry : RawValues<Enumeration>::entries) {
        if (entry.value == value)
            return entry.text;
    }
    return {};
}

template <RawRepresentable Enumeration>
QString rawValue(Enumeration value) {
    const std::string_view text = rawText(value);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// The case whose raw value equals `text` exactly (letter case counts), or none.
template <RawRepresentable Enumeration>
std::optional<Enumeration> fromRawValue(QStringView text) {
    for (const auto &entry : RawValues<Enumeration>::entries) {
        if (text == QLatin1StringView(entry.text.data(), static_cast<qsizetype>(entry.text.size())))
            return entry.value;
    }
    return std::nullopt;
}

/// Every case, in declaration order.
template <RawRepresentable Enumeration>
constexpr auto allCases() {
    std::array<Enumeration, RawValues<Enumeration>::entries.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = RawValues<Enumeration>::entries[i].value;
    return cases;
}

} // namespace kestrin
