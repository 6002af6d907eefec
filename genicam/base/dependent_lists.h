#pragma once

#include "genicam/base/node_base.h"
#include "genicam/base/packed_numbers.h"
#include "genicam/base/shared_lists.h"

#include <cstdint>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Where the document keeps the complete list of dependents of a node.
struct kept_list {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

/// The complete lists of dependents of a document. They hold numbers instead of nodes: there are many
/// times more entries than nodes.
class dependent_lists {
public:
    using number = std::uint32_t;

    /// The nodes that have the numbers from 0 on. They stay where they are.
    void begin(gsl::span<node_base_data* const> nodes) { nodes_ = nodes; }
    /// A number for a node beside those.
    [[nodiscard]] number add_node(node_base_data* node);
    /// How many nodes have numbers.
    [[nodiscard]] std::size_t node_count() const noexcept { return nodes_.size() + others_.size(); }

    [[nodiscard]] kept_list keep(gsl::span<const number> list);
    [[nodiscard]] kept_list keep_shared(shared_lists::index list) const noexcept;
    [[nodiscard]] static bool is_shared(kept_list list) noexcept { return list.offset >= first_shared; }
    [[nodiscard]] static shared_lists::index shared_index(kept_list list) noexcept {
        return list.offset - first_shared;
    }
    [[nodiscard]] shared_lists& shared() noexcept { return shared_; }
    /// No more lists come.
    void close();

    /// Calls `fn` with the number of each node of a list, in its order.
    template <class Function>
    void for_each_number(kept_list list, Function fn) const {
        if (is_shared(list)) {
            for (const number node : shared_[shared_index(list)]) fn(node);
        } else {
            packed_.for_each(list.offset, list.length, fn);
        }
    }
    /// The same with the nodes.
    template <class Function>
    void for_each(kept_list list, Function fn) const {
        for_each_number(list, [&](number node) { fn(node_at(node)); });
    }
    /// The nodes of a list side by side, until the next list is asked for.
    [[nodiscard]] gsl::span<IEval* const> spread(kept_list list);

private:
    static constexpr std::uint32_t first_shared = std::uint32_t{1} << 31;

    [[nodiscard]] node_base_data* node_at(number node) const noexcept {
        return node < nodes_.size() ? nodes_[node] : others_[node - nodes_.size()];
    }

    gsl::span<node_base_data* const> nodes_;
    std::vector<node_base_data*> others_;
    packed_numbers packed_;
    shared_lists shared_;
    std::vector<IEval*> spread_;
};

}  // namespace GenICam
