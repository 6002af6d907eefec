#pragma once

#include "genicam/genicam_doc.h"

#include <cstdint>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace GenICam {

/// The counts of elements and classes under a root element, as text.
[[nodiscard]] std::string count_elements(pugi::xml_node root, const load_options& options);

/// A text with one line a node.
class node_listing {
public:
    void add(std::string_view name, std::int32_t dependents);
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    std::string text_;
};

}  // namespace GenICam
