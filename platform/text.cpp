#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace platform {
namespace {

constexpr std::wstring_view guid_form = L"{00000000-0000-0000-0000-000000000000}";
static_assert(guid_form.size() == guid_length);

int hex_digit(wchar_t c) noexcept {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// The 32 digits of the braced form as 16 bytes in reading order; false for any other text.
bool read_guid_bytes(std::wstring_view text, std::array<std::uint8_t, 16>& bytes) noexcept {
    if (text.size() != guid_form.size()) return false;
    std::size_t digits = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (guid_form[at] != L'0') {
            if (text[at] != guid_form[at]) return false;
            continue;
        }
        const int digit = hex_digit(text[at]);
        if (digit < 0) return false;
        std::uint8_t& byte = bytes[digits / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | digit);
        ++digits;
    }
    return true;
}

template <class Unsigned>
Unsigned big_endian(const std::uint8_t* bytes) noexcept {
    Unsigned number = 0;
    for (std::size_t at = 0; at < sizeof(Unsigned); ++at)
        number = static_cast<Unsigned>((number << 8) | bytes[at]);
    return number;
}

void append_hex(std::wstring& text, std::uint64_t number, int digits) {
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        text += L"0123456789ABCDEF"[(number >> shift) & 0xF];
}

#ifdef __cpp_lib_to_chars

bool is_space(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool has_hex_prefix(std::string_view text) noexcept {
    return text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

// The number behind "e" or "p"; 0 without one. Cut off far beyond what any digits make up for.
std::int64_t read_exponent(std::string_view text) {
    constexpr std::int64_t furthest = std::int64_t{1} << 60;
    if (!text.empty()) text.remove_prefix(1);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (error == std::errc::result_out_of_range) return text.front() == '-' ? -furthest : furthest;
    return std::clamp(exponent, -furthest, furthest);
}

// Whether the magnitude that did not fit is too large rather than too small.
bool is_overflow(std::string_view text, std::chars_format form) {
    const bool hexadecimal = form == std::chars_format::hex;
    const std::size_t exponent_at = std::min(text.find_first_of(hexadecimal ? "pP" : "eE"), text.size());
    const std::string_view digits = text.substr(0, exponent_at);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t leading = std::min(digits.find_first_not_of("0."), digits.size());
    const std::int64_t places = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(leading);
    return places * (hexadecimal ? 4 : 1) + read_exponent(text.substr(exponent_at)) > 0;
}

// What `strtod` takes behind the prefix: digits with a point among them, and an exponent that has a digit.
// Empty without a digit before the exponent. from_chars would also take a sign here, a second one in the
// exponent, and the words for infinity and NaN.
std::string_view hex_magnitude(std::string_view text) noexcept {
    const auto end_of = [text](const char* characters, std::size_t at) {
        return std::min(text.find_first_not_of(characters, at), text.size());
    };
    constexpr const char* hex_digits = "0123456789abcdefABCDEF";
    std::size_t end = end_of(hex_digits, 0);
    std::size_t digits = end;
    if (end < text.size() && text[end] == '.') {
        const std::size_t point = end;
        end = end_of(hex_digits, point + 1);
        digits = end - 1;
    }
    if (digits == 0) return {};
    if (end < text.size() && (text[end] == 'p' || text[end] == 'P')) {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        const std::size_t behind = end_of("0123456789", exponent);
        if (behind > exponent) end = behind;
    }
    return text.substr(0, end);
}

// from_chars on the text behind white space, sign and prefix.
std::size_t read_magnitude(std::string_view text, std::chars_format form, double& magnitude) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, form);
    const auto consumed = static_cast<std::size_t>(end - text.data());
    if (error == std::errc::result_out_of_range) {
        magnitude =
            is_overflow(text.substr(0, consumed), form) ? std::numeric_limits<double>::infinity() : 0.0;
        return consumed;
    }
    return error == std::errc() ? consumed : 0;
}

#endif

}  // namespace

bool parse_guid(std::wstring_view text, GUID& guid) {
    guid = GUID{};
    std::array<std::uint8_t, 16> bytes{};
    if (!read_guid_bytes(text, bytes)) return false;
    guid.Data1 = big_endian<std::uint32_t>(bytes.data());
    guid.Data2 = big_endian<std::uint16_t>(&bytes[4]);
    guid.Data3 = big_endian<std::uint16_t>(&bytes[6]);
    for (std::size_t at = 0; at < 8; ++at) guid.Data4[at] = bytes[8 + at];
    return true;
}

std::wstring format_guid(const GUID& guid) {
    std::wstring text = L"{";
    append_hex(text, guid.Data1, 8);
    text += L'-';
    append_hex(text, guid.Data2, 4);
    text += L'-';
    append_hex(text, guid.Data3, 4);
    text += L'-';
    for (std::size_t at = 0; at < 8; ++at) {
        if (at == 2) text += L'-';
        append_hex(text, guid.Data4[at], 2);
    }
    return text + L'}';
}

#ifdef __cpp_lib_to_chars

std::size_t read_double(std::string_view text, double& number) {
    std::string_view rest = text;
    while (!rest.empty() && is_space(rest.front())) rest.remove_prefix(1);
    const bool negative = !rest.empty() && rest.front() == '-';
    if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) rest.remove_prefix(1);
    if (rest.empty() || rest.front() == '-') return 0;

    double magnitude = 0;
    std::size_t consumed = 0;
    if (has_hex_prefix(rest)) {
        consumed = read_magnitude(hex_magnitude(rest.substr(2)), std::chars_format::hex, magnitude);
        if (consumed != 0) consumed += 2;
    }
    if (consumed == 0) consumed = read_magnitude(rest, std::chars_format::general, magnitude);
    if (consumed == 0) return 0;
    number = negative ? -magnitude : magnitude;
    return text.size() - rest.size() + consumed;
}

#else

// A library without from_chars for floating-point numbers is the one of browsers, which has the C locale
// alone.
std::size_t read_double(std::string_view text, double& number) {
    const std::string terminated(text);
    char* end = nullptr;
    const double read = std::strtod(terminated.c_str(), &end);
    if (end == terminated.c_str()) return 0;
    number = read;
    return static_cast<std::size_t>(end - terminated.c_str());
}

#endif

}  // namespace platform
