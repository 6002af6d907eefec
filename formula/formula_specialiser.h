#pragma once

#include "formula/formula_program.h"
#include "formula/function_ref.h"

#include <optional>

namespace GenICam {

/// The kind that a variable has at run time; nothing for an unknown one.
using variable_kinds = function_ref<std::optional<number_kind>(identifier_id)>;

/// Prepares a program for variables of known kinds. Leaves programs as they are that are very long or deep,
/// that fail or leave values over, and where the kinds of numbers are not known in time.
void specialise_formula(formula_program& program, variable_kinds kinds);

/// The same for variables that may all be integers or all be floats.
void specialise_formula(formula_program& program);

}  // namespace GenICam
