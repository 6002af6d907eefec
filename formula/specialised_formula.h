#pragma once

#include "formula/formula_instruction.h"
#include "formula/function_ref.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace GenICam {

/// A formula translated for variables of known kinds: every step knows the kinds of its operands, conversions
/// are steps of their own, and what depends on no variable is computed already. Immutable.
///
/// It works on a frame of slots: the variables, then the constants, then one slot for the result of each
/// step.
class specialised_formula {
public:
    using kind_lookup = function_ref<std::optional<number_kind>(identifier_id)>;

    /// Null for programs that are too long or fail, for unknown variables, and where the kind of a number
    /// depends on a condition.
    [[nodiscard]] static std::unique_ptr<const specialised_formula> make(
        const formula_instruction* instructions, std::size_t count, kind_lookup kinds);

    /// `variables` gives something like a pointer to an `eval_value` for an id. False, and no result, if one
    /// is not found or has another kind than expected.
    template <class Variables>
    [[nodiscard]] bool evaluate(Variables& variables, eval_value& result) const;

private:
    friend class formula_specialiser;

    struct variable {
        identifier_id id;
        number_kind kind;
    };
    struct step {
        typed_function apply;
        std::uint16_t operands[3];
    };

    static constexpr std::size_t slots_in_place = 256;

    [[nodiscard]] std::size_t frame_size() const noexcept {
        return variables_.size() + constants_.size() + steps_.size();
    }
    template <class Variables>
    [[nodiscard]] bool load(Variables& variables, bare_number* frame) const;
    void run(bare_number* frame) const noexcept;

    std::vector<variable> variables_;
    std::vector<bare_number> constants_;
    std::vector<step> steps_;
    std::uint16_t result_ = 0;
    number_kind result_kind_ = number_kind::integer;
};

template <class Variables>
bool specialised_formula::evaluate(Variables& variables, eval_value& result) const {
    bare_number in_place[slots_in_place];
    std::unique_ptr<bare_number[]> spilled;
    bare_number* frame = in_place;
    if (frame_size() > slots_in_place) {
        spilled.reset(new bare_number[frame_size()]);
        frame = spilled.get();
    }
    if (!load(variables, frame)) return false;
    run(frame);
    result = value_of(result_kind_, frame[result_]);
    return true;
}

template <class Variables>
bool specialised_formula::load(Variables& variables, bare_number* frame) const {
    for (const variable& wanted : variables_) {
        const auto found = variables(wanted.id);
        if (!found || kind_of(*found) != wanted.kind) return false;
        *frame++ = (*found).value;
    }
    return true;
}

}  // namespace GenICam
