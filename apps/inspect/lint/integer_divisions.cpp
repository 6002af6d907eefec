#include "apps/inspect/lint/integer_divisions.h"

#include "inspection/guarded_run.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::identifier_id;
using node_index = GenICam::formula_tree::index;

constexpr std::size_t max_runs = 10000;

struct tried_variable {
    bool is_float;
    std::size_t at = 0;  // in the list of numbers
};
using tried_variables = std::map<identifier_id, tried_variable>;

// The likely ones first: with many variables only those are tried.
std::vector<std::int64_t> numbers_to_try(const analysed_formula& formula) {
    std::vector<std::int64_t> numbers = {0, 1, -1};
    const auto add = [&](std::int64_t number) {
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
    };
    constexpr std::int64_t largest = std::int64_t{1} << 62;
    for (node_index node = 0; node < formula.tree->size(); ++node) {
        const GenICam::known_number& known = formula.numbers[node];
        if (!known.is_constant) continue;
        const std::int64_t number = std::clamp(to_int(known.value()), -largest, largest);
        for (const std::int64_t nearby : {number, -number, number - 1, number + 1}) add(nearby);
    }
    constexpr std::int64_t small = 16;
    for (std::int64_t number = 2; number <= small; ++number) add(number);
    for (std::int64_t power = 1; power < largest; power *= 2) add(power);
    return numbers;
}

// How many numbers every variable can try without more runs than anyone waits for.
std::size_t numbers_each(std::size_t variables, std::size_t available) {
    std::size_t each = available;
    const auto runs = [&] {
        std::size_t product = 1;
        for (std::size_t one = 0; one < variables && product <= max_runs; ++one) product *= each;
        return product;
    };
    while (each > 1 && runs() > max_runs) --each;
    return each;
}

// False when all have been tried.
bool step(tried_variables& variables, std::size_t numbers) {
    for (auto& [id, one] : variables) {
        if (++one.at < numbers) return true;
        one.at = 0;
    }
    return false;
}

}  // namespace

std::optional<analysed_formula> analyse(const GenICam::formula_tree& tree, GenICam::variable_kinds kinds) {
    constexpr std::size_t longest = 4096;
    if (!tree.is_accepted() || tree.lacks_operands() || tree.size() > longest) return std::nullopt;
    return analysed_formula{&tree, {tree, kinds}};
}

kinds_of_variables variables_of(const analysed_formula& formula, node_index node) {
    kinds_of_variables variables;
    for (node_index at = (*formula.tree)[node].first; at <= node; ++at) {
        const GenICam::formula_instruction& instruction = (*formula.tree)[at].instruction;
        if (instruction.code == GenICam::op_code::op_variable)
            variables.emplace(instruction.variable, formula.numbers[at].kind);
    }
    return variables;
}

bool may_divide_integers(const analysed_formula& formula, node_index node) {
    const GenICam::formula_instruction& instruction = (*formula.tree)[node].instruction;
    return instruction.code == GenICam::op_code::op_binary && instruction.function->for_integers.can_fault &&
           formula.numbers[node].kind != GenICam::known_kind::floating;
}

bool divides_integers(const analysed_formula& formula, node_index node) {
    const GenICam::formula_instruction& instruction = (*formula.tree)[node].instruction;
    return instruction.code == GenICam::op_code::op_binary &&
           instruction.function == GenICam::operation_of(GenICam::token_kind::divide)->binary &&
           formula.numbers[node].kind == GenICam::known_kind::integer;
}

bool can_be_zero(const analysed_formula& formula, node_index node) {
    GenICam::formula_program part;
    for (node_index at = (*formula.tree)[node].first; at <= node; ++at)
        part.instructions.push_back((*formula.tree)[at].instruction);
    const std::vector<std::int64_t> numbers = numbers_to_try(formula);
    tried_variables variables;
    for (const auto& [id, kind] : variables_of(formula, node))
        variables.emplace(id, tried_variable{kind == GenICam::known_kind::floating});
    const std::size_t each = numbers_each(variables.size(), numbers.size());
    const auto lookup = [&](identifier_id id) -> std::optional<eval_value> {
        const tried_variable& one = variables.at(id);
        const std::int64_t number = numbers[one.at];
        return one.is_float ? eval_value::of(static_cast<double>(number)) : eval_value::of(number);
    };
    do {
        const guarded_result tried = run_guarded(part, lookup);
        if (tried.ends_process || (tried.failure.empty() && to_int(tried.value) == 0)) return true;
    } while (step(variables, each));
    return false;
}

}  // namespace selvane_inspect
