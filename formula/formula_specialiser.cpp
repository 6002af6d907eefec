#include "formula/formula_specialiser.h"

#include "formula/formula_operation.h"
#include "formula/formula_tree.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

namespace GenICam {
namespace {

using node_index = formula_tree::index;
using variable = specialised_formula::variable;

// The steps run one inside the other where tail calls are not optimised: their number bounds the stack.
constexpr std::size_t longest_program = 1000;
// A node takes a step of its own, and perhaps one that converts it or brings it to its slot; the last ends.
constexpr std::size_t most_steps(std::size_t nodes) { return 2 * nodes + 1; }
// The writer walks the tree by recursion and stays within a small stack.
constexpr std::uint16_t deepest_tree = 200;

struct selection {
    node_index condition;
    node_index when_true;
    node_index when_false;
};

bool is_integer_constant(const known_number& number, std::int64_t wanted) noexcept {
    return number.is_constant && number.kind == known_kind::integer && number.constant.integer == wanted;
}

const typed_form& truth_of_float() noexcept { return operation_of(token_kind::not_equal)->binary->otherwise; }

/// Writes the steps of a formula. Variables are numbered as they are met; as long as their number is not
/// known, slots of intermediate results bear a mark.
class step_writer {
public:
    /// Writes into parts that are empty.
    step_writer(const formula_tree& tree, const known_numbers& numbers, written_parts& written)
        : tree_(tree),
          numbers_(numbers),
          variables_(written.variables),
          questions_(written.questions),
          steps_(written.steps) {}

    [[nodiscard]] specialised_formula::parts write() {
        write_result(tree_.root());
        return settle_slots();
    }

private:
    /// Where a number is: a constant, or a slot.
    struct location {
        bool is_constant = false;
        std::uint16_t slot = 0;
        bare_number constant = {0};
    };
    /// What a function works on: a node, or a constant that was drawn together from several.
    struct operand {
        bool is_constant;
        node_index node;
        bare_number constant;
    };
    struct operation {
        const typed_form* form;
        operand first;
        operand second;
    };
    using step_effect = step_function step_functions::*;

    static constexpr std::uint16_t intermediate = 0x8000;

    [[nodiscard]] node_index settle(node_index node) const;
    [[nodiscard]] operation operation_at(node_index node) const;
    [[nodiscard]] operation test_at(node_index selection) const;
    [[nodiscard]] operation drawn_together(node_index node) const;
    [[nodiscard]] bool has_constants_to_draw(node_index node) const;
    [[nodiscard]] bool is_selection(node_index node) const;
    [[nodiscard]] bool is_test(node_index node) const;
    [[nodiscard]] bool is_leaf(node_index node) const;
    [[nodiscard]] operand operand_at(node_index node, number_kind kind) const;

    void write_result(node_index unsettled);
    void write_result_of_selection(node_index node);
    void write_end(number_kind kind, const location& result);
    [[nodiscard]] location locate_number(node_index unsettled, number_kind kind);
    [[nodiscard]] location locate_operand(const operand& of, number_kind kind);
    [[nodiscard]] std::uint16_t place_condition(node_index node);
    void compute_into(node_index unsettled, number_kind kind, std::uint16_t target);
    void compute_settled(node_index node, number_kind kind, std::uint16_t target);
    void write_operation(node_index node, step_effect effect, std::uint16_t target);
    [[nodiscard]] std::size_t write_jump_unless(node_index unsettled);
    void write_selection(node_index node, number_kind kind, std::uint16_t target);
    void write_branches(const selection& parts, number_kind kind, std::uint16_t target);
    void write_both(const selection& parts, number_kind kind, std::uint16_t target);
    void write_into(const location& from, std::uint16_t target);

    [[nodiscard]] selection selection_at(node_index node) const;
    [[nodiscard]] specialised_formula::parts settle_slots();
    std::uint16_t slot_of(const location& from);
    std::uint16_t slot_of_variable(node_index node, number_kind kind);
    std::uint16_t take_slot();
    formula_step& append(step_function run, std::uint16_t target, std::uint16_t left,
                         std::uint16_t right = 0);
    void land(std::size_t jump) { steps_[jump].target = static_cast<std::uint16_t>(steps_.size() - jump); }

