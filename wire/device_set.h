#pragma once

#include "platform/com.h"
#include "wire/selvane_driver.h"

#include <string_view>

namespace wire {

// The device property set and the gate before it, in the words of the C++ rooms.

constexpr GUID device_set = SELVANE_DEVICE_SET;
constexpr GUID gate_set = SELVANE_GATE_SET;

using description_request = selvane_description_request;
using device_kind_query = selvane_device_kind_query;

/// What can be asked of a feature: the last part of its path.
namespace path_suffix {
constexpr std::string_view value = SELVANE_PATH_VALUE;
constexpr std::string_view min = SELVANE_PATH_MIN;
constexpr std::string_view max = SELVANE_PATH_MAX;
constexpr std::string_view inc = SELVANE_PATH_INC;
constexpr std::string_view default_value = SELVANE_PATH_DEFAULT;
constexpr std::string_view is_locked = SELVANE_PATH_IS_LOCKED;
constexpr std::string_view execute = SELVANE_PATH_EXECUTE;
constexpr std::string_view selected_entry = SELVANE_PATH_SELECTED_ENTRY;
constexpr std::string_view is_implemented = SELVANE_PATH_IS_IMPLEMENTED;
}  // namespace path_suffix

}  // namespace wire
