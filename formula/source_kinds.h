#pragma once

#include "formula/known_numbers.h"
#include "formula/variable_table.h"

namespace GenICam {

/// The kinds that the variables of a node have.
struct source_kinds {
    number_kind sources = number_kind::integer;
    number_kind current = number_kind::integer;  ///< of `FROM` and `TO`
    bool are_certain = true;                     ///< or a variable has another kind now and then

    [[nodiscard]] known_kind operator()(identifier_id id) const noexcept {
        return known(id == current_value_id ? current : sources);
    }
    [[nodiscard]] bool operator==(const source_kinds& other) const noexcept {
        return sources == other.sources && current == other.current && are_certain == other.are_certain;
    }
};

}  // namespace GenICam
