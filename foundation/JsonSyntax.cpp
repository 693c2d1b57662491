#include "foundation/JsonSyntax.h"

#include "foundation/UniversalTime.h"

#include <array>
#include <chrono>
#include <cstdint>

namespace kestrin::foundation::json {

namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// A table instead of comparisons: a log of 100,000 events asks 3,200,000 times.
constexpr auto notHexadecimal = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c) {
        const bool hexadecimal = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        table[c] = hexadecimal ? 0 : 1;
    }
    return table;
}();

/// The decimal number in `count` digits from `position`; the caller has checked that they are digits.
constexpr int number(std::string_view text, std::size_t position, std::size_t count) {
    int result = 0;
    for (std::size_t i = position; i < position + count; ++i)
        result = result * 10 + (text[i] - '0');
    return result;
}

} // namespace

bool isUuid(std::string_view text) {
    if (text.size() != 36)
        return false;
    unsigned wrong = 0;
    const auto check = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i)
            wrong |= notHexadecimal[static_cast<unsigned char>(text[i])];
    };
    check(0, 8);
    check(9, 13);
    check(14, 18);
    check(19, 23);
    check(24, 36);
    return wrong == 0 && text[8] == '-' && text[13] == '-' && text[18] == '-' && text[23] == '-';
}

QUuid uuidFrom(std::string_view text) {
    return QUuid::fromString(QLatin1StringView(text.data(), static_cast<qsizetype>(text.size())));
}

bool isDate(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size())
        return false;
    bool right = true;
    for (std::size_t i = 0; i < form.size(); ++i)
        right &= form[i] == '0' ? isDigit(text[i]) : text[i] == form[i];
    if (!right)
        return false;
    using namespace std::chrono;
    const year_month_day day{year(number(text, 0, 4)), month(static_cast<unsigned>(number(text, 5, 2))),
                             std::chrono::day(static_cast<unsigned>(number(text, 8, 2)))};
    return day.ok() && number(text, 11, 2) < 24 && number(text, 14, 2) < 60 && number(text, 17, 2) < 60;
}

QDateTime dateFrom(std::string_view text) {
    return {QDate(number(text, 0, 4), number(text, 5, 2), number(text, 8, 2)),
            QTime(number(text, 11, 2), number(text, 14, 2), number(text, 17, 2)), universalTime};
}

bool isNumber(std::string_view text) {
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t start = i;
        while (i < text.size() && isDigit(text[i]))
            ++i;
        return i > start;
    };
    if (i < text.size() && text[i] == '-')
        ++i;
    const bool leadingZero = i < text.size() && text[i] == '0';
    const std::size_t integerStart = i;
    if (!digits() || (leadingZero && i - integerStart > 1))
        return false;
    if (i < text.size() && text[i] == '.') {
        ++i;
        if (!digits())
            return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            ++i;
        if (!digits())
            return false;
    }
    return i == text.size();
}

} // namespace kestrin::foundation::json
