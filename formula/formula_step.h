#pragma once

#include "genicam/core/eval_value.h"

#include <cstdint>

namespace GenICam {

struct formula_step;

/// Does a step on a frame of slots and hands on to the next one. The last step gives the result.
using step_function = eval_value (*)(const formula_step* at, eval_value::payload* frame);

/// One step of a specialised formula: an operation whose operands have known kinds and locations.
struct formula_step {
    step_function run;
    std::uint16_t target;  ///< the slot of the result; of jumps, how many steps ahead
    std::uint16_t left;
    std::uint16_t right;
    eval_value::payload constant;
};

static_assert(sizeof(formula_step) == 24);

// Tail calls: in optimised builds jumps. Elsewhere the number of steps bounds the depth.
[[nodiscard]] inline eval_value go_to(const formula_step* at, eval_value::payload* frame) {
    return at->run(at, frame);
}
[[nodiscard]] inline eval_value go_on(const formula_step* at, eval_value::payload* frame) {
    return go_to(at + 1, frame);
}
/// Jumps as many steps as the target says unless the test holds.
[[nodiscard]] inline eval_value go_on_if(bool holds, const formula_step* at, eval_value::payload* frame) {
    return go_to(at + (holds ? 1 : at->target), frame);
}

/// The steps that are no operators or functions.
namespace steps {
[[nodiscard]] eval_value copy(const formula_step* at, eval_value::payload* frame);  ///< target = left
[[nodiscard]] eval_value load(const formula_step* at, eval_value::payload* frame);  ///< target = constant
[[nodiscard]] eval_value to_integer(const formula_step* at,
                                    eval_value::payload* frame);  ///< target = left, rounded
[[nodiscard]] eval_value to_real(const formula_step* at, eval_value::payload* frame);  ///< target = left
/// Target stays if left is not 0, else it becomes right, or the constant.
[[nodiscard]] eval_value keep_if(const formula_step* at, eval_value::payload* frame);
[[nodiscard]] eval_value keep_if_constant(const formula_step* at, eval_value::payload* frame);
[[nodiscard]] eval_value jump(const formula_step* at, eval_value::payload* frame);
/// Jumps if left is 0.
[[nodiscard]] eval_value jump_unless(const formula_step* at, eval_value::payload* frame);
// The result is left, or the constant.
[[nodiscard]] eval_value end_integer(const formula_step* at, eval_value::payload* frame);
[[nodiscard]] eval_value end_real(const formula_step* at, eval_value::payload* frame);
[[nodiscard]] eval_value end_integer_constant(const formula_step* at, eval_value::payload* frame);
[[nodiscard]] eval_value end_real_constant(const formula_step* at, eval_value::payload* frame);
}  // namespace steps

}  // namespace GenICam
