#pragma once

#include "formula/formula_operation.h"
#include "genicam/core/eval_value.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenICam {

/// How a level of the parser ended. The numbers and texts appear in messages; do not change.
enum class parse_status : std::uint8_t {
    none = 0,
    end_of_text = 1,
    invalid_token = 2,
    unknown_name = 3,
    unknown_function = 4,
    no_operator_function = 5,
    no_end_of_arguments = 6,
    no_colon = 7,
    no_closing_parenthesis = 8,
    nothing_after_unary = 9,
    no_factor = 10,
    beyond_limits = 11,  ///< nested deeper, or grown longer by expressions, than the parser goes along with
};

/// The words for a status; empty where there are none.
[[nodiscard]] std::string_view status_text(parse_status status) noexcept;

struct formula_token {
    token_kind kind = token_kind::end;
    parse_status status = parse_status::none;  ///< `end` only: whether the text or its sense ended
    eval_value number;                         ///< `number` only
    std::string_view text;                     ///< the token itself; of `function` the name alone
    std::string_view rest;                     ///< the text behind the token
};

/// What reading a formula takes at most.
struct formula_size {
    std::size_t nodes = 0;  ///< numbers, names, operators and calls
    std::size_t marks = 0;  ///< that may wait for their end: parentheses, question marks and the like
};

/// The size of a formula without expressions, from its characters alone.
[[nodiscard]] formula_size measure_formula(std::string_view text) noexcept;

/// The first token of the text. Knows nothing of what stands before it.
[[nodiscard]] formula_token next_token(std::string_view text);
/// The same into a token that is there. Its number stays unless the new one is a number.
void next_token(std::string_view text, formula_token& token);

}  // namespace GenICam
