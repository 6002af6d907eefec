#pragma once

#include "formula/formula_parser.h"
#include "formula/formula_token.h"
#include "formula/formula_tree.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <boost/container/small_vector.hpp>

namespace GenICam {

/// Reads formulas, one after the other in the same memory.
///
/// What would be calls of one another in recursive descent stands in a sequence of its own, so that no text
/// can exhaust the processor's stack: each entry waits for the end of an operand or of an expression.
class math_parser {
public:
    math_parser() = default;
    /// With room for a tree of that many nodes.
    explicit math_parser(std::size_t nodes) { tree_.reserve({nodes, 0}); }

    /// Reads a formula. The tree stays until the next one is read. The log hears of names that are unknown
    /// where it `is_told`.
    const formula_tree& read(std::string_view text, name_resolver resolver, bool is_told = true);
    [[nodiscard]] formula_tree take_tree() { return std::move(tree_); }

    /// Room for formulas up to that size.
    void reserve(const formula_size& largest);

private:
    enum class waiting : std::uint8_t { operand, sign, parenthesis, arguments, then_part, else_part };

    struct open_part {
        waiting owner = waiting::operand;
        token_kind symbol = token_kind::end;
        operator_level level = operator_level::none;  // of a binary operator
        std::uint32_t offset = 0;                     // of the operator, the parenthesis or the name
        std::uint32_t arguments = 0;                  // of a call so far
        formula_tree::index behind = 0;               // how many nodes stand before the part
        std::string_view name;                        // of a call
    };

    // These give whether there is more to read.
    bool begin_expression();
    bool take_operand();
    bool take_opening(waiting owner);
    bool take_sign();
    bool take_follower();
    bool take_operator(operator_level binding);
    bool end_expression();
    bool end_parenthesis();
    bool end_argument();
    bool end_then_part();
    bool end_text();
    bool open(waiting owner, const formula_token& token, std::string_view rest);
    open_part& add_open(waiting owner, const formula_token& token);
    bool end_with(parse_status status, std::string_view rest);

    void read_token();
    void end_operand();
    void note_refusal(parse_status status, std::string_view rest);
    void close_part();
    [[nodiscard]] bool is_refused() const { return tree_.end.status != parse_status::none; }
    [[nodiscard]] bool is_inside(waiting owner) const {
        return !open_.empty() && open_.back().owner == owner;
    }

    void add_name();
    parse_status add_identifier_token();
    parse_status append(const formula_program& expression);
    formula_instruction& add_leaf(op_code code);
    void add_number(const eval_value& number);
    void add_call(const open_part& call);
    void add_signs();
    void add_sign(const open_part& sign);
    void add_operators(operator_level outermost);
    void add_operator(const open_part& part);
    void add_selection(const open_part& question);
    formula_instruction& add_operation(const open_part& part, op_code code);
    [[nodiscard]] std::uint32_t offset_of(const formula_token& token) const {
        return static_cast<std::uint32_t>(token.text.data() - tree_.text().data());
    }

    const name_resolver* resolver_ = nullptr;  // while a formula is read
    bool is_told_ = true;
    formula_tree tree_;
    formula_token token_;           // what comes next
    std::string_view behind_;       // the text behind the last token that was taken
    std::uint32_t last_token_ = 0;  // where that token stands
    bool wants_operand_ = true;     // or an operand has ended
    std::size_t depth_ = 1;         // of everything that is open but operators
    boost::container::small_vector<open_part, 16> open_;
};

}  // namespace GenICam
