#include "formula/formula_specialiser.h"

#include "formula/formula_operation.h"
#include "formula/formula_tree.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include <boost/container/small_vector.hpp>
#include <gsl/span>

namespace GenICam {
namespace {

using variable = specialised_formula::variable;

// The steps run one inside the other where tail calls are not optimised: their number bounds the stack.
constexpr std::size_t longest_program = 1000;

/// Writes the steps of a tree. Variables are numbered as they are met; as long as their number is not known,
/// slots of intermediate results bear a mark.
class step_writer {
public:
    explicit step_writer(const formula_tree& tree) : tree_(tree) {}

    void write() { write_result(tree_.root()); }
    [[nodiscard]] std::shared_ptr<specialised_formula> take();

private:
    /// Where a number is: a constant, or a slot.
    struct place {
        bool is_constant = false;
        std::uint16_t slot = 0;
        bare_number constant = {0};
    };

    static constexpr std::uint16_t intermediate = 0x8000;

    void write_result(const formula_node& node);
    void write_result_of_selection(const formula_node& node);
    void write_end(number_kind kind, const place& result);
    [[nodiscard]] place place_number(const formula_node& node, number_kind kind);
    [[nodiscard]] std::uint16_t place_condition(const formula_node& node);
    void compute_into(const formula_node& node, number_kind kind, std::uint16_t target);
    void write_function(const formula_node& node, std::uint16_t target);
    void write_selection(const formula_node& node, number_kind kind, std::uint16_t target);
    void write_branches(const formula_node& node, number_kind kind, std::uint16_t condition,
                        std::uint16_t target);
    void write_both(const formula_node& node, number_kind kind, std::uint16_t condition,
                    std::uint16_t target);
    void write_into(const place& from, std::uint16_t target);

    [[nodiscard]] const formula_node& operand(const formula_node& node, std::size_t index) const {
        return tree_[node.operands[index]];
    }
    std::uint16_t slot_of(const place& from);
    std::uint16_t slot_of_variable(const formula_node& node, number_kind kind);
    std::uint16_t take_slot();
    formula_step& append(step_function run, std::uint16_t target, std::uint16_t left,
                         std::uint16_t right = 0);
    std::size_t append_jump(step_function run, std::uint16_t condition);
    void land(std::size_t jump) { steps_[jump].distance = static_cast<std::ptrdiff_t>(steps_.size() - jump); }

