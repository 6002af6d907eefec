#include "apps/inspect/evaluation_guard.h"

#include "apps/inspect/engine_messages.h"
#include "genicam/core/children.h"
#include "genicam/core/number_parser.h"
#include "genicam/core/value_links.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::INode;
using GenICam::node_type;

// Each step costs the engine a few frames of its stack.
constexpr std::size_t max_depth = 1000;
// The engine computes a node anew for everyone who asks, which may double the work with each step.
constexpr double max_effort = 1e6;
// Nodes that all need one another have more circles than anyone wants to read.
constexpr std::size_t max_hazards = 1000;

std::vector<element_index> sorted(std::vector<element_index> path) {
    std::sort(path.begin(), path.end());
    path.erase(std::unique(path.begin(), path.end()), path.end());
    return path;
}

// What comes of a number that a link hands to a node; not set when the node refuses it.
std::optional<eval_value> arriving(INode& node, const eval_value& number) {
    switch (node.get_node_type()) {
        case node_type::integer:
            return number.is_integer ? number : eval_value::of(GenICam::truncate_to_int(number.value.real));
        case node_type::floating:
            return eval_value::of(to_double(number));
        case node_type::boolean:
            return eval_value::of(std::int64_t{to_double(number) != 0.0 ? 1 : 0});
        case node_type::enumeration: {
            auto& enumeration = static_cast<GenICam::IEnumeration&>(node);
            const GenICam::IEnumEntry* entry = number.is_integer
                                                   ? enumeration.find_entry(number.value.integer)
                                                   : enumeration.find_nearest_entry(number.value.real);
            if (entry == nullptr) return std::nullopt;
            return eval_value::of(entry->get_value());
        }
        default:
            return std::nullopt;
    }
}

// The one class that writes to several nodes, one after the other.
bool writes_to_all(const node_element& element) {
    return element.made != nullptr && std::string_view(element.made->name) == "integer_pValueCopy_type";
}

// What a boolean writes for a truth.
eval_value number_of_truth(pugi::xml_node boolean, const eval_value& truth) {
    const bool is_true = to_double(truth) != 0.0;
    std::int64_t written = is_true ? 1 : 0;
    static_cast<void>(GenICam::parse_int(boolean.child_value(is_true ? "OnValue" : "OffValue"), written));
    return eval_value::of(written);
}

}  // namespace

const hazard* evaluation_guard::find(INode& node, operation asked) {
    const auto element = description_.tree().find(node);
    return element ? find({*element, asked}) : nullptr;
}

// A walk in depth without recursion: the description decides how deep it goes. What hangs on a hazard is one.
const hazard* evaluation_guard::find(node_operation which) {
    const auto known = verdicts_.find(which.number());
    if (known != verdicts_.end()) return known->second.found;
    const std::size_t bottom = path_.size();
    enter(which);
    while (path_.size() > bottom) {
        visit& top = path_.back();
        if (top.next == top.needs.size()) {
            leave();
            continue;
        }
        const node_operation need = top.needs[top.next++];
        const auto met = verdicts_.find(need.number());
        if (met == verdicts_.end()) {
            enter(need);
        } else if (met->second.open) {
            verdict& own = verdicts_[top.which.number()];
            const hazard* circle = close_circle(need);
            if (own.found == nullptr) own.found = circle;
        } else {
            absorb(verdicts_[top.which.number()], met->second);
        }
    }
    return verdicts_[which.number()].found;
}

void evaluation_guard::enter(node_operation which) {
    verdicts_[which.number()] = {};
    path_.push_back({which, graph_.needs_of(which), 0});
}

void evaluation_guard::leave() {
    const node_operation which = path_.back().which;
    path_.pop_back();
    verdict& own = verdicts_[which.number()];
    if (own.found == nullptr && own.depth > max_depth) {
        own.found = keep({hazard::kind::depth, {which.element}, {}});
    }
    if (own.found == nullptr && own.effort > max_effort)
        own.found = keep({hazard::kind::effort, {which.element}, {}});
    if (own.found == nullptr) own.found = judge_formula(which);
    own.open = false;
    if (!path_.empty()) absorb(verdicts_[path_.back().which.number()], own);
}

void evaluation_guard::absorb(verdict& into, const verdict& from) const {
    if (into.found == nullptr) into.found = from.found;
    into.depth = std::max(into.depth, from.depth + 1);
    into.effort += from.effort;
}

const hazard* evaluation_guard::close_circle(node_operation again) {
    hazard circle = {hazard::kind::circle, {}, {}};
    auto first = std::find_if(path_.begin(), path_.end(),
                              [&](const visit& open) { return open.which.number() == again.number(); });
    for (; first != path_.end(); ++first) {
        const element_index element = first->which.element;
        if (circle.path.empty() || circle.path.back() != element) circle.path.push_back(element);
    }
    if (circle.path.size() > 1 && circle.path.front() == circle.path.back()) circle.path.pop_back();
    return keep(std::move(circle));
}

