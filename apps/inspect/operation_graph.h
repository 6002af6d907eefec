#pragma once

#include "apps/inspect/description_tree.h"
#include "apps/inspect/element_links.h"

#include <cstddef>
#include <vector>

namespace selvane_inspect {

/// One operation of one node.
struct node_operation {
    element_index element;
    operation asked;

    [[nodiscard]] std::size_t number() const noexcept {
        return element * operation_count + static_cast<std::size_t>(asked);
    }
};

/// Which operations the engine carries out on which nodes for an operation of a node. Told from the elements
/// alone; where it depends on a value which of several nodes takes part, all of them count.
class operation_graph {
public:
    explicit operation_graph(const description_tree& tree) : tree_(tree) {}

    [[nodiscard]] std::vector<node_operation> needs_of(node_operation which) const;
    [[nodiscard]] const link_list& links(element_index element) const;

private:
    const description_tree& tree_;
    mutable link_reader reader_;
};

}  // namespace selvane_inspect
