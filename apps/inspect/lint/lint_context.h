#pragma once

#include "apps/inspect/description.h"
#include "apps/inspect/evaluation_guard.h"

#include <optional>
#include <string>
#include <vector>

namespace selvane_inspect {

/// A description under examination. What several rules need is found out once.
class lint_context {
public:
    explicit lint_context(description& of);

    [[nodiscard]] description& subject() const noexcept { return description_; }
    [[nodiscard]] const description_tree& tree() const noexcept { return description_.tree(); }
    /// False when an exception left the load: then there are no nodes.
    [[nodiscard]] bool is_loaded() const noexcept { return description_.document() != nullptr; }
    /// Has looked at every operation of every node.
    [[nodiscard]] evaluation_guard& guard() noexcept { return guard_; }

    /// What the engine said when it was asked for what the description states, such as representations.
    [[nodiscard]] const std::vector<engine_message>& ask_messages() const noexcept { return ask_messages_; }
    /// What it said, or threw, when values and limits were read over the registers.
    [[nodiscard]] const std::vector<engine_message>& read_messages() const noexcept { return read_messages_; }

    /// Every element that stands where nodes stand: under the root, in groups and in register structures.
    [[nodiscard]] std::vector<pugi::xml_node> elements_for_nodes() const;
    [[nodiscard]] text_position position_of(element_index element) const;
    /// The position of a character in the text of an element, such as a formula.
    [[nodiscard]] text_position position_in_text(pugi::xml_node element, std::size_t offset) const;

private:
    void look_at_everything();
    void ask_everything();
    void read_everything();

    description& description_;
    evaluation_guard guard_;
    std::vector<engine_message> ask_messages_;
    std::vector<engine_message> read_messages_;
};

/// "Integer Gain", or "StructReg" of one without a name.
[[nodiscard]] std::string title_of(pugi::xml_node element);

}  // namespace selvane_inspect
