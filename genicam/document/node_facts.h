#pragma once

#include "genicam/inode.h"

#include <cstdint>
#include <string_view>

#include <gsl/span>
#include <pugixml.hpp>

namespace GenICam {

/// Names with blanks between them.
class name_list {
public:
    constexpr name_list(const char* names = "") noexcept : names_(names) {}

    [[nodiscard]] bool empty() const noexcept { return names_.empty(); }
    [[nodiscard]] bool contains(std::string_view name) const noexcept;
    template <class Function>
    void for_each(Function fn) const {
        for (std::string_view rest = names_; !rest.empty();) {
            const std::size_t end = rest.find(' ');
            fn(rest.substr(0, end));
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        }
    }

private:
    std::string_view names_;
};

/// What there is to know of a class of nodes for those who look at descriptions from outside. Stands in the
/// same row as what the factory needs.
struct node_facts {
    std::string_view element;
    std::string_view name;  ///< of the class
    bool checks_access;     ///< before every read and write
    bool has_limits;        ///< states them, and asks its targets for those that it does not state
    bool computes;          ///< a formula
    name_list evaluated;    ///< links whose values take part in reading and writing
    name_list targets;      ///< links that are read and written through
    name_list children[5];  ///< that it reads

    [[nodiscard]] bool reads(std::string_view child) const noexcept;
};

/// In the order of the decision list.
[[nodiscard]] gsl::span<const node_facts> all_node_facts() noexcept;
/// Null for a name that no class has.
[[nodiscard]] const node_facts* find_node_facts(std::string_view class_name) noexcept;

/// What an entry of an enumeration reads, and a `StructReg` for all of its entries: neither is a node of the
/// document.
extern const node_facts enum_entry_facts;
extern const node_facts struct_reg_facts;

/// The element that a node was made from.
[[nodiscard]] pugi::xml_node element_of(INode& node);
/// The node named by the text of a child of that element, or null; logs a name that is unknown.
[[nodiscard]] INode* linked_node(INode& node, const char* child);

// Of the elements of registers.

/// The element that tells where the register lies: for a `StructEntry` the one around it.
[[nodiscard]] pugi::xml_node register_element_of(pugi::xml_node element);
[[nodiscard]] Endianess byte_order_of(pugi::xml_node element);
/// The bits that a `MaskedIntReg` or a `StructEntry` has in the word of a register of 1 to 8 bytes.
[[nodiscard]] std::uint64_t field_bits_of(pugi::xml_node element, std::int64_t length);

}  // namespace GenICam