// The same circle is met once for each way into it.
const hazard* evaluation_guard::keep(hazard found) {
    const std::vector<element_index> members = sorted(found.path);
    for (const hazard& known : hazards_) {
        if (known.what == found.what && known.formula == found.formula && sorted(known.path) == members)
            return &known;
    }
    if (hazards_.size() == max_hazards) return &hazards_.back();
    return &hazards_.emplace_back(std::move(found));
}

formula_binding& evaluation_guard::binding(element_index element) {
    std::unique_ptr<formula_binding>& bound = bindings_[element];
    if (bound == nullptr) bound = std::make_unique<formula_binding>(description_, element);
    return *bound;
}

// Everything that the formula reads has been found harmless by now.
const hazard* evaluation_guard::judge_formula(node_operation which) {
    const node_element& element = description_.tree().at(which.element);
    if (which.asked != operation::value || element.made == nullptr) return nullptr;
    if (!formula_binding::has_formulas(element.xml)) return nullptr;
    formula_binding& formulas = binding(which.element);
    return judge(which.element, formulas.rehearse_read(),
                 formulas.is_converter() ? "FormulaFrom" : "Formula");
}

const hazard* evaluation_guard::judge(element_index element, const std::optional<guarded_result>& rehearsed,
                                      const char* formula) {
    if (!rehearsed || !rehearsed->ends_process) return nullptr;
    return keep({hazard::kind::division, {element}, formula});
}

const hazard* evaluation_guard::find_in_store(INode& node, const eval_value& value) {
    if (const hazard* found = find(node, operation::store)) return found;
    return rehearse(node, value, 0);
}

// Follows a value on its way down to the registers, through every formula.
const hazard* evaluation_guard::rehearse(INode& node, const eval_value& value, std::size_t depth) {
    const auto element = description_.tree().find(node);
    if (!element || depth > max_depth) return nullptr;
    const pugi::xml_node xml = description_.tree().at(*element).xml;
    if (formula_binding::has_formulas(xml)) return rehearse_converter(*element, value, depth);

    const eval_value passed =
        node.get_node_type() == node_type::boolean ? number_of_truth(xml, value) : value;
    for (const node_operation& need : graph_.needs_of({*element, operation::store})) {
        INode* target = description_.node_of(need.element);
        if (need.asked != operation::store || target == nullptr) continue;
        const std::optional<eval_value> arrived = arriving(*target, passed);
        if (!arrived) continue;
        if (const hazard* found = rehearse(*target, *arrived, depth + 1)) return found;
        if (!writes_to_all(description_.tree().at(*element))) continue;
        if (const hazard* found = write_before_others(*target, passed, *element)) return found;
    }
    return nullptr;
}

// What is written to one target of several may be what the formula before the next one divides by.
const hazard* evaluation_guard::write_before_others(INode& target, const eval_value& value,
                                                    element_index writer) {
    const silence quiet;
    static_cast<void>(GenICam::set_eval_val(&target, value.value.integer, GenICam::access_flags::none));
    forget();
    return find({writer, operation::store});
}

const hazard* evaluation_guard::rehearse_converter(element_index element, const eval_value& value,
                                                   std::size_t depth) {
    formula_binding& formulas = binding(element);
    const auto rehearsed = formulas.rehearse_write(value);
    if (const hazard* found = judge(element, rehearsed, "FormulaTo")) return found;
    if (!rehearsed || !rehearsed->failure.empty()) return nullptr;
    INode& target = *formulas.target();
    const bool is_rounded = target.get_node_type() == node_type::integer;
    const eval_value& result = rehearsed->value;
    const auto arrived = arriving(target, is_rounded ? eval_value::of(to_int(result)) : result);
    return arrived ? rehearse(target, *arrived, depth + 1) : nullptr;
}

void evaluation_guard::forget() { verdicts_.clear(); }

std::vector<const hazard*> evaluation_guard::all() const {
    std::vector<const hazard*> found;
    for (const hazard& one : hazards_) found.push_back(&one);
    return found;
}

std::string evaluation_guard::describe(const hazard& found) const {
    const auto name = [&](element_index element) {
        return std::string(description_.tree().at(element).name);
    };
    switch (found.what) {
        case hazard::kind::depth:
            return fmt::format("more than {} nodes depend on one another below {}", max_depth,
                               name(found.path.front()));
        case hazard::kind::effort:
            return fmt::format("{} takes more than a million evaluations of the nodes below it",
                               name(found.path.front()));
        case hazard::kind::division:
            return fmt::format("{} of {} divides integers without a result, such as by zero", found.formula,
                               name(found.path.front()));
        case hazard::kind::circle:
            break;
    }
    std::string text;
    for (const element_index element : found.path) text += name(element) + " needs ";
    return "a circle: " + text + name(found.path.front());
}

}  // namespace selvane_inspect
