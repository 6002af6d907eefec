#pragma once

#include "platform/com.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace simcam {

using bytes = std::vector<std::uint8_t>;

/// What a driver answers once the camera is unplugged.
constexpr HRESULT camera_lost = static_cast<HRESULT>(0x80070651);

enum class call_kind {
    query_supported,
    get,
    set,
    camera_range,
    camera_get,
    camera_set,
    amp_range,
    amp_get,
    amp_set,
};

/// One call of the driver, as it came and as it was answered.
struct driver_call {
    std::uint64_t number = 0;  ///< from 1; every call of a camera counts, whatever becomes of it
    call_kind kind = call_kind::get;
    GUID set = {};              ///< of property-set calls
    DWORD id = 0;               ///< the property of the set, or the DirectShow property
    bytes instance;             ///< instance data as handed over
    bytes data;                 ///< the data buffer as handed over
    bytes answer;               ///< the data buffer after a successful `Get`
    bool one_buffer = false;    ///< instance and data were the same memory
    DWORD support = 0;          ///< answer of `QuerySupported`
    DWORD returned = 0;         ///< size that a `Get` reported
    std::string path;           ///< of named feature access
    std::uint64_t address = 0;  ///< of register access
    std::vector<LONG> numbers;  ///< DirectShow: min, max, step, default, flags, or value, flags
    HRESULT result = S_OK;
    std::string text;  ///< the readable line
};

[[nodiscard]] bool is_property_call(call_kind kind) noexcept;
[[nodiscard]] bool is_camera_control(call_kind kind) noexcept;

using call_filter = std::function<bool(const driver_call&)>;

// Filters for faults and for searching a transcript.
[[nodiscard]] call_filter calls_of(call_kind kind);
[[nodiscard]] call_filter property_calls(const GUID& set, DWORD id);
[[nodiscard]] call_filter property_calls(call_kind kind, const GUID& set, DWORD id);
/// Named access to exactly this path.
[[nodiscard]] call_filter path_calls(std::string path);
/// Named access to every path that ends so.
[[nodiscard]] call_filter suffix_calls(std::string suffix);
[[nodiscard]] call_filter register_calls(std::uint64_t address);

}  // namespace simcam
