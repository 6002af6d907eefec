#pragma once

#include <cstddef>

namespace GenICam {

/// How many instructions the expressions of a document may still copy into its formulas. Expressions that use
/// one another can double with each step, and there may be many nodes that do so. Real descriptions copy a
/// few.
class expansion_budget {
public:
    static constexpr std::size_t whole = std::size_t{1} << 20;

    /// False, and nothing is taken, where there are not that many left.
    [[nodiscard]] bool take(std::size_t instructions) noexcept {
        if (instructions > left_) return false;
        left_ -= instructions;
        return true;
    }

private:
    std::size_t left_ = whole;
};

}  // namespace GenICam
