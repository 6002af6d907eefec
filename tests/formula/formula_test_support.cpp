#include "tests/formula/formula_test_support.h"

#include "tests/support/test_document.h"

#include <cmath>

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace GenICam;

namespace formula_test {
namespace {

// The words in "km_parse_tree failed with result=<words>. Last token view: ...".
std::string parse_failure(std::string_view text, const formula_names& names) {
    test_support::LogCapture log;
    EXPECT_FALSE(parse_formula(text, names));
    const std::vector<std::string> messages = log.Take();
    const std::string message = messages.empty() ? "" : messages.back();
    const std::size_t from = message.find("result=") + 7;
    return message.substr(from, message.find(". Last token view:\n") - from);
}

std::string show_instruction(const formula_instruction& instruction) {
    switch (instruction.code) {
        case op_code::op_push_int:
            return show(value_of(number_kind::integer, instruction.number));
        case op_code::op_push_float:
            return show(value_of(number_kind::floating, instruction.number));
        case op_code::op_unary:
            return "unary";
        case op_code::op_binary:
            return "binary";
        case op_code::op_select:
            return "select";
        case op_code::op_variable:
            return fmt::format("${}", instruction.variable);
    }
    return "?";
}

}  // namespace

void formula_names::add_variable(const std::string& name, eval_value value) {
    names_[name] = first_id + variables_.size();
    variables_.push_back(value);
}

void formula_names::add_lost_variable(const std::string& name) { names_[name] = identifier_id{1}; }

void formula_names::add_constant(const std::string& name, eval_value value) { names_[name] = value; }

void formula_names::add_expression(const std::string& name, std::string_view text) {
    auto program = parse_instructions(text, *this);
    ASSERT_TRUE(program) << text;
    expressions_.push_back(std::move(program.value()));
    names_[name] = static_cast<const formula_program*>(&expressions_.back());
}

void formula_names::set(const std::string& name, eval_value value) {
    variables_.at(std::get<identifier_id>(names_.at(name)) - first_id) = value;
}

known_kind formula_names::kind_of(identifier_id id) const {
    const eval_value* value = (*this)(id);
    return value == nullptr ? known_kind::either : known(GenICam::kind_of(*value));
}

resolved_name formula_names::operator()(std::string_view name) const {
    const auto found = names_.find(name);
    return found == names_.end() ? resolved_name() : found->second;
}

const eval_value* formula_names::operator()(identifier_id id) const {
    if (id < first_id || id - first_id >= variables_.size()) return nullptr;
    return &variables_[id - first_id];
}

std::string show(const eval_value& value) {
    if (value.is_integer) return fmt::format("{}", value.value.integer);
    return std::isnan(value.value.real) ? "nan" : fmt::format("{}f", value.value.real);
}

formula_program specialised(std::string_view text, const formula_names& names) {
    auto program = parse_formula(text, names, [&names](identifier_id id) { return names.kind_of(id); });
    EXPECT_TRUE(program) << text;
    return std::move(program.value());
}

std::string outcome(std::string_view text, const formula_names& names) {
    const auto program = parse_formula(text, names);
    if (!program) {
        EXPECT_EQ(program.error(), make_error_code(formula_parse_failed));
        return "parse: " + parse_failure(text, names);
    }
    eval_value value;
    const auto lookup = [&names](identifier_id id) -> std::optional<eval_value> {
        const eval_value* found = names(id);
        return found != nullptr ? std::optional<eval_value>(*found) : std::nullopt;
    };
    const std::string failure(run_instructions(program.value(), lookup, value));
    const auto computed = evaluate_formula(program.value(), names);
    const auto computed_specialised = evaluate_formula(specialised(text, names), names);
    if (!failure.empty()) {
        EXPECT_EQ(computed.error(), make_error_code(formula_parse_failed)) << text;
        EXPECT_EQ(computed_specialised.error(), make_error_code(formula_parse_failed)) << text;
        return "run: " + failure;
    }
    EXPECT_EQ(show(computed.value()), show(value)) << text;
    EXPECT_EQ(show(computed_specialised.value()), show(value)) << text;
    return show(value);
}

std::string instructions(std::string_view text, const formula_names& names) {
    const auto program = parse_formula(text, names);
    if (!program) return "parse: " + parse_failure(text, names);
    std::string shown;
    for (const formula_instruction& instruction : program.value().instructions) {
        if (!shown.empty()) shown += ' ';
        shown += show_instruction(instruction);
    }
    return shown;
}

std::string repeat(std::string_view part, std::size_t count) {
    std::string text;
    text.reserve(part.size() * count);
    for (std::size_t at = 0; at < count; ++at) text += part;
    return text;
}

}  // namespace formula_test
