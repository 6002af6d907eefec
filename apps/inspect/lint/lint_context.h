#pragma once

#include "inspection/description.h"
#include "inspection/evaluation_guard.h"
#include "inspection/severity.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gsl/span>

namespace selvane_inspect {

class lint_context;

/// One thing that is looked for in descriptions. Names are stable: people write them into scripts.
struct lint_rule {
    std::string_view name;
    severity level;
    std::string_view why;  ///< why it matters
    std::string_view what_to_do;
    void (*check)(lint_context& context);
};

/// In the order in which they are listed.
[[nodiscard]] const std::vector<lint_rule>& all_lint_rules();

// The rules by what they look at, each group beside its checks.

/// What the engine itself says of a description, or what would become of it.
[[nodiscard]] gsl::span<const lint_rule> engine_rules() noexcept;
/// What an author would regret in formulas.
[[nodiscard]] gsl::span<const lint_rule> formula_rules() noexcept;
/// The same in elements, their names and their links, and in the limits of floats.
[[nodiscard]] gsl::span<const lint_rule> element_rules() noexcept;
/// The same in the marks for the property pages.
[[nodiscard]] gsl::span<const lint_rule> mark_rules() noexcept;
/// The same in how the pages show what is marked.
[[nodiscard]] gsl::span<const lint_rule> page_rules() noexcept;

struct finding {
    const lint_rule* rule;
    std::string message;
    std::vector<text_position> positions;  ///< in the order of the file; empty for none
    std::size_t count = 1;                 ///< how often it was found
    bool is_habit = false;                 ///< of the whole file, and one finding however often

    /// The first position; line 0 for none.
    [[nodiscard]] text_position at() const {
        return positions.empty() ? text_position{0, 0} : positions.front();
    }
};

/// A description under examination, and what was found. What several rules need is found out once.
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
    /// Visits every node; none when nothing was loaded.
    void for_each_node(const std::function<void(GenICam::INode&)>& visit) const;
    /// The element of the first node of a name; null for a name that no node bears.
    [[nodiscard]] pugi::xml_node element_named(std::string_view name) const;
    /// The node of an element; null for an element without one, and when nothing was loaded.
    [[nodiscard]] GenICam::INode* node_of(pugi::xml_node element) const;
    /// The position of a character in the text of an element, such as a formula.
    [[nodiscard]] text_position position_in_text(pugi::xml_node element, std::size_t offset) const;

    /// Carries out a rule.
    void check(const lint_rule& rule) {
        rule_ = &rule;
        rule.check(*this);
    }

    // For rules.

    /// Adds a finding. The same once more at the same position is counted.
    void add(text_position at, std::string message);
    template <class... Parts>
    void add(pugi::xml_node at, fmt::format_string<Parts...> format, Parts&&... parts) {
        add(tree().position_of(at), fmt::format(format, std::forward<Parts>(parts)...));
    }
    /// The same for what is one finding wherever it stands, such as a habit of a whole file.
    void add_habit(text_position at, std::string message);
    template <class... Parts>
    void add_habit(pugi::xml_node at, fmt::format_string<Parts...> format, Parts&&... parts) {
        add_habit(tree().position_of(at), fmt::format(format, std::forward<Parts>(parts)...));
    }

    /// What was found, in the order of the file.
    [[nodiscard]] std::vector<finding> take_findings();

private:
    using finding_key = std::tuple<const lint_rule*, std::string, std::size_t, std::size_t>;

    void look_at_everything();
    void ask_everything();
    void read_everything();
    [[nodiscard]] text_position position_of(element_index element) const;
    finding& at_key(finding_key which);

    description& description_;
    evaluation_guard guard_;
    std::vector<engine_message> ask_messages_;
    std::vector<engine_message> read_messages_;
    const lint_rule* rule_ = nullptr;
    std::vector<finding> findings_;
    std::map<finding_key, std::size_t> known_;
};

// Checks of a description that look at one thing after the other.

/// A look at every node.
template <void (*look_at)(lint_context&, GenICam::INode&)>
void check_nodes(lint_context& context) {
    context.for_each_node([&](GenICam::INode& node) { look_at(context, node); });
}

/// A look at every element that becomes a node, and at every entry of an enumeration.
template <void (*look_at)(lint_context&, const node_element&)>
void check_elements(lint_context& context) {
    for (const node_element& element : context.tree().elements()) look_at(context, element);
}

[[nodiscard]] inline bool is_element(pugi::xml_node xml, std::string_view name) { return xml.name() == name; }
/// Whether nodes stand inside it, and it is none itself.
[[nodiscard]] inline bool is_container(pugi::xml_node xml) {
    return is_element(xml, "Group") || is_element(xml, "StructReg");
}

/// "Integer Gain", or "StructReg" of one without a name.
[[nodiscard]] std::string title_of(pugi::xml_node element);

}  // namespace selvane_inspect
