#pragma once

#include "genicam/nodes/register_base.h"

namespace GenICam {

/// `Register`: a block of bytes, not cached.
class register_type final : public node_base_impl_value, public implement_inode_IRegister<register_type> {
public:
    register_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code read(void* buffer, std::int64_t length, std::uint32_t flags) override;
    std::error_code write(const void* buffer, std::int64_t length, std::uint32_t flags) override;
    result<std::uint64_t> get_address(std::uint32_t flags) override;
    result<std::int64_t> get_length(std::uint32_t flags) override;

private:
    /// Address and length of the register, if it is at least `length` bytes long.
    [[nodiscard]] result<register_span> find_bytes(std::int64_t length, std::uint32_t flags) const;

    IPort* port_ = nullptr;
    register_dyn_address_eval address_;
};

}  // namespace GenICam
