#pragma once

#include "formula/formula_instruction.h"
#include "formula/formula_step.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace GenICam {

/// A formula translated for variables of known kinds: every step knows the kinds of its operands, what
/// depends on no variable is computed already, and a branch that is not chosen is skipped where nobody can
/// tell. Immutable.
///
/// It works on a frame of slots, first the variables and then intermediate results.
class specialised_formula {
public:
    /// A slot to fill before the first step.
    struct variable {
        identifier_id id;
        number_kind kind;      ///< what the variable must have
        number_kind taken_as;  ///< what the steps want
    };

    /// The last step on every way through them is one that ends.
    specialised_formula(std::vector<variable> variables, std::vector<formula_step> steps,
                        std::size_t frame_size) noexcept
        : variables_(std::move(variables)), steps_(std::move(steps)), frame_size_(frame_size) {}

    /// How many slots the frame has.
    [[nodiscard]] std::size_t frame_size() const noexcept { return frame_size_; }

    /// Fills the variables of a frame. `variables` gives something like a pointer to an `eval_value` for an
    /// id. False if one is not found or has another kind than expected.
    template <class Variables>
    [[nodiscard]] bool load(Variables& variables, bare_number* frame) const {
        for (const variable& wanted : variables_) {
            const auto found = variables(wanted.id);
            if (!found || kind_of(*found) != wanted.kind) return false;
            *frame++ = wanted.kind == wanted.taken_as ? (*found).value : bare_as(wanted.taken_as, *found);
        }
        return true;
    }

    /// Computes the formula on a frame with variables.
    [[nodiscard]] eval_value run(bare_number* frame) const {
        return steps_.front().run(steps_.data(), frame);
    }

    /// The same formula for variables of other kinds, or null.
    std::unique_ptr<const specialised_formula> alternative;

private:
    std::vector<variable> variables_;
    std::vector<formula_step> steps_;
    std::size_t frame_size_;
};

}  // namespace GenICam
