#include "formula/formula_specialiser.h"

#include "formula/formula_operation.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include <boost/container/small_vector.hpp>
#include <gsl/span>

namespace GenICam {
namespace {

// Keep the recursion over the tree and the run of the steps within a small stack.
constexpr std::size_t longest_program = 1000;
constexpr std::uint16_t deepest_tree = 200;

enum class node_kind : std::uint8_t { constant, variable, function, selection };

/// What is known of a number: of a selection between an integer and a float, neither kind.
enum class known_kind : std::uint8_t { floating, integer, either };

constexpr known_kind known(number_kind kind) noexcept {
    return kind == number_kind::integer ? known_kind::integer : known_kind::floating;
}

/// A part of the formula with its operands, which are nodes before it.
struct node {
    node_kind what = node_kind::constant;
    known_kind kind = known_kind::integer;
    bool can_fault = false;
    std::uint16_t depth = 0;
    std::uint16_t operands[3] = {};
    const typed_form* form = nullptr;  // of a function; one that takes a single operand has it twice
    union {
        bare_number constant = {0};
        identifier_id variable;
    };
};

using node_list = boost::container::small_vector<node, 64>;

bool is_constant(const node& of) noexcept { return of.what == node_kind::constant; }
bool is_leaf(const node& of) noexcept { return is_constant(of) || of.what == node_kind::variable; }
number_kind kind_of_constant(const node& of) noexcept {
    return of.kind == known_kind::integer ? number_kind::integer : number_kind::floating;
}

bool is_integer_constant(const node& of, std::int64_t number) noexcept {
    return is_constant(of) && of.kind == known_kind::integer && of.constant.integer == number;
}

const typed_form* sum_of_integers() noexcept { return &operation_of(token_kind::plus)->binary->for_integers; }
const typed_form* product_of_integers() noexcept {
    return &operation_of(token_kind::multiply)->binary->for_integers;
}

bare_number constant_as(number_kind kind, const node& of) noexcept {
    return bare_as(kind, value_of(kind_of_constant(of), of.constant));
}

/// Makes the tree of a program, following what a calc stack would hold.
class tree_builder {
public:
    explicit tree_builder(variable_kinds kinds) : kinds_(kinds) {}

    bool build(gsl::span<const formula_instruction> program);
    [[nodiscard]] const node_list& nodes() const noexcept { return nodes_; }
    [[nodiscard]] std::uint16_t root() const noexcept { return stack_.back(); }

private:
    bool add(const formula_instruction& instruction);
    bool add_constant(number_kind kind, bare_number number);
    bool add_variable(identifier_id id);
    bool add_function(const formula_function& function);
    bool add_form(const typed_form& form, std::uint16_t first, std::uint16_t second);
    bool add_to_constant(const typed_form& form, std::uint16_t number, std::uint16_t constant);
    bool add_selection();
    bool add_test(token_kind comparison, std::uint16_t condition);
    bool push(const node& made);
    std::uint16_t pop();
    static const typed_form* choose(const formula_function& function, const node& first, const node& second);
    static bool never_faults(const typed_form& form, const node& divisor);

