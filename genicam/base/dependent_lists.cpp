#include "genicam/base/dependent_lists.h"

#include "genicam/base/node_base.h"

#include <algorithm>
#include <utility>

namespace GenICam {
namespace {

node_base_data* base_of(IEval* node) noexcept { return static_cast<node_base_data*>(node); }

}  // namespace

void dependent_lists::tape::put_before(IEval* entry) {
    if (front_ == 0) {
        front_ = room_.size() + 1;
        std::vector<IEval*> larger(front_ + room_.size());
        std::copy(room_.begin(), room_.end(), larger.end() - static_cast<std::ptrdiff_t>(room_.size()));
        room_.swap(larger);
    }
    room_[--front_] = entry;
}

gsl::span<IEval* const> dependent_lists::operator[](std::uint32_t number) const noexcept {
    const list& found = lists_[number - 1];
    return {tapes_[found.on_tape].from_end(found.begin), found.length};
}

bool dependent_lists::share(node_base_data& node) {
    node_base_data* follower = follow(node);
    if (follower == nullptr) return false;
    if (follower->shared_list_ == 0) adopt(*follower);
    for (; !path_.empty(); path_.pop_back()) {
        if (!extend(*follower, *path_.back())) return false;
        follower = path_.back();
    }
    return true;
}

// Goes from dependent to dependent, as long as there is only one, and gives the first whose list is known.
// What is met before that has a list that no other node has a say in, whenever its turn comes.
node_base_data* dependent_lists::follow(node_base_data& node) {
    path_.clear();
    const std::uint32_t mark = take_mark();
    node_base_data* at = &node;
    while (!is_known(*at)) {
        if (at->closing_mark_ == mark) {
            make_circle(static_cast<std::size_t>(std::find(path_.begin(), path_.end(), at) - path_.begin()));
            return at;
        }
        const gsl::span<IEval* const> registered = at->get_dependents();
        if (registered.empty()) return at;
        if (registered.size() > 1) return nullptr;
        at->closing_mark_ = mark;
        path_.push_back(at);
        at = base_of(registered[0]);
    }
    return at;
}

bool dependent_lists::is_known(const node_base_data& node) const noexcept {
    return node.shared_list_ != 0 || node.is_closed_;
}

void dependent_lists::adopt(node_base_data& node) {
    const gsl::span<IEval* const> own = node.get_dependents();
    spend(own.size());
    tapes_.emplace_back(std::vector<IEval*>(own.begin(), own.end()));
    const auto length = static_cast<std::uint32_t>(own.size());
    const auto on_tape = static_cast<std::uint32_t>(tapes_.size() - 1);
    node.shared_list_ = add({on_tape, length, length, owner_place::unknown});
}

// The nodes of the circle from that place of the path on, twice but for the last: each list is a part of
// that.
void dependent_lists::make_circle(std::size_t first) {
    const std::size_t length = path_.size() - first;
    std::vector<IEval*> twice;
    twice.reserve(2 * length - 1);
    for (std::size_t at = 0; at < 2 * length - 1; ++at) twice.push_back(path_[first + at % length]);
    tapes_.emplace_back(std::move(twice));
    const auto on_tape = static_cast<std::uint32_t>(tapes_.size() - 1);
    for (std::size_t at = 0; at < length; ++at) {
        const std::size_t begin = 2 * length - 1 - (at + 1) % length;
        path_[first + at]->shared_list_ = add({on_tape, static_cast<std::uint32_t>(begin),
                                               static_cast<std::uint32_t>(length), owner_place::last});
    }
    path_.resize(first);
}

// The list of a node before the follower: the follower, and its list without it.
bool dependent_lists::extend(node_base_data& follower, node_base_data& node) {
    list& known = lists_[follower.shared_list_ - 1];
    if (known.owner == owner_place::unknown) known.owner = find_owner(known, follower);
    if (known.owner == owner_place::elsewhere) return false;
    list made = known;
    tape& on = tapes_[made.on_tape];
    if (made.begin == on.size()) on.put_before(&follower);
    ++made.begin;
    if (*on.from_end(made.begin) != &follower) return false;
    if (known.owner == owner_place::none) {
        ++made.length;
    } else {
        const IEval* last = *on.from_end(made.begin - made.length + 1);
        made.owner = last == &node ? owner_place::last : owner_place::unknown;
    }
    node.shared_list_ = add(made);
    return true;
}

dependent_lists::owner_place dependent_lists::find_owner(const list& of, const node_base_data& owner) {
    spend(of.length);
    IEval* const* const begin = tapes_[of.on_tape].from_end(of.begin);
    IEval* const* const end = begin + of.length;
    IEval* const* const found = std::find(begin, end, &owner);
    if (found == end) return owner_place::none;
    return found + 1 == end ? owner_place::last : owner_place::elsewhere;
}

std::uint32_t dependent_lists::add(const list& made) {
    lists_.push_back(made);
    return static_cast<std::uint32_t>(lists_.size());
}

}  // namespace GenICam
