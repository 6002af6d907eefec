#pragma once

#include "formula/formula_operation.h"
#include "formula/formula_tree.h"
#include "formula/function_ref.h"

#include <cstdint>

#include <boost/container/small_vector.hpp>

namespace GenICam {

/// What is known of a number before it is computed: of a selection between an integer and a float, neither
/// kind.
enum class known_kind : std::uint8_t { floating, integer, either };

[[nodiscard]] constexpr known_kind known(number_kind kind) noexcept {
    return kind == number_kind::integer ? known_kind::integer : known_kind::floating;
}

/// The kind that a variable has at run time; `either` where that is not known.
using variable_kinds = function_ref<known_kind(identifier_id)>;

/// What is known of the number that a node of a formula gives.
struct known_number {
    known_kind kind = known_kind::either;
    bool is_constant = false;  ///< depends on no variable and on no condition
    bool can_fault = false;    ///< it, or what it is computed from, may divide integers without a result
    std::uint16_t depth = 0;
    const typed_form* form = nullptr;  ///< of operators and functions; null where a condition decides on it
    bare_number constant = {0};

    /// The kind to compute it with. What may be either serves as a float.
    [[nodiscard]] number_kind natural_kind() const noexcept {
        return kind == known_kind::integer ? number_kind::integer : number_kind::floating;
    }
    /// Of a constant.
    [[nodiscard]] eval_value value() const noexcept { return value_of(natural_kind(), constant); }
};

/// What is known of all numbers of a formula, for variables of certain kinds.
class known_numbers {
public:
    known_numbers() = default;
    known_numbers(const formula_tree& tree, variable_kinds kinds) { infer(tree, kinds); }

    /// Begins anew with another formula, in the memory that is there.
    void infer(const formula_tree& tree, variable_kinds kinds);
    /// Room for formulas of so many nodes.
    void reserve(std::size_t nodes) { numbers_.reserve(nodes); }

    [[nodiscard]] const known_number& operator[](formula_tree::index node) const noexcept {
        return numbers_[node];
    }

private:
    [[nodiscard]] known_number infer_node(const formula_tree& tree, formula_tree::index node,
                                          variable_kinds kinds) const;
    [[nodiscard]] static known_number infer_function(const formula_function& function,
                                                     const known_number& first, const known_number& second);
    [[nodiscard]] static known_number infer_selection(const known_number& condition,
                                                      const known_number& when_true,
                                                      const known_number& when_false);

    boost::container::small_vector<known_number, 64> numbers_;
};

}  // namespace GenICam
