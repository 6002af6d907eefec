#pragma once

#include "formula/formula_evaluator.h"
#include "formula/formula_parser.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace formula_test {

/// The names of a formula: its resolver and its variables in one.
class formula_names {
public:
    void add_variable(const std::string& name, GenICam::eval_value value);
    /// A name that resolves but has no value at run time.
    void add_lost_variable(const std::string& name);
    void add_constant(const std::string& name, GenICam::eval_value value);
    /// Parses the text with the names known so far.
    void add_expression(const std::string& name, std::string_view text);
    void set(const std::string& name, GenICam::eval_value value);

    [[nodiscard]] GenICam::known_kind kind_of(GenICam::identifier_id id) const;
    GenICam::resolved_name operator()(std::string_view name) const;
    const GenICam::eval_value* operator()(GenICam::identifier_id id) const;

private:
    static constexpr GenICam::identifier_id first_id = 1000;

    std::map<std::string, GenICam::resolved_name, std::less<>> names_;
    std::vector<GenICam::eval_value> variables_;
    std::deque<GenICam::formula_program> expressions_;
};

/// "3" for an integer, "3.5f" for a float, "nan" for every NaN.
[[nodiscard]] std::string show(const GenICam::eval_value& value);

/// What a text comes to: its value as `show` gives it, or "parse: " or "run: " and the words for the failure.
/// All ways to compute it must agree.
[[nodiscard]] std::string outcome(std::string_view text, const formula_names& names = {});

/// The instructions of a text: numbers as `show` gives them, "unary", "binary", "select" and "$" with a
/// variable's id.
[[nodiscard]] std::string instructions(std::string_view text, const formula_names& names = {});

/// A formula prepared for the kinds that its variables have now.
[[nodiscard]] GenICam::formula_program specialised(std::string_view text, const formula_names& names);

[[nodiscard]] std::string repeat(std::string_view part, std::size_t count);

}  // namespace formula_test
