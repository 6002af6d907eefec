#pragma once

#include "tests/support/node_test.h"

#include <string>

namespace formula_test {

using namespace node_test;

inline std::string integer(const std::string& name, const std::string& value) {
    return "<Integer Name='" + name + "'><Value>" + value + "</Value></Integer>";
}
inline std::string real(const std::string& name, const std::string& value) {
    return "<Float Name='" + name + "'><Value>" + value + "</Value></Float>";
}
inline std::string truth_value(const std::string& name, const std::string& value) {
    return "<Boolean Name='" + name + "'><Value>" + value + "</Value></Boolean>";
}

/// A `pVariable` of that name for a node.
inline std::string variable(const std::string& name, const std::string& node) {
    return "<pVariable Name='" + name + "'>" + node + "</pVariable>";
}
inline std::string constant(const std::string& name, const std::string& text) {
    return "<Constant Name='" + name + "'>" + text + "</Constant>";
}
inline std::string expression(const std::string& name, const std::string& text) {
    return "<Expression Name='" + name + "'><![CDATA[" + text + "]]></Expression>";
}
inline std::string formula(const std::string& text) { return "<Formula><![CDATA[" + text + "]]></Formula>"; }
inline std::string formulas(const std::string& to, const std::string& from) {
    return "<FormulaTo><![CDATA[" + to + "]]></FormulaTo><FormulaFrom><![CDATA[" + from + "]]></FormulaFrom>";
}
inline std::string target(const std::string& name) { return "<pValue>" + name + "</pValue>"; }

/// A node "k" of that element.
inline std::string node(const std::string& element, const std::string& children) {
    return "<" + element + " Name='k'>" + children + "</" + element + ">";
}

/// The two messages before a node's own: what a parse says of the formula that it refuses.
inline std::string unknown_name(const std::string& name) {
    return "math_parser::add_identifier_token, failed to map variable \"" + name +
           "\" to either a constant or a pValue.\n";
}
inline std::string parse_failed(const std::string& words, const std::string& rest) {
    return "km_parse_tree failed with result=" + words + ". Last token view:\n" + rest + ".\n";
}
inline std::string name_not_mapped(const std::string& rest) {
    return parse_failed("Failed to map a variable name to a identifier_id", rest);
}

}  // namespace formula_test
