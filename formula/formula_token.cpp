#include "formula/formula_token.h"

#include "genicam/core/number_parser.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace GenICam {
namespace {

constexpr std::string_view status_texts[] = {
    "",
    "End of file",
    "Invalid token found.",
    "Failed to map a variable name to a identifier_id",
    "Failed to map a function identifier to a actual function.",
    "",
    "Failed to find closing ')' or ','",
    "expected colon for tri-nary operator.",
    "Failed to find a ')'.",
    "Failed to find token after unary operator.",
    "Failed to find terminal symbol for factor.",
    "Formula is nested too deeply or too long.",
};

// The character classes of the C locale, whatever the locale of the process.
enum class character : std::uint8_t { other, mark, space, digit, name };

constexpr character classify(int c) noexcept {
    if (c == ' ' || (c >= '\t' && c <= '\r')) return character::space;
    if (c >= '0' && c <= '9') return character::digit;
    if (c == '(' || c == ')' || c == ':' || c == ',') return character::mark;
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return is_letter || c == '_' || c == '.' ? character::name : character::other;
}

constexpr std::array<character, 256> make_classes() noexcept {
    std::array<character, 256> classes{};
    for (int c = 0; c < 256; ++c) classes[static_cast<std::size_t>(c)] = classify(c);
    return classes;
}

constexpr std::array<character, 256> classes = make_classes();

// What a character can be of, as bits that a sum is made of without a branch.
constexpr unsigned counts_as_word = 1;
constexpr unsigned counts_as_operator = 2;
constexpr unsigned counts_as_mark = 4;

constexpr std::array<std::uint8_t, 256> make_counts() noexcept {
    std::array<std::uint8_t, 256> counted{};
    for (std::size_t c = 0; c < counted.size(); ++c) {
        unsigned counts = 0;
        if (classes[c] >= character::digit) counts |= counts_as_word;
        if (classes[c] == character::other) counts |= counts_as_operator;
        if (classes[c] == character::mark || c == '?') counts |= counts_as_mark;
        counted[c] = static_cast<std::uint8_t>(counts);
    }
    return counted;
}

constexpr std::array<std::uint8_t, 256> counts = make_counts();

character class_of(char c) noexcept { return classes[static_cast<unsigned char>(c)]; }

std::string_view skip_space(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size() && class_of(text[at]) == character::space) ++at;
    return text.substr(at);
}

void take_end(parse_status status, std::string_view rest, formula_token& token) noexcept {
    token.kind = token_kind::end;
    token.status = status;
    token.text = rest.substr(0, 0);
    token.rest = rest;
}

// The first characters of the text are the token.
void take(token_kind kind, std::string_view text, std::size_t length, formula_token& token) noexcept {
    token.kind = kind;
    token.status = parse_status::none;
    token.text = text.substr(0, length);
    token.rest = text.substr(length);
}

void take_number(std::string_view text, formula_token& token) {
    const std::size_t consumed = parse_number(text, token.number);
    // A hexadecimal prefix without digits.
    if (consumed == 0) return take_end(parse_status::invalid_token, text, token);
    take(token_kind::number, text, consumed, token);
}

void take_operation(std::string_view text, formula_token& token) noexcept {
    const formula_operation* operation = match_operation(text);
    if (operation == nullptr) return take_end(parse_status::invalid_token, text, token);
    take(operation->kind, text, operation->text.size(), token);
}

void take_name(std::string_view text, formula_token& token) noexcept {
    std::size_t length = 0;
    while (length < text.size() && class_of(text[length]) >= character::digit) ++length;
    take(token_kind::identifier, text, length, token);
    token.rest = skip_space(token.rest);
    if (!token.rest.empty() && token.rest.front() == '(') {
        token.kind = token_kind::function;
        token.rest.remove_prefix(1);
    }
}

}  // namespace

std::string_view status_text(parse_status status) noexcept {
    return status_texts[static_cast<std::size_t>(status)];
}

// Each word and each operator can be one node. Of operators with two characters both count.
formula_size measure_formula(std::string_view text) noexcept {
    formula_size size;
    unsigned before = 0;
    for (const char c : text) {
        const unsigned counted = counts[static_cast<unsigned char>(c)];
        size.nodes +=
            (counted & ~before & counts_as_word) + (counted & counts_as_operator) / counts_as_operator;
        size.marks += counted / counts_as_mark;
        before = counted;
    }
    return size;
}

void next_token(std::string_view text, formula_token& token) {
    const std::string_view start = skip_space(text);
    if (start.empty()) return take_end(parse_status::end_of_text, start, token);

    switch (class_of(start.front())) {
        case character::digit:
            return take_number(start, token);
        case character::name:
            return take_name(start, token);
        default:
            return take_operation(start, token);
    }
}

formula_token next_token(std::string_view text) {
    formula_token token;
    next_token(text, token);
    return token;
}

}  // namespace GenICam
