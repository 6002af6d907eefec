#pragma once

#include "formula/formula_evaluator.h"

#include <string_view>

namespace selvane_inspect {

/// How a formula would end that the engine ran now.
struct guarded_result {
    bool ends_process = false;  ///< an integer division without a result, which the engine does not catch
    std::string_view failure;   ///< the evaluator's words; empty for success
    GenICam::eval_value value;  ///< of a success
};

/// Whether carrying out this instruction on this stack would end the process.
[[nodiscard]] bool would_end_process(const GenICam::formula_instruction& next,
                                     gsl::span<const GenICam::eval_value> stack);

/// Runs a formula as the engine does, but stops before a division that would end the process. `watch` sees
/// every instruction before it is carried out.
[[nodiscard]] guarded_result run_guarded(const GenICam::formula_view& program,
                                         GenICam::variable_lookup variables,
                                         GenICam::instruction_watch watch);
[[nodiscard]] guarded_result run_guarded(const GenICam::formula_view& program,
                                         GenICam::variable_lookup variables);

}  // namespace selvane_inspect
