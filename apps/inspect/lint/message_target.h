#pragma once

#include "apps/inspect/description_tree.h"
#include "apps/inspect/lint/lint_context.h"

#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace selvane_inspect {

/// An element that a message may be about, or an attribute of it.
struct message_target {
    pugi::xml_node xml;
    pugi::xml_attribute attribute;
};

/// Finds what in the file may be at fault for a message of the engine.
class message_targets {
public:
    explicit message_targets(const lint_context& context);

    /// In document order where the engine says the same of several. Empty when the message tells nothing
    /// about a place. `asked` is the element whose node said so when it was asked; null while the description
    /// loaded.
    [[nodiscard]] std::vector<message_target> find(std::string_view message, pugi::xml_node asked) const;

private:
    [[nodiscard]] std::vector<pugi::xml_node> subjects_of(std::string_view message) const;
    [[nodiscard]] std::vector<message_target> find_without_node(std::string_view message,
                                                                pugi::xml_node asked) const;
    [[nodiscard]] std::vector<message_target> find_with_node(std::string_view message) const;

    const lint_context& context_;
    std::vector<pugi::xml_node> subjects_;
    std::unordered_map<std::string_view, std::vector<pugi::xml_node>> by_name_;
};

}  // namespace selvane_inspect
