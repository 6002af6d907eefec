#pragma once

#include "genicam/base/implement_inode.h"

namespace GenICam {

// Every class of nodes by its row, so that one without a row does not compile.

#define NODE(element, condition, type, ...) \
    class type;                             \
    template <>                             \
    inline constexpr bool has_row<type> = true;
#include "genicam/nodes/node_rows.inc"
#undef NODE

// An enumeration makes its entries by itself.
class enum_entry_type;
template <>
inline constexpr bool has_row<enum_entry_type> = true;

// The rows are those of the classes behind these, which `addressed_register` and `masked_register` look at.
class int_reg_type_base;
class float_reg_type_base;
class masked_int_reg_type_base;
template <>
inline constexpr bool has_row<int_reg_type_base> = true;
template <>
inline constexpr bool has_row<float_reg_type_base> = true;
template <>
inline constexpr bool has_row<masked_int_reg_type_base> = true;

}  // namespace GenICam
