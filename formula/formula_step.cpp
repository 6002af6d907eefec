#include "formula/formula_step.h"

namespace GenICam::steps {
namespace {

eval_value make(eval_value::payload number, bool is_integer) {
    eval_value made;
    made.value = number;
    made.is_integer = is_integer;
    return made;
}

}  // namespace

eval_value copy(const formula_step* at, eval_value::payload* frame) {
    frame[at->target] = frame[at->left];
    return go_on(at, frame);
}

eval_value load(const formula_step* at, eval_value::payload* frame) {
    frame[at->target] = at->constant;
    return go_on(at, frame);
}

eval_value to_integer(const formula_step* at, eval_value::payload* frame) {
    frame[at->target].integer = round_to_int(frame[at->left].real);
    return go_on(at, frame);
}

eval_value to_real(const formula_step* at, eval_value::payload* frame) {
    frame[at->target].real = static_cast<double>(frame[at->left].integer);
    return go_on(at, frame);
}

eval_value keep_if(const formula_step* at, eval_value::payload* frame) {
    if (frame[at->left].integer == 0) frame[at->target] = frame[at->right];
    return go_on(at, frame);
}

eval_value keep_if_constant(const formula_step* at, eval_value::payload* frame) {
    if (frame[at->left].integer == 0) frame[at->target] = at->constant;
    return go_on(at, frame);
}

eval_value jump(const formula_step* at, eval_value::payload* frame) { return go_to(at + at->target, frame); }

eval_value jump_unless(const formula_step* at, eval_value::payload* frame) {
    return go_on_if(frame[at->left].integer != 0, at, frame);
}

eval_value end_integer(const formula_step* at, eval_value::payload* frame) {
    return make(frame[at->left], true);
}
eval_value end_real(const formula_step* at, eval_value::payload* frame) {
    return make(frame[at->left], false);
}
eval_value end_integer_constant(const formula_step* at, eval_value::payload*) {
    return make(at->constant, true);
}
eval_value end_real_constant(const formula_step* at, eval_value::payload*) {
    return make(at->constant, false);
}

}  // namespace GenICam::steps
