#include "formula/known_numbers.h"

#include <algorithm>
#include <limits>

namespace GenICam {
namespace {

known_kind join(known_kind left, known_kind right) { return left == right ? left : known_kind::either; }

known_number constant_of(const eval_value& number) {
    known_number made;
    made.kind = known(kind_of(number));
    made.is_constant = true;
    made.constant = number.value;
    return made;
}

std::uint16_t depth_over(std::uint16_t operand) {
    constexpr std::uint16_t deepest = std::numeric_limits<std::uint16_t>::max();
    return operand == deepest ? deepest : static_cast<std::uint16_t>(operand + 1);
}

// The form for operands of these kinds; null where a condition decides.
const typed_form* form_for(const formula_function& function, known_kind first, known_kind second) {
    if (first == known_kind::integer && second == known_kind::integer) return &function.for_integers;
    if (first == known_kind::floating || second == known_kind::floating) return &function.otherwise;
    return function.for_integers.apply == function.otherwise.apply ? &function.otherwise : nullptr;
}

bool may_fault(const typed_form* form, const known_number& divisor) {
    if (form != nullptr && !form->can_fault) return false;
    if (form == nullptr || !divisor.is_constant) return true;
    const std::int64_t number = to_int(divisor.value());
    return number == 0 || number == -1;
}

}  // namespace

void known_numbers::infer(const formula_tree& tree, variable_kinds kinds) {
    numbers_.clear();
    numbers_.reserve(tree.size());
    for (formula_tree::index node = 0; node < tree.size(); ++node)
        numbers_.push_back(infer_node(tree, node, kinds));
}

known_number known_numbers::infer_node(const formula_tree& tree, formula_tree::index node,
                                       variable_kinds kinds) const {
    const formula_instruction& instruction = tree[node].instruction;
    const formula_tree::index last = formula_tree::last_operand(node);
    switch (instruction.code) {
        case op_code::op_push_int:
            return constant_of(value_of(number_kind::integer, instruction.number));
        case op_code::op_push_float:
            return constant_of(value_of(number_kind::floating, instruction.number));
        case op_code::op_unary:
            return infer_function(*instruction.function, numbers_[last], numbers_[last]);
        case op_code::op_binary:
            return infer_function(*instruction.function, numbers_[tree.operand_before(last)], numbers_[last]);
        case op_code::op_select: {
            const formula_tree::index when_true = tree.operand_before(last);
            return infer_selection(numbers_[tree.operand_before(when_true)], numbers_[when_true],
                                   numbers_[last]);
        }
        case op_code::op_variable:
            break;
    }
    known_number variable;
    variable.kind = kinds(instruction.variable);
    return variable;
}

known_number known_numbers::infer_function(const formula_function& function, const known_number& first,
                                           const known_number& second) {
    if (first.is_constant && second.is_constant && !ends_process(function, first.value(), second.value())) {
        return constant_of(function.arity == 1 ? apply(function, first.value())
                                               : apply(function, first.value(), second.value()));
    }
    known_number made;
    made.form = form_for(function, first.kind, second.kind);
    made.kind = made.form != nullptr
                    ? known(made.form->result)
                    : join(known(function.for_integers.result), known(function.otherwise.result));
    made.can_fault = first.can_fault || second.can_fault || may_fault(made.form, second);
    made.depth = depth_over(std::max(first.depth, second.depth));
    return made;
}

known_number known_numbers::infer_selection(const known_number& condition, const known_number& when_true,
                                            const known_number& when_false) {
    known_number made;
    made.kind = join(when_true.kind, when_false.kind);
    made.can_fault = condition.can_fault || when_true.can_fault || when_false.can_fault;
    made.depth = depth_over(std::max({condition.depth, when_true.depth, when_false.depth}));
    return made;
}

}  // namespace GenICam
