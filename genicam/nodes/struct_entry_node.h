#pragma once

#include "genicam/nodes/bit_field.h"

namespace GenICam {

/// The element with the settings that the entries of a `StructReg` share: usually the parent, but groups may
/// lie between.
[[nodiscard]] pugi::xml_node find_struct_reg(pugi::xml_node entry);

/// What entries read there. Each goes through it anew, and there may be as many other children as entries.
inline constexpr child_set struct_reg_children(child::AccessMode, child::Address, child::Cachable,
                                               child::Endianess, child::IntSwissKnife, child::Length,
                                               child::pAddress, child::pIndex, child::pLength, child::pPort);

/// `StructEntry`: a field of bits in the register that the enclosing `StructReg` describes. A register of
/// more than 8 bytes, or of none, fails every read and write with `index_out_of_range`.
class struct_entry_type final : public node_base_impl_bit_field,
                                public implement_inode_register_integer<struct_entry_type> {
public:
    struct_entry_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;

private:
    register_dyn_address_eval address_;
};

}  // namespace GenICam