    const formula_tree& tree_;
    boost::container::small_vector<variable, 16> variables_;
    boost::container::small_vector<std::uint16_t, 64> questions_;
    boost::container::small_vector<formula_step, 64> steps_;
    std::uint16_t slots_in_use_ = 0;
    std::uint16_t most_slots_ = 0;
};

void step_writer::write_result(const formula_node& node) {
    if (node.what == formula_node::part::selection && !node.can_fault) return write_result_of_selection(node);
    write_end(node.natural_kind(), place_number(node, node.natural_kind()));
}

// Each branch ends the formula for itself, with the kind that it has.
void step_writer::write_result_of_selection(const formula_node& node) {
    const std::uint16_t slots_before = slots_in_use_;
    const std::size_t to_false = append_jump(steps::jump_unless, place_condition(operand(node, 0)));
    slots_in_use_ = slots_before;
    write_result(operand(node, 1));
    land(to_false);
    slots_in_use_ = slots_before;
    write_result(operand(node, 2));
}

void step_writer::write_end(number_kind kind, const place& result) {
    const bool is_integer = kind == number_kind::integer;
    if (result.is_constant) {
        append(is_integer ? steps::end_integer_constant : steps::end_real_constant, 0, 0).constant =
            result.constant;
    } else {
        append(is_integer ? steps::end_integer : steps::end_real, 0, result.slot);
    }
}

// A leaf is used where it is, everything else is computed into the next free slot.
step_writer::place step_writer::place_number(const formula_node& node, number_kind kind) {
    if (node.is_constant()) return {true, 0, node.constant_as(kind)};
    if (node.is_leaf()) return {false, slot_of_variable(node, kind), {0}};
    const std::uint16_t slot = take_slot();
    compute_into(node, kind, slot);
    return {false, slot, {0}};
}

// A slot that holds an integer, not 0 for true. NaN is true.
std::uint16_t step_writer::place_condition(const formula_node& node) {
    const std::uint16_t slot = slot_of(place_number(node, node.natural_kind()));
    if (node.natural_kind() == number_kind::integer) return slot;
    const typed_form& not_equal = operation_of(token_kind::not_equal)->binary->otherwise;
    const std::uint16_t truth = take_slot();
    append(not_equal.with_constant, truth, slot).constant.real = 0.0;
    return truth;
}

void step_writer::compute_into(const formula_node& node, number_kind kind, std::uint16_t target) {
    if (node.is_leaf()) {
        write_into(place_number(node, kind), target);
    } else if (node.what == formula_node::part::selection) {
        write_selection(node, kind, target);
    } else {
        write_function(node, target);
        if (node.kind != known(kind)) {
            append(kind == number_kind::integer ? steps::to_integer : steps::to_real, target, target);
        }
    }
}

void step_writer::write_function(const formula_node& node, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    const typed_form& form = *node.form;
    const place left = place_number(operand(node, 0), form.first);
    if (node.operands[0] == node.operands[1]) {
        append(form.with_slots, target, left.slot);
    } else if (const place right = place_number(operand(node, 1), form.second); right.is_constant) {
        append(form.with_constant, target, slot_of(left)).constant = right.constant;
    } else if (left.is_constant) {
        append(form.on_constant, target, 0, right.slot).constant = left.constant;
    } else {
        append(form.with_slots, target, left.slot, right.slot);
    }
    slots_in_use_ = slots_before;
}

void step_writer::write_selection(const formula_node& node, number_kind kind, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    const formula_node& when_true = operand(node, 1);
    const formula_node& when_false = operand(node, 2);
    const std::uint16_t condition = place_condition(operand(node, 0));
    const bool may_skip = !when_true.can_fault && !when_false.can_fault;
    if (may_skip && !(when_true.is_leaf() && when_false.is_leaf())) {
        write_branches(node, kind, condition, target);
    } else {
        write_both(node, kind, condition, target);
    }
    slots_in_use_ = slots_before;
}

void step_writer::write_branches(const formula_node& node, number_kind kind, std::uint16_t condition,
                                 std::uint16_t target) {
    const std::size_t to_false = append_jump(steps::jump_unless, condition);
    compute_into(operand(node, 1), kind, target);
    const std::size_t to_end = append_jump(steps::jump, 0);
    land(to_false);
    compute_into(operand(node, 2), kind, target);
    land(to_end);
}

void step_writer::write_both(const formula_node& node, number_kind kind, std::uint16_t condition,
                             std::uint16_t target) {
    const place when_true = place_number(operand(node, 1), kind);
    const place when_false = place_number(operand(node, 2), kind);
    write_into(when_true, target);
    if (when_false.is_constant) {
        append(steps::keep_if_constant, target, condition).constant = when_false.constant;
    } else {
        append(steps::keep_if, target, condition, when_false.slot);
    }
}

void step_writer::write_into(const place& from, std::uint16_t target) {
    if (from.is_constant) {
        append(steps::load, target, 0).constant = from.constant;
    } else {
        append(steps::copy, target, from.slot);
    }
}

std::uint16_t step_writer::slot_of(const place& from) {
    if (!from.is_constant) return from.slot;
    const std::uint16_t slot = take_slot();
    write_into(from, slot);
    return slot;
}

// Called for the variables in the order of the program.
std::uint16_t step_writer::slot_of_variable(const formula_node& node, number_kind kind) {
    const auto next = static_cast<std::uint16_t>(variables_.size());
    std::uint16_t first = next;
    std::uint16_t slot = 0;
    for (; slot < next; ++slot) {
        if (variables_[slot].id != node.variable) continue;
        if (variables_[slot].taken_as == kind) break;
        first = std::min(first, slot);
    }
    if (slot == next) variables_.push_back({node.variable, node.natural_kind(), kind, first});
    questions_.push_back(slot);
    return slot;
}

std::uint16_t step_writer::take_slot() {
    const std::uint16_t slot = slots_in_use_++;
    most_slots_ = std::max(most_slots_, slots_in_use_);
    return slot | intermediate;
}

formula_step& step_writer::append(step_function run, std::uint16_t target, std::uint16_t left,
                                  std::uint16_t right) {
    formula_step& made = steps_.emplace_back();
    made.run = run;
    made.target = target;
    made.left = left;
    made.right = right;
    return made;
}

std::size_t step_writer::append_jump(step_function run, std::uint16_t condition) {
    append(run, 0, condition);
    return steps_.size() - 1;
}

std::shared_ptr<specialised_formula> step_writer::take() {
    const auto variable_count = static_cast<std::uint16_t>(variables_.size());
    const auto settle = [variable_count](std::uint16_t& slot) {
        if ((slot & intermediate) != 0) {
            slot = static_cast<std::uint16_t>((slot & ~unsigned{intermediate}) + variable_count);
        }
    };
    for (formula_step& written : steps_) {
        settle(written.target);
        settle(written.left);
        settle(written.right);
    }
    if (questions_.size() == variables_.size()) questions_.clear();
    return std::make_shared<specialised_formula>(
        std::vector<variable>(variables_.begin(), variables_.end()),
        std::vector<std::uint16_t>(questions_.begin(), questions_.end()),
        std::vector<formula_step>(steps_.begin(), steps_.end()), std::size_t{variable_count} + most_slots_);
}

std::shared_ptr<specialised_formula> specialise(const formula_program& program, variable_kinds kinds) {
    const auto& instructions = program.instructions;
    if (instructions.size() > longest_program) return nullptr;
    formula_tree tree(kinds);
    if (!tree.build({instructions.data(), instructions.size()})) return nullptr;
    // Both branches must run for their faults, and the kind of the result is known only then.
    if (tree.root().kind == known_kind::either && tree.root().can_fault) return nullptr;
    step_writer writer(tree);
    writer.write();
    return writer.take();
}

}  // namespace

void specialise_formula(formula_program& program, variable_kinds kinds) {
    program.specialised = specialise(program, kinds);
}

void specialise_formula(formula_program& program) {
    const auto all_of = [](number_kind kind) {
        return [kind](identifier_id) { return std::optional<number_kind>(kind); };
    };
    std::shared_ptr<specialised_formula> of_integers = specialise(program, all_of(number_kind::integer));
    const bool has_variables =
        std::any_of(program.instructions.begin(), program.instructions.end(),
                    [](const formula_instruction& one) { return one.code == op_code::op_variable; });
    if (!has_variables) {
        program.specialised = std::move(of_integers);
        return;
    }
    std::shared_ptr<specialised_formula> of_floats = specialise(program, all_of(number_kind::floating));
    if (of_floats != nullptr) of_floats->alternative = std::move(of_integers);
    program.specialised = of_floats != nullptr ? std::move(of_floats) : std::move(of_integers);
}

}  // namespace GenICam
