#pragma once

#include <string_view>

#include <pugixml.hpp>

namespace GenICam {

class IGenICamDoc;
class described_element;
class variable_table;

/// Makes room for the names that the formulas of a node know, and enters the constants and those variables
/// that stand for an entry of an enumeration.
void build_formula_name_lookup(variable_table& table, IGenICamDoc* doc, const described_element& xml,
                               bool is_integer);

/// The attribute `Name` of a binding.
[[nodiscard]] std::string_view binding_name(pugi::xml_node element) noexcept;

}  // namespace GenICam
