#pragma once

#include <string_view>
#include <vector>

namespace selvane_inspect {

/// What is known of an element that stands inside another one.
enum class element_use {
    read,     ///< the engine reads it there
    unread,   ///< descriptions use that name, but nothing reads it there
    unknown,  ///< no description uses that name
};

/// How the child of an element that becomes a node is used. `made_as` is the class of that node; empty for an
/// entry of an enumeration.
[[nodiscard]] element_use use_in_node(std::string_view made_as, std::string_view child);
/// The same in a `StructReg`, which shares what it says among its entries.
[[nodiscard]] element_use use_in_struct(std::string_view child);
/// The same among the nodes: under the root, in groups and in structures.
[[nodiscard]] element_use use_among_nodes(std::string_view element);

/// Every name that is read somewhere inside a node, and every one among the nodes.
[[nodiscard]] const std::vector<std::string_view>& names_in_nodes();
[[nodiscard]] const std::vector<std::string_view>& names_among_nodes();
/// The keys of extensions that are read.
[[nodiscard]] const std::vector<std::string_view>& extension_keys();

}  // namespace selvane_inspect
