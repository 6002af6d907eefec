#include "genicam/base/dependent_closing.h"

#include <algorithm>
#include <limits>

namespace GenICam {
namespace {

// Lists up to this length are cheaper each by itself than shared.
constexpr std::size_t longest_own = 64;

}  // namespace

void dependent_closing::begin() {
    registered_.close(lists_.node_count());
    states_.resize(lists_.node_count());
}

kept_list dependent_closing::close(number node) {
    state& own = states_[node];
    if (!dependent_lists::is_shared(own.list) && !registered_[node].empty()) own.list = find_list(node);
    own.is_closed = true;
    return own.list;
}

// Only a node with a single dependent may share its list.
kept_list dependent_closing::find_list(number node) {
    const bool may_share = registered_[node].size() == 1;
    const bool is_found = may_share && (complete(node, longest_own) || share(node));
    if (!is_found) static_cast<void>(complete(node, std::numeric_limits<std::size_t>::max()));
    return states_[node].list;
}

// False, and nothing changes, as soon as the list gets longer than that.
bool dependent_closing::complete(number node, std::size_t longest) {
    ++last_mark_;
    const gsl::span<const number> own = registered_[node];
    entries_.assign(own.begin(), own.end());
    to_follow_ = entries_;
    for (const number dependent : own) mark_listed(dependent, false);
    std::size_t looked_at = 0;
    // By index, as the list grows.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t at = 0; at < to_follow_.size(); ++at) {
        const number dependent = to_follow_[at];
        if (dependent == node || states_[dependent].is_covered) continue;
        const std::size_t following = count_dependents(dependent);
        if (following > longest - entries_.size()) return false;
        looked_at += following;
        append_unseen(dependent);
    }
    states_[node].list = lists_.keep({entries_.data(), entries_.size()});
    looked_at_ += looked_at;
    return true;
}

// The dependents of a node. What stands in a complete list brings nothing that does not stand there too.
void dependent_closing::append_unseen(number node) {
    const bool is_complete = states_[node].is_closed;
    const auto append = [this, is_complete](number dependent) {
        state& of_dependent = states_[dependent];
        if (of_dependent.mark != last_mark_) {
            mark_listed(dependent, is_complete);
            entries_.push_back(dependent);
            if (!is_complete) to_follow_.push_back(dependent);
        } else if (is_complete) {
            of_dependent.is_covered = true;
        }
    };
    if (is_complete) {
        lists_.for_each_number(states_[node].list, append);
    } else {
        for (const number dependent : registered_[node]) append(dependent);
    }
}

void dependent_closing::mark_listed(number node, bool is_covered) {
    states_[node].mark = last_mark_;
    states_[node].is_covered = is_covered;
}

std::size_t dependent_closing::count_dependents(number node) const noexcept {
    return states_[node].is_closed ? states_[node].list.length : registered_[node].size();
}

// Gives the node its list, if it is one that can be shared; false if not. The same for the nodes on the way,
// for whom it counts from their own turn on.
bool dependent_closing::share(number node) {
    if (!follow(node)) return false;
    number follower = path_.back();
    path_.pop_back();
    if (!dependent_lists::is_shared(states_[follower].list)) adopt(follower);
    for (; !path_.empty(); path_.pop_back()) {
        const auto made = lists_.shared().add_before(dependent_lists::shared_index(states_[follower].list),
                                                     follower, path_.back());
        if (!made) return false;
        follower = path_.back();
        states_[follower].list = lists_.keep_shared(*made);
    }
    return true;
}

// Goes from dependent to dependent, as long as there is only one, to the first whose list is known, which
// ends the path. What is met before that has a list that no other node has a say in, whenever its turn comes.
bool dependent_closing::follow(number node) {
    path_.clear();
    ++last_mark_;
    number at = node;
    for (; !is_known(at); at = registered_[at][0]) {
        if (states_[at].mark == last_mark_) {
            make_circle(static_cast<std::size_t>(std::find(path_.begin(), path_.end(), at) - path_.begin()));
            break;
        }
        if (registered_[at].empty()) break;
        if (registered_[at].size() > 1) return false;
        states_[at].mark = last_mark_;
        path_.push_back(at);
    }
    path_.push_back(at);
    return true;
}

bool dependent_closing::is_known(number node) const noexcept {
    return states_[node].is_closed || dependent_lists::is_shared(states_[node].list);
}

void dependent_closing::adopt(number node) {
    std::vector<number> entries;
    const auto append = [&entries](number dependent) { entries.push_back(dependent); };
    if (states_[node].is_closed) lists_.for_each_number(states_[node].list, append);
    states_[node].list = lists_.keep_shared(lists_.shared().add(std::move(entries)));
}

// The nodes from that index of the path on, which leave it.
void dependent_closing::make_circle(std::size_t first) {
    const gsl::span<const number> circle{path_.data() + first, path_.size() - first};
    shared_lists::index list = lists_.shared().add_circle(circle);
    for (const number node : circle) states_[node].list = lists_.keep_shared(list++);
    path_.resize(first);
}

}  // namespace GenICam
