#pragma once

#include "formula/formula_instruction.h"
#include "formula/specialised_formula.h"

#include <memory>

#include <boost/container/small_vector.hpp>
#include <gsl/span>

namespace GenICam {

/// A formula in postfix form. Owns everything it needs; the text it came from may go.
struct formula_program {
    boost::container::small_vector<formula_instruction, 10> instructions;
    /// The same program made ready for variables of certain kinds, or null. Changes speed, never a result.
    std::shared_ptr<const specialised_formula> specialised;

    [[nodiscard]] bool empty() const noexcept { return instructions.empty(); }
};

/// A program where it stands. Of one that was made ready for the kinds that all its variables have, the
/// instructions may be missing.
struct formula_view {
    formula_view() = default;
    formula_view(const formula_program& program) noexcept  // implicit: whoever runs a program takes a view
        : instructions(program.instructions.data(), program.instructions.size()),
          specialised(program.specialised.get()) {}

    [[nodiscard]] bool empty() const noexcept { return instructions.empty() && specialised == nullptr; }

    gsl::span<const formula_instruction> instructions;
    const specialised_formula* specialised = nullptr;
};

}  // namespace GenICam
