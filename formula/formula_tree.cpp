#include "formula/formula_tree.h"

#include "formula/formula_operation.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace GenICam {
namespace {

using part = formula_node::part;

// Whoever walks the tree by recursion stays within a small stack.
constexpr std::uint16_t deepest_tree = 200;

bool is_integer_constant(const formula_node& node, std::int64_t number) noexcept {
    return node.is_constant() && node.kind == known_kind::integer && node.constant.integer == number;
}

const typed_form* sum_of_integers() noexcept { return &operation_of(token_kind::plus)->binary->for_integers; }
const typed_form* product_of_integers() noexcept {
    return &operation_of(token_kind::multiply)->binary->for_integers;
}

}  // namespace

bool formula_tree::build(gsl::span<const formula_instruction> program) {
    for (const formula_instruction& instruction : program) {
        if (!add(instruction)) return false;
    }
    return stack_.size() == 1;
}

bool formula_tree::add(const formula_instruction& instruction) {
    switch (instruction.code) {
        case op_code::op_push_int:
            return add_constant(number_kind::integer, instruction.number);
        case op_code::op_push_float:
            return add_constant(number_kind::floating, instruction.number);
        case op_code::op_unary:
        case op_code::op_binary:
            return add_function(*instruction.function);
        case op_code::op_select:
            return add_selection();
        case op_code::op_variable:
            return add_variable(instruction.variable);
    }
    return false;
}

bool formula_tree::push(const formula_node& made) {
    if (made.depth > deepest_tree) return false;
    stack_.push_back(static_cast<std::uint16_t>(nodes_.size()));
    nodes_.push_back(made);
    return true;
}

std::uint16_t formula_tree::pop() {
    const std::uint16_t top = stack_.back();
    stack_.pop_back();
    return top;
}

bool formula_tree::add_constant(number_kind kind, bare_number number) {
    formula_node made;
    made.kind = known(kind);
    made.constant = number;
    return push(made);
}

bool formula_tree::add_variable(identifier_id id) {
    const std::optional<number_kind> kind = kinds_(id);
    if (!kind) return false;
    formula_node made;
    made.what = part::variable;
    made.kind = known(*kind);
    made.variable = id;
    return push(made);
}

// The form for operands of these kinds; null where a condition decides.
const typed_form* formula_tree::choose(const formula_function& function, const formula_node& first,
                                       const formula_node& second) {
    if (first.kind == known_kind::integer && second.kind == known_kind::integer)
        return &function.for_integers;
    if (first.kind == known_kind::floating || second.kind == known_kind::floating) return &function.otherwise;
    return function.for_integers.apply == function.otherwise.apply ? &function.otherwise : nullptr;
}

bool formula_tree::never_faults(const typed_form& form, const formula_node& divisor) {
    if (!form.can_fault) return true;
    if (!divisor.is_constant()) return false;
    const std::int64_t number = divisor.constant_as(number_kind::integer).integer;
    return number != 0 && number != -1;
}

bool formula_tree::add_function(const formula_function& function) {
    if (stack_.size() < function.arity) return false;
    const std::uint16_t second = pop();
    const std::uint16_t first = function.arity == 2 ? pop() : second;
    const typed_form* form = choose(function, nodes_[first], nodes_[second]);
    return form != nullptr && add_form(*form, first, second);
}

bool formula_tree::add_form(const typed_form& form, std::uint16_t first, std::uint16_t second) {
    const formula_node& left = nodes_[first];
    const formula_node& right = nodes_[second];
    formula_node made;
    made.can_fault = left.can_fault || right.can_fault || !never_faults(form, right);
    if (left.is_constant() && right.is_constant() && !made.can_fault) {
        return add_constant(form.result,
                            form.apply(left.constant_as(form.first), right.constant_as(form.second)));
    }
    if (&form == sum_of_integers() || &form == product_of_integers()) {
        if (left.is_constant()) std::swap(first, second);
        if (nodes_[second].is_constant()) return add_to_constant(form, first, second);
    }
    made.what = part::function;
    made.form = &form;
    made.operands[0] = first;
    made.operands[1] = second;
    made.kind = known(form.result);
    made.depth = static_cast<std::uint16_t>(std::max(left.depth, right.depth) + 1);
    return push(made);
}

// Sums and products of integers are exact modulo 2 to the 64, so that their constants can be drawn together.
// Address formulas are full of them.
bool formula_tree::add_to_constant(const typed_form& form, std::uint16_t number, std::uint16_t constant) {
    const std::int64_t neutral = &form == sum_of_integers() ? 0 : 1;
    bare_number together = nodes_[constant].constant;
    if (nodes_[number].form == &form && nodes_[nodes_[number].operands[1]].is_constant()) {
        together = form.apply(together, nodes_[nodes_[number].operands[1]].constant);
        number = nodes_[number].operands[0];
    }
    if (together.integer == neutral) {
        stack_.push_back(number);
        return true;
    }
    if (!add_constant(number_kind::integer, together)) return false;
    formula_node made;
    made.what = part::function;
    made.form = &form;
    made.operands[0] = number;
    made.operands[1] = pop();
    made.can_fault = nodes_[number].can_fault;
    made.depth = static_cast<std::uint16_t>(nodes_[number].depth + 1);
    return push(made);
}

bool formula_tree::add_selection() {
    if (stack_.size() < 3) return false;
    formula_node made;
    made.what = part::selection;
    for (std::size_t at = 3; at-- > 0;) made.operands[at] = pop();
    const formula_node& condition = nodes_[made.operands[0]];
    const formula_node& when_true = nodes_[made.operands[1]];
    const formula_node& when_false = nodes_[made.operands[2]];
    if (is_integer_constant(when_true, 1) && is_integer_constant(when_false, 0)) {
        return add_test(token_kind::not_equal, made.operands[0]);
    }
    if (is_integer_constant(when_true, 0) && is_integer_constant(when_false, 1)) {
        return add_test(token_kind::equal, made.operands[0]);
    }
    made.kind = when_true.kind == when_false.kind ? when_true.kind : known_kind::either;
    made.can_fault = condition.can_fault || when_true.can_fault || when_false.can_fault;
    made.depth =
        static_cast<std::uint16_t>(std::max({condition.depth, when_true.depth, when_false.depth}) + 1);
    return push(made);
}

// A selection between 1 and 0 is a comparison of the condition with 0. NaN is true and not equal to 0.
bool formula_tree::add_test(token_kind comparison, std::uint16_t condition) {
    if (!add_constant(number_kind::integer, {0})) return false;
    const formula_function& function = *operation_of(comparison)->binary;
    const std::uint16_t zero = pop();
    const typed_form* form = choose(function, nodes_[condition], nodes_[zero]);
    return form != nullptr && add_form(*form, condition, zero);
}

}  // namespace GenICam
