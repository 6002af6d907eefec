#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Who depends on whom while a description is loaded, by the numbers of the nodes.
class dependent_register {
public:
    using number = std::uint32_t;

    /// For so many turns, one for each node with the same number.
    explicit dependent_register(std::size_t turns) : turns_(turns) {}

    /// What is added from here on comes in the turn of that node. Each has one, at any time.
    void begin_turn(number node) {
        turn_ = node;
        turns_[turn_].begin = static_cast<std::uint32_t>(entries_.size());
    }
    void add(number owner, number dependent) {
        // Filled where it stands: a copy would wait for what was just written.
        entry& added = entries_.emplace_back();
        added.owner = owner;
        added.dependent = dependent;
        ++turns_[turn_].count;
    }
    /// How often `add` was called, until closed.
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    /// Puts together what belongs together, for so many nodes. Nothing is added from then on.
    void close(std::size_t nodes);
    /// Once closed, of one of its nodes, in the order of the turns; each once, where it was added several
    /// times in a row: nodes register themselves, with their parts, in their own turns.
    [[nodiscard]] gsl::span<const number> operator[](number owner) const noexcept;

private:
    struct entry {
        number owner;
        number dependent;
    };
    struct stretch {
        std::uint32_t begin = 0;
        std::uint32_t count = 0;
    };

    void put(const entry& added);

    std::vector<stretch> turns_;  // of the entries
    number turn_ = 0;
    std::vector<entry> entries_;
    std::vector<stretch> owners_;  // of the dependents
    std::vector<number> dependents_;
};

}  // namespace GenICam