    variable_kinds kinds_;
    node_list nodes_;
    boost::container::small_vector<std::uint16_t, 64> stack_;
};

bool tree_builder::build(gsl::span<const formula_instruction> program) {
    for (const formula_instruction& instruction : program) {
        if (!add(instruction)) return false;
    }
    return stack_.size() == 1;
}

bool tree_builder::add(const formula_instruction& instruction) {
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

bool tree_builder::push(const node& made) {
    if (made.depth > deepest_tree) return false;
    stack_.push_back(static_cast<std::uint16_t>(nodes_.size()));
    nodes_.push_back(made);
    return true;
}

std::uint16_t tree_builder::pop() {
    const std::uint16_t top = stack_.back();
    stack_.pop_back();
    return top;
}

bool tree_builder::add_constant(number_kind kind, bare_number number) {
    node made;
    made.kind = known(kind);
    made.constant = number;
    return push(made);
}

bool tree_builder::add_variable(identifier_id id) {
    const std::optional<number_kind> kind = kinds_(id);
    if (!kind) return false;
    node made;
    made.what = node_kind::variable;
    made.kind = known(*kind);
    made.variable = id;
    return push(made);
}

// The form for operands of these kinds; null where a condition decides.
const typed_form* tree_builder::choose(const formula_function& function, const node& first,
                                       const node& second) {
    if (first.kind == known_kind::integer && second.kind == known_kind::integer)
        return &function.for_integers;
    if (first.kind == known_kind::floating || second.kind == known_kind::floating) return &function.otherwise;
    return function.for_integers.apply == function.otherwise.apply ? &function.otherwise : nullptr;
}

bool tree_builder::never_faults(const typed_form& form, const node& divisor) {
    if (!form.can_fault) return true;
    if (!is_constant(divisor)) return false;
    const std::int64_t number = constant_as(number_kind::integer, divisor).integer;
    return number != 0 && number != -1;
}

bool tree_builder::add_function(const formula_function& function) {
    if (stack_.size() < function.arity) return false;
    const std::uint16_t second = pop();
    const std::uint16_t first = function.arity == 2 ? pop() : second;
    const typed_form* form = choose(function, nodes_[first], nodes_[second]);
    return form != nullptr && add_form(*form, first, second);
}

bool tree_builder::add_form(const typed_form& form, std::uint16_t first, std::uint16_t second) {
    const node& left = nodes_[first];
    const node& right = nodes_[second];
    node made;
    made.can_fault = left.can_fault || right.can_fault || !never_faults(form, right);
    if (is_constant(left) && is_constant(right) && !made.can_fault) {
        return add_constant(form.result,
                            form.apply(constant_as(form.first, left), constant_as(form.second, right)));
    }
    if (&form == sum_of_integers() || &form == product_of_integers()) {
        if (is_constant(left)) std::swap(first, second);
        if (is_constant(nodes_[second])) return add_to_constant(form, first, second);
    }
    made.what = node_kind::function;
    made.form = &form;
    made.operands[0] = first;
    made.operands[1] = second;
    made.kind = known(form.result);
    made.depth = static_cast<std::uint16_t>(std::max(left.depth, right.depth) + 1);
    return push(made);
}

// Sums and products of integers are exact modulo 2 to the 64, so that their constants can be drawn together.
// Address formulas are full of them.
bool tree_builder::add_to_constant(const typed_form& form, std::uint16_t number, std::uint16_t constant) {
    const std::int64_t neutral = &form == sum_of_integers() ? 0 : 1;
    bare_number together = nodes_[constant].constant;
    if (nodes_[number].form == &form && is_constant(nodes_[nodes_[number].operands[1]])) {
        together = form.apply(together, nodes_[nodes_[number].operands[1]].constant);
        number = nodes_[number].operands[0];
    }
    if (together.integer == neutral) {
        stack_.push_back(number);
        return true;
    }
    if (!add_constant(number_kind::integer, together)) return false;
    node made;
    made.what = node_kind::function;
    made.form = &form;
    made.operands[0] = number;
    made.operands[1] = pop();
    made.can_fault = nodes_[number].can_fault;
    made.depth = static_cast<std::uint16_t>(nodes_[number].depth + 1);
    return push(made);
}

bool tree_builder::add_selection() {
    if (stack_.size() < 3) return false;
    node made;
    made.what = node_kind::selection;
    for (std::size_t at = 3; at-- > 0;) made.operands[at] = pop();
    const node& condition = nodes_[made.operands[0]];
    const node& when_true = nodes_[made.operands[1]];
    const node& when_false = nodes_[made.operands[2]];
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
bool tree_builder::add_test(token_kind comparison, std::uint16_t condition) {
    if (!add_constant(number_kind::integer, {0})) return false;
    const formula_function& function = *operation_of(comparison)->binary;
    const std::uint16_t zero = pop();
    const typed_form* form = choose(function, nodes_[condition], nodes_[zero]);
    return form != nullptr && add_form(*form, condition, zero);
}

/// Writes the steps of a tree. Variables are numbered as they are met; as long as their number is not known,
/// slots of intermediate results bear a mark.
class step_writer {
public:
    explicit step_writer(const node_list& nodes) : nodes_(nodes) {}

    bool write(std::uint16_t root);
    [[nodiscard]] std::unique_ptr<specialised_formula> take();

private:
    /// Where a number is: a constant, or a slot.
    struct place {
        bool is_constant = false;
        std::uint16_t slot = 0;
        bare_number constant = {0};
    };

    static constexpr std::uint16_t intermediate = 0x8000;

    bool write_result(const node& of);
    bool write_result_of_selection(const node& of);
    bool place_number(const node& of, number_kind kind, place& found);
    bool compute_into(const node& of, number_kind kind, std::uint16_t target);
    bool write_function(const node& of, std::uint16_t target);
    bool write_selection(const node& of, number_kind kind, std::uint16_t target);
    bool write_branches(const node& of, number_kind kind, std::uint16_t target, std::uint16_t condition);
    bool write_both(const node& of, number_kind kind, std::uint16_t target, std::uint16_t condition);
    bool place_condition(const node& of, std::uint16_t& slot);
    void write_into(const place& from, std::uint16_t target);
    void write_end(number_kind kind, const place& result);
    void write_conversion(number_kind kind, std::uint16_t from, std::uint16_t target);

    std::uint16_t slot_of(const place& from);
    std::uint16_t slot_of_variable(const node& of, number_kind kind);
    std::uint16_t take_slot();
    formula_step& append(step_function run, std::uint16_t target, std::uint16_t left,
                         std::uint16_t right = 0);
    std::size_t append_jump(step_function run, std::uint16_t condition);
    void land(std::size_t jump) { steps_[jump].distance = static_cast<std::ptrdiff_t>(steps_.size() - jump); }

    const node_list& nodes_;
    boost::container::small_vector<specialised_formula::variable, 16> variables_;
    boost::container::small_vector<formula_step, 64> steps_;
    std::uint16_t slots_in_use_ = 0;
    std::uint16_t most_slots_ = 0;
};

bool step_writer::write(std::uint16_t root) { return write_result(nodes_[root]); }

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

std::uint16_t step_writer::slot_of_variable(const node& of, number_kind kind) {
    const auto found = std::find_if(variables_.begin(), variables_.end(),
                                    [&of, kind](const specialised_formula::variable& listed) {
                                        return listed.id == of.variable && listed.taken_as == kind;
                                    });
    const auto slot = static_cast<std::uint16_t>(found - variables_.begin());
    if (found == variables_.end()) variables_.push_back({of.variable, kind_of_constant(of), kind});
    return slot;
}

std::uint16_t step_writer::slot_of(const place& from) {
    if (!from.is_constant) return from.slot;
    const std::uint16_t slot = take_slot();
    append(steps::load, slot, 0).constant = from.constant;
    return slot;
}

void step_writer::write_into(const place& from, std::uint16_t target) {
    if (from.is_constant) {
        append(steps::load, target, 0).constant = from.constant;
    } else if (from.slot != target) {
        append(steps::copy, target, from.slot);
    }
}

void step_writer::write_conversion(number_kind kind, std::uint16_t from, std::uint16_t target) {
    append(kind == number_kind::integer ? steps::to_integer : steps::to_real, target, from);
}

// A leaf is used where it is, everything else is computed into the next free slot.
bool step_writer::place_number(const node& of, number_kind kind, place& found) {
    if (is_constant(of)) {
        found.is_constant = true;
        found.constant = constant_as(kind, of);
        return true;
    }
    if (of.what == node_kind::variable) {
        found.slot = slot_of_variable(of, kind);
        return true;
    }
    found.slot = take_slot();
    return compute_into(of, kind, found.slot);
}

bool step_writer::compute_into(const node& of, number_kind kind, std::uint16_t target) {
    if (is_leaf(of)) {
        place leaf;
        if (!place_number(of, kind, leaf)) return false;
        write_into(leaf, target);
        return true;
    }
    if (of.what == node_kind::selection) return write_selection(of, kind, target);
    if (!write_function(of, target)) return false;
    if (of.kind != known(kind)) write_conversion(kind, target, target);
    return true;
}

bool step_writer::write_function(const node& of, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    const bool is_unary = of.operands[0] == of.operands[1];
    place left;
    place right;
    if (!place_number(nodes_[of.operands[0]], of.form->first, left)) return false;
    if (!is_unary && !place_number(nodes_[of.operands[1]], of.form->second, right)) return false;
    if (is_unary) {
        append(of.form->with_slots, target, left.slot);
    } else if (right.is_constant) {
        append(of.form->with_constant, target, slot_of(left)).constant = right.constant;
    } else if (left.is_constant) {
        append(of.form->on_constant, target, 0, right.slot).constant = left.constant;
    } else {
        append(of.form->with_slots, target, left.slot, right.slot);
    }
    slots_in_use_ = slots_before;
    return true;
}

// A slot that holds an integer, not 0 for true. NaN is true.
bool step_writer::place_condition(const node& of, std::uint16_t& slot) {
    const number_kind kind = of.kind == known_kind::integer ? number_kind::integer : number_kind::floating;
    place condition;
    if (!place_number(of, kind, condition)) return false;
    slot = slot_of(condition);
    if (kind == number_kind::integer) return true;
    const typed_form& not_equal = operation_of(token_kind::not_equal)->binary->otherwise;
    const std::uint16_t truth = take_slot();
    append(not_equal.with_constant, truth, slot).constant.real = 0.0;
    slot = truth;
    return true;
}

bool step_writer::write_selection(const node& of, number_kind kind, std::uint16_t target) {
    const std::uint16_t slots_before = slots_in_use_;
    std::uint16_t condition = 0;
    if (!place_condition(nodes_[of.operands[0]], condition)) return false;
    const node& when_true = nodes_[of.operands[1]];
    const node& when_false = nodes_[of.operands[2]];
    const bool skips =
        !when_true.can_fault && !when_false.can_fault && !(is_leaf(when_true) && is_leaf(when_false));
    const bool written =
        skips ? write_branches(of, kind, target, condition) : write_both(of, kind, target, condition);
    slots_in_use_ = slots_before;
    return written;
}

bool step_writer::write_branches(const node& of, number_kind kind, std::uint16_t target,
                                 std::uint16_t condition) {
    const std::size_t to_false = append_jump(steps::jump_unless, condition);
    if (!compute_into(nodes_[of.operands[1]], kind, target)) return false;
    const std::size_t to_end = append_jump(steps::jump, 0);
    land(to_false);
    if (!compute_into(nodes_[of.operands[2]], kind, target)) return false;
    land(to_end);
    return true;
}

bool step_writer::write_both(const node& of, number_kind kind, std::uint16_t target,
                             std::uint16_t condition) {
    place when_true;
    place when_false;
    if (!place_number(nodes_[of.operands[1]], kind, when_true)) return false;
    if (!place_number(nodes_[of.operands[2]], kind, when_false)) return false;
    write_into(when_true, target);
    if (when_false.is_constant) {
        append(steps::keep_if_constant, target, condition).constant = when_false.constant;
    } else {
        append(steps::keep_if, target, condition, when_false.slot);
    }
    return true;
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

bool step_writer::write_result(const node& of) {
    if (of.what == node_kind::selection) return write_result_of_selection(of);
    const number_kind kind = kind_of_constant(of);
    const std::uint16_t slots_before = slots_in_use_;
    place result;
    if (!place_number(of, kind, result)) return false;
    write_end(kind, result);
    slots_in_use_ = slots_before;
    return true;
}

// Each branch ends the formula for itself, with the kind that it has.
bool step_writer::write_result_of_selection(const node& of) {
    const node& when_true = nodes_[of.operands[1]];
    const node& when_false = nodes_[of.operands[2]];
    const std::uint16_t slots_before = slots_in_use_;
    if (when_true.can_fault || when_false.can_fault) {
        if (of.kind == known_kind::either) return false;
        const std::uint16_t target = take_slot();
        if (!write_selection(of, kind_of_constant(of), target)) return false;
        write_end(kind_of_constant(of), {false, target, {0}});
        slots_in_use_ = slots_before;
        return true;
    }
    std::uint16_t condition = 0;
    if (!place_condition(nodes_[of.operands[0]], condition)) return false;
    const std::size_t to_false = append_jump(steps::jump_unless, condition);
    slots_in_use_ = slots_before;
    if (!write_result(when_true)) return false;
    land(to_false);
    return write_result(when_false);
}

std::unique_ptr<specialised_formula> step_writer::take() {
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
    return std::make_unique<specialised_formula>(
        std::vector<specialised_formula::variable>(variables_.begin(), variables_.end()),
        std::vector<formula_step>(steps_.begin(), steps_.end()), std::size_t{variable_count} + most_slots_);
}

std::unique_ptr<specialised_formula> specialise(gsl::span<const formula_instruction> program,
                                                variable_kinds kinds) {
    if (program.size() > longest_program) return nullptr;
    tree_builder builder(kinds);
    if (!builder.build(program)) return nullptr;
    step_writer writer(builder.nodes());
    if (!writer.write(builder.root())) return nullptr;
    return writer.take();
}

}  // namespace

void specialise_formula(formula_program& program, variable_kinds kinds) {
    program.specialised = specialise({program.instructions.data(), program.instructions.size()}, kinds);
}

void specialise_formula(formula_program& program) {
    const auto all_of = [](number_kind kind) {
        return [kind](identifier_id) { return std::optional<number_kind>(kind); };
    };
    std::unique_ptr<specialised_formula> of_integers =
        specialise({program.instructions.data(), program.instructions.size()}, all_of(number_kind::integer));
    const bool has_variables =
        std::any_of(program.instructions.begin(), program.instructions.end(),
                    [](const formula_instruction& one) { return one.code == op_code::op_variable; });
    if (!has_variables) {
        program.specialised = std::move(of_integers);
        return;
    }
    std::unique_ptr<specialised_formula> of_floats =
        specialise({program.instructions.data(), program.instructions.size()}, all_of(number_kind::floating));
    if (of_floats != nullptr) of_floats->alternative = std::move(of_integers);
    program.specialised = of_floats != nullptr ? std::move(of_floats) : std::move(of_integers);
}

}  // namespace GenICam
