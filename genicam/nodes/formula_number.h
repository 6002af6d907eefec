#pragma once

#include "genicam/core/eval_value.h"
#include "genicam/nodes/node_classes.h"

#include <cstdint>
#include <limits>

namespace GenICam {

// What nodes with formulas answer alike: neither the formula nor the target of a converter has a say in their
// limits, and none has a default.

template <class T>
class implement_inode_formula_integer : public implement_inode_IInteger<T> {
public:
    result<std::int64_t> get_min(std::uint32_t) final { return std::numeric_limits<std::int64_t>::min(); }
    result<std::int64_t> get_max(std::uint32_t) final { return std::numeric_limits<std::int64_t>::max(); }
    result<std::int64_t> get_inc(std::uint32_t) final { return std::int64_t{1}; }
    result<std::int64_t> get_default(std::uint32_t) final { return make_error_code(not_implemented); }

protected:
    ~implement_inode_formula_integer() = default;
    [[nodiscard]] static result<std::int64_t> number_of(const result<eval_value>& computed) {
        if (!computed) return computed.error();
        return to_int(computed.assume_value());
    }
};

template <class T>
class implement_inode_formula_float : public implement_inode_IFloat<T> {
public:
    /// The smallest positive normal number, not the lowest one, as in a `Float` that states no `Min`.
    result<double> get_min(std::uint32_t) final { return std::numeric_limits<double>::min(); }
    result<double> get_max(std::uint32_t) final { return std::numeric_limits<double>::max(); }
    result<double> get_inc(std::uint32_t) final { return make_error_code(not_implemented); }
    result<double> get_default(std::uint32_t) final { return make_error_code(not_implemented); }

protected:
    ~implement_inode_formula_float() = default;
    [[nodiscard]] static result<double> number_of(const result<eval_value>& computed) {
        if (!computed) return computed.error();
        return to_double(computed.assume_value());
    }
};

}  // namespace GenICam
