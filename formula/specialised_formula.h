#pragma once

#include "formula/formula_instruction.h"
#include "formula/formula_step.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <gsl/span>

namespace GenICam {

/// A formula translated for variables of known kinds: every step knows the kinds of its operands, what
/// depends on no variable is computed already, and a branch that is not chosen is skipped where nobody can
/// tell. Immutable.
///
/// It works on a frame of slots, first the variables and then intermediate results.
class alignas(formula_step) specialised_formula {
public:
    /// A slot to fill before the first step.
    struct variable {
        identifier_id id;
        number_kind kind;      ///< what the variable must have
        number_kind taken_as;  ///< what the steps want
        std::uint16_t
            first;  ///< the first slot of the same variable: this one, or one that takes it otherwise
    };

    /// What a form is made of. The last step on every way through the steps is one that ends.
    struct parts {
        gsl::span<const variable> variables;
        /// The slot that each variable in the program goes to, in the order of the program; empty if every
        /// variable stands there once.
        gsl::span<const std::uint16_t> questions;
        gsl::span<const formula_step> steps;
        std::size_t frame_size;
    };

    /// The bytes that a form takes with all its parts.
    [[nodiscard]] static std::size_t size_of(const parts& made) noexcept;
    /// Makes a form with copies of the parts in so many bytes, aligned as a form is. It needs no destructor.
    [[nodiscard]] static specialised_formula* make(void* room, const parts& made) noexcept;

    /// How often the program asks for a variable.
    [[nodiscard]] std::size_t question_count() const noexcept {
        return question_count_ == 0 ? variable_count_ : question_count_;
    }

    /// The slot that the answer to a question goes to.
    [[nodiscard]] std::size_t slot_of_question(std::size_t question) const noexcept {
        return question_count_ == 0 ? question : questions_[question];
    }

    [[nodiscard]] const variable& variable_in(std::size_t slot) const noexcept { return variables_[slot]; }

    /// Of this form and its alternatives the one whose first variable has that kind and whose frame is not
    /// larger, or null.
    [[nodiscard]] const specialised_formula* for_first(number_kind kind,
                                                       std::size_t largest_frame) const noexcept {
        for (const specialised_formula* form = this; form != nullptr; form = form->alternative) {
            if (form->variables_[0].kind == kind && form->frame_size_ <= largest_frame) return form;
        }
        return nullptr;
    }

    /// How many slots the frame has.
    [[nodiscard]] std::size_t frame_size() const noexcept { return frame_size_; }

    /// Fills the variables of a frame. `variables` gives something like a pointer to an `eval_value` for an
    /// id. False if one is not found or has another kind than expected.
    template <class Variables>
    [[nodiscard]] bool load(Variables& variables, bare_number* frame) const {
        for (const variable* wanted = variables_; wanted != variables_ + variable_count_; ++wanted) {
            const auto found = variables(wanted->id);
            if (!found || kind_of(*found) != wanted->kind) return false;
            *frame++ = wanted->kind == wanted->taken_as ? (*found).value : bare_as(wanted->taken_as, *found);
        }
        return true;
    }

    /// Computes the formula on a frame with variables.
    [[nodiscard]] eval_value run(bare_number* frame) const { return steps_->run(steps_, frame); }

    /// The same formula for variables of other kinds, or null. Belongs to whoever made this one.
    const specialised_formula* alternative = nullptr;

private:
    specialised_formula() = default;

    const formula_step* steps_ = nullptr;
    const variable* variables_ = nullptr;
    const std::uint16_t* questions_ = nullptr;
    std::uint32_t variable_count_ = 0;
    std::uint32_t question_count_ = 0;
    std::size_t frame_size_ = 0;
};

static_assert(std::is_trivially_destructible_v<specialised_formula>);

}  // namespace GenICam
