#pragma once

#include "formula/formula_instruction.h"
#include "formula/specialised_formula.h"

#include <memory>

#include <boost/container/small_vector.hpp>

namespace GenICam {

/// A formula in postfix form. Owns everything it needs; the text it came from may go.
struct formula_program {
    boost::container::small_vector<formula_instruction, 10> instructions;
    /// The same program made ready for variables of certain kinds, or null. Changes speed, never a result.
    std::shared_ptr<const specialised_formula> specialised;

    [[nodiscard]] bool empty() const noexcept { return instructions.empty(); }
};

}  // namespace GenICam
