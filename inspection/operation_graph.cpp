#include "inspection/operation_graph.h"

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

}  // namespace

/// The needs of one operation under construction.
class need_list {
public:
    need_list(const operation_graph& graph, const link_list& links) : graph_(graph), links_(links) {}

    /// Adds that operation of the nodes that links of the role name; false without any.
    bool follow(std::string_view role, operation asked);
    void follow_all(const GenICam::name_list& roles, operation asked);
    [[nodiscard]] std::vector<node_operation> take() { return std::move(needs_); }

protected:
    void add(element_index element, operation asked) { needs_.push_back({element, asked}); }

    const operation_graph& graph_;

private:
    const link_list& links_;
    std::vector<node_operation> needs_;
};

bool need_list::follow(std::string_view role, operation asked) {
    bool found = false;
    links_.for_each_of(role, [&](const element_link& link) {
        const auto of_target = role == "pVariable" ? asked_by_variable(link.label) : asked;
        if (!of_target) return;
        const std::vector<element_index>& targets = graph_.tree_.find(link.target);
        if (targets.empty()) return;
        add(targets.size() == 1 ? targets.front() : graph_.number_of(targets), *of_target);
        found = true;
    });
    return found;
}

void need_list::follow_all(const GenICam::name_list& roles, operation asked) {
    roles.for_each([&](std::string_view role) { follow(role, asked); });
}

namespace {

/// Those of a node.
class node_needs final : public need_list {
public:
    node_needs(const operation_graph& graph, const link_list& links, element_index index,
               const node_element& element, std::optional<element_index> structure)
        : need_list(graph, links),
          index_(index),
          element_(element),
          structure_(structure),
          facts_(facts_of(element)) {}

    void collect(operation asked);

private:
    void own(operation asked) { add(index_, asked); }
    void evaluate();
    void check();
    void limit(const limit_elements& which);
    [[nodiscard]] bool states(const limit_elements& which) const;
    void mode();

    element_index index_;
    const node_element& element_;
    std::optional<element_index> structure_;
    const GenICam::node_facts& facts_;
};

void node_needs::evaluate() {
    if (structure_) {
        add(*structure_, operation::value);
    } else {
        follow_all(facts_.evaluated, operation::value);
    }
}

void node_needs::check() {
    if (!facts_.checks_access) return;
    own(operation::implemented);
    own(operation::available);
    own(operation::access);
}

void node_needs::mode() {
    if (element_.xml.child("ImposedAccessMode")) return;
    if (!facts_.targets.empty()) evaluate();
    follow_all(facts_.targets, operation::access);
}

bool node_needs::states(const limit_elements& which) const {
    const pugi::xml_node xml = element_.xml;
    const pugi::xml_node holder = which.limit == operation::default_value ? xml.child("Extension") : xml;
    GenICam::eval_value number;
    return GenICam::parse_number(holder.child_value(which.constant), number) != 0;
}

void node_needs::limit(const limit_elements& which) {
    const bool is_boolean = std::string_view(element_.xml.name()) == "Boolean";
    if (!facts_.has_limits && !(is_boolean && which.limit == operation::default_value)) {
        evaluate();  // the range of a register follows its length
        return;
    }
    if (follow(which.link, operation::value) || states(which) || is_boolean) return;
    evaluate();
    follow_all(facts_.targets, which.limit);
}

void node_needs::collect(operation asked) {
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
    if (!is_node(which.element)) return needs_of_shared(which);
    const node_element& element = tree_.at(which.element);
    std::optional<element_index> structure;
    if (element.structure) structure = number_of(element.structure);
    node_needs needs(*this, reader_.read(element.xml), which.element, element, structure);
    needs.collect(which.asked);
    return needs.take();
}

std::vector<node_operation> operation_graph::needs_of_shared(node_operation which) const {
    const shared& of = shared_[which.element - tree_.elements().size()];
    if (of.nodes == nullptr) {
        need_list needs(*this, reader_.read(of.structure));
        needs.follow_all(GenICam::find_node_facts("struct_entry_type")->evaluated, which.asked);
        return needs.take();
    }
    std::vector<node_operation> needs;
    for (const element_index node : *of.nodes) needs.push_back({node, which.asked});
    return needs;
}

element_index operation_graph::number_of(pugi::xml_node structure) const {
    const auto [known, is_new] = structures_.try_emplace(structure, tree_.elements().size() + shared_.size());
    if (is_new) shared_.push_back({structure});
    return known->second;
}

element_index operation_graph::number_of(const namesakes& nodes) const {
    const auto [known, is_new] = names_.try_emplace(&nodes, tree_.elements().size() + shared_.size());
    if (is_new) shared_.push_back({{}, &nodes});
    return known->second;
}

}  // namespace selvane_inspect
