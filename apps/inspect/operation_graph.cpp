#include "apps/inspect/operation_graph.h"

#include "genicam/core/number_parser.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace selvane_inspect {
namespace {

using roles = std::array<std::string_view, 4>;

/// How a class of the engine goes about its operations.
struct class_traits {
    std::string_view name;
    bool checks_access;  // before every read and write
    bool has_range;      // states limits, and asks its targets for those that it does not state
    roles evaluated;     // links whose values take part in reading and writing
    roles targets;       // links that are read and written through
};

constexpr roles address = {"pAddress", "IntSwissKnife", "pIndex", "pOffset"};

constexpr class_traits traits_of_classes[] = {
    {"integer_constant_value_type", true, true, {}, {}},
    {"integer_floating_value_type", true, true, {}, {}},
    {"integer_pValueCopy_type", true, true, {}, {"pValue", "pValueCopy"}},
    {"integer_pIndex_type", true, true, {"pIndex"}, {"pValueIndexed", "pValueDefault"}},
    {"integer_pValue_type", true, true, {}, {"pValue"}},
    {"float_constant_value_type", false, true, {}, {}},
    {"float_floating_value_type", true, true, {}, {}},
    {"float_pIndex_type", true, true, {"pIndex"}, {"pValueIndexed", "pValueDefault"}},
    {"float_pValue_type", true, true, {}, {"pValue"}},
    {"boolean_pValue_type", true, false, {}, {"pValue"}},
    {"boolean_Value_type", true, false, {}, {}},
    {"command_Value_type", true, false, {"pCommandValue"}, {}},
    {"command_pValue_type", true, false, {"pCommandValue"}, {"pValue"}},
    {"enumeration_Value_type", true, false, {}, {}},
    {"enumeration_pValue_type", true, false, {}, {"pValue"}},
    {"string_type", true, false, {}, {"pValue"}},
    {"int_swissknife_type", false, false, {"pVariable"}, {}},
    {"float_swissknife_type", false, false, {"pVariable"}, {}},
    {"int_converter_type", false, false, {"pVariable"}, {"pValue"}},
    {"float_converter_type", false, false, {"pVariable"}, {"pValue"}},
    {"float_reg_type_const_address", true, false, {}, {}},
    {"float_reg_type_dyn", true, false, address, {}},
    {"int_reg_type_const_address", true, false, {}, {}},
    {"int_reg_type_dyn", true, false, address, {}},
    {"register_type", true, false, address, {}},
    {"masked_int_reg_type_const_address", true, false, {}, {}},
    {"masked_int_reg_type_dyn_address", true, false, address, {}},
    {"string_reg_type", true, false, address, {}},
    {"struct_entry_type", true, false, address, {}},
};

constexpr class_traits no_traits = {{}, false, false, {}, {}};

const class_traits& traits_of(const node_element& element) {
    if (element.made == nullptr) return no_traits;
    const auto* found =
        std::find_if(std::begin(traits_of_classes), std::end(traits_of_classes),
                     [&](const class_traits& traits) { return traits.name == element.made->name; });
    return found != std::end(traits_of_classes) ? *found : no_traits;
}

bool contains(const roles& list, std::string_view role) {
    return std::find(list.begin(), list.end(), role) != list.end();
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

operation read_by(std::string_view variable) {
    switch (what_variable_reads(variable)) {
        case variable_reads::minimum:
            return operation::minimum;
        case variable_reads::maximum:
            return operation::maximum;
        case variable_reads::increment:
            return operation::increment;
        default:
            return operation::value;
    }
}

/// The needs of one operation under construction.
class need_list {
public:
    need_list(const description_tree& tree, const std::vector<element_link>& links, element_index element)
        : tree_(tree), links_(links), element_(element), traits_(traits_of(tree.at(element))) {}

    void collect(operation asked);
    [[nodiscard]] std::vector<node_operation> take() { return std::move(needs_); }

private:
    void own(operation asked) { needs_.push_back({element_, asked}); }
    bool follow(std::string_view role, operation asked);
    void follow_all(const roles& list, operation asked);
    void evaluate();
    void check();
    void limit(const limit_elements& which);
    [[nodiscard]] bool states(const limit_elements& which) const;
    void mode();

    const description_tree& tree_;
    const std::vector<element_link>& links_;
    element_index element_;
    const class_traits& traits_;
    std::vector<node_operation> needs_;
};

// True if a node of that role exists.
bool need_list::follow(std::string_view role, operation asked) {
    bool found = false;
    for (const element_link& link : links_) {
        if (link.role != role) continue;
        const bool is_variable = role == "pVariable";
        if (is_variable && what_variable_reads(link.label) == variable_reads::entry) continue;
        for (const element_index target : tree_.find(link.target)) {
            needs_.push_back({target, is_variable ? read_by(link.label) : asked});
            found = true;
        }
    }
    return found;
}

void need_list::follow_all(const roles& list, operation asked) {
    for (const std::string_view role : list) {
        if (!role.empty()) follow(role, asked);
    }
}

void need_list::evaluate() {
    follow_all(traits_.evaluated, operation::value);
    if (contains(traits_.evaluated, "pAddress")) follow("pLength", operation::value);
}

void need_list::check() {
    if (!traits_.checks_access) return;
    own(operation::implemented);
    own(operation::available);
    own(operation::access);
}

void need_list::mode() {
    if (tree_.at(element_).xml.child("ImposedAccessMode")) return;
    if (!traits_.targets.front().empty()) evaluate();
    follow_all(traits_.targets, operation::access);
}

bool need_list::states(const limit_elements& which) const {
    const pugi::xml_node xml = tree_.at(element_).xml;
    const pugi::xml_node place = which.limit == operation::default_value ? xml.child("Extension") : xml;
    GenICam::eval_value number;
    return GenICam::parse_number(place.child_value(which.constant), number) != 0;
}

void need_list::limit(const limit_elements& which) {
    const bool is_boolean = std::string_view(tree_.at(element_).xml.name()) == "Boolean";
    if (!traits_.has_range && !(is_boolean && which.limit == operation::default_value)) {
        evaluate();  // the range of a register follows its length
        return;
    }
    if (follow(which.link, operation::value) || states(which) || is_boolean) return;
    evaluate();
    follow_all(traits_.targets, which.limit);
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
            follow_all(traits_.targets, operation::value);
            break;
        case operation::unit:
            if (contains(traits_.evaluated, "pIndex") && traits_.has_range) {
                evaluate();
                follow_all(traits_.targets, operation::unit);
            }
            break;
        case operation::store:
            check();
            if (traits_.has_range) {
                own(operation::minimum);
                own(operation::maximum);
            }
            evaluate();
            follow_all(traits_.targets, operation::store);
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

const std::vector<element_link>& operation_graph::links(element_index element) const {
    const auto [place, added] = links_.try_emplace(element);
    if (added) place->second = links_of(tree_.at(element).xml);
    return place->second;
}

}  // namespace selvane_inspect
