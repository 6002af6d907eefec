#include "apps/inspect/lint/message_place.h"

#include "genicam/nodes/struct_entry_node.h"

#include <algorithm>
#include <optional>

namespace selvane_inspect {
namespace {

// What stands between two marks; empty when one of them is missing.
std::string_view between(std::string_view text, std::string_view before, std::string_view behind) {
    const std::size_t start = text.find(before);
    if (start == std::string_view::npos) return {};
    const std::string_view rest = text.substr(start + before.size());
    const std::size_t end = rest.find(behind);
    return end == std::string_view::npos ? std::string_view() : rest.substr(0, end);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// The parts of a message that tell what it is about.
struct message_parts {
    std::string_view node;   ///< the name of the node; empty for none
    std::string_view child;  ///< the element inside it
    std::string_view rest;   ///< the text behind the node's name
};

// Messages about links put the name in quotes alone, the others into parentheses as well.
message_parts take_apart(std::string_view message) {
    message_parts parts;
    parts.node = between(message, "(\"", "\")");
    if (contains(message, "resolve_link_or_value")) {
        parts.node = between(message.substr(std::min(message.find(','), message.size())), "\"", "\"");
    } else if (contains(message, "node=\"")) {
        parts.node = between(message, "node=\"", "\"");
    }
    const std::size_t name =
        parts.node.empty() ? 0 : static_cast<std::size_t>(parts.node.data() - message.data());
    parts.rest = message.substr(std::min(name + parts.node.size() + 1, message.size()));
    parts.child = between(parts.rest, "\"", "\"");
    parts.child = parts.child.substr(0, parts.child.find('/'));
    return parts;
}

class message_placer {
public:
    explicit message_placer(const lint_context& context) : context_(context), tree_(context.tree()) {}

    [[nodiscard]] std::optional<text_position> place(const engine_message& message);

private:
    [[nodiscard]] std::optional<pugi::xml_node> find(const engine_message& message);
    [[nodiscard]] std::optional<pugi::xml_node> find_word(const engine_message& message);
    [[nodiscard]] std::optional<pugi::xml_node> find_binding(std::string_view message);
    [[nodiscard]] std::optional<pugi::xml_node> find_entry_variable(std::string_view message);
    [[nodiscard]] pugi::xml_node find_child(pugi::xml_node element, const message_parts& parts,
                                            std::string_view message);
    [[nodiscard]] bool is_unresolved(pugi::xml_node link) const;
    template <class Matches>
    [[nodiscard]] std::optional<pugi::xml_node> find_next(std::string_view message, Matches matches);
    [[nodiscard]] std::size_t times_before(std::string_view message) { return seen_[std::string(message)]++; }

    const lint_context& context_;
    const description_tree& tree_;
    std::map<std::string, std::size_t> seen_;
};

// Of children that fit equally, each message like the one before takes the next.
template <class Matches>
std::optional<pugi::xml_node> message_placer::find_next(std::string_view message, Matches matches) {
    std::size_t skip = times_before(message);
    std::optional<pugi::xml_node> last;
    for (const pugi::xml_node element : context_.elements_for_nodes()) {
        for (const pugi::xml_node child : element.children()) {
            if (!matches(child)) continue;
            last = child;
            if (skip-- == 0) return last;
        }
    }
    return last;
}

bool message_placer::is_unresolved(pugi::xml_node link) const {
    return link.name()[0] == 'p' && tree_.find(link.child_value()).empty();
}

pugi::xml_node message_placer::find_child(pugi::xml_node element, const message_parts& parts,
                                          std::string_view message) {
    std::vector<pugi::xml_node> fitting;
    const auto collect = [&](pugi::xml_node parent) {
        for (const pugi::xml_node child : parent.children()) {
            const std::string_view text = child.child_value();
            const bool is_named = !parts.child.empty() && parts.child == child.name();
            const bool is_quoted =
                !text.empty() && (contains(parts.rest, "\"" + std::string(text) + "\"") ||
                                  contains(parts.rest, "feature=" + std::string(text) + "."));
            if (is_named || is_quoted) fitting.push_back(child);
        }
    };
    collect(element);
    if (fitting.empty()) collect(GenICam::find_struct_frame(element));
    if (fitting.empty()) return element;
    const auto narrow = [&](auto fits) {
        std::vector<pugi::xml_node> kept;
        std::copy_if(fitting.begin(), fitting.end(), std::back_inserter(kept), fits);
        if (!kept.empty()) fitting = std::move(kept);
    };
    narrow([&](pugi::xml_node child) {
        const std::string text = child.child_value();
        return !text.empty() &&
               (contains(parts.rest, "\"" + text + "\"") || contains(parts.rest, "=" + text + "."));
    });
    narrow([&](pugi::xml_node child) { return is_unresolved(child); });
    return fitting[std::min(times_before(message), fitting.size() - 1)];
}

// "Invalid contents" quotes the element and its text, and no node.
std::optional<pugi::xml_node> message_placer::find_word(const engine_message& message) {
    const std::string_view first = between(message.text, "\"", "\"");
    const std::string_view rest =
        std::string_view(message.text).substr(message.text.find(first) + first.size() + 1);
    std::string_view second = between(rest, "\"", "\"");
    if (second.empty()) second = rest.substr(std::min(rest.find('"') + 1, rest.size()));
    const auto matches = [&](pugi::xml_node child) {
        const std::string_view name = child.name();
        const std::string_view text = child.child_value();
        return (name == first && text == second) || (name == second && text == first);
    };
    if (!message.asked) return find_next(message.text, matches);
    for (const pugi::xml_node child : tree_.at(*message.asked).xml.children()) {
        if (matches(child)) return child;
    }
    return std::nullopt;
}

std::optional<pugi::xml_node> message_placer::find_binding(std::string_view message) {
    const std::string_view name = between(message, "named=\"", "\"");
    const std::string_view text = between(message, "content=\"", "\".");
    return find_next(message, [&](pugi::xml_node child) {
        return child.attribute("Name").value() == name && child.child_value() == text;
    });
}

std::optional<pugi::xml_node> message_placer::find_entry_variable(std::string_view message) {
    const bool wants_enumeration = contains(message, "did not find enumeration");
    return find_next(message, [&](pugi::xml_node child) {
        const bool is_variable = std::string_view(child.name()) == "pVariable" &&
                                 contains(child.attribute("Name").value(), ".Entry");
        if (!is_variable) return false;
        const std::vector<element_index>& targets = tree_.find(child.child_value());
        const bool is_enumeration =
            !targets.empty() && std::string_view(tree_.at(targets.front()).xml.name()) == "Enumeration";
        return is_enumeration != wants_enumeration;
    });
}

std::optional<pugi::xml_node> message_placer::find(const engine_message& message) {
    const std::string_view text = message.text;
    if (text.substr(0, 7) == "Invalid") return find_word(message);
    if (contains(text, "named=\"")) return find_binding(text);
    if (contains(text, "build_formula_name_lookup")) return find_entry_variable(text);
    const message_parts parts = take_apart(text);
    const std::vector<element_index>& named = tree_.find(parts.node);
    if (!named.empty()) return find_child(tree_.at(named.front()).xml, parts, text);
    if (message.asked) return tree_.at(*message.asked).xml;
    return std::nullopt;
}

std::optional<text_position> message_placer::place(const engine_message& message) {
    const std::optional<pugi::xml_node> found = find(message);
    if (!found) return std::nullopt;
    return tree_.position_of(*found);
}

}  // namespace

std::vector<placed_message> place_messages(const lint_context& context,
                                           const std::vector<engine_message>& messages) {
    message_placer placer(context);
    std::vector<placed_message> placed;
    std::size_t waiting = 0;  // how many at the end have no place yet
    for (const engine_message& message : messages) {
        std::string line = message.text;
        std::replace(line.begin(), line.end(), '\n', ' ');
        placed.push_back({{}, std::move(line)});
        const auto at = placer.place(message);
        if (!at) {
            ++waiting;
            continue;
        }
        for (std::size_t back = 0; back <= waiting; ++back) placed[placed.size() - 1 - back].at = *at;
        waiting = 0;
    }
    return placed;
}

}  // namespace selvane_inspect
