#include "apps/inspect/lint/rules.h"

#include "apps/inspect/circle_text.h"
#include "apps/inspect/lint/known_elements.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

bool is_category(const node_element& element) { return std::string_view(element.xml.name()) == "Category"; }

/// A walk over the categories in depth that does not go round.
class category_walk {
public:
    category_walk(const lint_context& context, finding_list& findings)
        : tree_(context.tree()), findings_(findings) {}

    void start(element_index category);

private:
    struct open_category {
        element_index category;
        pugi::xml_node next;  // the entry to look at
    };

    void enter(element_index category);
    void look_at(pugi::xml_node entry);
    void add_circle(std::size_t first, pugi::xml_node entry);

    const description_tree& tree_;
    finding_list& findings_;
    std::vector<open_category> path_;
    std::unordered_map<element_index, std::size_t> open_;  // where they stand on the path
    std::unordered_set<element_index> entered_;
};

void category_walk::enter(element_index category) {
    if (!entered_.insert(category).second) return;
    open_.emplace(category, path_.size());
    path_.push_back({category, tree_.at(category).xml.child("pFeature")});
}

void category_walk::start(element_index category) {
    enter(category);
    while (!path_.empty()) {
        const pugi::xml_node entry = path_.back().next;
        if (!entry) {
            open_.erase(path_.back().category);
            path_.pop_back();
            continue;
        }
        path_.back().next = entry.next_sibling("pFeature");
        look_at(entry);
    }
}

void category_walk::look_at(pugi::xml_node entry) {
    const std::vector<element_index>& listed = tree_.find(entry.child_value());
    if (listed.empty() || !is_category(tree_.at(listed.front()))) return;
    const auto open = open_.find(listed.front());
    if (open != open_.end()) {
        add_circle(open->second, entry);
    } else {
        enter(listed.front());
    }
}

void category_walk::add_circle(std::size_t first, pugi::xml_node entry) {
    findings_.add(tree_.position_of(entry), circle_text(path_.size() - first, "lists", [&](std::size_t at) {
                      return tree_.at(path_[first + at].category).name;
                  }));
}

/// A child that links to a node without a word where there is none.
struct silent_link {
    std::string_view name;
    bool is_condition;  // asks for a node that has a number
};

constexpr silent_link silent_links[] = {
    {"pIsImplemented", true}, {"pIsAvailable", true},   {"pIsLocked", true},
    {"pVariable", false},     {"pValueDefault", false},
};

bool has_number(node_type kind) {
    return kind == node_type::integer || kind == node_type::floating || kind == node_type::enumeration ||
           kind == node_type::boolean;
}

// Null for a name that no node bears.
INode* node_named(const lint_context& context, std::string_view name) {
    const std::vector<element_index>& found = context.tree().find(name);
    return !found.empty() ? context.subject().node_of(found.front()) : nullptr;
}

std::string owner_text(pugi::xml_node element) {
    return fmt::format("{} of {}", element.name(), title_of(element.parent()));
}

void check_links_of(const lint_context& context, pugi::xml_node element, std::string_view class_name,
                    finding_list& findings) {
    for (const silent_link& link : silent_links) {
        if (use_in_node(class_name, link.name) != element_use::read) continue;
        for (const pugi::xml_node child : element.children(link.name.data())) {
            const std::string_view name = child.child_value();
            INode* const node = node_named(context, name);
            if (name.empty() || (node != nullptr && !link.is_condition)) continue;
            if (node != nullptr && has_number(node->get_node_type())) continue;
            findings.add(context.tree().position_of(child),
                         fmt::format("{} names {} {}", owner_text(child),
                                     node == nullptr ? "no node:" : "a node that has no number:", name));
        }
    }
}

// The engine tells of a port that is missing in `Register` elements alone.
void check_port_of(const lint_context& context, pugi::xml_node element, bool says_so,
                   finding_list& findings) {
    const pugi::xml_node child = element.child("pPort");
    const std::string_view name = child.child_value();
    if (context.subject().document()->find_port(name) != nullptr) return;
    if (name.empty()) {
        findings.add_habit(
            context.tree().position_of(element),
            fmt::format("{} elements without a pPort are on the port Device, and there is none",
                        element.name()));
    } else if (!says_so) {
        findings.add(context.tree().position_of(child),
                     fmt::format("{} names no port: {}", owner_text(child), name));
    }
}

}  // namespace

void check_category_circles(lint_context& context, finding_list& findings) {
    category_walk walk(context, findings);
    for (element_index element = 0; element < context.tree().elements().size(); ++element) {
        if (is_category(context.tree().at(element))) walk.start(element);
    }
}

void check_silent_links(lint_context& context, finding_list& findings) {
    if (!context.is_loaded()) return;
    for (const node_element& element : context.tree().elements()) {
        const std::string_view class_name = element.made != nullptr ? element.made->name : std::string_view();
        check_links_of(context, element.xml, class_name, findings);
        const bool has_port =
            element.made != nullptr && use_in_node(class_name, "pPort") == element_use::read;
        if (has_port)
            check_port_of(context, element.xml, std::string_view(element.xml.name()) == "Register", findings);
    }
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (std::string_view(element.name()) == "StructReg") check_port_of(context, element, false, findings);
    }
}

}  // namespace selvane_inspect
