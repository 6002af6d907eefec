#include "formula/formula_token.h"

#include "genicam/core/number_parser.h"

#include <cstddef>

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
constexpr bool is_space(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool is_name_character(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || is_digit(c) || c == '_' || c == '.';
}

std::string_view skip_space(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size() && is_space(text[at])) ++at;
    return text.substr(at);
}

formula_token make_end(parse_status status, std::string_view rest) noexcept {
    formula_token token;
    token.status = status;
    token.rest = rest;
    return token;
}

formula_token make_name(std::string_view text) noexcept {
    std::size_t length = 0;
    while (length < text.size() && is_name_character(text[length])) ++length;
    if (length == 0 || is_digit(text.front())) return make_end(parse_status::invalid_token, text);

    formula_token token;
    token.kind = token_kind::identifier;
    token.name = text.substr(0, length);
    token.rest = skip_space(text.substr(length));
    const formula_operation* opening = operation_of(token_kind::open);
    if (token.rest.substr(0, opening->text.size()) == opening->text) {
        token.kind = token_kind::function;
        token.rest.remove_prefix(opening->text.size());
    }
    return token;
}

}  // namespace

std::string_view status_text(parse_status status) noexcept {
    return status_texts[static_cast<std::size_t>(status)];
}

formula_token next_token(std::string_view text) {
    const std::string_view start = skip_space(text);
    if (start.empty()) return make_end(parse_status::end_of_text, start);

    formula_token token;
    if (const formula_operation* operation = match_operation(start)) {
        token.kind = operation->kind;
        token.rest = start.substr(operation->text.size());
        return token;
    }
    if (const std::size_t consumed = parse_number(start, token.number)) {
        token.kind = token_kind::number;
        token.rest = start.substr(consumed);
        return token;
    }
    return make_name(start);
}

}  // namespace GenICam
