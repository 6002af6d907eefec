#include "genicam/core/node_state.h"

#include <cstddef>
#include <deque>

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
    for (IEval* dependent : dependents_) static_cast<node_base_data*>(dependent)->closing_mark_ = this;
    // What came from a complete list brings nothing that did not come with it: those stretches are passed
    // over.
    struct stretch {
        std::size_t begin;
        std::size_t end;
    };
    std::deque<stretch> complete;
    for (std::size_t at = 0; at < dependents_.size(); ++at) {
        if (!complete.empty() && complete.front().begin == at) {
            at = complete.front().end - 1;
            complete.pop_front();
            continue;
        }
        if (dependents_[at] == this) continue;
        const std::size_t begin = dependents_.size();
        append_unseen(dependents_[at]->get_dependents());
        const bool came_complete = static_cast<node_base_data*>(dependents_[at])->is_closed_;
        if (came_complete && dependents_.size() > begin) complete.push_back({begin, dependents_.size()});
    }
    is_closed_ = true;
}

void node_base_impl_value::append_unseen(gsl::span<IEval* const> nodes) {
    for (IEval* node : nodes) {
        auto* base = static_cast<node_base_data*>(node);
        if (base->closing_mark_ == this) continue;
        base->closing_mark_ = this;
        dependents_.push_back(node);
    }
}

void node_base_impl_value::invalidate_dependents() {
    for (IEval* dependent : dependents_) dependent->invalidate();
}

}  // namespace GenICam
