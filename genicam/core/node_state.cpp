#include "genicam/core/node_state.h"

#include <cstddef>

namespace GenICam {

void node_base_impl_dependent_cache::add_dependent(INode* node) {
    IEval* dependent = node->get_eval();
    if (dependent != this) services().add_dependent(this, dependent);
}

void node_base_impl_value::add_dependent(INode* node) {
    IEval* dependent = node->get_eval();
    if (dependent == this || is_registered(dependents_, dependent, services().is_loading())) return;
    dependents_.push_back(dependent);
}

void node_base_impl_value::close_dependents() {
    for (IEval* dependent : dependents_) mark_listed(dependent, false);
    // By place, as the list grows.
    for (std::size_t at = 0; at < dependents_.size(); ++at) {
        auto* dependent = static_cast<node_base_data*>(dependents_[at]);
        if (dependent == this || dependent->is_covered_) continue;
        append_unseen(dependent->get_dependents(), dependent->is_closed_);
    }
    is_closed_ = true;
}

void node_base_impl_value::mark_listed(IEval* dependent, bool is_covered) {
    auto* base = static_cast<node_base_data*>(dependent);
    base->closing_mark_ = this;
    base->is_covered_ = is_covered;
}

// What stands in a complete list brings nothing that does not stand there too.
void node_base_impl_value::append_unseen(gsl::span<IEval* const> nodes, bool are_complete) {
    for (IEval* node : nodes) {
        auto* base = static_cast<node_base_data*>(node);
        if (base->closing_mark_ != this) {
            mark_listed(node, are_complete);
            dependents_.push_back(node);
        } else if (are_complete) {
            base->is_covered_ = true;
        }
    }
}

void node_base_impl_value::invalidate_dependents() {
    for (IEval* dependent : dependents_) dependent->invalidate();
}

}  // namespace GenICam
