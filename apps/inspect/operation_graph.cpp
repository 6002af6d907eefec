#include "apps/inspect/operation_graph.h"

#include "genicam/core/number_parser.h"
#include "genicam/document/node_facts.h"

#include <optional>
#include <string_view>

namespace selvane_inspect {
namespace {

constexpr GenICam::node_facts no_facts = {};

const GenICam::node_facts& facts_of(const node_element& element) {
    const GenICam::node_facts* const found =
        element.made != nullptr ? GenICam::find_node_facts(element.made->name) : nullptr;
    return found != nullptr ? *found : no_facts;
}

struct limit_elements {
    operation limit;
    const char* constant;
    std::string_view link;
};
constexpr limit_elements elements_of_limits[] = {{operation::minimum, "Min", "pMin"},
                                                 {operation::maximum, "Max", "pMax"},
                                                 {operation::increment, "Inc", "pInc"},
                                                 {operation::default_value, "Default", "pDefault"}};

// Adds that operation of the nodes that links of the role name; false without any.
bool follow_links(const description_tree& tree, const link_list& links, std::string_view role,
                  operation asked, std::vector<node_operation>& needs) {
    bool found = false;
    links.for_each_of(role, [&](const element_link& link) {
        const auto of_target = role == "pVariable" ? asked_by_variable(link.label) : asked;
        if (!of_target) return;
        for (const element_index target : tree.find(link.target)) {
            needs.push_back({target, *of_target});
            found = true;
        }
    });
    return found;
}

/// The needs of one operation of a node under construction.
class need_list {
public:
    need_list(const description_tree& tree, const link_list& links, element_index element,
              std::optional<element_index> structure)
        : tree_(tree),
          links_(links),
          element_(element),
          structure_(structure),
          facts_(facts_of(tree.at(element))) {}

    void collect(operation asked);
    [[nodiscard]] std::vector<node_operation> take() { return std::move(needs_); }

private:
    void own(operation asked) { needs_.push_back({element_, asked}); }
    bool follow(std::string_view role, operation asked);
    void follow_all(const GenICam::name_list& roles, operation asked);
    void evaluate();
    void check();
    void limit(const limit_elements& which);
    [[nodiscard]] bool states(const limit_elements& which) const;
    void mode();

    const description_tree& tree_;
    const link_list& links_;
    element_index element_;
    std::optional<element_index> structure_;
    const GenICam::node_facts& facts_;
    std::vector<node_operation> needs_;
};

// True if a node of that role exists.
bool need_list::follow(std::string_view role, operation asked) {
    return follow_links(tree_, links_, role, asked, needs_);
}

void need_list::follow_all(const GenICam::name_list& roles, operation asked) {
    roles.for_each([&](std::string_view role) { follow(role, asked); });
}

void need_list::evaluate() {
    if (structure_) {
        needs_.push_back({*structure_, operation::value});
    } else {
        follow_all(facts_.evaluated, operation::value);
    }
}

void need_list::check() {
    if (!facts_.checks_access) return;
    own(operation::implemented);
    own(operation::available);
    own(operation::access);
}

void need_list::mode() {
    if (tree_.at(element_).xml.child("ImposedAccessMode")) return;
    if (!facts_.targets.empty()) evaluate();
    follow_all(facts_.targets, operation::access);
}

bool need_list::states(const limit_elements& which) const {
    const pugi::xml_node xml = tree_.at(element_).xml;
    const pugi::xml_node holder = which.limit == operation::default_value ? xml.child("Extension") : xml;
    GenICam::eval_value number;
    return GenICam::parse_number(holder.child_value(which.constant), number) != 0;
}

void need_list::limit(const limit_elements& which) {
    const bool is_boolean = std::string_view(tree_.at(element_).xml.name()) == "Boolean";
    if (!facts_.has_limits && !(is_boolean && which.limit == operation::default_value)) {
        evaluate();  // the range of a register follows its length
        return;
    }
    if (follow(which.link, operation::value) || states(which) || is_boolean) return;
    evaluate();
    follow_all(facts_.targets, which.limit);
}

void need_list::collect(operation asked) {
    switch (asked) {
        case operation::implemented:
            follow("pIsImplemented", operation::value);
            break;
        case operation::available:
            follow("pIsAvailable", operation::value);
            break;
        case operation::locked:
            own(operation::access);
            follow("pIsLocked", operation::value);
            break;
        case operation::access:
            mode();
            break;
        case operation::value:
            check();
            evaluate();
            follow_all(facts_.targets, operation::value);
            break;
        case operation::unit:
            if (facts_.evaluated.contains("pIndex") && facts_.has_limits) {
                evaluate();
                follow_all(facts_.targets, operation::unit);
            }
            break;
        case operation::store:
            check();
            if (facts_.has_limits) {
                own(operation::minimum);
                own(operation::maximum);
            }
            evaluate();
            follow_all(facts_.targets, operation::store);
            break;
        default:
            for (const limit_elements& which : elements_of_limits) {
                if (which.limit == asked) limit(which);
            }
    }
}

}  // namespace

std::vector<node_operation> operation_graph::needs_of(node_operation which) const {
    if (!is_node(which.element)) {
        std::vector<node_operation> needs;
        const link_list& links = reader_.read(structures_[which.element - tree_.elements().size()]);
        GenICam::find_node_facts("struct_entry_type")->evaluated.for_each([&](std::string_view role) {
            follow_links(tree_, links, role, operation::value, needs);
        });
        return needs;
    }
    const node_element& element = tree_.at(which.element);
    std::optional<element_index> structure;
    if (element.structure) structure = number_of(element.structure);
    need_list needs(tree_, reader_.read(element.xml), which.element, structure);
    needs.collect(which.asked);
    return needs.take();
}

element_index operation_graph::number_of(pugi::xml_node structure) const {
    const auto [known, is_new] =
        numbers_.try_emplace(structure, tree_.elements().size() + structures_.size());
    if (is_new) structures_.push_back(structure);
    return known->second;
}

}  // namespace selvane_inspect
