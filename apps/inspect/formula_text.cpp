#include "apps/inspect/formula_text.h"

#include "inspection/feature_value.h"

#include <vector>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::formula_tree;

// Functions are called by a name, operators stand between or before their operands.
std::string applied_text(const char* operator_word, const GenICam::formula_function& function) {
    const std::string text(text_of(function));
    const bool is_name = !text.empty() && text.front() >= 'A' && text.front() <= 'Z';
    return (is_name ? "call " : operator_word) + text;
}

std::string write_part(const formula_tree& tree, formula_tree::index node, const variable_names& name_of,
                       std::size_t levels) {
    const GenICam::formula_instruction& instruction = tree[node].instruction;
    const std::vector<formula_tree::index> operands = tree.operands(node);
    const auto operand = [&](std::size_t at) {
        if (levels == 0) return std::string("...");
        const std::string inner = write_part(tree, operands[at], name_of, levels - 1);
        return tree.operands(operands[at]).size() > 1 ? "(" + inner + ")" : inner;
    };
    switch (instruction.code) {
        case GenICam::op_code::op_unary:
            return std::string(text_of(*instruction.function)) + " " + operand(0);
        case GenICam::op_code::op_binary:
            return operand(0) + " " + std::string(text_of(*instruction.function)) + " " + operand(1);
        case GenICam::op_code::op_select:
            return operand(0) + " ? " + operand(1) + " : " + operand(2);
        case GenICam::op_code::op_variable:
            return name_of(instruction.variable);
        case GenICam::op_code::op_push_int:
            return number_alone(value_of(GenICam::number_kind::integer, instruction.number));
        case GenICam::op_code::op_push_float:
            break;
    }
    return number_alone(value_of(GenICam::number_kind::floating, instruction.number));
}

}  // namespace

std::string number_alone(const GenICam::eval_value& number) {
    if (number.is_integer) return std::to_string(number.value.integer);
    std::string text = number_text(number.value.real);
    if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
    return text;
}

std::string number_with_kind(const GenICam::eval_value& number) {
    return number_alone(number) + " (" + std::string(number_kind_word(number)) + ")";
}

std::string_view number_kind_word(const GenICam::eval_value& number) noexcept {
    return kind_word(number.is_integer ? GenICam::node_type::integer : GenICam::node_type::floating);
}

nlohmann::ordered_json number_json(const GenICam::eval_value& number) {
    if (number.is_integer) return number.value.integer;
    return value_json(number.value.real);
}

std::string instruction_text(const GenICam::formula_instruction& instruction, const variable_names& name_of) {
    using GenICam::op_code;
    switch (instruction.code) {
        case op_code::op_push_int:
            return "push " + number_alone(value_of(GenICam::number_kind::integer, instruction.number));
        case op_code::op_push_float:
            return "push " + number_alone(value_of(GenICam::number_kind::floating, instruction.number));
        case op_code::op_unary:
            return applied_text("unary ", *instruction.function);
        case op_code::op_binary:
            return applied_text("binary ", *instruction.function);
        case op_code::op_variable:
            return "variable " + name_of(instruction.variable);
        case op_code::op_select:
            break;
    }
    return "select";
}

std::string part_text(const formula_tree& tree, formula_tree::index node, const variable_names& name_of) {
    constexpr std::size_t levels = 4;
    return write_part(tree, node, name_of, levels);
}

}  // namespace selvane_inspect
