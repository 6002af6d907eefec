#pragma once

#include "formula/formula_operation.h"
#include "formula/formula_program.h"
#include "formula/formula_token.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// A number, name, operator or call of a formula: what it does when the formula runs, and where it stands.
struct formula_node {
    formula_instruction instruction;
    std::uint32_t first;   ///< the first of the nodes that it is computed from; a number or name is its own
    std::uint32_t start;   ///< its text with what belongs to it: operands, signs and parentheses around it
    std::uint32_t end;     ///< behind that
    std::uint32_t offset;  ///< of the operator, number or name alone
    token_kind symbol;     ///< what stands at the offset
    bool is_enclosed;      ///< in parentheses of its own
};

/// How the reading of a formula ended.
struct parse_end {
    parse_status status = parse_status::none;
    std::string_view rest;  ///< the text behind the formula, or behind what was refused
};

/// Something that still waited for its end when the text broke off.
struct unfinished_part {
    token_kind symbol;  ///< `function` without its parenthesis, or `question` without its colon
    std::size_t offset;
};

/// A formula as it was read. The nodes stand in the order in which they are computed. So what a node is
/// computed from stands right before it: its last operand is the node before it, and each other operand ends
/// where the next one begins.
///
/// A text that breaks off may leave more than one number over, or operators that lack operands. In a formula
/// that is refused, names and calls that nobody knows are nodes too, so that all of it can be explained.
class formula_tree {
public:
    using index = std::uint32_t;

    formula_tree() = default;
    explicit formula_tree(std::string_view text) : text_(text) {}

    [[nodiscard]] std::string_view text() const noexcept { return text_; }
    [[nodiscard]] gsl::span<const formula_node> nodes() const noexcept {
        return {nodes_.data(), nodes_.size()};
    }
    [[nodiscard]] const formula_node& operator[](index node) const noexcept { return nodes_[node]; }
    [[nodiscard]] index size() const noexcept { return static_cast<index>(nodes_.size()); }
    [[nodiscard]] index root() const noexcept { return size() - 1; }

    /// Only of nodes that have operands.
    [[nodiscard]] static index last_operand(index node) noexcept { return node - 1; }
    [[nodiscard]] index operand_before(index operand) const noexcept { return nodes_[operand].first - 1; }
    /// The operands of a node in their order.
    [[nodiscard]] std::vector<index> operands(index node) const;

    /// Whether the formula can be run: its text may break off.
    [[nodiscard]] bool is_accepted() const noexcept {
        return end.status == parse_status::none || end.status == parse_status::end_of_text;
    }
    /// Whether all operators have their operands and one number is the result.
    [[nodiscard]] bool is_complete() const noexcept {
        return !nodes_.empty() && !lacks_operands_ && nodes_.back().first == 0;
    }
    [[nodiscard]] bool lacks_operands() const noexcept { return lacks_operands_; }

    /// The instructions alone.
    [[nodiscard]] formula_program program() const;

    /// Appends a node that is computed from the last `operand_count` numbers, and ends with the last of them.
    formula_node& add(token_kind symbol, std::uint32_t offset, std::size_t operand_count);
    /// Begins anew with another text, in the memory that is there.
    void begin(std::string_view text);
    /// Room for the tree of a formula up to that size.
    void reserve(const formula_size& largest);
    [[nodiscard]] formula_node& last() noexcept { return nodes_.back(); }

    parse_end end;
    /// The last operator, parenthesis or mark, where the text ended and an operand was to follow.
    std::optional<std::size_t> dropped;
    std::vector<unfinished_part> unfinished;  ///< innermost first

private:
    std::string_view text_;
    std::vector<formula_node> nodes_;
    bool lacks_operands_ = false;
};

}  // namespace GenICam