    const formula_tree& tree_;
    const known_numbers& numbers_;
    decltype(written_parts::variables)& variables_;
    decltype(written_parts::questions)& questions_;
    decltype(written_parts::steps)& steps_;
    std::uint16_t slots_in_use_ = 0;
    std::uint16_t most_slots_ = 0;
};

selection step_writer::selection_at(node_index node) const {
    const node_index when_false = formula_tree::last_operand(node);
    const node_index when_true = tree_.operand_before(when_false);
    return {tree_.operand_before(when_true), when_true, when_false};
}

bool step_writer::is_selection(node_index node) const {
    return tree_[node].instruction.code == op_code::op_select;
}

bool step_writer::is_leaf(node_index node) const {
    return numbers_[node].is_constant || tree_[node].instruction.code == op_code::op_variable;
}

// A selection between 1 and 0, or 0 and 1, is a comparison of the condition with 0. NaN is true and not equal
// to 0.
bool step_writer::is_test(node_index node) const {
    if (!is_selection(node)) return false;
    const selection parts = selection_at(node);
    const known_number& when_true = numbers_[parts.when_true];
    const known_number& when_false = numbers_[parts.when_false];
    return (is_integer_constant(when_true, 1) && is_integer_constant(when_false, 0)) ||
           (is_integer_constant(when_true, 0) && is_integer_constant(when_false, 1));
}

step_writer::operation step_writer::test_at(node_index selection) const {
    const auto parts = selection_at(selection);
    const bool is_negated = is_integer_constant(numbers_[parts.when_true], 0);
    const formula_function& function =
        *operation_of(is_negated ? token_kind::equal : token_kind::not_equal)->binary;
    const bool is_integer = numbers_[parts.condition].kind == known_kind::integer;
    const typed_form& form = is_integer ? function.for_integers : function.otherwise;
    bare_number zero = {0};
    if (!is_integer) zero.real = 0.0;
    return {&form, operand_at(parts.condition, form.first), {true, 0, zero}};
}

// Address formulas are full of integers that can be drawn together.
bool step_writer::has_constants_to_draw(node_index node) const {
    const typed_form* form = numbers_[node].form;
    if (form == nullptr || form->neutral < 0) return false;
    const node_index right = formula_tree::last_operand(node);
    return numbers_[right].is_constant || numbers_[tree_.operand_before(right)].is_constant;
}

step_writer::operation step_writer::drawn_together(node_index node) const {
    const typed_form& form = *numbers_[node].form;
    bare_number constant = {form.neutral};
    while (numbers_[node].form == &form && has_constants_to_draw(node)) {
        const node_index right = formula_tree::last_operand(node);
        const node_index left = tree_.operand_before(right);
        const bool is_right = numbers_[right].is_constant;
        constant = form.apply(constant, numbers_[is_right ? right : left].constant);
        node = is_right ? left : right;
    }
    return {&form, {false, node, {0}}, {true, 0, constant}};
}

step_writer::operand step_writer::operand_at(node_index node, number_kind kind) const {
    const known_number& number = numbers_[node];
    if (number.is_constant) return {true, node, bare_as(kind, number.value())};
    return {false, node, {0}};
}

step_writer::operation step_writer::operation_at(node_index node) const {
    if (is_selection(node)) return test_at(node);
    if (has_constants_to_draw(node)) return drawn_together(node);
    const typed_form& form = *numbers_[node].form;
    const node_index last = formula_tree::last_operand(node);
    const bool is_unary = tree_[node].instruction.code == op_code::op_unary;
    return {&form, operand_at(is_unary ? last : tree_.operand_before(last), form.first),
            operand_at(last, form.second)};
}

// The node that has the same number and less to compute: without sums that add 0, products with 1, and tests
// of what is 0 or 1 already.
node_index step_writer::settle(node_index node) const {
    for (;;) {
        if (is_leaf(node)) return node;
        if (has_constants_to_draw(node)) {
            const operation drawn = drawn_together(node);
            if (drawn.second.constant.integer != drawn.form->neutral) return node;
            node = drawn.first.node;
        } else if (is_test(node) && numbers_[selection_at(node).when_false].constant.integer == 0) {
            const known_number& condition = numbers_[selection_at(node).condition];
            if (condition.form == nullptr || !condition.form->is_test()) return node;
            node = selection_at(node).condition;
        } else {
            return node;
        }
    }
}

void step_writer::write_result(node_index unsettled) {
    const node_index node = settle(unsettled);
    const known_number& number = numbers_[node];
    const bool is_selected = is_selection(node) && !is_test(node);
    if (is_selected && !number.can_fault) {
        write_result_of_selection(node);
    } else if (is_selected || is_leaf(node)) {
        write_end(number.natural_kind(), locate_number(node, number.natural_kind()));
    } else {
        write_operation(node, &step_functions::finish, 0);
    }
}

// Each branch ends the formula for itself, with the kind that it has.
void step_writer::write_result_of_selection(node_index node) {
    const selection parts = selection_at(node);
    const std::size_t to_false = write_jump_unless(parts.condition);
    write_result(parts.when_true);
    land(to_false);
    write_result(parts.when_false);
}

void step_writer::write_end(number_kind kind, const location& result) {
    const bool is_integer = kind == number_kind::integer;
    if (result.is_constant) {
        append(is_integer ? steps::end_integer_constant : steps::end_real_constant, 0, 0).constant =
            result.constant;
    } else {
        append(is_integer ? steps::end_integer : steps::end_real, 0, result.slot);
    }
}

// A leaf is used where it is, everything else is computed into the next free slot.
step_writer::location step_writer::locate_number(node_index unsettled, number_kind kind) {
    const node_index node = settle(unsettled);
    const known_number& number = numbers_[node];
    if (number.is_constant) return {true, 0, bare_as(kind, number.value())};
    if (is_leaf(node)) return {false, slot_of_variable(node, kind), {0}};
    const std::uint16_t slot = take_slot();
    compute_settled(node, kind, slot);
    return {false, slot, {0}};
}

step_writer::location step_writer::locate_operand(const operand& of, number_kind kind) {
    return of.is_constant ? location{true, 0, of.constant} : locate_number(of.node, kind);
}

// A slot that holds an integer, not 0 for true. NaN is true.
std::uint16_t step_writer::place_condition(node_index node) {
    const number_kind kind = numbers_[node].natural_kind();
    const std::uint16_t slot = slot_of(locate_number(node, kind));
    if (kind == number_kind::integer) return slot;
    const std::uint16_t truth = take_slot();
    append(truth_of_float().with_constant.store, truth, slot).constant.real = 0.0;
    return truth;
}

void step_writer::compute_into(node_index unsettled, number_kind kind, std::uint16_t target) {
    const node_index node = settle(unsettled);
    if (is_leaf(node)) {
        write_into(locate_number(node, kind), target);
    } else {
        compute_settled(node, kind, target);
    }
}

void step_writer::compute_settled(node_index node, number_kind kind, std::uint16_t target) {
    if (is_selection(node) && !is_test(node)) {
        write_selection(node, kind, target);
    } else {
        write_operation(node, &step_functions::store, target);
        if (numbers_[node].kind != known(kind)) {
            append(kind == number_kind::integer ? steps::to_integer : steps::to_real, target, target);
        }
    }
}

void step_writer::write_operation(node_index node, step_effect effect, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    const auto [form, first, second] = operation_at(node);
    const location left = locate_operand(first, form->first);
    if (tree_[node].instruction.code == op_code::op_unary) {
        append(form->with_slots.*effect, target, left.slot);
    } else if (const location right = locate_operand(second, form->second); right.is_constant) {
        append(form->with_constant.*effect, target, slot_of(left)).constant = right.constant;
    } else if (left.is_constant) {
        append(form->on_constant.*effect, target, 0, right.slot).constant = left.constant;
    } else {
        append(form->with_slots.*effect, target, left.slot, right.slot);
    }
    slots_in_use_ = slots_before;
}

// Gives the step that jumps.
std::size_t step_writer::write_jump_unless(node_index unsettled) {
    const std::uint16_t slots_before = slots_in_use_;
    const node_index node = settle(unsettled);
    const bool is_operation = !is_leaf(node) && (!is_selection(node) || is_test(node));
    if (is_operation && operation_at(node).form->is_test()) {
        write_operation(node, &step_functions::branch, 0);
    } else if (numbers_[node].natural_kind() == number_kind::integer) {
        append(steps::jump_unless, 0, slot_of(locate_number(node, number_kind::integer)));
    } else {
        const std::uint16_t slot = slot_of(locate_number(node, number_kind::floating));
        append(truth_of_float().with_constant.branch, 0, slot).constant.real = 0.0;
    }
    slots_in_use_ = slots_before;
    return steps_.size() - 1;
}

void step_writer::write_selection(node_index node, number_kind kind, std::uint16_t target) {
    const selection parts = selection_at(node);
    const bool may_skip = !numbers_[parts.when_true].can_fault && !numbers_[parts.when_false].can_fault;
    if (may_skip && !(is_leaf(parts.when_true) && is_leaf(parts.when_false))) {
        write_branches(parts, kind, target);
    } else {
        write_both(parts, kind, target);
    }
}

void step_writer::write_branches(const selection& parts, number_kind kind, std::uint16_t target) {
    const std::size_t to_false = write_jump_unless(parts.condition);
    compute_into(parts.when_true, kind, target);
    const std::size_t to_end = steps_.size();
    append(steps::jump, 0, 0);
    land(to_false);
    compute_into(parts.when_false, kind, target);
    land(to_end);
}

void step_writer::write_both(const selection& parts, number_kind kind, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    const std::uint16_t condition = place_condition(parts.condition);
    const location when_true = locate_number(parts.when_true, kind);
    const location when_false = locate_number(parts.when_false, kind);
    write_into(when_true, target);
    if (when_false.is_constant) {
        append(steps::keep_if_constant, target, condition).constant = when_false.constant;
    } else {
        append(steps::keep_if, target, condition, when_false.slot);
    }
    slots_in_use_ = slots_before;
}

void step_writer::write_into(const location& from, std::uint16_t target) {
    if (from.is_constant) {
        append(steps::load, target, 0).constant = from.constant;
    } else {
        append(steps::copy, target, from.slot);
    }
}

std::uint16_t step_writer::slot_of(const location& from) {
    if (!from.is_constant) return from.slot;
    const std::uint16_t slot = take_slot();
    write_into(from, slot);
    return slot;
}

// Called for the variables in the order of the program.
std::uint16_t step_writer::slot_of_variable(node_index node, number_kind kind) {
    const identifier_id id = tree_[node].instruction.variable;
    const auto next = static_cast<std::uint16_t>(variables_.size());
    std::uint16_t first = next;
    std::uint16_t slot = 0;
    for (; slot < next; ++slot) {
        if (variables_[slot].id != id) continue;
        if (variables_[slot].taken_as == kind) break;
        first = std::min(first, slot);
    }
    if (slot == next) variables_.push_back({id, numbers_[node].natural_kind(), kind, first});
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

specialised_formula::parts step_writer::settle_slots() {
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
    return {{variables_.data(), variables_.size()},
            {questions_.data(), questions_.size()},
            {steps_.data(), steps_.size()},
            std::size_t{variable_count} + most_slots_};
}

// Whether the forms of all functions are known, and the walk over the tree stays within a small stack.
bool is_known(const formula_tree& tree, const known_numbers& numbers) {
    for (node_index node = 0; node < tree.size(); ++node) {
        const known_number& number = numbers[node];
        const op_code code = tree[node].instruction.code;
        const bool is_function = code == op_code::op_unary || code == op_code::op_binary;
        if (is_function && !number.is_constant && number.form == nullptr) return false;
        if (code == op_code::op_variable && number.kind == known_kind::either) return false;
        if (number.depth > deepest_tree) return false;
    }
    // Both branches must run for their faults, and the kind of the result is known only then.
    const known_number& result = numbers[tree.root()];
    return result.kind != known_kind::either || !result.can_fault;
}

/// A form by itself in memory of the heap, which it leaves with its alternatives.
struct form_deleter {
    void operator()(const specialised_formula* form) const noexcept {
        while (form != nullptr) {
            const specialised_formula* next = form->alternative;
            // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): made by it, and constant to its readers
            ::operator delete(const_cast<specialised_formula*>(form));
            form = next;
        }
    }
};
using owned_form = std::unique_ptr<specialised_formula, form_deleter>;

owned_form specialise(const formula_tree& tree, variable_kinds kinds) {
    formula_specialiser specialiser;
    const auto parts = specialiser.prepare(tree, kinds);
    if (!parts) return nullptr;
    return owned_form(
        specialised_formula::make(::operator new(specialised_formula::size_of(*parts)), *parts));
}

}  // namespace

std::optional<specialised_formula::parts> formula_specialiser::prepare(const formula_tree& tree,
                                                                       variable_kinds kinds) {
    if (!tree.is_complete() || tree.size() > longest_program) return std::nullopt;
    numbers_.infer(tree, kinds);
    if (!is_known(tree, numbers_)) return std::nullopt;
    written_.variables.clear();
    written_.questions.clear();
    written_.steps.clear();
    return step_writer(tree, numbers_, written_).write();
}

void formula_specialiser::reserve(std::size_t nodes) {
    const std::size_t longest = std::min(nodes, longest_program);
    numbers_.reserve(longest);
    written_.variables.reserve(longest);
    written_.questions.reserve(longest);
    written_.steps.reserve(most_steps(longest));
}

std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree,
                                                              variable_kinds kinds) {
    return specialise(tree, kinds);
}

std::shared_ptr<const specialised_formula> specialise_formula(const formula_tree& tree) {
    owned_form of_integers = specialise(tree, [](identifier_id) { return known_kind::integer; });
    const auto nodes = tree.nodes();
    const bool has_variables = std::any_of(nodes.begin(), nodes.end(), [](const formula_node& node) {
        return node.instruction.code == op_code::op_variable;
    });
    if (!has_variables) return of_integers;
    owned_form of_floats = specialise(tree, [](identifier_id) { return known_kind::floating; });
    if (of_floats == nullptr) return of_integers;
    of_floats->alternative = of_integers.release();
    return of_floats;
}

}  // namespace GenICam
