#include "tests/genicam_registers/feature_reader.h"

#include "genicam/inode.h"

#include <algorithm>
#include <array>

namespace register_test {
namespace {

using namespace GenICam;

std::uint8_t scrambled(std::uint64_t word) {
    word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
    return static_cast<std::uint8_t>(word >> 56);
}

template <class T>
void ask(const result<T>& answer) {
    // What a result holds is only there to be looked at: an answer without failure must have its value.
    if (!answer) static_cast<void>(answer.error().message());
}

void read_common(INode& node, std::uint32_t flags) {
    bool value = false;
    static_cast<void>(node.is_implemented(value, flags));
    static_cast<void>(node.is_available(value, flags));
    static_cast<void>(node.is_locked(value, flags));
    static_cast<void>(node.is_implemented());
    static_cast<void>(node.is_available());
    static_cast<void>(node.is_locked());
    static_cast<void>(node.get_access_mode());
    static_cast<void>(node.get_visibility());
    static_cast<void>(node.get_display_name());
    static_cast<void>(node.get_extensions());
    static_cast<void>(node.get_event_id());
    static_cast<void>(node.get_alias());
}

template <class Number>
void read_limits(Number& node, std::uint32_t flags) {
    ask(node.get_min(flags));
    ask(node.get_max(flags));
    ask(node.get_inc(flags));
    ask(node.get_default(flags));
    static_cast<void>(node.get_representation());
    static_cast<void>(node.get_unit());
}

void read_integer(IInteger& node, std::uint32_t flags) {
    ask(node.get_val(flags));
    ask(node.get_val(flags | access_flags::cache_only));
    read_limits(node, flags);
    static_cast<void>(node.get_selected());
}

void read_float(IFloat& node, std::uint32_t flags) {
    ask(node.get_val(flags));
    read_limits(node, flags);
    static_cast<void>(node.get_display_notation());
    static_cast<void>(node.get_display_precision());
}

void read_enumeration(IEnumeration& node, std::uint32_t flags) {
    ask(node.get_selected_entry(flags));
    for (IEnumEntry* entry : node.get_entries()) {
        read_common(*entry, flags);
        static_cast<void>(entry->get_numeric_value());
    }
    static_cast<void>(node.find_entry(std::int64_t{0}));
    static_cast<void>(node.find_nearest_entry(1.5));
}

void read_block(IRegister& node, std::uint32_t flags) {
    ask(node.get_address(flags));
    const result<std::int64_t> length = node.get_length(flags);
    std::array<unsigned char, 64> bytes{};
    const auto room = static_cast<std::int64_t>(bytes.size());
    static_cast<void>(node.read(bytes.data(), length ? std::min(length.assume_value(), room) : room, flags));
}

}  // namespace

std::error_code patterned_device::read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t) {
    accesses.push_back({address, length});
    auto* bytes = static_cast<unsigned char*>(buffer);
    for (std::int64_t at = 0; at < length; ++at, ++address)
        *bytes++ = seed_ == 0 ? 0 : scrambled(address ^ seed_);
    return {};
}

std::error_code patterned_device::write(std::uint64_t, const void*, std::int64_t, std::uint32_t) {
    ++writes;
    return make_error_code(access_denied);
}

void bind_ports(IGenICamDoc& doc, patterned_device& device, std::vector<unsigned char>& block) {
    doc.for_each_node([&](INode* node) {
        if (node->get_node_type() != node_type::port) return;
        auto* port = static_cast<IPort*>(node);
        if (port->bind(&device)) port->bind(0, block.data(), static_cast<std::int64_t>(block.size()));
    });
}

void read_feature(INode& node, std::uint32_t flags) {
    read_common(node, flags);
    switch (node.get_node_type()) {
        case node_type::integer:
            return read_integer(static_cast<IInteger&>(node), flags);
        case node_type::floating:
            return read_float(static_cast<IFloat&>(node), flags);
        case node_type::enumeration:
            return read_enumeration(static_cast<IEnumeration&>(node), flags);
        case node_type::boolean:
            ask(static_cast<IBoolean&>(node).get_val(flags));
            return ask(static_cast<IBoolean&>(node).get_default(flags));
        case node_type::string:
            return ask(static_cast<IString&>(node).get_val(flags));
        case node_type::command:
            return ask(static_cast<ICommand&>(node).is_done(flags));
        case node_type::register_block:
            return read_block(static_cast<IRegister&>(node), flags);
        case node_type::port:
            return ask(static_cast<IPort&>(node).get_chunk_id(flags));
        case node_type::category:
            static_cast<void>(static_cast<ICategory&>(node).get_features());
            return;
        case node_type::enum_entry:
            return;
    }
}

}  // namespace register_test
