#pragma once

#include "genicam/base/dependent_lists.h"
#include "genicam/base/dependent_register.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Who depends on whom while a description is loaded, and the completion of the lists at its end: a list gets
/// all that its entries' lists have, and so on. Membership is a mark, not a search.
class dependent_closing {
public:
    using number = dependent_lists::number;

    /// What may be added, and what the lists of a document that stand for themselves may take together, in
    /// entries that are looked at while they are completed. Real descriptions stay far below.
    static constexpr std::size_t most_entries = std::size_t{1} << 24;

    /// For so many nodes, and what has numbers beside them.
    dependent_closing(dependent_lists& lists, std::size_t nodes) : lists_(lists), registered_(nodes) {}

    /// What is added from here on comes in the turn of that node. The order of the turns is that of the
    /// nodes, whenever they come.
    void begin_turn(number node) { registered_.begin_turn(node); }
    void add(number owner, number dependent) { registered_.add(owner, dependent); }
    /// All that depend on others have registered.
    void begin();
    /// Completes the list of a node.
    [[nodiscard]] kept_list close(number node);
    [[nodiscard]] bool is_exhausted() const noexcept {
        return registered_.size() > most_entries || looked_at_ + lists_.shared().looked_at() > most_entries;
    }

private:
    struct state {
        std::uint32_t mark = 0;  // of the list that the node was last seen in
        kept_list list;
        bool is_covered = false;  // valid with the mark: its dependents stand in that list already
        bool is_closed = false;   // its list is complete
    };

    [[nodiscard]] kept_list find_list(number node);
    [[nodiscard]] bool complete(number node, std::size_t longest);
    void append_unseen(number node);
    void mark_listed(number node, bool is_covered);
    [[nodiscard]] std::size_t count_dependents(number node) const noexcept;

    [[nodiscard]] bool share(number node);
    [[nodiscard]] bool follow(number node);
    [[nodiscard]] bool is_known(number node) const noexcept;
    void adopt(number node);
    void make_circle(std::size_t first);

    dependent_lists& lists_;
    dependent_register registered_;
    std::vector<state> states_;
    std::vector<number> entries_;    // of the list that is completed
    std::vector<number> to_follow_;  // of these, the ones whose dependents may be missing
    std::vector<number> path_;       // each the single dependent of the one before
    std::uint32_t last_mark_ = 0;
    std::size_t looked_at_ = 0;
};

}  // namespace GenICam
