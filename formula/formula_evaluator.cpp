#include "formula/formula_evaluator.h"

#include <boost/container/small_vector.hpp>

namespace GenICam {
namespace {

constexpr std::string_view no_variable = "Failed to look up variable name.";
constexpr std::string_view no_operand = "Failed to get 1 parameter for unary function.";
constexpr std::string_view no_operands = "Failed to get 2 parameters for binary function.";
constexpr std::string_view no_selection = "Failed to get 3 parameters for condition operator.";
constexpr std::string_view no_result = "Unbalanced calc stack.";
constexpr std::string_view stopped = "Stopped by whoever watches.";

class calc_stack {
public:
    void push(const eval_value& value) {
        if (values_.size() == values_.capacity()) values_.reserve(values_.size() + 1);
        values_.push_back(value);
    }
    [[nodiscard]] bool has(std::size_t count) const noexcept { return values_.size() >= count; }
    [[nodiscard]] const eval_value& top() const noexcept { return values_.back(); }
    [[nodiscard]] gsl::span<const eval_value> values() const noexcept {
        return {values_.data(), values_.size()};
    }
    eval_value pop() noexcept {
        const eval_value value = values_.back();
        values_.pop_back();
        return value;
    }

private:
    boost::container::small_vector<eval_value, 20> values_;
};

std::string_view run_unary(calc_stack& stack, const formula_function& function) {
    if (!stack.has(1)) return no_operand;
    stack.push(apply(function, stack.pop()));
    return {};
}

std::string_view run_binary(calc_stack& stack, const formula_function& function) {
    if (!stack.has(2)) return no_operands;
    const eval_value right = stack.pop();
    const eval_value left = stack.pop();
    stack.push(apply(function, left, right));
    return {};
}

std::string_view run_selection(calc_stack& stack) {
    if (!stack.has(3)) return no_selection;
    const eval_value when_false = stack.pop();
    const eval_value when_true = stack.pop();
    const eval_value condition = stack.pop();
    stack.push(is_true(condition) ? when_true : when_false);
    return {};
}

std::string_view run_variable(calc_stack& stack, identifier_id id, const variable_lookup& variables) {
    const std::optional<eval_value> found = variables(id);
    if (!found) return no_variable;
    stack.push(*found);
    return {};
}

std::string_view run(calc_stack& stack, const formula_instruction& instruction,
                     const variable_lookup& variables) {
    switch (instruction.code) {
        case op_code::op_push_int:
            stack.push(value_of(number_kind::integer, instruction.number));
            break;
        case op_code::op_push_float:
            stack.push(value_of(number_kind::floating, instruction.number));
            break;
        case op_code::op_unary:
            return run_unary(stack, *instruction.function);
        case op_code::op_binary:
            return run_binary(stack, *instruction.function);
        case op_code::op_select:
            return run_selection(stack);
        case op_code::op_variable:
            return run_variable(stack, instruction.variable, variables);
    }
    return {};
}

template <class Watch>
std::string_view run_all(const formula_view& program, const variable_lookup& variables, eval_value& result,
                         Watch goes_on) {
    calc_stack stack;
    for (const formula_instruction& instruction : program.instructions) {
        if (!goes_on(&instruction, stack)) return stopped;
        const std::string_view failure = run(stack, instruction, variables);
        if (!failure.empty()) return failure;
    }
    if (!goes_on(nullptr, stack)) return stopped;
    if (!stack.has(1)) return no_result;
    result = stack.top();
    return {};
}

}  // namespace

result<eval_value> evaluate_stepwise(const formula_view& program, variable_lookup variables) {
    eval_value value;
    if (!run_instructions(program, variables, value).empty()) return make_error_code(formula_parse_failed);
    return value;
}

result<eval_value> evaluate_repeating(const formula_view& program, const specialised_formula* form,
                                      const asked_frame& frame, const std::optional<eval_value>& last,
                                      variable_lookup variables) {
    std::size_t question = 0;
    return evaluate_stepwise(program, [&](identifier_id id) -> std::optional<eval_value> {
        if (question > frame.asked()) return variables(id);
        const std::size_t asked_before = question++;
        return asked_before == frame.asked() ? last : frame.answer(*form, asked_before);
    });
}

std::string_view run_instructions(const formula_view& program, variable_lookup variables,
                                  eval_value& result) {
    return run_all(program, variables, result,
                   [](const formula_instruction*, const calc_stack&) { return true; });
}

std::string_view run_instructions(const formula_view& program, variable_lookup variables, eval_value& result,
                                  instruction_watch watch) {
    return run_all(program, variables, result, [&](const formula_instruction* next, const calc_stack& stack) {
        return watch(next, stack.values());
    });
}

}  // namespace GenICam
