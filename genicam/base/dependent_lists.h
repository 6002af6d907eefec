#pragma once

#include "genicam/ieval.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <gsl/span>

namespace GenICam {

class node_base_data;

/// Complete lists of dependents that stand one inside the other, kept once for a document. A node with a
/// single dependent has a list of that one and its list, and in a circle each list is the next one, turned:
/// chains and circles cost what their nodes cost, and not the square of it.
class dependent_lists {
public:
    /// What the lists of a document that stand for themselves may take together, in entries that are looked
    /// at while they are completed. Real descriptions stay far below.
    static constexpr std::size_t most_entries = std::size_t{1} << 24;

    /// The list of a node that shares one.
    [[nodiscard]] gsl::span<IEval* const> operator[](std::uint32_t number) const noexcept;

    /// Gives the node its list, if it is one that can be shared; false if not. The same for the nodes on the
    /// way, for whom it counts from their own turn on.
    [[nodiscard]] bool share(node_base_data& node);

    /// Counts entries against the limit.
    void spend(std::size_t entries) noexcept { spent_ += entries; }
    [[nodiscard]] bool is_exhausted() const noexcept { return spent_ > most_entries; }

    /// A list while it is completed.
    struct growing_list {
        std::vector<IEval*> entries;
        std::vector<IEval*> to_follow;  ///< of the entries, those whose dependents may be missing
    };
    /// An empty one, the same each time.
    [[nodiscard]] growing_list& take_growing() noexcept {
        growing_.entries.clear();
        growing_.to_follow.clear();
        return growing_;
    }
    /// A number that no node was marked with.
    [[nodiscard]] std::uint32_t take_mark() noexcept { return ++last_mark_; }

private:
    /// Entries that others are put before.
    class tape {
    public:
        explicit tape(std::vector<IEval*> entries) : room_(std::move(entries)) {}
        void put_before(IEval* entry);
        [[nodiscard]] std::size_t size() const noexcept { return room_.size() - front_; }
        /// The entry so many places before the end.
        [[nodiscard]] IEval* const* from_end(std::size_t places) const noexcept {
            return room_.data() + (room_.size() - places);
        }

    private:
        std::vector<IEval*> room_;
        std::size_t front_ = 0;
    };
    /// Whether the owner of a list stands in it, as on a circle.
    enum class owner_place : std::uint8_t { unknown, none, last, elsewhere };
    struct list {
        std::uint32_t on_tape;
        std::uint32_t begin;  // from the end of the tape, as the tape grows in front
        std::uint32_t length;
        owner_place owner;
    };

    [[nodiscard]] node_base_data* follow(node_base_data& node);
    [[nodiscard]] bool is_known(const node_base_data& node) const noexcept;
    void adopt(node_base_data& node);
    void make_circle(std::size_t first);
    [[nodiscard]] bool extend(node_base_data& follower, node_base_data& node);
    [[nodiscard]] owner_place find_owner(const list& of, const node_base_data& owner);
    std::uint32_t add(const list& made);

    std::vector<tape> tapes_;
    std::vector<list> lists_;            // numbered from 1
    std::vector<node_base_data*> path_;  // each the single dependent of the one before
    growing_list growing_;
    std::size_t spent_ = 0;
    std::uint32_t last_mark_ = 0;
};

}  // namespace GenICam
