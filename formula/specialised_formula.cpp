#include "formula/specialised_formula.h"

#include <algorithm>
#include <cstring>

namespace GenICam {

/// Translates one program, following what a calc stack would hold.
class formula_specialiser {
public:
    explicit formula_specialiser(specialised_formula::kind_lookup kinds) : kinds_(kinds) {}

    bool translate(const formula_instruction& instruction);
    /// Whether a value is left; then it is the result.
    bool finish();
    std::unique_ptr<specialised_formula> take() { return std::move(made_); }

private:
    enum class place : std::uint16_t { variable, constant, step };

    /// An entry of the calc stack. A constant has its slot from the moment when a step uses it.
    struct operand {
        place where;
        std::uint16_t index;
        number_kind kind;
        bare_number constant;
    };

    static constexpr unsigned place_shift = 14;

    bool push_variable(identifier_id id);
    bool push_constant(number_kind kind, bare_number number);
    bool push_function(const formula_function& function);
    bool push_selection();
    operand pop();
    operand convert(const operand& from, number_kind kind);
    operand compute(typed_function apply, const operand (&operands)[3], number_kind result, bool can_fold);
    std::uint16_t slot_of(const operand& used);
    std::uint16_t final_slot(std::uint16_t placed) const;

    specialised_formula::kind_lookup kinds_;
    std::unique_ptr<specialised_formula> made_ = std::make_unique<specialised_formula>();
    std::vector<operand> stack_;
    std::vector<std::optional<operand>> converted_variables_;
};

bool formula_specialiser::translate(const formula_instruction& instruction) {
    switch (instruction.code) {
        case op_code::op_push_int:
            return push_constant(number_kind::integer, instruction.number);
        case op_code::op_push_float:
            return push_constant(number_kind::floating, instruction.number);
        case op_code::op_unary:
        case op_code::op_binary:
            return push_function(*instruction.function);
        case op_code::op_select:
            return push_selection();
        case op_code::op_variable:
            return push_variable(instruction.variable);
    }
    return false;
}

bool formula_specialiser::push_constant(number_kind kind, bare_number number) {
    stack_.push_back({place::constant, 0, kind, number});
    return true;
}

bool formula_specialiser::push_variable(identifier_id id) {
    auto& known = made_->variables_;
    auto found = std::find_if(known.begin(), known.end(), [id](const auto& entry) { return entry.id == id; });
    if (found == known.end()) {
        const std::optional<number_kind> kind = kinds_(id);
        if (!kind) return false;
        known.push_back({id, *kind});
        converted_variables_.emplace_back();
        found = known.end() - 1;
    }
    stack_.push_back({place::variable, static_cast<std::uint16_t>(found - known.begin()), found->kind, {}});
    return true;
}

bool formula_specialiser::push_function(const formula_function& function) {
    if (stack_.size() < function.arity) return false;
    operand right = pop();
    operand left = function.arity == 2 ? pop() : right;
    const bool all_integers = left.kind == number_kind::integer && right.kind == number_kind::integer;
    const typed_form& form = all_integers ? function.for_integers : function.otherwise;
    left = convert(left, form.first);
    right = function.arity == 2 ? convert(right, form.second) : left;
    stack_.push_back(compute(form.apply, {left, right, left}, form.result, !form.can_fault));
    return true;
}

bool formula_specialiser::push_selection() {
    if (stack_.size() < 3) return false;
    const operand when_false = pop();
    const operand when_true = pop();
    const operand condition = pop();
    if (when_true.kind != when_false.kind) return false;
    stack_.push_back(
        compute(selection_by(condition.kind), {condition, when_true, when_false}, when_true.kind, true));
    return true;
}

formula_specialiser::operand formula_specialiser::pop() {
    const operand top = stack_.back();
    stack_.pop_back();
    return top;
}

formula_specialiser::operand formula_specialiser::convert(const operand& from, number_kind kind) {
    if (from.kind == kind) return from;
    const typed_function conversion = conversion_to(kind);
    if (from.where != place::variable) return compute(conversion, {from, from, from}, kind, true);
    std::optional<operand>& known = converted_variables_[from.index];
    if (!known) known = compute(conversion, {from, from, from}, kind, true);
    return *known;
}

formula_specialiser::operand formula_specialiser::compute(typed_function apply, const operand (&operands)[3],
                                                          number_kind result, bool can_fold) {
    const bool all_constant = std::all_of(std::begin(operands), std::end(operands),
                                          [](const operand& used) { return used.where == place::constant; });
    if (all_constant && can_fold) {
        return {place::constant, 0, result,
                apply(operands[0].constant, operands[1].constant, operands[2].constant)};
    }
    const auto index = static_cast<std::uint16_t>(made_->steps_.size());
    made_->steps_.push_back({apply, {slot_of(operands[0]), slot_of(operands[1]), slot_of(operands[2])}});
    return {place::step, index, result, {}};
}

// Until the numbers of variables and constants are known, a slot is a place and an index in it.
std::uint16_t formula_specialiser::slot_of(const operand& used) {
    std::size_t index = used.index;
    if (used.where == place::constant) {
        auto& known = made_->constants_;
        const auto found = std::find_if(known.begin(), known.end(), [&used](const bare_number& constant) {
            return std::memcmp(&constant, &used.constant, sizeof(bare_number)) == 0;
        });
        index = static_cast<std::size_t>(found - known.begin());
        if (found == known.end()) known.push_back(used.constant);
    }
    return static_cast<std::uint16_t>(static_cast<unsigned>(used.where) << place_shift | index);
}

std::uint16_t formula_specialiser::final_slot(std::uint16_t placed) const {
    const std::size_t index = placed & ((1U << place_shift) - 1);
    switch (static_cast<place>(placed >> place_shift)) {
        case place::variable:
            return static_cast<std::uint16_t>(index);
        case place::constant:
            return static_cast<std::uint16_t>(made_->variables_.size() + index);
        case place::step:
            break;
    }
    return static_cast<std::uint16_t>(made_->variables_.size() + made_->constants_.size() + index);
}

bool formula_specialiser::finish() {
    if (stack_.empty()) return false;
    const std::uint16_t result = slot_of(stack_.back());
    for (auto& step : made_->steps_) {
        for (std::uint16_t& placed : step.operands) placed = final_slot(placed);
    }
    made_->result_ = final_slot(result);
    made_->result_kind_ = stack_.back().kind;
    made_->variables_.shrink_to_fit();
    made_->constants_.shrink_to_fit();
    made_->steps_.shrink_to_fit();
    return true;
}

std::unique_ptr<const specialised_formula> specialised_formula::make(const formula_instruction* instructions,
                                                                     std::size_t count, kind_lookup kinds) {
    // Keeps indices within their bits, an instruction needs four steps at most, and the searches short.
    constexpr std::size_t longest_program = 4000;
    if (count > longest_program) return nullptr;
    formula_specialiser specialiser(kinds);
    for (std::size_t at = 0; at < count; ++at) {
        if (!specialiser.translate(instructions[at])) return nullptr;
    }
    if (!specialiser.finish()) return nullptr;
    return specialiser.take();
}

void specialised_formula::run(bare_number* frame) const noexcept {
    bare_number* next = std::copy(constants_.begin(), constants_.end(), frame + variables_.size());
    for (const step& current : steps_) {
        *next++ =
            current.apply(frame[current.operands[0]], frame[current.operands[1]], frame[current.operands[2]]);
    }
}

}  // namespace GenICam
