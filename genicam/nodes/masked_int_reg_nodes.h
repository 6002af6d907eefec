#pragma once

#include "genicam/nodes/bit_field.h"

namespace GenICam {

/// `MaskedIntReg`: a field of bits in a register of fixed length. Never cached; a write reads the register
/// first.
class masked_int_reg_type_base : public node_base_impl_bit_field,
                                 public implement_inode_register_integer<masked_int_reg_type_base> {
public:
    INode* get_node() final { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    [[nodiscard]] virtual result<std::uint64_t> get_address(std::uint32_t flags) = 0;

protected:
    ~masked_int_reg_type_base() = default;

    /// Bytes, 1 to 8.
    [[nodiscard]] std::int64_t length() const noexcept { return length_; }

private:
    template <class>
    friend class masked_register;
    masked_int_reg_type_base(document_services* services, const described_element& xml);

    std::int32_t length_ = 1;
};

/// What each class `T` of masked registers is made from.
template <class T>
class masked_register : public masked_int_reg_type_base {
    static_assert(has_row<T>);

protected:
    masked_register(document_services* services, const described_element& xml)
        : masked_int_reg_type_base(services, xml) {}
    ~masked_register() = default;
};

/// `MaskedIntReg` at an address that the description fixes.
class masked_int_reg_type_const_address final : public masked_register<masked_int_reg_type_const_address> {
public:
    masked_int_reg_type_const_address(document_services* services, const described_element& xml);
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;
    result<std::uint64_t> get_address(std::uint32_t) override { return address_; }

private:
    std::uint64_t address_;
};

/// `MaskedIntReg` at an address that depends on other nodes.
class masked_int_reg_type_dyn_address final : public masked_register<masked_int_reg_type_dyn_address> {
public:
    masked_int_reg_type_dyn_address(document_services* services, const described_element& xml)
        : masked_register(services, xml) {}
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;
    result<std::uint64_t> get_address(std::uint32_t flags) override;

private:
    address_eval address_;
};

}  // namespace GenICam
