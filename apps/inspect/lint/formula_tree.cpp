#include "apps/inspect/lint/formula_tree.h"

#include "apps/inspect/formula_text.h"
#include "apps/inspect/guarded_run.h"

#include <algorithm>
#include <utility>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::formula_function;
using GenICam::formula_instruction;
using GenICam::op_code;

std::size_t operands_of(const formula_instruction& instruction) {
    switch (instruction.code) {
        case op_code::op_unary:
            return 1;
        case op_code::op_binary:
            return 2;
        case op_code::op_select:
            return 3;
        default:
            return 0;
    }
}

known_kind kind_of_result(const GenICam::typed_form& form) {
    return form.result == GenICam::number_kind::integer ? known_kind::integer : known_kind::floating;
}

known_kind join(known_kind left, known_kind right) { return left == right ? left : known_kind::either; }

known_kind kind_of_number(const eval_value& number) {
    return number.is_integer ? known_kind::integer : known_kind::floating;
}

}  // namespace

program_tree::program_tree(const GenICam::formula_program& program, const kind_lookup& kinds) {
    constexpr std::size_t longest = 4096;
    if (program.instructions.size() > longest) return;
    for (const formula_instruction& instruction : program.instructions) {
        if (add(instruction, kinds)) continue;
        nodes_.clear();
        return;
    }
}

bool program_tree::add(const formula_instruction& instruction, const kind_lookup& kinds) {
    program_node node = {&instruction, {}, operands_of(instruction), known_kind::either, std::nullopt};
    if (stack_.size() < node.operand_count) return false;
    for (std::size_t at = node.operand_count; at-- > 0;) {
        node.operands[at] = stack_.back();
        stack_.pop_back();
    }
    infer(node, kinds);
    stack_.push_back(nodes_.size());
    nodes_.push_back(node);
    return true;
}

void program_tree::infer(program_node& node, const kind_lookup& kinds) const {
    switch (node.instruction->code) {
        case op_code::op_push_int:
            node.constant = value_of(GenICam::number_kind::integer, node.instruction->number);
            break;
        case op_code::op_push_float:
            node.constant = value_of(GenICam::number_kind::floating, node.instruction->number);
            break;
        case op_code::op_variable:
            node.kind = kinds(node.instruction->variable);
            break;
        case op_code::op_select:
            node.kind = join(nodes_[node.operands[1]].kind, nodes_[node.operands[2]].kind);
            break;
        default:
            infer_operation(node);
    }
    if (node.constant) node.kind = kind_of_number(*node.constant);
}

void program_tree::infer_operation(program_node& node) const {
    const formula_function& function = *node.instruction->function;
    std::array<eval_value, 2> values{};
    bool constant = true;
    bool all_integers = true;
    bool any_float = false;
    for (std::size_t at = 0; at < node.operand_count; ++at) {
        const program_node& operand = nodes_[node.operands[at]];
        constant = constant && operand.constant;
        if (operand.constant) values[at] = *operand.constant;
        all_integers = all_integers && operand.kind == known_kind::integer;
        any_float = any_float || operand.kind == known_kind::floating;
    }
    const known_kind of_integers = kind_of_result(function.for_integers);
    const known_kind otherwise = kind_of_result(function.otherwise);
    node.kind = all_integers ? of_integers : any_float ? otherwise : join(of_integers, otherwise);
    if (!constant || would_end_process(*node.instruction, {values.data(), node.operand_count})) return;
    node.constant =
        node.operand_count == 1 ? apply(function, values[0]) : apply(function, values[0], values[1]);
}

std::vector<std::size_t> program_tree::below(std::size_t node) const {
    std::vector<std::size_t> found = {node};
    for (std::size_t at = 0; at < found.size(); ++at) {
        const program_node& one = nodes_[found[at]];
        for (std::size_t operand = 0; operand < one.operand_count; ++operand)
            found.push_back(one.operands[operand]);
    }
    return found;
}

std::string program_tree::text(std::size_t node, const name_lookup& names) const {
    constexpr std::size_t levels = 4;
    return write(node, names, levels);
}

std::string program_tree::write(std::size_t node, const name_lookup& names, std::size_t room) const {
    const program_node& one = nodes_[node];
    const auto operand = [&](std::size_t at) {
        const std::size_t place = one.operands[at];
        if (room == 0) return std::string("...");
        const std::string inner = write(place, names, room - 1);
        return nodes_[place].operand_count > 1 ? "(" + inner + ")" : inner;
    };
    switch (one.instruction->code) {
        case op_code::op_unary:
            return std::string(text_of(*one.instruction->function)) + " " + operand(0);
        case op_code::op_binary:
            return operand(0) + " " + std::string(text_of(*one.instruction->function)) + " " + operand(1);
        case op_code::op_select:
            return operand(0) + " ? " + operand(1) + " : " + operand(2);
        case op_code::op_variable:
            return names(one.instruction->variable);
        default:
            return number_alone(*one.constant);
    }
}

bool may_divide_integers(const program_tree& tree, const program_node& node) {
    if (node.instruction->code != op_code::op_binary) return false;
    const formula_function& function = *node.instruction->function;
    const auto kind = [&](std::size_t operand) { return tree.nodes()[node.operands[operand]].kind; };
    const bool surely_float = kind(0) == known_kind::floating || kind(1) == known_kind::floating;
    return surely_float ? function.otherwise.can_fault : function.for_integers.can_fault;
}

bool divides_integers(const program_tree& tree, const program_node& node) {
    static const formula_function* const division =
        GenICam::operation_of(GenICam::token_kind::divide)->binary;
    const bool is_division =
        node.instruction->code == op_code::op_binary && node.instruction->function == division;
    return is_division && tree.nodes()[node.operands[0]].kind == known_kind::integer &&
           tree.nodes()[node.operands[1]].kind == known_kind::integer;
}

}  // namespace selvane_inspect
