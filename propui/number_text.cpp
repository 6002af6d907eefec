#include "propui/number_text.h"

#include "platform/ascii.h"
#include "platform/text.h"

#include <fmt/format.h>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace ZELPropUI {
namespace {

constexpr std::size_t value_characters = 20 - 1;  // behind them the terminator
constexpr int limit_decimals = 2;
constexpr std::wstring_view line_breaks = L"\n\v\f\r";

// By `fmt::format` alone: most of its siblings bring the code of fmt into this source once more.
//
// Numbers are formatted narrow, so that widening is a change of type: they are plain ASCII.
std::wstring Widen(std::string_view number) { return {number.begin(), number.end()}; }

std::wstring Join(std::wstring_view number, std::wstring_view unit) {
    std::wstring text(number);
    text += L' ';
    text += unit;
    return text;
}

// Whether both texts stand for the same value, or for none. An edit keeps no more than the first line.
bool ReadsAs(std::wstring_view text, std::wstring_view number, std::wstring_view unit) {
    double read = 0;
    double meant = 0;
    const bool is_read = ParseValue(text.substr(0, text.find_first_of(line_breaks)), unit, read);
    const bool is_meant = ParseValue(number, {}, meant);
    return is_read == is_meant && (read == meant || std::isnan(meant));
}

std::wstring WithUnit(const std::wstring& number, std::wstring_view unit) {
    std::wstring text = Join(number, unit);
    return text.size() <= value_characters && ReadsAs(text, number, unit) ? text : number;
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
    return WithUnit(Widen(fmt::format("{:.{}f}", value, decimals)), unit);
}

std::wstring FormatFraction(std::int32_t denominator, std::wstring_view unit) {
    return WithUnit(Widen(fmt::format("1/{}", denominator)), unit);
}

bool HasRoomForUnit(double value, std::wstring_view unit) {
    const std::size_t blank = 1;
    return fmt::format("{:.{}f}", value, shown_decimals).size() + blank + unit.size() <= value_characters;
}

std::wstring FormatLimit(double limit, std::wstring_view unit) {
    return Join(Widen(fmt::format("{:.{}f}", limit, limit_decimals)), unit).substr(0, value_characters);
}

std::wstring FormatInteger(std::int32_t value) { return Widen(fmt::format_int(value).str()); }

bool ParseInteger(std::wstring_view text, std::int32_t& value) {
    const std::string digits = platform::narrow(platform::trimmed(text));
    std::int32_t number = 0;
    const std::from_chars_result read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc() || fmt::format_int(number).str() != digits) return false;
    value = number;
    return true;
}

bool ParseFloat(std::wstring_view text, double& value) {
    std::string number = platform::narrow(platform::trimmed(text));
    std::replace(number.begin(), number.end(), ',', '.');
    return platform::read_double(number, value) != 0;
}

bool ParseValue(std::wstring_view text, std::wstring_view unit, double& value) {
    std::wstring_view rest = platform::trimmed(text);
    if (rest.size() >= unit.size() && rest.substr(rest.size() - unit.size()) == unit)
        rest.remove_suffix(unit.size());
    const std::size_t slash = rest.find(L'/');
    if (slash == std::wstring_view::npos) return ParseFloat(rest, value);
    return ParseFraction(rest.substr(0, slash), rest.substr(slash + 1), value);
}

}  // namespace ZELPropUI
