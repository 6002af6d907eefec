#pragma once

#include "items/item_contract.h"

namespace ZELAdapterHelper {

// The interface keys of the built-in items: the static table names them, the item classes answer to them. The
// partial scan items have none of their own: their keys are the numbers of the driver's properties.

namespace exposure_key {
constexpr InterfaceKey value = 0;
constexpr InterfaceKey abs_value = 1;
constexpr InterfaceKey automatic = 2;
constexpr InterfaceKey auto_reference = 3;
constexpr InterfaceKey auto_max = 4;
constexpr InterfaceKey auto_max_abs = 5;
constexpr InterfaceKey auto_max_automatic = 6;
}  // namespace exposure_key

namespace gain_key {
constexpr InterfaceKey value = 0;
constexpr InterfaceKey abs_value = 1;
constexpr InterfaceKey automatic = 2;
}  // namespace gain_key

namespace gpio_key {
constexpr InterfaceKey input = 0;
constexpr InterfaceKey read = 1;
constexpr InterfaceKey output = 2;
constexpr InterfaceKey write = 3;
}  // namespace gpio_key

namespace strobe_key {
constexpr InterfaceKey enable = 0;
constexpr InterfaceKey mode = 1;
constexpr InterfaceKey polarity = 2;
constexpr InterfaceKey duration = 3;
constexpr InterfaceKey delay = 4;
}  // namespace strobe_key

namespace trigger_key {
constexpr InterfaceKey enable = 0;
constexpr InterfaceKey polarity = 1;
constexpr InterfaceKey software_trigger = 3;
constexpr InterfaceKey delay = 4;
constexpr InterfaceKey operation = 5;
}  // namespace trigger_key

namespace color_enhancement_key {
constexpr InterfaceKey enable = 0;
}  // namespace color_enhancement_key

namespace white_balance_key {
constexpr InterfaceKey red = 0;
constexpr InterfaceKey blue = 1;
constexpr InterfaceKey automatic = 2;
constexpr InterfaceKey one_push = 3;
constexpr InterfaceKey green = 4;
}  // namespace white_balance_key

namespace focus_key {
constexpr InterfaceKey one_push = 0;
constexpr InterfaceKey value = 1;
constexpr InterfaceKey one_push_running = 2;
constexpr InterfaceKey auto_min = 3;
constexpr InterfaceKey auto_max = 4;
constexpr InterfaceKey region_enable = 5;
constexpr InterfaceKey region_left = 6;
constexpr InterfaceKey region_top = 7;
constexpr InterfaceKey region_bottom = 8;
constexpr InterfaceKey region_right = 9;
}  // namespace focus_key

}  // namespace ZELAdapterHelper
