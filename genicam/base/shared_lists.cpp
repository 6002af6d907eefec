#include "genicam/base/shared_lists.h"

#include <algorithm>

namespace GenICam {

void shared_lists::tape::put_before(number entry) {
    if (front_ == 0) {
        front_ = room_.size() + 1;
        std::vector<number> larger(front_ + room_.size());
        std::copy(room_.begin(), room_.end(), larger.end() - static_cast<std::ptrdiff_t>(room_.size()));
        room_.swap(larger);
    }
    room_[--front_] = entry;
}

gsl::span<const shared_lists::number> shared_lists::operator[](index at) const noexcept {
    const list& found = lists_[at];
    return {tapes_[found.on_tape].from_end(found.begin), found.length};
}

shared_lists::index shared_lists::add(std::vector<number> entries) {
    const auto length = static_cast<std::uint32_t>(entries.size());
    looked_at_ += length;
    return add_list({add_tape(std::move(entries)), length, length, owner_position::unknown});
}

// The nodes twice but for the last: each list is a part of that.
shared_lists::index shared_lists::add_circle(gsl::span<const number> nodes) {
    const std::size_t length = nodes.size();
    std::vector<number> twice;
    twice.reserve(2 * length - 1);
    for (std::size_t at = 0; at < 2 * length - 1; ++at) twice.push_back(nodes[at % length]);
    const std::uint32_t on_tape = add_tape(std::move(twice));
    const auto first = static_cast<index>(lists_.size());
    for (std::size_t at = 0; at < length; ++at) {
        const std::size_t begin = 2 * length - 1 - (at + 1) % length;
        static_cast<void>(add_list({on_tape, static_cast<std::uint32_t>(begin),
                                    static_cast<std::uint32_t>(length), owner_position::last}));
    }
    return first;
}

std::optional<shared_lists::index> shared_lists::add_before(index list_of_follower, number follower,
                                                            number node) {
    list& known = lists_[list_of_follower];
    if (known.owner == owner_position::unknown) known.owner = find_owner(known, follower);
    if (known.owner == owner_position::elsewhere) return std::nullopt;
    list made = known;
    tape& on = tapes_[made.on_tape];
    if (made.begin == on.size()) on.put_before(follower);
    ++made.begin;
    if (*on.from_end(made.begin) != follower) return std::nullopt;
    if (known.owner == owner_position::none) {
        ++made.length;
    } else {
        const number last = *on.from_end(made.begin - made.length + 1);
        made.owner = last == node ? owner_position::last : owner_position::unknown;
    }
    return add_list(made);
}

shared_lists::owner_position shared_lists::find_owner(const list& of, number owner) {
    looked_at_ += of.length;
    const number* const begin = tapes_[of.on_tape].from_end(of.begin);
    const number* const end = begin + of.length;
    const number* const found = std::find(begin, end, owner);
    if (found == end) return owner_position::none;
    return found + 1 == end ? owner_position::last : owner_position::elsewhere;
}

std::uint32_t shared_lists::add_tape(std::vector<number> entries) {
    tapes_.emplace_back(std::move(entries));
    return static_cast<std::uint32_t>(tapes_.size() - 1);
}

shared_lists::index shared_lists::add_list(const list& made) {
    lists_.push_back(made);
    return static_cast<index>(lists_.size() - 1);
}

}  // namespace GenICam
