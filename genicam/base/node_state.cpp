#include "genicam/base/node_state.h"

#include <cstddef>
#include <limits>

namespace GenICam {
namespace {

// Lists up to this length are cheaper each by itself than shared.
constexpr std::size_t longest_own = 64;

}  // namespace

void node_base_impl_dependent_cache::add_dependent(INode* node) {
    IEval* dependent = node->get_eval();
    if (dependent != this) services().add_dependent(this, dependent);
}

void node_base_impl_value::add_dependent(INode* node) {
    IEval* dependent = node->get_eval();
    if (dependent == this || !services().takes_dependents() || is_registered(dependents_, dependent)) return;
    dependents_.push_back(dependent);
}

void node_base_impl_value::close_dependents() {
    if (shared_list_ == 0 && !dependents_.empty()) find_list(services().shared_lists());
    if (shared_list_ != 0) dependents_.clear();
    is_closed_ = true;
}

// Only a node with a single dependent may share its list.
void node_base_impl_value::find_list(dependent_lists& lists) {
    const bool may_share = dependents_.size() == 1;
    if (may_share && (complete_list(lists, longest_own) || lists.share(*this))) return;
    static_cast<void>(complete_list(lists, std::numeric_limits<std::size_t>::max()));
}

// False, and nothing changes, as soon as the list gets longer than that.
bool node_base_impl_value::complete_list(dependent_lists& lists, std::size_t longest) {
    const std::uint32_t mark = lists.take_mark();
    for (IEval* dependent : dependents_) mark_listed(dependent, mark, false);
    dependent_lists::growing_list& list = lists.take_growing();
    list.entries.assign(dependents_.begin(), dependents_.end());
    list.to_follow = list.entries;
    std::size_t looked_at = 0;
    // By place, as the list grows.
    for (std::size_t at = 0; at < list.to_follow.size(); ++at) {
        auto* dependent = static_cast<node_base_data*>(list.to_follow[at]);
        if (dependent == this || dependent->is_covered_) continue;
        const gsl::span<IEval* const> following = dependent->get_dependents();
        if (following.empty()) continue;
        if (following.size() > longest - list.entries.size()) return false;
        looked_at += following.size();
        append_unseen(list, following, mark, dependent->is_closed_);
    }
    dependents_.assign(list.entries.begin(), list.entries.end());
    lists.spend(looked_at);
    return true;
}

void node_base_impl_value::mark_listed(IEval* dependent, std::uint32_t mark, bool is_covered) {
    auto* base = static_cast<node_base_data*>(dependent);
    base->closing_mark_ = mark;
    base->is_covered_ = is_covered;
}

// What stands in a complete list brings nothing that does not stand there too.
void node_base_impl_value::append_unseen(dependent_lists::growing_list& list, gsl::span<IEval* const> nodes,
                                         std::uint32_t mark, bool are_complete) {
    for (IEval* node : nodes) {
        auto* base = static_cast<node_base_data*>(node);
        if (base->closing_mark_ != mark) {
            mark_listed(node, mark, are_complete);
            list.entries.push_back(node);
            if (!are_complete) list.to_follow.push_back(node);
        } else if (are_complete) {
            base->is_covered_ = true;
        }
    }
}

void node_base_impl_value::invalidate_dependents() {
    for (IEval* dependent : get_dependents()) dependent->invalidate();
}

}  // namespace GenICam
