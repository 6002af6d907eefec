#pragma once

#include "formula/formula_operation.h"
#include "formula/formula_program.h"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace selvane_inspect {

/// What is known of the kind of a number before it is computed.
enum class known_kind { integer, floating, either };

/// An instruction with what it works on.
struct program_node {
    const GenICam::formula_instruction* instruction;
    std::array<std::size_t, 3> operands{};  ///< places in the list
    std::size_t operand_count = 0;
    known_kind kind = known_kind::either;
    std::optional<GenICam::eval_value> constant;  ///< of what depends on no variable
};

/// A postfix program as a tree: every operand stands before what uses it. The program must outlive it.
class program_tree {
public:
    using kind_lookup = std::function<known_kind(GenICam::identifier_id)>;
    using name_lookup = std::function<std::string(GenICam::identifier_id)>;

    /// Empty for a program that fails, and for one of more than 4096 instructions.
    program_tree(const GenICam::formula_program& program, const kind_lookup& kinds);

    [[nodiscard]] const std::vector<program_node>& nodes() const noexcept { return nodes_; }
    /// The node and everything that it is computed from.
    [[nodiscard]] std::vector<std::size_t> below(std::size_t node) const;
    /// The formula of a node, with parentheses around every operation inside it, cut to a readable length.
    [[nodiscard]] std::string text(std::size_t node, const name_lookup& names) const;

private:
    [[nodiscard]] bool add(const GenICam::formula_instruction& instruction, const kind_lookup& kinds);
    void infer(program_node& node, const kind_lookup& kinds) const;
    void infer_operation(program_node& node) const;
    [[nodiscard]] std::string write(std::size_t node, const name_lookup& names, std::size_t room) const;

    std::vector<program_node> nodes_;
    std::vector<std::size_t> stack_;
};

/// Whether an operation may turn out to be a division or a remainder of integers.
[[nodiscard]] bool may_divide_integers(const program_tree& tree, const program_node& node);
/// A `/` of two numbers that are surely integers.
[[nodiscard]] bool divides_integers(const program_tree& tree, const program_node& node);

}  // namespace selvane_inspect
