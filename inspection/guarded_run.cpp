#include "inspection/guarded_run.h"

#include <cstddef>

namespace selvane_inspect {

using GenICam::eval_value;
using GenICam::formula_instruction;

bool would_end_process(const formula_instruction& next, gsl::span<const eval_value> stack) {
    const auto size = static_cast<std::size_t>(stack.size());
    if (next.code != GenICam::op_code::op_binary || size < 2) return false;
    return ends_process(*next.function, stack.data()[size - 2], stack.data()[size - 1]);
}

guarded_result run_guarded(const GenICam::formula_view& program, GenICam::variable_lookup variables,
                           GenICam::instruction_watch watch) {
    guarded_result result;
    const auto goes_on = [&](const formula_instruction* next, gsl::span<const eval_value> stack) {
        result.ends_process = next != nullptr && would_end_process(*next, stack);
        return watch(next, stack) && !result.ends_process;
    };
    result.failure = GenICam::run_instructions(program, variables, result.value, goes_on);
    return result;
}

guarded_result run_guarded(const GenICam::formula_view& program, GenICam::variable_lookup variables) {
    return run_guarded(program, variables,
                       [](const formula_instruction*, gsl::span<const eval_value>) { return true; });
}

}  // namespace selvane_inspect
