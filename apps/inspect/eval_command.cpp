#include "apps/inspect/commands.h"
#include "apps/inspect/formula_text.h"
#include "apps/inspect/lint/formula_outline.h"
#include "formula/formula_operation.h"
#include "formula/formula_parser.h"
#include "genicam/core/number_parser.h"
#include "inspection/feature_value.h"
#include "inspection/guarded_run.h"
#include "platform/ascii.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::formula_instruction;
using GenICam::formula_program;
using GenICam::identifier_id;

struct variable {
    std::string name;
    eval_value value;
};

/// One instruction, and the stack behind it.
struct step {
    std::string instruction;
    std::vector<eval_value> stack;
};

constexpr identifier_id first_id = 1;

variable parse_variable(const std::string& text) {
    const std::size_t at = text.find('=');
    if (at == std::string::npos || at == 0) throw wrong_use(text + " is no variable: NAME=VALUE");
    variable parsed = {text.substr(0, at), {}};
    if (GenICam::find_named_constant(parsed.name) != nullptr) {
        throw wrong_use(parsed.name + " is a number of the language and cannot be another");
    }
    const std::string value = text.substr(at + 1);
    const std::size_t read = GenICam::parse_number(value, parsed.value);
    if (read == 0 || read != value.size()) throw wrong_use(value + " is no number for " + parsed.name);
    return parsed;
}

std::vector<variable> parse_variables(const std::vector<std::string>& texts) {
    std::vector<variable> variables;
    variables.reserve(texts.size());
    for (const std::string& text : texts) variables.push_back(parse_variable(text));
    return variables;
}

GenICam::resolved_name resolve(const std::vector<variable>& variables, std::string_view name) {
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&](const variable& one) { return one.name == name; });
    if (found == variables.end()) return {};
    return first_id + static_cast<identifier_id>(found - variables.begin());
}

GenICam::formula_tree read(const std::string& formula, const std::vector<variable>& variables) {
    GenICam::formula_tree tree =
        GenICam::read_formula(formula, [&](std::string_view name) { return resolve(variables, name); });
    if (!tree.is_accepted()) throw refused(refusal_text(formula, tree.end));
    return tree;
}

/// A run of a program, step by step.
struct explained_run {
    guarded_result result;
    std::vector<step> steps;
};

explained_run run(const formula_program& program, const std::vector<variable>& variables) {
    explained_run explained;
    const auto at = [&](identifier_id id) -> const variable& { return variables[id - first_id]; };
    const auto name_of = [&](identifier_id id) { return at(id).name; };
    const auto lookup = [&](identifier_id id) { return std::optional<eval_value>(at(id).value); };
    const auto watch = [&](const formula_instruction* next, gsl::span<const eval_value> stack) {
        std::vector<step>& steps = explained.steps;
        if (!steps.empty()) steps.back().stack.assign(stack.data(), stack.data() + stack.size());
        if (next != nullptr) steps.push_back({instruction_text(*next, name_of), {}});
        return true;
    };
    explained.result = run_guarded(program, lookup, watch);
    return explained;
}

std::string stack_text(const std::vector<eval_value>& stack) {
    std::string text;
    for (const eval_value& value : stack) text += (text.empty() ? "" : "  ") + number_alone(value);
    return text;
}

void check(const guarded_result& result, const std::string& formula) {
    const bool is_blank = platform::trimmed(std::string_view(formula)).empty();
    const std::string title = is_blank ? "an empty formula" : formula;
    if (result.ends_process) throw refused(title + ": divides integers without a result, such as by zero");
    if (!result.failure.empty()) throw refused(title + ": " + std::string(result.failure));
}

nlohmann::ordered_json as_json(const std::string& formula, const explained_run& explained,
                               const std::vector<std::string>& notes, bool explain) {
    nlohmann::ordered_json json = {{"command", "eval"}, {"formula", formula}};
    json["kind"] = number_kind_word(explained.result.value);
    json["value"] = number_json(explained.result.value);
    json["notes"] = notes;
    if (!explain) return json;
    json["steps"] = nlohmann::ordered_json::array();
    for (const step& one : explained.steps) {
        auto stack = nlohmann::ordered_json::array();
        for (const eval_value& value : one.stack) stack.push_back(number_json(value));
        json["steps"].push_back({{"instruction", one.instruction}, {"stack", std::move(stack)}});
    }
    return json;
}

void print_steps(std::ostream& out, const explained_run& explained) {
    std::size_t number = 0;
    for (const step& one : explained.steps) {
        write_line(out, fmt::format("{:>3}  {:<20} {}", ++number, one.instruction, stack_text(one.stack)));
    }
}

}  // namespace

int eval(const eval_options& options, const channels& to) {
    const std::vector<variable> variables = parse_variables(options.variables);
    const GenICam::formula_tree tree = read(options.formula, variables);
    const explained_run explained = run(tree.program(), variables);
    if (options.explain && !to.json) print_steps(to.out, explained);
    check(explained.result, options.formula);
    const std::vector<std::string> notes = formula_notes(tree);
    if (to.json) {
        write_json(to.out, as_json(options.formula, explained, notes, options.explain));
        return exit_code::fine;
    }
    to.out << number_with_kind(explained.result.value) << '\n';
    for (const std::string& note : notes) write_line(to.out, "note: " + note);
    return exit_code::fine;
}

}  // namespace selvane_inspect
