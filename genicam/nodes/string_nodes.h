#pragma once

#include "genicam/nodes/register_base.h"

#include <string>

namespace GenICam {

/// `String`: a text of its own, or that of another string node.
class string_type final : public node_base_impl_value, public implement_inode_IString<string_type> {
public:
    using node_base_impl_value::node_base_impl_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    result<std::string> get_val(std::uint32_t flags) override;
    std::error_code set_val(std::string_view value, std::uint32_t flags) override;

private:
    IString* link_ = nullptr;
    std::string value_;
};

/// The port of a string register with the text that was last seen behind it, at one address.
struct string_cache {
    /// Sets `text` to `length` bytes, from the cache where flags and mode allow it, else from the port.
    [[nodiscard]] std::error_code read(register_span span, std::string& text, std::uint32_t flags);
    /// Writes as many bytes as the text has.
    [[nodiscard]] std::error_code write(std::uint64_t address, std::string_view text, std::uint32_t flags);
    void clear() noexcept { cache_valid = false; }

    IPort* port = nullptr;
    std::uint64_t cached_address = 0;
    std::string cached_text;
    bool cache_valid = false;
    Cachable cachable = Cachable::WriteThrough;

private:
    [[nodiscard]] std::error_code store(std::uint64_t address, std::string_view text);
};

/// `StringReg`: a stretch of device memory as text, all its bytes and nothing cut off. A length that is
/// negative or above 16 MiB fails a read with `index_out_of_range`; a write takes as many bytes as the text
/// has, whatever the length.
class string_reg_type final : public node_base_impl_value, public implement_inode_IString<string_reg_type> {
public:
    string_reg_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void invalidate() override;
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    result<std::string> get_val(std::uint32_t flags) override;
    std::error_code set_val(std::string_view value, std::uint32_t flags) override;

private:
    register_dyn_address_eval address_;
    string_cache cache_;
};

}  // namespace GenICam
