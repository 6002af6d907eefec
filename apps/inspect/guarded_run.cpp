#include "apps/inspect/guarded_run.h"

#include <cstddef>
#include <limits>

namespace selvane_inspect {

using GenICam::eval_value;
using GenICam::formula_instruction;

bool would_end_process(const formula_instruction& next, gsl::span<const eval_value> stack) {
    const auto size = static_cast<std::size_t>(stack.size());
    if (next.code != GenICam::op_code::op_binary || size < 2) return false;
    const eval_value& left = stack.data()[size - 2];
    const eval_value& right = stack.data()[size - 1];
    const bool integers = left.is_integer && right.is_integer;
    const GenICam::typed_form& form = integers ? next.function->for_integers : next.function->otherwise;
    if (!form.can_fault) return false;
    const std::int64_t divisor = to_int(right);
    return divisor == 0 || (divisor == -1 && to_int(left) == std::numeric_limits<std::int64_t>::min());
}

guarded_result run_guarded(const GenICam::formula_program& program, GenICam::variable_lookup variables,
                           GenICam::instruction_watch watch) {
    guarded_result result;
    const auto goes_on = [&](const formula_instruction* next, gsl::span<const eval_value> stack) {
        result.ends_process = next != nullptr && would_end_process(*next, stack);
        return watch(next, stack) && !result.ends_process;
    };
    result.failure = GenICam::run_instructions(program, variables, result.value, goes_on);
    return result;
}

guarded_result run_guarded(const GenICam::formula_program& program, GenICam::variable_lookup variables) {
    return run_guarded(program, variables,
                       [](const formula_instruction*, gsl::span<const eval_value>) { return true; });
}

}  // namespace selvane_inspect
