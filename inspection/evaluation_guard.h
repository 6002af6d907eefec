#pragma once

#include "inspection/description.h"
#include "inspection/formula_binding.h"
#include "inspection/operation_graph.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

namespace selvane_inspect {

/// Why the engine must not be asked: it would never come back, or not alive.
struct hazard {
    enum class kind { circle, depth, effort, division };
    kind what;
    std::vector<element_index>
        path;             ///< the elements on the circle in the order of asking; else the one at fault
    std::string formula;  ///< of a division
};

/// "a circle: A needs B needs A", of so many names. Those of a long circle, told anew at each place where it
/// is met, would be longer than any description.
template <class NameAt>
[[nodiscard]] std::string circle_text(std::size_t length, std::string_view verb, NameAt name_at) {
    constexpr std::size_t most_names = 20;
    std::string text = "a circle: ";
    for (std::size_t at = 0; at < std::min(length, most_names); ++at)
        text += fmt::format("{} {} ", name_at(at), verb);
    if (length > most_names) text += fmt::format("({} more) {} ", length - most_names, verb);
    return text + std::string(name_at(0));
}

/// Tells beforehand which operations on nodes the engine survives. It follows links without looking for
/// circles, and an integer division by zero ends the process: both are the description's business. Circles
/// and chains without end follow from the graph of operations, whatever the registers hold. Divisions depend
/// on values: those the engine tells itself, by a watch that stops it in time.
class evaluation_guard {
public:
    explicit evaluation_guard(description& of) : description_(of), graph_(of.tree()) {}
    evaluation_guard(const evaluation_guard&) = delete;
    evaluation_guard& operator=(const evaluation_guard&) = delete;

    /// Null when the engine can carry out the operation now. A store is judged without its value; see below.
    [[nodiscard]] const hazard* find(node_operation which);
    [[nodiscard]] const hazard* find(GenICam::INode& node, operation asked);
    /// Carries out a write to a node. Null when the engine survived it; else it was stopped on its way.
    [[nodiscard]] const hazard* find_in_store(GenICam::INode& node, const std::function<void()>& write);
    /// Whatever depends on values is to be found out anew: something was written.
    void forget();

    [[nodiscard]] const operation_graph& graph() const noexcept { return graph_; }
    [[nodiscard]] formula_binding& binding(element_index element);
    /// Everything found so far, each circle once.
    [[nodiscard]] std::vector<const hazard*> all() const;
    /// "A reads B reads A" or "the formula of A divides by zero".
    [[nodiscard]] std::string describe(const hazard& found) const;

private:
    struct verdict {
        bool open = true;  // still being looked into: meeting it again closes a circle
        const hazard* found = nullptr;
        std::size_t depth = 0;
        double effort = 1;  // operations that the engine carries out for it
    };
    using hazard_key = std::tuple<hazard::kind, std::string, std::vector<element_index>>;
    struct visit {
        node_operation which;
        std::vector<node_operation> needs;
        std::size_t next = 0;
    };

    void enter(node_operation which);
    void leave();
    void judge(node_operation which, verdict& own);
    void absorb(verdict& into, node_operation need, const verdict& from) const;
    const hazard* close_circle(node_operation again);
    const hazard* judge_formula(node_operation which);
    const hazard* try_out(const std::function<void()>& work);
    const hazard* keep(hazard found);

    description& description_;
    operation_graph graph_;
    std::unordered_map<std::size_t, verdict> verdicts_;
    std::vector<visit> path_;
    std::deque<hazard> hazards_;
    std::map<hazard_key, const hazard*> kept_;
    std::unordered_map<element_index, std::unique_ptr<formula_binding>> bindings_;
};

}  // namespace selvane_inspect
