#include "formula/formula_tree.h"

#include <algorithm>

namespace GenICam {

formula_node& formula_tree::add(token_kind symbol, std::uint32_t offset, std::size_t operand_count) {
    index first = size();
    std::uint32_t start = offset;
    const std::uint32_t behind = first > 0 ? nodes_.back().end : offset;
    for (; operand_count > 0 && first > 0; --operand_count) {
        start = std::min(offset, nodes_[first - 1].start);
        first = nodes_[first - 1].first;
    }
    lacks_operands_ = lacks_operands_ || operand_count > 0;
    // Filled where it stands: a copy would wait for what was just written.
    formula_node& node = nodes_.emplace_back();
    node.first = first;
    node.start = start;
    node.end = behind;
    node.offset = offset;
    node.symbol = symbol;
    return node;
}

void formula_tree::begin(std::string_view text) {
    text_ = text;
    nodes_.clear();
    lacks_operands_ = false;
    end = {};
    dropped.reset();
    unfinished.clear();
}

void formula_tree::reserve(const formula_size& largest) {
    nodes_.reserve(largest.nodes);
    unfinished.reserve(largest.marks);
}

std::vector<formula_tree::index> formula_tree::operands(index node) const {
    std::vector<index> found;
    for (index behind = node; behind > nodes_[node].first; behind = nodes_[behind - 1].first)
        found.push_back(behind - 1);
    std::reverse(found.begin(), found.end());
    return found;
}

formula_program formula_tree::program() const {
    formula_program made;
    made.instructions.reserve(nodes_.size());
    for (const formula_node& node : nodes_) made.instructions.push_back(node.instruction);
    return made;
}

}  // namespace GenICam
