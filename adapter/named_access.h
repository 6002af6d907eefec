#pragma once

#include "platform/com.h"
#include "wire/device_set.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <type_traits>

namespace genicam_adapter {

/// A path into the driver's view of a description, such as "Gain" and "/Value", in the parts it is made of:
/// only the request puts them together, so a call costs one allocation. Valid for the call it is written in.
using named_path = std::initializer_list<std::string_view>;

// All of these are one call of the driver and give its HRESULT as it stands; E_NOINTERFACE without a filter.

/// Reads up to `size` bytes. How many came back is not looked at: what the driver does not write stays as it
/// was.
[[nodiscard]] HRESULT get_named_property(IKsPropertySet* filter, named_path path, void* buffer, DWORD size);
[[nodiscard]] HRESULT set_named_property(IKsPropertySet* filter, named_path path, const void* data,
                                         DWORD size);

/// Reads a number: an integer, a boolean or a double, always 8 bytes.
template <class Number>
[[nodiscard]] HRESULT get_named_value(IKsPropertySet* filter, named_path path, Number& number) {
    static_assert(sizeof(Number) == 8 && std::is_arithmetic_v<Number>);
    return get_named_property(filter, path, &number, sizeof(number));
}

/// Writes the 8 bytes of a number.
[[nodiscard]] HRESULT set_named_value(IKsPropertySet* filter, named_path path, std::uint64_t value);

/// True only if the driver answers and the answer is not zero.
[[nodiscard]] bool get_named_bool(IKsPropertySet* filter, named_path path);

}  // namespace genicam_adapter
