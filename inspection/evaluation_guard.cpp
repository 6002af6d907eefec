#include "inspection/evaluation_guard.h"

#include "genicam/base/value_links.h"
#include "genicam/core/children.h"
#include "genicam/nodes/formula_watch.h"
#include "inspection/guarded_run.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;
using GenICam::INode;

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

/// A formula that would end the process.
struct ending_formula {
    pugi::xml_node element;
    GenICam::child formula;
};

/// Computes formulas for the engine, and leaves it by an exception before a division that would end the
/// process.
class division_watch final : public GenICam::formula_watch {
public:
    division_watch() : former_(std::exchange(GenICam::present_formula_watch, this)) {}
    ~division_watch() { GenICam::present_formula_watch = former_; }
    division_watch(const division_watch&) = delete;
    division_watch& operator=(const division_watch&) = delete;

private:
    GenICam::result<eval_value> compute(const GenICam::formula_view& program,
                                        const GenICam::variable_map_impl& variables, pugi::xml_node element,
                                        GenICam::child formula) override {
        const guarded_result run =
            run_guarded(program, [&](GenICam::identifier_id id) -> std::optional<eval_value> {
                const eval_value* const value = variables(id);
                if (value == nullptr) return std::nullopt;
                return *value;
            });
        if (run.ends_process) throw ending_formula{element, formula};
        if (!run.failure.empty()) return make_error_code(GenICam::formula_parse_failed);
        return run.value;
    }

    GenICam::formula_watch* former_;
};

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
            absorb(verdicts_[top.which.number()], need, met->second);
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
    if (graph_.is_node(which.element)) judge(which, own);
    own.open = false;
    if (!path_.empty()) absorb(verdicts_[path_.back().which.number()], which, own);
}

void evaluation_guard::judge(node_operation which, verdict& own) {
    if (own.found == nullptr && own.depth > max_depth) {
        own.found = keep({hazard::kind::depth, {which.element}, {}});
    }
    if (own.found == nullptr && own.effort > max_effort)
        own.found = keep({hazard::kind::effort, {which.element}, {}});
    if (own.found == nullptr) own.found = judge_formula(which);
}

// What is shared is no step of the engine: it belongs to that of each node that needs it.
void evaluation_guard::absorb(verdict& into, node_operation need, const verdict& from) const {
    const std::size_t too_many = graph_.is_node(need.element) ? 0 : 1;
    if (into.found == nullptr) into.found = from.found;
    into.depth = std::max(into.depth, from.depth + 1 - too_many);
    into.effort += from.effort - static_cast<double>(too_many);
}

const hazard* evaluation_guard::close_circle(node_operation again) {
    if (hazards_.size() == max_hazards) return &hazards_.back();
    hazard circle = {hazard::kind::circle, {}, {}};
    auto first = std::find_if(path_.begin(), path_.end(),
                              [&](const visit& open) { return open.which.number() == again.number(); });
    for (; first != path_.end(); ++first) {
        const element_index element = first->which.element;
        if (!graph_.is_node(element)) continue;
        if (circle.path.empty() || circle.path.back() != element) circle.path.push_back(element);
    }
    if (circle.path.size() > 1 && circle.path.front() == circle.path.back()) circle.path.pop_back();
    return keep(std::move(circle));
}

// The same circle is met once for each way into it.
const hazard* evaluation_guard::keep(hazard found) {
    hazard_key key = {found.what, found.formula, sorted(found.path)};
    const auto known = kept_.find(key);
    if (known != kept_.end()) return known->second;
    if (hazards_.size() == max_hazards) return &hazards_.back();
    const hazard* const kept = &hazards_.emplace_back(std::move(found));
    kept_.emplace(std::move(key), kept);
    return kept;
}

formula_binding& evaluation_guard::binding(element_index element) {
    std::unique_ptr<formula_binding>& bound = bindings_[element];
    if (bound == nullptr) bound = std::make_unique<formula_binding>(description_, element);
    return *bound;
}

// Everything that the formula reads has been found harmless by now.
const hazard* evaluation_guard::judge_formula(node_operation which) {
    INode* const node = description_.node_of(which.element);
    if (which.asked != operation::value || node == nullptr) return nullptr;
    if (!formula_binding::has_formulas(description_.tree().at(which.element))) return nullptr;
    return try_out([&] { static_cast<void>(GenICam::get_eval_value(node, GenICam::access_flags::none)); });
}

const hazard* evaluation_guard::try_out(const std::function<void()>& work) {
    const silence quiet;
    try {
        const division_watch watch;
        work();
    } catch (const ending_formula& found) {
        const element_index element = *description_.tree().find(found.element);
        return keep({hazard::kind::division, {element}, GenICam::name_of(found.formula)});
    }
    return nullptr;
}

const hazard* evaluation_guard::find_in_store(INode& node, const std::function<void()>& write) {
    if (const hazard* found = find(node, operation::store)) return found;
    const hazard* const found = try_out(write);
    forget();
    return found;
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
    return circle_text(found.path.size(), "needs", [&](std::size_t at) { return name(found.path[at]); });
}

}  // namespace selvane_inspect
