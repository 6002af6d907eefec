#include "tests/genicam_registers/feature_reader.h"

#include "genicam/inode.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

namespace register_test {
namespace {

using namespace GenICam;

std::uint8_t scrambled(std::uint64_t word) {
    word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
    return static_cast<std::uint8_t>(word >> 56);
}

// Asks, and writes down what came of it.
class feature_reader {
public:
    explicit feature_reader(std::uint32_t flags) : flags_(flags) {}

    [[nodiscard]] std::string take_answers() { return std::move(answers_); }

    void read_common(INode& node) {
        bool value = false;
        note(node.is_implemented(value, flags_), value);
        note(node.is_available(value, flags_), value);
        note(node.is_locked(value, flags_), value);
        note(node.is_implemented());
        note(node.is_available());
        note(node.is_locked());
        note(node.get_access_mode());
        static_cast<void>(node.get_visibility());
        static_cast<void>(node.get_display_name());
        static_cast<void>(node.get_extensions());
        static_cast<void>(node.get_event_id());
        static_cast<void>(node.get_alias());
    }

    void read(IInteger& node) {
        note(node.get_val(flags_));
        // What is cached depends on what was asked before.
        static_cast<void>(node.get_val(flags_ | access_flags::cache_only));
        read_limits(node);
        static_cast<void>(node.get_selected());
    }

    void read(IFloat& node) {
        note(node.get_val(flags_));
        read_limits(node);
        static_cast<void>(node.get_display_notation());
        note(node.get_display_precision());
    }

    void read(IBoolean& node) {
        note(node.get_val(flags_));
        note(node.get_default(flags_));
    }

    void read(IEnumeration& node) {
        note(node.get_selected_entry(flags_));
        for (IEnumEntry* entry : node.get_entries()) {
            read_common(*entry);
            static_cast<void>(entry->get_numeric_value());
        }
        static_cast<void>(node.find_entry(std::int64_t{0}));
        static_cast<void>(node.find_nearest_entry(1.5));
    }

    void read(IRegister& node) {
        note(node.get_address(flags_));
        const result<std::int64_t> length = node.get_length(flags_);
        note(length);
        std::array<char, 64> bytes{};
        const auto room = static_cast<std::int64_t>(bytes.size());
        note(node.read(bytes.data(), length ? std::min(length.assume_value(), room) : room, flags_));
        answers_.append(bytes.data(), bytes.size());
    }

    void read(IString& node) { note(node.get_val(flags_)); }
    void read(ICommand& node) { note(node.is_done(flags_)); }
    void read(IPort& node) { note(node.get_chunk_id(flags_)); }
    static void read(ICategory& node) { static_cast<void>(node.get_features()); }

private:
    template <class Number>
    void read_limits(Number& node) {
        note(node.get_min(flags_));
        note(node.get_max(flags_));
        note(node.get_inc(flags_));
        note(node.get_default(flags_));
        static_cast<void>(node.get_representation());
        static_cast<void>(node.get_unit());
    }

    template <class T, class = std::enable_if_t<std::is_trivially_copyable_v<T>>>
    void note(const T& value) {
        answers_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void note(const std::string& text) { answers_ += text; }
    void note(std::error_code failure) { note(failure.value()); }
    void note(IEnumEntry* entry) { note(entry->get_index()); }
    void note(std::error_code failure, bool value) {
        note(failure);
        if (!failure) note(value);
    }
    // What a result holds is only there to be looked at: an answer without failure must have its value.
    template <class T>
    void note(const result<T>& answer) {
        if (answer) {
            note(answer.assume_value());
        } else {
            note(answer.error());
        }
    }

    std::uint32_t flags_;
    std::string answers_;
};

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

std::string read_feature(INode& node, std::uint32_t flags) {
    feature_reader reader(flags);
    reader.read_common(node);
    switch (node.get_node_type()) {
        case node_type::integer:
            reader.read(static_cast<IInteger&>(node));
            break;
        case node_type::floating:
            reader.read(static_cast<IFloat&>(node));
            break;
        case node_type::enumeration:
            reader.read(static_cast<IEnumeration&>(node));
            break;
        case node_type::boolean:
            reader.read(static_cast<IBoolean&>(node));
            break;
        case node_type::string:
            reader.read(static_cast<IString&>(node));
            break;
        case node_type::command:
            reader.read(static_cast<ICommand&>(node));
            break;
        case node_type::register_block:
            reader.read(static_cast<IRegister&>(node));
            break;
        case node_type::port:
            reader.read(static_cast<IPort&>(node));
            break;
        case node_type::category:
            reader.read(static_cast<ICategory&>(node));
            break;
        case node_type::enum_entry:
            break;
    }
    return reader.take_answers();
}

}  // namespace register_test
