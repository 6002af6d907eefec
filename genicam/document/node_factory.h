#pragma once

#include "genicam/core/children.h"
#include "genicam/core/document_services.h"
#include "genicam/document/document_allocator.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <cstdint>
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

/// An element that becomes a node: its class, and its children as a stretch of the walk's list.
struct taken_element {
    pugi::xml_node xml;
    const node_class* chosen = nullptr;
    child_set present;
    std::size_t first_child = 0;
    std::size_t child_count = 0;
    std::size_t frame = no_frame;  ///< of a `StructEntry`: its place in the walk's frames

    static constexpr std::size_t no_frame = static_cast<std::size_t>(-1);

    /// With its children; as long as the list does not change.
    [[nodiscard]] described_element describe(const std::vector<known_child>& children) const noexcept {
        return {xml, present, {children.data() + first_child, child_count}};
    }
};

/// Goes through a description element by element, in document order, and gives each that becomes a node with
/// its class. Every walk over a description is this one, so that no two can decide differently. Needs no
/// stack, however deep the description nests.
class element_walk {
public:
    element_walk(pugi::xml_node root, const load_options& options);

    /// The next element that becomes a node; false at the end.
    [[nodiscard]] bool next();
    [[nodiscard]] const taken_element& taken() const noexcept { return taken_; }
    /// The children of all elements taken so far.
    [[nodiscard]] std::vector<known_child>& children() noexcept { return children_; }
    /// The elements that the entries taken so far share their settings with.
    [[nodiscard]] const std::vector<taken_element>& frames() const noexcept { return frames_; }

private:
    // An element that the walk is inside of.
    struct open_container {
        pugi::xml_node xml;
        bool is_struct;
        std::size_t sharing;  // which open container an entry in this one shares its settings with
        std::size_t frame = taken_element::no_frame;
    };

    void open(pugi::xml_node container);
    void advance();
    [[nodiscard]] bool take(pugi::xml_node xml);
    [[nodiscard]] std::size_t find_frame();

    pugi::xml_node root_;
    pugi::xml_node at_;        // the element that the walk looks at next
    pugi::xml_node embedded_;  // the next address formula inside the element before it
    taken_element taken_;
    std::vector<known_child> children_;
    std::vector<taken_element> frames_;
    std::vector<open_container> containers_;
    bool keep_debug_properties_;
};

}  // namespace GenICam
