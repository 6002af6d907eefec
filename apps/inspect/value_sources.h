#pragma once

#include "inspection/feature_reader.h"

#include <optional>
#include <string>
#include <vector>

namespace selvane_inspect {

/// A formula with the names in it.
struct shown_formula {
    std::string element;  ///< `Formula`, `FormulaFrom`, `FormulaTo` or `Expression`
    std::string name;     ///< of an expression
    std::string text;
    std::string refusal;  ///< why the language refuses it; empty when it does not
};

/// A name in the formulas of a node and what it stands for now.
struct shown_variable {
    std::string name;
    std::string node;                          ///< empty for a constant
    std::optional<GenICam::eval_value> value;  ///< not set when the engine knows no such name
};

/// Where a register node lies now and what is there, past its cache and access mode.
struct register_state {
    std::uint64_t address;
    simcam::bytes bytes;
    std::optional<std::uint64_t> mask;  ///< of a node that is a field of the register
    std::string_view byte_order;        ///< of a number of several bytes
};

/// Where a value comes from: a node, how it was reached, and what is behind it.
struct value_source {
    std::string role;   ///< the element that names it; empty for the feature itself
    std::string label;  ///< the name of a variable, or an index
    std::string name;
    std::string element;
    answer<feature_value> value;
    std::vector<shown_formula> formulas;
    std::vector<shown_variable> variables;
    std::optional<register_state> state;  ///< of a register whose address can be computed
    std::string port;                     ///< of a register that can never be reached: why
    bool is_known = false;                ///< told further up, and what is behind it as well
    bool is_cut = false;                  ///< too deep for what is behind it to be told
    std::vector<value_source> behind;
};

/// Follows all links of a feature that its value, its limits and its access depend on.
[[nodiscard]] value_source find_sources(description& in, evaluation_guard& guard, GenICam::INode& feature);

/// Whether there is anything to tell of where the value comes from.
[[nodiscard]] bool has_sources(const value_source& source);
[[nodiscard]] std::string sources_text(const value_source& source);
[[nodiscard]] nlohmann::ordered_json sources_json(const value_source& source);

}  // namespace selvane_inspect
