#pragma once

#include "genicam/base/node_state.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/register_cache.h"

#include <cstdint>

namespace GenICam {

/// What follows a write to the device: after a success those that depend on the node forget what they know,
/// and then its callbacks run. The node keeps its own cache. Gives the outcome of the write.
inline std::error_code spread_write(node_base_impl_value& node, const std::error_code& failure) {
    if (!failure) {
        node.invalidate_dependents();
        node.notify_changed();
    }
    return failure;
}

/// Takes over the `AccessMode` child of a register, which cannot loosen an imposed mode.
void read_access_mode(node_base_data& node, const described_element& xml);

/// A node with the register cache.
class node_base_impl_register : public node_base_impl_value {
public:
    using node_base_impl_value::node_base_impl_value;
    void invalidate() final {
        cache_.clear();
        notify_changed();
    }

protected:
    ~node_base_impl_register() = default;

    /// `Cachable` and `Endianess` as `IntReg` and `FloatReg` have them.
    void read_cache_words(const described_element& xml);

    register_cache cache_;
};

/// The least and the greatest number of a field.
struct integer_range {
    std::int64_t min;
    std::int64_t max;
};

/// The range of a field of that many bits, at most 64. An unsigned field of 64 bits ends where int64 does.
[[nodiscard]] integer_range range_of_bits(unsigned bits, Sign sign) noexcept;

/// A number of that many bits (1 to 64) whose highest one is its sign.
[[nodiscard]] constexpr std::uint64_t extend_sign(std::uint64_t number, unsigned bits) noexcept {
    const std::uint64_t sign_bit = std::uint64_t{1} << (bits - 1);
    return (number & sign_bit) != 0 ? number | ~(sign_bit - 1) : number;
}

/// The operations that all registers with an integer value share; `T` has `get_value_range`.
template <class T>
class implement_inode_register_integer : public implement_inode_IInteger<T> {
public:
    result<std::int64_t> get_min(std::uint32_t) final { return get_range().min; }
    result<std::int64_t> get_max(std::uint32_t) final { return get_range().max; }
    result<std::int64_t> get_inc(std::uint32_t) final { return std::int64_t{1}; }
    result<std::int64_t> get_default(std::uint32_t) final { return make_error_code(not_implemented); }

protected:
    ~implement_inode_register_integer() = default;

private:
    [[nodiscard]] integer_range get_range() { return static_cast<T&>(*this).get_value_range(); }
};

}  // namespace GenICam
