#pragma once

#include "formula/formula_step.h"
#include "genicam/core/eval_value.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace GenICam {

/// What the text of a formula is cut into. The tables of operators are indexed by these numbers.
enum class token_kind : std::uint8_t {
    complement = 0,
    plus = 2,
    minus = 3,
    multiply = 4,
    divide = 5,
    remainder = 6,
    power = 7,
    greater = 8,
    greater_equal = 9,
    less = 10,
    less_equal = 11,
    equal = 12,
    not_equal = 13,
    logical_and = 14,
    logical_or = 15,
    bit_and = 16,
    bit_or = 17,
    bit_xor = 18,
    shift_right = 19,
    shift_left = 20,
    number = 21,
    identifier = 22,
    function = 23,  ///< a name and its opening parenthesis
    open = 24,
    close = 25,
    question = 26,
    colon = 27,
    comma = 28,
    end = 29,  ///< end of the text, or a character that begins no token
};

/// The levels of binary operators, outermost first. Operators of one level associate to the left.
enum class operator_level : std::uint8_t { relation, bit_term, sum, term, none };
constexpr std::size_t operator_level_count = 4;

/// The payload of a value whose kind is known from elsewhere.
using bare_number = eval_value::payload;

enum class number_kind : std::uint8_t { floating, integer };

/// What a step of a specialised formula does with its result.
struct step_functions {
    step_function store;   ///< puts it into the step's target, and goes on
    step_function finish;  ///< it is the result of the formula
    step_function branch;  ///< jumps unless it is true; null but for those that give 0 or 1
};

/// An operator or function for operands of fixed kinds.
struct typed_form {
    /// The second operand is ignored by functions with one.
    bare_number (*apply)(bare_number first, bare_number second);
    // The same as a step of a specialised formula.
    step_functions with_slots;
    step_functions with_constant;  ///< the second operand is the step's constant
    step_functions on_constant;    ///< the first operand is the step's constant
    number_kind first;
    number_kind second;
    number_kind result;
    bool can_fault;  ///< ends the process for some operands
    std::int8_t
        neutral;  ///< the operand that changes nothing, where operands may be grouped at will; else -1

    /// Whether the result is 0 or 1, and an integer.
    [[nodiscard]] bool is_test() const noexcept { return with_slots.branch != nullptr; }
};

/// An operator or function on numbers of any kind: one form for operands that are all integers, one for all
/// others. Operands of another kind than the form takes are converted by `to_int` and `to_double`.
struct formula_function {
    std::size_t arity;
    typed_form for_integers;
    typed_form otherwise;
};

/// One row of the table of everything that has a fixed text. A minus is both a unary and a binary operator.
struct formula_operation {
    std::string_view text;
    token_kind kind;
    operator_level level = operator_level::none;
    const formula_function* unary = nullptr;
    const formula_function* binary = nullptr;
};

/// The operator, parenthesis or mark at the start of the text, or null. Two characters go before one.
[[nodiscard]] const formula_operation* match_operation(std::string_view text) noexcept;

/// The row of an operator, parenthesis or mark; null for the other kinds.
[[nodiscard]] const formula_operation* operation_of(token_kind kind) noexcept;

/// The named function with that many arguments, or null.
[[nodiscard]] const formula_function* find_function(std::string_view name, std::size_t arguments) noexcept;

/// The operator, or else the upper-case name, that a function of the tables has in formulas; empty for
/// others.
[[nodiscard]] std::string_view text_of(const formula_function& function) noexcept;

/// The value of a name that every formula knows, or null.
[[nodiscard]] const double* find_named_constant(std::string_view name) noexcept;

/// Whether a value counts as true: not 0. NaN is true.
[[nodiscard]] inline bool is_true(const eval_value& condition) noexcept {
    return condition.is_integer ? condition.value.integer != 0 : condition.value.real != 0.0;
}

[[nodiscard]] inline bare_number bare_as(number_kind kind, const eval_value& number) noexcept {
    bare_number converted;
    if (kind == number_kind::integer) {
        converted.integer = to_int(number);
    } else {
        converted.real = to_double(number);
    }
    return converted;
}

[[nodiscard]] inline eval_value value_of(number_kind kind, bare_number payload) noexcept {
    eval_value made;
    made.value = payload;
    made.is_integer = kind == number_kind::integer;
    return made;
}

[[nodiscard]] inline number_kind kind_of(const eval_value& number) noexcept {
    return number.is_integer ? number_kind::integer : number_kind::floating;
}

/// Whether the function divides these integers without a result, which ends the process.
[[nodiscard]] inline bool ends_process(const formula_function& function, const eval_value& left,
                                       const eval_value& right) noexcept {
    const typed_form& form = left.is_integer && right.is_integer ? function.for_integers : function.otherwise;
    if (!form.can_fault) return false;
    const std::int64_t divisor = to_int(right);
    return divisor == 0 || (divisor == -1 && to_int(left) == std::numeric_limits<std::int64_t>::min());
}

[[nodiscard]] inline eval_value apply(const formula_function& function, const eval_value& operand) noexcept {
    const typed_form& form = operand.is_integer ? function.for_integers : function.otherwise;
    return value_of(form.result, form.apply(bare_as(form.first, operand), {}));
}

[[nodiscard]] inline eval_value apply(const formula_function& function, const eval_value& left,
                                      const eval_value& right) noexcept {
    const typed_form& form = left.is_integer && right.is_integer ? function.for_integers : function.otherwise;
    return value_of(form.result, form.apply(bare_as(form.first, left), bare_as(form.second, right)));
}

}  // namespace GenICam
