#pragma once

#include <map>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace selvane_inspect {

/// One reference of an element to a node by its name.
struct element_link {
    std::string_view role;    ///< the child's name; "pOffset" for that attribute
    std::string_view label;   ///< the `Name` of a variable or the `Index` of a value; else empty
    std::string_view target;  ///< the name of the node
    pugi::xml_node xml;       ///< the child
};

/// Reads what elements refer to.
class link_reader {
public:
    /// In document order: every child whose name begins with a p and a capital, embedded formulas, the links
    /// in the extension. An entry of a register structure also has those of the structure.
    [[nodiscard]] std::vector<element_link> read(pugi::xml_node element);

private:
    // Of structures, which are as long as their entries are many.
    std::map<pugi::xml_node, std::vector<element_link>> of_struct_regs_;
};

/// Where a variable with such a name reads: the value of its node or one of its limits.
enum class variable_reads { value, minimum, maximum, increment, entry };
[[nodiscard]] variable_reads what_variable_reads(std::string_view name);

}  // namespace selvane_inspect
