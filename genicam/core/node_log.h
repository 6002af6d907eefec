#pragma once

#include "genicam/core/log.h"
#include "genicam/core/node_base.h"

namespace GenICam {

/// A message at level 1 whose first argument is the node's name.
template <class... Arguments>
void log_node(const char* format, const node_base_data& node, Arguments... arguments) {
    if (log_enabled(log_failure)) log_message(log_failure, format, node.name_text(), arguments...);
}

/// A message at level 1 whose first arguments are an element's name and its `Name`.
template <class... Arguments>
void log_element(const char* format, pugi::xml_node xml, Arguments... arguments) {
    if (!log_enabled(log_failure)) return;
    log_message(log_failure, format, xml.name(), xml.attribute("Name").value(), arguments...);
}

/// The message, at level 2, and the code of a refused value.
template <class Printed>
[[nodiscard]] std::error_code refuse_range(const char* format, const node_base_data& node, Printed value) {
    if (log_enabled(log_rejection)) log_message(log_rejection, format, node.name_text(), value);
    return make_error_code(value_out_of_range);
}

}  // namespace GenICam
