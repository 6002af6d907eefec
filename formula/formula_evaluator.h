#pragma once

#include "formula/formula_program.h"
#include "formula/function_ref.h"
#include "genicam/core/error.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>

#include <gsl/span>

namespace GenICam {

using variable_lookup = function_ref<std::optional<eval_value>(identifier_id)>;

/// Runs the instructions one by one on a calc stack. Gives the words for what failed, empty for success.
[[nodiscard]] std::string_view run_instructions(const formula_view& program, variable_lookup variables,
                                                eval_value& result);

/// Sees the instruction that comes next, null at the end, and the stack before it. False ends the run.
using instruction_watch =
    function_ref<bool(const formula_instruction* next, gsl::span<const eval_value> stack)>;

/// The same under the eyes of `watch`. A run that it ended gives words for that.
[[nodiscard]] std::string_view run_instructions(const formula_view& program, variable_lookup variables,
                                                eval_value& result, instruction_watch watch);

/// The slots of ordinary formulas.
constexpr std::size_t formula_slots_in_place = 64;

/// Runs the instructions one by one; every failure is `formula_parse_failed`.
[[nodiscard]] result<eval_value> evaluate_stepwise(const formula_view& program, variable_lookup variables);

/// What remains for values in memory when no specialised form in place did: large ones, and at last the
/// instructions one by one.
template <class Variables>
[[nodiscard, gnu::noinline]] result<eval_value> evaluate_otherwise(const formula_view& program,
                                                                   Variables& variables) {
    for (const specialised_formula* form = program.specialised; form != nullptr; form = form->alternative) {
        if (form->frame_size() <= formula_slots_in_place) continue;
        const std::unique_ptr<bare_number[]> frame(new bare_number[form->frame_size()]);
        if (form->load(variables, frame.get())) return form->run(frame.get());
    }
    return evaluate_stepwise(program, [&variables](identifier_id id) -> std::optional<eval_value> {
        const auto found = variables(id);
        if (found == nullptr) return std::nullopt;
        return *found;
    });
}

/// The frame of a specialised form, filled with answers to the questions of the program in their order.
class asked_frame {
public:
    /// False if the answer is not of the kind that the form is for, or not the one that the same variable had
    /// before.
    [[nodiscard]] bool take(const specialised_formula& form, const eval_value& answer) noexcept {
        const std::size_t slot = form.slot_of_question(asked_);
        const specialised_formula::variable& variable = form.variable_in(slot);
        if (kind_of(answer) != variable.kind) return false;
        const bool is_new = slot == filled_;
        const bool is_known = !is_new || variable.first != slot;
        if (is_known && answer.value.integer != answers_[variable.first].integer) return false;
        ++asked_;
        if (!is_new) return true;
        ++filled_;
        answers_[slot] = answer.value;
        slots_[slot] = bare_as(variable.taken_as, answer);
        return true;
    }

    /// How many answers it took.
    [[nodiscard]] std::size_t asked() const noexcept { return asked_; }
    [[nodiscard]] eval_value answer(const specialised_formula& form, std::size_t question) const noexcept {
        const specialised_formula::variable& variable = form.variable_in(form.slot_of_question(question));
        return value_of(variable.kind, answers_[variable.first]);
    }
    [[nodiscard]] bare_number* slots() noexcept { return slots_; }

private:
    std::size_t asked_ = 0;
    std::size_t filled_ = 0;
    bare_number slots_[formula_slots_in_place];
    bare_number answers_[formula_slots_in_place];
};

/// Runs the instructions one by one where the answers so far, and the last one, fit no specialised form. They
/// are not asked for again.
[[nodiscard]] result<eval_value> evaluate_repeating(const formula_view& program,
                                                    const specialised_formula* form, const asked_frame& frame,
                                                    const std::optional<eval_value>& last,
                                                    variable_lookup variables);

/// Computes a formula and asks for its variables as its instructions do, so that whoever answers cannot tell
/// how it is computed.
template <class Variables>
[[nodiscard]] result<eval_value> evaluate_asking(const formula_view& program, Variables& variables) {
    const specialised_formula* form = program.specialised;
    if (form == nullptr || form->frame_size() > formula_slots_in_place)
        return evaluate_stepwise(program, variables);
    asked_frame frame;
    const std::size_t questions = form->question_count();
    for (std::size_t question = 0; question < questions; ++question) {
        const identifier_id id = form->variable_in(form->slot_of_question(question)).id;
        const std::optional<eval_value> answer = variables(id);
        if (question == 0 && answer) form = form->for_first(kind_of(*answer), formula_slots_in_place);
        if (!answer || form == nullptr || !frame.take(*form, *answer))
            return evaluate_repeating(program, form, frame, answer, variables);
    }
    return form->run(frame.slots());
}

/// Computes a formula. `variables` is called with an id and gives an optional `eval_value`, empty for not
/// found: each time that the formula names a variable, in the order of the program, and no more after the
/// first that is not found. Or it gives a pointer to an `eval_value`, null for not found: values in memory,
/// which are asked for in any order.
///
/// Fails with `formula_parse_failed` only. An integer division by zero ends the process. Does not allocate
/// unless the formula needs more than 20 values at a time, or 64 with its variables when specialised.
template <class Variables>
[[nodiscard]] result<eval_value> evaluate_formula(const formula_view& program, Variables&& variables) {
    if constexpr (std::is_pointer_v<std::invoke_result_t<Variables&, identifier_id>>) {
        bare_number frame[formula_slots_in_place];
        for (const specialised_formula* form = program.specialised; form != nullptr;
             form = form->alternative) {
            if (form->frame_size() <= formula_slots_in_place && form->load(variables, frame))
                return form->run(frame);
        }
        return evaluate_otherwise(program, variables);
    } else {
        return evaluate_asking(program, variables);
    }
}

}  // namespace GenICam
