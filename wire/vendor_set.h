#pragma once

#include "platform/com.h"
#include "wire/selvane_driver.h"

#include <cstdint>

namespace wire {

// The property sets of the built-in items and the DirectShow properties beside them, in the words of the C++
// rooms.

constexpr GUID vendor_set = SELVANE_VENDOR_SET;
constexpr GUID color_enhancement_set = SELVANE_COLOR_ENHANCEMENT_SET;

using integer_record = selvane_integer_record;
using float_record = selvane_float_record;
using gpio_record = selvane_gpio_record;
using strobe_record = selvane_strobe_record;

constexpr std::uint32_t automatic = SELVANE_AUTOMATIC;
constexpr std::uint32_t manual = SELVANE_MANUAL;

constexpr std::uint32_t trigger_mode_bits = SELVANE_TRIGGER_MODE_BITS;
constexpr std::uint32_t trigger_off = SELVANE_TRIGGER_OFF;
constexpr std::uint32_t trigger_polarity = SELVANE_TRIGGER_POLARITY;
constexpr std::uint32_t trigger_operation = SELVANE_TRIGGER_OPERATION;
constexpr std::uint32_t software_trigger_fire = SELVANE_SOFTWARE_TRIGGER_FIRE;

constexpr std::uint32_t strobe_no_polarity = SELVANE_STROBE_NO_POLARITY;
constexpr std::uint32_t strobe_no_delay = SELVANE_STROBE_NO_DELAY;
constexpr std::uint32_t strobe_no_duration = SELVANE_STROBE_NO_DURATION;

constexpr LONG camera_control_exposure = SELVANE_CAMERA_CONTROL_EXPOSURE;
constexpr LONG camera_control_focus = SELVANE_CAMERA_CONTROL_FOCUS;
constexpr LONG video_proc_amp_white_balance = SELVANE_VIDEO_PROC_AMP_WHITE_BALANCE;
constexpr LONG video_proc_amp_gain = SELVANE_VIDEO_PROC_AMP_GAIN;

}  // namespace wire
