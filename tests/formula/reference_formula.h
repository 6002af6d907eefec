#pragma once

#include "genicam/core/eval_value.h"

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace formula_test {

/// A number as the reference sees it: an integer, or a double.
struct number {
    bool is_integer = true;
    std::int64_t integer = 0;
    double real = 0;
};

/// The operators and functions of the reference, with nothing in common with the product's table but their
/// meaning.
enum class operation {
    add,
    subtract,
    multiply,
    divide,
    remainder,
    power,
    greater,
    greater_equal,
    less,
    less_equal,
    equal,
    not_equal,
    logical_and,
    logical_or,
    bit_and,
    bit_or,
    bit_xor,
    shift_right,
    shift_left,
    plus,
    minus,
    complement,
    atan,
    cos,
    sin,
    tan,
    abs,
    exp,
    ln,
    lg,
    sqrt,
    trunc,
    floor,
    ceil,
    asin,
    acos,
    sgn,
    neg,
    round,
    select,
};
constexpr int operation_count = static_cast<int>(operation::select) + 1;

/// A leaf with a text, or an operation on up to three operands. Knows its value from the start.
struct tree {
    bool is_leaf = true;
    std::string text;
    operation applied{};
    std::vector<std::unique_ptr<tree>> operands;
    number value;
};

[[nodiscard]] int arity_of(operation applied);

/// Whether the processor can do it: no division by zero, no quotient that does not fit.
[[nodiscard]] bool is_harmless(operation applied, const std::vector<number>& operands);

[[nodiscard]] number compute(operation applied, const std::vector<number>& operands);

/// The text of a tree: with the parentheses that it needs, and at random with more of them, and with blanks.
[[nodiscard]] std::string write(const tree& node, std::mt19937_64& random);

}  // namespace formula_test
