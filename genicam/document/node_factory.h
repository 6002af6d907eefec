#pragma once

#include "genicam/base/document_services.h"
#include "genicam/core/children.h"
#include "genicam/document/document_allocator.h"
#include "genicam/genicam_doc.h"
#include "genicam/nodes/struct_entry_node.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <string_view>
#include <vector>

#include <gsl/span>
#include <pugixml.hpp>

namespace GenICam {

/// A class that elements of a description become.
struct node_class {
    std::string_view name;
    std::uint64_t size;
    bool has_destructor;
    /// Counts what the element's node needs.
    void (*reserve)(alloc_itf& allocator, const described_element& element);
    /// Makes the node in memory of the allocator.
    INode* (*construct)(alloc_itf& allocator, document_services* services, const described_element& element);
};

/// All classes, in the order of the decision list.
[[nodiscard]] gsl::span<const node_class> all_node_classes() noexcept;

/// An element that becomes a node, and its class.
struct taken_element {
    described_element element;
    const node_class* chosen = nullptr;
};

/// Goes through a description element by element, in document order, and gives each that becomes a node with
/// its class. Every walk over a description is this one, so that no two can decide differently. Needs no
/// stack, however deep the description nests.
class element_walk {
public:
    element_walk(pugi::xml_node root, const load_options& options);

    /// The next element that becomes a node; false at the end.
    [[nodiscard]] bool next();
    /// Its description lives as long as the walk.
    [[nodiscard]] const taken_element& taken() const noexcept { return taken_; }

private:
    // An element that the walk is inside of.
    struct open_container {
        pugi::xml_node xml;
        bool is_struct;
        std::size_t sharing;  // which open container an entry in this one shares its settings with
        shared_struct_reg* struct_reg = nullptr;  // what they share, once an entry asked
    };

    void open(pugi::xml_node container);
    void advance();
    [[nodiscard]] bool take(pugi::xml_node xml);
    [[nodiscard]] shared_struct_reg* find_shared_struct_reg();

    pugi::xml_node root_;
    pugi::xml_node at_;        // the element that the walk looks at next
    pugi::xml_node embedded_;  // the next address formula inside the element before it
    taken_element taken_;
    element_scanner scanner_;
    std::list<shared_struct_reg> struct_regs_;
    std::vector<open_container> containers_;
    bool keep_debug_properties_;
};

}  // namespace GenICam
