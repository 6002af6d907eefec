#include "genicam/core/number_parser.h"

#include "platform/text.h"

namespace GenICam {
namespace {

constexpr bool is_space(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int not_a_digit = 99;

constexpr int digit_value(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return not_a_digit;
}

constexpr std::size_t no_digit = static_cast<std::size_t>(-1);

// The position of the first digit of this base behind white space and signs, or no_digit.
std::size_t skip_to_digit(std::string_view text, int base, bool& negative) noexcept {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (digit_value(c) < base) return at;
        if (c == '-') {
            negative = !negative;
        } else if (c != '+' && !is_space(c)) {
            return no_digit;
        }
    }
    return no_digit;
}

// Reads digits from `at` up to the first other character, and gives that character's position.
std::size_t read_digits(std::string_view text, std::size_t at, int base, std::uint64_t& number) noexcept {
    number = 0;
    for (; at < text.size() && digit_value(text[at]) < base; ++at) {
        number = number * static_cast<unsigned>(base) + static_cast<unsigned>(digit_value(text[at]));
    }
    return at;
}

}  // namespace

std::size_t parse_int(std::string_view text, std::int64_t& number) noexcept {
    bool negative = false;
    std::size_t at = skip_to_digit(text, 10, negative);
    if (at == no_digit) return 0;
    std::uint64_t magnitude = 0;
    if (text.size() - at >= 3 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X')) {
        const std::size_t digits = at + 2;
        at = read_digits(text, digits, 16, magnitude);
        if (at == digits) return 0;
    } else {
        at = read_digits(text, at, 10, magnitude);
    }
    number = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return at;
}

std::size_t parse_hex(std::string_view text, std::uint64_t& number) noexcept {
    bool negative = false;
    const std::size_t at = skip_to_digit(text, 16, negative);
    if (at == no_digit) return 0;
    std::uint64_t magnitude = 0;
    const std::size_t end = read_digits(text, at, 16, magnitude);
    number = negative ? 0 - magnitude : magnitude;
    return end;
}

std::size_t parse_double(std::string_view text, double& number) {
    return platform::read_double(text, number);
}

std::size_t parse_number(std::string_view text, eval_value& number) {
    std::int64_t integer = 0;
    const std::size_t consumed = parse_int(text, integer);
    if (consumed == 0) return 0;
    const bool goes_on_as_float =
        consumed < text.size() && (text[consumed] == '.' || text[consumed] == 'E' || text[consumed] == 'e');
    if (!goes_on_as_float) {
        number = eval_value::of(integer);
        return consumed;
    }
    double real = 0;
    const std::size_t consumed_as_float = parse_double(text, real);
    if (consumed_as_float != 0) number = eval_value::of(real);
    return consumed_as_float;
}

}  // namespace GenICam
