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

/// The needs of one operation under construction.
class need_list {
public:
    need_list(const description_tree& tree, const link_list& links, element_index element)
        : tree_(tree), links_(links), element_(element), facts_(facts_of(tree.at(element))) {}

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
    const GenICam::node_facts& facts_;
    std::vector<node_operation> needs_;
};

// True if a node of that role exists.
bool need_list::follow(std::string_view role, operation asked) {
    bool found = false;
    links_.for_each_of(role, [&](const element_link& link) {
        const auto of_target = role == "pVariable" ? asked_by_variable(link.label) : asked;
        if (!of_target) return;
        for (const element_index target : tree_.find(link.target)) {
            needs_.push_back({target, *of_target});
            found = true;
        }
    });
    return found;
}

void need_list::follow_all(const GenICam::name_list& roles, operation asked) {
    roles.for_each([&](std::string_view role) { follow(role, asked); });
}

void need_list::evaluate() { follow_all(facts_.evaluated, operation::value); }

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
    need_list needs(tree_, links(which.element), which.element);
    needs.collect(which.asked);
    return needs.take();
}

const link_list& operation_graph::links(element_index element) const {
    return reader_.read(tree_.at(element).xml);
}

}  // namespace selvane_inspect
