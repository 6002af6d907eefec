#include "apps/inspect/lint/divisor_probe.h"

#include "apps/inspect/guarded_run.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::identifier_id;

constexpr std::size_t max_runs = 10000;

struct tried_variable {
    identifier_id id;
    bool is_float;
    std::size_t at = 0;  // in the list of numbers
};

// The likely ones first: with many variables only those are tried.
std::vector<std::int64_t> numbers_to_try(const program_tree& tree) {
    std::vector<std::int64_t> numbers = {0, 1, -1};
    const auto add = [&](std::int64_t number) {
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
    };
    constexpr std::int64_t largest = std::int64_t{1} << 62;
    for (const program_node& node : tree.nodes()) {
        if (!node.constant) continue;
        const std::int64_t number = std::clamp(to_int(*node.constant), -largest, largest);
        for (const std::int64_t nearby : {number, -number, number - 1, number + 1}) add(nearby);
    }
    constexpr std::int64_t small = 16;
    for (std::int64_t number = 2; number <= small; ++number) add(number);
    for (std::int64_t power = 1; power < largest; power *= 2) add(power);
    return numbers;
}

std::vector<tried_variable> variables_of(const program_tree& tree, std::size_t node) {
    std::vector<tried_variable> variables;
    for (const std::size_t at : tree.below(node)) {
        const program_node& one = tree.nodes()[at];
        if (one.instruction->code != GenICam::op_code::op_variable) continue;
        const identifier_id id = one.instruction->variable;
        const bool is_known = std::any_of(variables.begin(), variables.end(),
                                          [&](const tried_variable& known) { return known.id == id; });
        if (!is_known) variables.push_back({id, one.kind == known_kind::floating});
    }
    return variables;
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
bool step(std::vector<tried_variable>& variables, std::size_t numbers) {
    for (tried_variable& one : variables) {
        if (++one.at < numbers) return true;
        one.at = 0;
    }
    return false;
}

}  // namespace

bool can_be_zero(const program_tree& tree, std::size_t node) {
    // In postfix everything that a node is computed from stands right before it.
    GenICam::formula_program part;
    for (std::size_t at = node + 1 - tree.below(node).size(); at <= node; ++at)
        part.instructions.push_back(*tree.nodes()[at].instruction);
    const std::vector<std::int64_t> numbers = numbers_to_try(tree);
    std::vector<tried_variable> variables = variables_of(tree, node);
    const std::size_t each = numbers_each(variables.size(), numbers.size());
    const auto lookup = [&](identifier_id id) -> std::optional<eval_value> {
        for (const tried_variable& one : variables) {
            if (one.id != id) continue;
            const std::int64_t number = numbers[one.at];
            return one.is_float ? eval_value::of(static_cast<double>(number)) : eval_value::of(number);
        }
        return std::nullopt;
    };
    do {
        const guarded_result tried = run_guarded(part, lookup);
        if (tried.ends_process || (tried.failure.empty() && to_int(tried.value) == 0)) return true;
    } while (step(variables, each));
    return false;
}

}  // namespace selvane_inspect
