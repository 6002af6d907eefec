#pragma once

#include "genicam/nodes/addressed_register.h"

namespace GenICam {

/// `IntReg`: a number of 1 to 8 bytes. A value too large for the register is truncated.
class int_reg_type_base : public node_base_impl_register,
                          public implement_inode_register_integer<int_reg_type_base> {
public:
    using number = std::int64_t;

    INode* get_node() final { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    [[nodiscard]] virtual result<register_span> get_address_and_length(std::uint32_t flags) = 0;
    /// Never fails: 4 where it cannot be evaluated.
    [[nodiscard]] virtual std::int64_t get_length() = 0;
    [[nodiscard]] integer_range get_value_range();

protected:
    ~int_reg_type_base() = default;

    [[nodiscard]] result<std::int64_t> read_number(register_span span, std::uint32_t flags);
    [[nodiscard]] std::error_code write_number(register_span span, std::int64_t value, std::uint32_t flags);

private:
    [[nodiscard]] message_origin length_origin() const;

    template <class, class, class>
    friend class addressed_register;
    int_reg_type_base(document_services* services, const described_element& xml);
};

/// `IntReg` at an address that the description fixes.
class int_reg_type_const_address final
    : public addressed_register<int_reg_type_const_address, int_reg_type_base, register_const_address_eval> {
public:
    int_reg_type_const_address(document_services* services, const described_element& xml);
};

/// `IntReg` at an address that depends on other nodes.
class int_reg_type_dyn final
    : public addressed_register<int_reg_type_dyn, int_reg_type_base, register_dyn_address_eval> {
public:
    int_reg_type_dyn(document_services* services, const described_element& xml);
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
};

}  // namespace GenICam
