#include "propui/number_text.h"

#include "platform/text.h"

#include <fmt/format.h>
#include <algorithm>
#include <charconv>
#include <cstddef>

namespace ZELPropUI {
namespace {

constexpr std::size_t value_characters = 20 - 1;  // behind them the terminator
constexpr std::size_t integer_characters = 10 - 1;
constexpr std::wstring_view white_space = L" \t\n\v\f\r";

// Numbers are formatted narrow, so that widening is a change of type: they are plain ASCII.
std::wstring WithUnit(std::string_view number, std::wstring_view unit) {
    std::wstring text(number.begin(), number.end());
    text += L' ';
    text += unit;
    if (text.size() > value_characters) text.resize(value_characters);
    return text;
}

bool ParseFraction(std::wstring_view left, std::wstring_view right, double& value) {
    std::int32_t dividend = 0;
    std::int32_t divisor = 0;
    if (!ParseInteger(left, dividend) || !ParseInteger(right, divisor) || divisor == 0) return false;
    value = static_cast<double>(dividend) / static_cast<double>(divisor);
    return true;
}

}  // namespace

std::wstring FormatValue(double value, int decimals, std::wstring_view unit) {
    return WithUnit(fmt::format("{:.{}f}", value, decimals), unit);
}

std::wstring FormatFraction(std::int32_t denominator, std::wstring_view unit) {
    return WithUnit(fmt::format("1/{}", denominator), unit);
}

bool FormatInteger(std::int32_t value, std::wstring& text) {
    const fmt::format_int digits(value);
    if (digits.size() > integer_characters) return false;
    text.assign(digits.data(), digits.data() + digits.size());
    return true;
}

std::wstring_view TrimSpace(std::wstring_view text) noexcept {
    const std::size_t first = text.find_first_not_of(white_space);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

bool ParseInteger(std::wstring_view text, std::int32_t& value) {
    const std::string digits = platform::narrow(TrimSpace(text));
    std::int32_t number = 0;
    const std::from_chars_result read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc() || fmt::format_int(number).str() != digits) return false;
    value = number;
    return true;
}

bool ParseFloat(std::wstring_view text, double& value) {
    std::string number = platform::narrow(TrimSpace(text));
    std::replace(number.begin(), number.end(), ',', '.');
    return platform::read_double(number, value) != 0;
}

bool ParseValue(std::wstring_view text, std::wstring_view unit, double& value) {
    std::wstring_view rest = TrimSpace(text);
    if (rest.size() >= unit.size() && rest.substr(rest.size() - unit.size()) == unit)
        rest.remove_suffix(unit.size());
    const std::size_t slash = rest.find(L'/');
    if (slash == std::wstring_view::npos) return ParseFloat(rest, value);
    return ParseFraction(rest.substr(0, slash), rest.substr(slash + 1), value);
}

}  // namespace ZELPropUI
