#pragma once

#include "genicam/nodes/addressed_register.h"

namespace GenICam {

/// `FloatReg`: a number of 4 or 8 bytes. The range that it reports leaves out zero and everything negative,
/// but does not bind a write.
class float_reg_type_base : public node_base_impl_register,
                            public implement_inode_IFloat<float_reg_type_base> {
public:
    using number = double;

    INode* get_node() final { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    result<double> get_min(std::uint32_t flags) final;
    result<double> get_max(std::uint32_t flags) final;
    result<double> get_inc(std::uint32_t flags) final;
    result<double> get_default(std::uint32_t flags) final;
    [[nodiscard]] virtual result<register_span> get_address_and_length(std::uint32_t flags) = 0;
    /// Never fails: 4 where it cannot be evaluated.
    [[nodiscard]] virtual std::int64_t get_length() = 0;

protected:
    ~float_reg_type_base() = default;

    [[nodiscard]] result<double> read_number(register_span span, std::uint32_t flags);
    [[nodiscard]] std::error_code write_number(register_span span, double value, std::uint32_t flags);

private:
    template <class, class, class>
    friend class addressed_register;
    float_reg_type_base(document_services* services, const described_element& xml);
};

/// `FloatReg` at an address that the description fixes.
class float_reg_type_const_address final
    : public addressed_register<float_reg_type_const_address, float_reg_type_base,
                                register_const_address_eval> {
public:
    float_reg_type_const_address(document_services* services, const described_element& xml);
};

/// `FloatReg` at an address that depends on other nodes.
class float_reg_type_dyn final
    : public addressed_register<float_reg_type_dyn, float_reg_type_base, register_dyn_address_eval> {
public:
    float_reg_type_dyn(document_services* services, const described_element& xml);
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
};

}  // namespace GenICam
