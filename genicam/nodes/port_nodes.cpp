#include "genicam/nodes/port_nodes.h"

#include "genicam/base/node_link.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <cstring>

namespace GenICam {

std::error_code port_device_type::read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) {
    if (device_ != nullptr) return device_->read(address, buffer, length, flags);
    report(messages::device_port_read_unbound, origin());
    return make_error_code(invalid_parameter);
}

std::error_code port_device_type::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) {
    if (device_ != nullptr) return device_->write(address, buffer, length, flags);
    report(messages::device_port_write_unbound, origin());
    return make_error_code(invalid_parameter);
}

std::error_code port_device_type::bind(IDevicePort* device) {
    if (device_ != nullptr) {
        report(messages::device_port_bound_already, origin());
        return make_error_code(access_denied);
    }
    device_ = device;
    return {};
}

std::error_code port_device_type::bind(std::uint64_t, void*, std::int64_t) {
    return make_error_code(not_implemented);
}

result<std::int64_t> port_device_type::get_chunk_id(std::uint32_t) {
    return make_error_code(not_implemented);
}

struct port_chunk_type::access_messages {
    const message<>& not_bound;
    const message<std::uint64_t>& bad_address;
    const message<std::int64_t>& bad_length;
};

void port_chunk_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    std::uint64_t id = 0;
    if (parse_hex(child_text(xml, child::ChunkID), id) != 0) {
        chunk_id_.number = static_cast<std::int64_t>(id);
        chunk_id_.kind = limit_kind::constant;
        return;
    }
    chunk_id_.node = doc->find_node(child_text(xml, child::pChunkID));
    if (depend_on(chunk_id_.node, this)) {
        chunk_id_.kind = limit_kind::link;
    } else {
        report(messages::chunk_id_missing, origin());
    }
}

std::error_code port_chunk_type::find_bytes(std::uint64_t address, std::int64_t length,
                                            const access_messages& texts, unsigned char*& found) const {
    if (data_ == nullptr) {
        report(texts.not_bound, origin());
        return make_error_code(invalid_parameter);
    }
    if (address < base_address_ || address > base_address_ + static_cast<std::uint64_t>(length_)) {
        report(texts.bad_address, origin(), address);
        return make_error_code(invalid_address);
    }
    const auto offset = static_cast<std::int64_t>(address - base_address_);
    // In a block of at least no bytes, offset is at most length_: the subtraction cannot overflow where the
    // sum could. A negative request would reach back before the block.
    if (length_ < 0 || length < 0 || length > length_ - offset) {
        report(texts.bad_length, origin(), length);
        return make_error_code(index_out_of_range);
    }
    found = data_ + offset;
    return {};
}

std::error_code port_chunk_type::read(std::uint64_t address, void* buffer, std::int64_t length,
                                      std::uint32_t) {
    constexpr access_messages texts = {messages::chunk_port_read_unbound, messages::chunk_port_read_address,
                                       messages::chunk_port_read_length};
    unsigned char* found = nullptr;
    if (const std::error_code failed = find_bytes(address, length, texts, found)) return failed;
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): found where nothing failed
    if (length > 0) std::memcpy(buffer, found, static_cast<std::size_t>(length));
    return {};
}

std::error_code port_chunk_type::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                       std::uint32_t) {
    constexpr access_messages texts = {messages::chunk_port_write_unbound, messages::chunk_port_write_address,
                                       messages::chunk_port_write_length};
    unsigned char* found = nullptr;
    if (const std::error_code failed = find_bytes(address, length, texts, found)) return failed;
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): found where nothing failed
    if (length > 0) std::memcpy(found, buffer, static_cast<std::size_t>(length));
    return {};
}

std::error_code port_chunk_type::bind(IDevicePort*) { return make_error_code(not_implemented); }

std::error_code port_chunk_type::bind(std::uint64_t base_address, void* data, std::int64_t length) {
    if (data_ != nullptr) {
        report(messages::chunk_port_bound_already, origin());
        return make_error_code(access_denied);
    }
    data_ = static_cast<unsigned char*>(data);
    base_address_ = base_address;
    length_ = length;
    notify_changed();
    return {};
}

void port_chunk_type::unbind() {
    data_ = nullptr;
    base_address_ = 0;
    length_ = 0;
}

}  // namespace GenICam
