#pragma once

#include "formula/formula_program.h"
#include "formula/function_ref.h"
#include "genicam/core/error.h"

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

/// Computes a formula. `variables` is called with an id and gives a pointer to an `eval_value`, or an
/// optional one; null or empty means not found. Fails with `formula_parse_failed` only. An integer division
/// by zero ends the process. Does not allocate unless the formula needs more than 20 values at a time, or 256
/// in all when specialised.
template <class Variables>
[[nodiscard]] result<eval_value> evaluate_formula(const formula_program& program, Variables&& variables) {
    eval_value value;
    if (program.specialised != nullptr && program.specialised->evaluate(variables, value)) return value;
    const auto copied = [&variables](identifier_id id) -> std::optional<eval_value> {
        const auto found = variables(id);
        if (!found) return std::nullopt;
        return *found;
    };
    if (!run_instructions(program, copied, value).empty()) return make_error_code(formula_parse_failed);
    return value;
}

/// Prepares a program for variables of the kinds that `variables` has now, so that evaluations with such
/// variables are faster. Those with others give the same results as ever. Some programs cannot be prepared
/// and stay as they are.
template <class Variables>
void specialise_formula(formula_program& program, Variables&& variables) {
    const auto kinds = [&variables](identifier_id id) -> std::optional<number_kind> {
        const auto found = variables(id);
        if (!found) return std::nullopt;
        return kind_of(*found);
    };
    program.specialised =
        specialised_formula::make(program.instructions.data(), program.instructions.size(), kinds);
}

}  // namespace GenICam
