#pragma once

#include "apps/inspect/description_tree.h"
#include "apps/inspect/element_links.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace selvane_inspect {

/// What can be asked of a node, as far as it makes a difference which other nodes take part.
enum class operation : std::uint8_t {
    implemented,
    available,
    locked,
    access,
    value,
    minimum,
    maximum,
    increment,
    default_value,
    unit,
    store,
    count,
};
constexpr std::size_t operation_count = static_cast<std::size_t>(operation::count);

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
    [[nodiscard]] const std::vector<element_link>& links(element_index element) const;

private:
    const description_tree& tree_;
    mutable link_reader reader_;
    mutable std::unordered_map<element_index, std::vector<element_link>> links_;
};

}  // namespace selvane_inspect
