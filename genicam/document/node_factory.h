#pragma once

#include "genicam/core/document_services.h"
#include "genicam/document/document_allocator.h"
#include "genicam/genicam_doc.h"

#include <cstdint>
#include <string_view>

#include <gsl/span>
#include <pugixml.hpp>

namespace GenICam {

/// A class that elements of a description become.
struct node_class {
    std::string_view name;
    std::uint64_t size;
    bool has_destructor;
    /// Counts what the element's node needs.
    void (*reserve)(alloc_itf& allocator, pugi::xml_node element);
    /// Makes the node in memory of the allocator.
    INode* (*construct)(alloc_itf& allocator, document_services* services, pugi::xml_node element);
};

/// All classes, in the order of the decision list.
[[nodiscard]] gsl::span<const node_class> all_node_classes() noexcept;

/// Goes through a description element by element, in document order, and gives each that becomes a node with
/// its class. Every walk over a description is this one, so that no two can decide differently. Needs no
/// stack, however deep the description nests.
class element_walk {
public:
    element_walk(pugi::xml_node root, const load_options& options);

    /// The next element that becomes a node; false at the end.
    [[nodiscard]] bool next();
    [[nodiscard]] pugi::xml_node element() const noexcept { return taken_; }
    [[nodiscard]] const node_class& chosen_class() const noexcept { return *class_; }

private:
    void advance();
    [[nodiscard]] bool take(pugi::xml_node element);
    [[nodiscard]] bool is_dropped(pugi::xml_node element) const;

    pugi::xml_node root_;
    pugi::xml_node at_;        // the element that the walk looks at next
    pugi::xml_node embedded_;  // the next address formula inside the element before it
    pugi::xml_node taken_;
    const node_class* class_ = nullptr;
    bool keep_debug_properties_;
};

}  // namespace GenICam
