// Enumerations that carry a string: their raw value, which is also their JSON form.
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace kestrin::foundation {

/// One case of an enumeration and the text that stands for it in files and messages.
template <typename Enumeration>
struct RawValue {
    Enumeration value;
    std::string_view text;
};

// Clang 14 does not find this by itself.
template <typename Enumeration>
RawValue(Enumeration, std::string_view) -> RawValue<Enumeration>;

/// An enumeration beside which stands `constexpr auto rawValuesOf(Enumeration)`, which returns a std::array
/// of RawValue in case order.
template <typename Enumeration>
concept RawRepresentable = requires(Enumeration value) {
    rawValuesOf(value).size();
};

template <RawRepresentable Enumeration>
inline constexpr auto rawValues = rawValuesOf(Enumeration{});

template <RawRepresentable Enumeration>
constexpr std::string_view rawText(Enumeration value) {
    for (const auto &entry : rawValues<Enumeration>) {
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
    for (const auto &entry : rawValues<Enumeration>) {
        if (text == QLatin1StringView(entry.text.data(), static_cast<qsizetype>(entry.text.size())))
            return entry.value;
    }
    return std::nullopt;
}

/// Every case, in declaration order.
template <RawRepresentable Enumeration>
constexpr auto allCases() {
    std::array<Enumeration, rawValues<Enumeration>.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = rawValues<Enumeration>[i].value;
    return cases;
}

} // namespace kestrin::foundation
