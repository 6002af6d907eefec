#pragma once

#include "formula/known_numbers.h"
#include "formula/specialised_formula.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include <boost/container/small_vector.hpp>

namespace GenICam {

class formula_tree;

/// The parts of a specialised form while they are written.
struct written_parts {
    boost::container::small_vector<specialised_formula::variable, 16> variables;
    boost::container::small_vector<std::uint16_t, 64> questions;
    boost::container::small_vector<formula_step, 64> steps;
};

/// Prepares formulas for variables of known kinds, one after the other in the same memory.
class formula_specialiser {
public:
    /// The parts of a form, until the next formula. Nothing for formulas that are very long or deep, that
    /// fail or leave numbers over, and where the kinds of numbers are not known in time.
    [[nodiscard]] std::optional<specialised_formula::parts> prepare(const formula_tree& tree,
                                                                    variable_kinds kinds);

    /// Room for formulas of so many nodes.
    void reserve(std::size_t nodes);

private:
    known_numbers numbers_;
    written_parts written_;
};

/// A prepared formula, or null.
[[nodiscard]] std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree,
                                                                            variable_kinds kinds);

/// The same for variables that may all be integers or all be floats.
[[nodiscard]] std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree);

}  // namespace GenICam
