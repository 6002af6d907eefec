#pragma once

#include "genicam/document/node_factory.h"
#include "genicam/genicam_doc.h"
#include "inspection/source_text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace selvane_inspect {

/// The options with which the pages load a description, and so does everything here.
constexpr GenICam::load_options page_options = {true, true};

/// An element that the engine makes a node of.
struct node_element {
    pugi::xml_node xml;
    std::string_view name;
    const GenICam::node_class* made;  ///< null for an entry of an enumeration, which is no node of its own
    pugi::xml_node structure = {};    ///< of a `StructEntry`: the element whose address it shares
};

/// A number of an element in the list of a tree.
using element_index = std::size_t;

/// The elements of a description, with their positions in the file. The text must outlive it.
class description_tree {
public:
    explicit description_tree(const source_text& source);

    /// Not set for a text that is well-formed; else what is wrong, and where.
    struct defect {
        const char* about;
        text_position at;
    };
    [[nodiscard]] const std::optional<defect>& malformed() const noexcept { return malformed_; }

    [[nodiscard]] pugi::xml_node root() const { return xml_.first_child(); }
    /// The elements that become nodes in document order, then the entries of all enumerations.
    [[nodiscard]] const std::vector<node_element>& elements() const noexcept { return elements_; }
    [[nodiscard]] const node_element& at(element_index index) const { return elements_[index]; }
    /// All nodes of a name; usually one. Entries cannot be found.
    [[nodiscard]] const std::vector<element_index>& find(std::string_view name) const;
    /// The element with this start tag.
    [[nodiscard]] std::optional<element_index> find(pugi::xml_node xml) const;
    /// The element that a node of the engine was made of. The node must stem from the same text.
    [[nodiscard]] std::optional<element_index> find(GenICam::INode& node) const;

    /// The memory that the engine makes all nodes in, in bytes.
    [[nodiscard]] std::uint64_t arena_bytes() const noexcept { return arena_bytes_; }

    [[nodiscard]] text_position position_of(pugi::xml_node xml) const;
    [[nodiscard]] text_position position_of(pugi::xml_node xml, pugi::xml_attribute attribute) const;

private:
    void collect();
    node_element& add(pugi::xml_node xml, const GenICam::node_class* made);

    const source_text& source_;
    pugi::xml_document xml_;
    std::optional<defect> malformed_;
    std::vector<node_element> elements_;
    std::uint64_t arena_bytes_ = 0;
    std::unordered_map<std::string_view, std::vector<element_index>> by_name_;
    std::unordered_map<std::ptrdiff_t, element_index> by_offset_;
};

}  // namespace selvane_inspect
