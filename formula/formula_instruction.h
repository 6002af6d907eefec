#pragma once

#include "formula/formula_operation.h"

#include <cstdint>

namespace GenICam {

enum class op_code : std::uint32_t {
    op_push_int = 0,    ///< payload: the integer
    op_push_float = 1,  ///< payload: the float
    op_unary = 2,       ///< payload: the function, which replaces the top value
    op_binary = 3,      ///< payload: the function, which replaces the top two values
    op_select = 4,      ///< no payload: of the top three, the second if the first is true, else the third
    op_variable = 5,    ///< payload: the variable whose value is pushed
};

/// What a name of a formula stands for at run time. The caller of the parser gives these numbers; 0 is none.
using identifier_id = std::uint64_t;

struct formula_instruction {
    op_code code;
    union {
        bare_number number;
        const formula_function* function;
        identifier_id variable;
    };
};

static_assert(sizeof(formula_instruction) == 16);

}  // namespace GenICam
