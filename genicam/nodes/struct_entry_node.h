#pragma once

#include "genicam/nodes/bit_field.h"
#include "genicam/nodes/register_address.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace GenICam {

/// The element with the settings that the entries of a `StructReg` share: usually the parent, but groups may
/// lie between.
[[nodiscard]] pugi::xml_node find_struct_reg(pugi::xml_node entry);

/// What the entries of one `StructReg` share. There may be as many addresses there as entries, so these are
/// gone through once for all of them.
class shared_struct_reg {
public:
    /// Of each of these children entries read the first, each anew.
    static constexpr child_set first_of{child::AccessMode, child::Cachable, child::Endianess,
                                        child::Length,     child::pLength,  child::pPort};
    static constexpr child_set all_of{child::Address, child::IntSwissKnife, child::pAddress, child::pIndex};
    /// So many messages at most repeat for the other entries what the first was told of their addresses.
    static constexpr std::size_t most_repeated = 4096;

    /// What holds no more than those children is enough.
    explicit shared_struct_reg(const described_element& xml) : xml_(xml) {}

    [[nodiscard]] const described_element& xml() const noexcept { return xml_; }
    /// The address, for one more entry, which becomes a dependent and hears what cannot be read.
    [[nodiscard]] std::shared_ptr<const address_eval> resolve_address(IGenICamDoc* doc, INode* entry);

private:
    void resolve_once(IGenICamDoc* doc);

    described_element xml_;
    std::shared_ptr<const address_eval> address_;  // null until the first entry asks
    std::vector<INode*> sources_;                  // the nodes of the address
    std::vector<address_problem> problems_;
    std::size_t repeated_ = 0;
};

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
    [[nodiscard]] result<register_span> find_span(std::uint32_t flags) const {
        return evaluate_span(length_, *address_, flags);
    }

    integer_pair length_;
    std::shared_ptr<const address_eval> address_;
};

}  // namespace GenICam
