#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Lists of nodes' numbers that stand one inside the other, kept once for a document. A node with a single
/// dependent has a list of that one and its list, and in a circle each list is the next one, turned: chains
/// and circles cost what their nodes cost, and not the square of it.
class shared_lists {
public:
    using number = std::uint32_t;
    /// The index of a list.
    using index = std::uint32_t;

    [[nodiscard]] gsl::span<const number> operator[](index at) const noexcept;

    /// A list by itself, for others to stand before.
    [[nodiscard]] index add(std::vector<number> entries);
    /// The lists of the nodes of a circle, one after the other. Gives the first.
    [[nodiscard]] index add_circle(gsl::span<const number> nodes);
    /// The list of a node whose single dependent is the follower: the follower, and its list without it.
    /// Nothing where that is no part of what is kept.
    [[nodiscard]] std::optional<index> add_before(index list_of_follower, number follower, number node);

    /// How many entries were looked at so far.
    [[nodiscard]] std::size_t looked_at() const noexcept { return looked_at_; }

private:
    /// Entries that others are put before.
    class tape {
    public:
        explicit tape(std::vector<number> entries) : room_(std::move(entries)) {}
        void put_before(number entry);
        [[nodiscard]] std::size_t size() const noexcept { return room_.size() - front_; }
        /// The entry so far before the end.
        [[nodiscard]] const number* from_end(std::size_t distance) const noexcept {
            return room_.data() + (room_.size() - distance);
        }

    private:
        std::vector<number> room_;
        std::size_t front_ = 0;
    };
    /// Whether the owner of a list stands in it, as on a circle.
    enum class owner_position : std::uint8_t { unknown, none, last, elsewhere };
    struct list {
        std::uint32_t on_tape;
        std::uint32_t begin;  // from the end of the tape, as the tape grows in front
        std::uint32_t length;
        owner_position owner;
    };

    [[nodiscard]] std::uint32_t add_tape(std::vector<number> entries);
    [[nodiscard]] index add_list(const list& made);
    [[nodiscard]] owner_position find_owner(const list& of, number owner);

    std::vector<tape> tapes_;
    std::vector<list> lists_;
    std::size_t looked_at_ = 0;
};

}  // namespace GenICam
