#pragma once

#include "formula/formula_instruction.h"
#include "formula/formula_specialiser.h"

#include <cstdint>

#include <boost/container/small_vector.hpp>
#include <gsl/span>

namespace GenICam {

/// What is known of a number before it is computed: of a selection between an integer and a float, neither
/// kind.
enum class known_kind : std::uint8_t { floating, integer, either };

/// A part of a formula. Its operands are nodes before it.
struct formula_node {
    enum class part : std::uint8_t { constant, variable, function, selection };

    part what = part::constant;
    known_kind kind = known_kind::integer;
    bool can_fault = false;
    std::uint16_t depth = 0;
    std::uint16_t operands[3] = {};
    const typed_form* form = nullptr;  ///< of a function; one that takes a single operand has it twice
    union {
        bare_number constant = {0};
        identifier_id variable;
    };

    [[nodiscard]] bool is_constant() const noexcept { return what == part::constant; }
    [[nodiscard]] bool is_leaf() const noexcept { return is_constant() || what == part::variable; }
    /// The kind to compute it with. What may be either serves as a float.
    [[nodiscard]] number_kind natural_kind() const noexcept {
        return kind == known_kind::integer ? number_kind::integer : number_kind::floating;
    }
    /// Of a constant.
    [[nodiscard]] bare_number constant_as(number_kind wanted) const noexcept {
        return bare_as(wanted, value_of(natural_kind(), constant));
    }
};

[[nodiscard]] constexpr known_kind known(number_kind kind) noexcept {
    return kind == number_kind::integer ? known_kind::integer : known_kind::floating;
}

/// The tree of a program, made by following what a calc stack would hold. Parts without variables are
/// computed.
class formula_tree {
public:
    explicit formula_tree(variable_kinds kinds) : kinds_(kinds) {}

    /// False for programs that are too deep, that fail or leave values over, and where a condition decides on
    /// the kinds of numbers that an operator works on.
    [[nodiscard]] bool build(gsl::span<const formula_instruction> program);

    [[nodiscard]] const formula_node& operator[](std::uint16_t index) const noexcept { return nodes_[index]; }
    [[nodiscard]] const formula_node& root() const noexcept { return nodes_[stack_.back()]; }

private:
    bool add(const formula_instruction& instruction);
    bool add_constant(number_kind kind, bare_number number);
    bool add_variable(identifier_id id);
    bool add_function(const formula_function& function);
    bool add_form(const typed_form& form, std::uint16_t first, std::uint16_t second);
    bool add_to_constant(const typed_form& form, std::uint16_t number, std::uint16_t constant);
    bool add_selection();
    bool add_test(token_kind comparison, std::uint16_t condition);
    bool push(const formula_node& made);
    std::uint16_t pop();
    static const typed_form* choose(const formula_function& function, const formula_node& first,
                                    const formula_node& second);
    static bool never_faults(const typed_form& form, const formula_node& divisor);

    variable_kinds kinds_;
    boost::container::small_vector<formula_node, 64> nodes_;
    boost::container::small_vector<std::uint16_t, 64> stack_;
};

}  // namespace GenICam
