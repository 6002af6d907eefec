#pragma once

#include "formula/formula_program.h"
#include "formula/function_ref.h"
#include "genicam/core/error.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include <gsl/span>

namespace GenICam {

using variable_lookup = function_ref<std::optional<eval_value>(identifier_id)>;

/// Runs the instructions one by one on a calc stack. Gives the words for what failed, empty for success.
[[nodiscard]] std::string_view run_instructions(const formula_program& program, variable_lookup variables,
                                                eval_value& result);

/// Sees the instruction that comes next, null at the end, and the stack before it. False ends the run.
using instruction_watch =
    function_ref<bool(const formula_instruction* next, gsl::span<const eval_value> stack)>;

/// The same under the eyes of `watch`. A run that it ended gives words for that.
[[nodiscard]] std::string_view run_instructions(const formula_program& program, variable_lookup variables,
                                                eval_value& result, instruction_watch watch);

/// The slots of ordinary formulas.
constexpr std::size_t formula_slots_in_place = 64;

/// What remains when no specialised form in place did: large ones, and at last the instructions one by one.
template <class Variables>
[[nodiscard, gnu::noinline]] result<eval_value> evaluate_otherwise(const formula_program& program,
                                                                   Variables& variables) {
    for (const specialised_formula* form = program.specialised.get(); form != nullptr;
         form = form->alternative.get()) {
        if (form->frame_size() <= formula_slots_in_place) continue;
        const std::unique_ptr<bare_number[]> frame(new bare_number[form->frame_size()]);
        if (form->load(variables, frame.get())) return form->run(frame.get());
    }
    const auto copied = [&variables](identifier_id id) -> std::optional<eval_value> {
        const auto found = variables(id);
        if (!found) return std::nullopt;
        return *found;
    };
    eval_value value;
    if (!run_instructions(program, copied, value).empty()) return make_error_code(formula_parse_failed);
    return value;
}

/// Computes a formula. `variables` is called with an id and gives a pointer to an `eval_value`, or an
/// optional one; null or empty means not found. Fails with `formula_parse_failed` only. An integer division
/// by zero ends the process. Does not allocate unless the formula needs more than 20 values at a time, or 64
/// with its variables when specialised.
template <class Variables>
[[nodiscard]] result<eval_value> evaluate_formula(const formula_program& program, Variables&& variables) {
    bare_number frame[formula_slots_in_place];
    for (const specialised_formula* form = program.specialised.get(); form != nullptr;
         form = form->alternative.get()) {
        if (form->frame_size() <= formula_slots_in_place && form->load(variables, frame))
            return form->run(frame);
    }
    return evaluate_otherwise(program, variables);
}

}  // namespace GenICam
