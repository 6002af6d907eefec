#pragma once

#include "formula/known_numbers.h"
#include "formula/specialised_formula.h"

#include <memory>

namespace GenICam {

class formula_tree;

/// Prepares a formula for variables of known kinds. Null for formulas that are very long or deep, that fail
/// or leave numbers over, and where the kinds of numbers are not known in time.
[[nodiscard]] std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree,
                                                                            variable_kinds kinds);

/// The same for variables that may all be integers or all be floats.
[[nodiscard]] std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree);

}  // namespace GenICam
