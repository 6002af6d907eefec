#include "genicam/nodes/port_nodes.h"

#include "genicam/core/node_log.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <cstring>

namespace GenICam {

std::error_code port_device_type::read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) {
    if (device_ != nullptr) return device_->read(address, buffer, length, flags);
    log_node("GenICam::port_device_type::read, IPort (\"%s\"). Failed due to no bind called.\n", *this);
    return make_error_code(invalid_parameter);
}

std::error_code port_device_type::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) {
    if (device_ != nullptr) return device_->write(address, buffer, length, flags);
    log_node("GenICam::port_device_type::write, IPort (\"%s\"). Failed due to no bind called.\n", *this);
    return make_error_code(invalid_parameter);
}

std::error_code port_device_type::bind(IDevicePort* device) {
    if (device_ != nullptr) {
        log_node("GenICam::port_device_type::bind, IPort (\"%s\"). Failed due it already being bound.\n",
                 *this);
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
    const char* not_bound;
    const char* bad_address;
    const char* bad_length;
};

void port_chunk_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    std::uint64_t id = 0;
    if (parse_hex(child_text(xml, child::ChunkID), id) != 0) {
        chunk_id_.number = static_cast<std::int64_t>(id);
        chunk_id_.kind = limit_kind::constant;
    } else if (INode* node = doc->find_node(child_text(xml, child::pChunkID))) {
        chunk_id_.node = node;
        chunk_id_.kind = limit_kind::link;
        node->get_eval()->add_dependent(this);
    } else {
        log_node(
            "GenICam::port_chunk_type::_resolve_references IPort (\"%s\"). Failed to fetch ChunkID or "
            "pChunkID.\n",
            *this);
    }
}

std::error_code port_chunk_type::find_bytes(std::uint64_t address, std::int64_t length,
                                            const access_messages& messages, unsigned char*& place) const {
    if (data_ == nullptr) {
        log_node(messages.not_bound, *this);
        return make_error_code(invalid_parameter);
    }
    if (address < base_address_ || address > base_address_ + static_cast<std::uint64_t>(length_)) {
        log_node(messages.bad_address, *this, static_cast<unsigned long long>(address));
        return make_error_code(invalid_address);
    }
    const auto offset = static_cast<std::int64_t>(address - base_address_);
    // In a block of at least no bytes, offset is at most length_: the subtraction cannot overflow where the
    // sum could. A negative request would reach back before the block.
    if (length_ < 0 || length < 0 || length > length_ - offset) {
        log_node(messages.bad_length, *this, static_cast<long long>(length));
        return make_error_code(index_out_of_range);
    }
    place = data_ + offset;
    return {};
}

std::error_code port_chunk_type::read(std::uint64_t address, void* buffer, std::int64_t length,
                                      std::uint32_t) {
    static constexpr access_messages messages = {
        "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to no bind called.\n",
        "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to out of range address=%llu "
        "parameter.\n",
        "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to out of range data_len=%lld "
        "parameter.\n"};
    unsigned char* place = nullptr;
    if (const std::error_code failed = find_bytes(address, length, messages, place)) return failed;
    if (length > 0) std::memcpy(buffer, place, static_cast<std::size_t>(length));
    return {};
}

std::error_code port_chunk_type::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                       std::uint32_t) {
    static constexpr access_messages messages = {
        "GenICam::port_chunk_type::write, IPort (\"%s\"). Failed due to no bind called.\n",
        "GenICam::port_chunk_type::write, IPort (\"%s\"). Failed due to out of range address=%llu "
        "parameter.\n",
        "GenICam::port_chunk_type::write, IPort (\"%s\"). oFailed due to out of range data_len=%lld "
        "parameter.\n"};
    unsigned char* place = nullptr;
    if (const std::error_code failed = find_bytes(address, length, messages, place)) return failed;
    if (length > 0) std::memcpy(place, buffer, static_cast<std::size_t>(length));
    return {};
}

std::error_code port_chunk_type::bind(IDevicePort*) { return make_error_code(not_implemented); }

std::error_code port_chunk_type::bind(std::uint64_t base_address, void* data, std::int64_t length) {
    if (data_ != nullptr) {
        log_node("GenICam::port_chunk_type::bind, IPort (\"%s\"). Failed due to it already being bound.\n",
                 *this);
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
