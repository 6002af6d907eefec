#pragma once

#include "genicam/base/node_state.h"
#include "genicam/idevice_port.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/range_record.h"

namespace GenICam {

/// `Port` to a device that the application binds.
class port_device_type final : public node_base_impl_ignore_dependent,
                               public implement_inode_IPort<port_device_type> {
public:
    using node_base_impl_ignore_dependent::node_base_impl_ignore_dependent;
    INode* get_node() override { return this; }
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override;
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override;
    std::error_code bind(IDevicePort* device) override;
    std::error_code bind(std::uint64_t base_address, void* data, std::int64_t length) override;
    void unbind() override { device_ = nullptr; }
    [[nodiscard]] bool is_bound() const override { return device_ != nullptr; }
    result<std::int64_t> get_chunk_id(std::uint32_t flags) override;

private:
    IDevicePort* device_ = nullptr;
};

/// `Port` to a block of bytes that the application binds.
class port_chunk_type final : public node_base_impl_ignore_dependent,
                              public implement_inode_IPort<port_chunk_type> {
public:
    using node_base_impl_ignore_dependent::node_base_impl_ignore_dependent;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override;
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override;
    std::error_code bind(IDevicePort* device) override;
    std::error_code bind(std::uint64_t base_address, void* data, std::int64_t length) override;
    void unbind() override;
    [[nodiscard]] bool is_bound() const override { return data_ != nullptr; }
    result<std::int64_t> get_chunk_id(std::uint32_t flags) override { return chunk_id_.evaluate(flags); }

private:
    struct access_messages;

    /// Sets `found` to the requested bytes, if they lie in the block.
    std::error_code find_bytes(std::uint64_t address, std::int64_t length, const access_messages& texts,
                               unsigned char*& found) const;

    integer_pair chunk_id_;
    unsigned char* data_ = nullptr;
    std::uint64_t base_address_ = 0;
    std::int64_t length_ = 0;
};

}  // namespace GenICam
