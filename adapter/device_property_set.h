#pragma once

// What the adapter and the driver exchange through IKsPropertySet, byte by byte.

#include "platform/com.h"

#include <cstddef>
#include <cstdint>

namespace genicam_adapter {

constexpr GUID device_property_set = {
    0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}};

namespace device_property {
constexpr DWORD description_size = 1;  ///< Get: `description_request`, gives a uint32
constexpr DWORD description_data = 2;  ///< Get: `description_request`, gives as many bytes as the size says
constexpr DWORD register_access = 3;   ///< Get and Set: uint64 address, the bytes of the register
constexpr DWORD named_access = 4;      ///< Get and Set: `named_property_request`, the bytes of the value
}  // namespace device_property

struct description_request {
    /// 1; 0 in the one request that is repeated when a driver refuses description 0.
    std::uint32_t first_field;
    std::uint32_t index;
};
static_assert(sizeof(description_request) == 8);
static_assert(offsetof(description_request, index) == 4);

/// Places in a request for a named feature: reserved zeros, the path, and zeros that also terminate the path.
struct named_property_request {
    static constexpr std::size_t path_offset = 8;
    static constexpr std::size_t tail_size = 64;
    static constexpr std::size_t size_without_path = path_offset + tail_size;
};
static_assert(named_property_request::size_without_path == 72);

/// Set of the device set. The interface has no const, but the driver only reads what it is sent.
[[nodiscard]] inline HRESULT set_device_property(IKsPropertySet& filter, DWORD property, void* instance,
                                                 DWORD instance_size, const void* data, DWORD data_size) {
    void* const sent = const_cast<void*>(data);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    return filter.Set(device_property_set, property, instance, instance_size, sent, data_size);
}

/// Room for the name of an enumeration's selected entry, terminator included.
constexpr std::size_t selected_entry_size = 256;

constexpr GUID gate_property_set = {
    0x8E4DEEF8, 0xB53B, 0x4A30, {0xB9, 0xB6, 0xAF, 0xBB, 0xCB, 0xD1, 0x82, 0xB4}};

constexpr DWORD gate_property = 0;

/// Instance data and data of the gate property at once; only the kind is of interest here.
struct device_kind_query {
    std::uint32_t device_kind;
    std::uint8_t unused[140];
};
static_assert(sizeof(device_kind_query) == 144);

/// The kind of device that this adapter serves.
constexpr std::uint32_t served_device_kind = 5;

}  // namespace genicam_adapter
