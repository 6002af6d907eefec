#pragma once

#include "genicam/ieval.h"

#include <cstdint>
#include <vector>

#include <gsl/span>

namespace GenICam {

class node_base_data;

/// Who depends on the nodes that keep no list of their own, while a description is loaded.
class dependent_register {
public:
    void add(node_base_data& owner, IEval* dependent);
    /// Puts together what belongs together. Nothing is added from then on.
    void close();
    /// Once closed, in the order in which they were added; each once, where it was added several times in a
    /// row. None of an owner that nobody depends on.
    [[nodiscard]] gsl::span<IEval* const> operator[](const node_base_data& owner) const noexcept;

private:
    struct entry {
        std::uint32_t owner;
        IEval* dependent;
    };
    struct stretch {
        std::uint32_t begin = 0;
        std::uint32_t count = 0;
    };

    std::vector<entry> entries_;
    std::vector<stretch> owners_;  // by the numbers of the owners, from 1
    std::vector<IEval*> dependents_;
};

}  // namespace GenICam
