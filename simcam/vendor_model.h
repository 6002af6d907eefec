#pragma once

#include "wire/vendor_set.h"

#include <cstdint>
#include <map>

namespace simcam {

constexpr DWORD support_get = SELVANE_SUPPORT_GET;
constexpr DWORD support_set = SELVANE_SUPPORT_SET;
constexpr DWORD support_both = support_get | support_set;

/// What the driver does with a value outside the limits.
enum class limit_policy { clamp, refuse, accept };

/// A property of the 48-byte record.
struct integer_property {
    std::int32_t value = 0;
    std::uint32_t flags = 2;
    std::uint32_t capabilities = 2;
    std::int32_t min = 0;
    std::int32_t max = 1;
    std::int32_t default_value = 0;
    limit_policy policy = limit_policy::clamp;
    DWORD support = support_both;
};

/// A property of the 56-byte record.
struct float_property {
    float value = 0;
    float min = 0;
    float max = 1;
    float default_value = 0;
    std::uint32_t flags = 2;
    std::uint32_t capabilities = 2;
    limit_policy policy = limit_policy::clamp;
    DWORD support = support_both;
};

/// Property 122, the 40-byte record. `input` is what stands at the pins.
struct gpio_property {
    std::int32_t input = 0;
    std::int32_t output = 0;
    std::int32_t input_max = 0;
    std::int32_t output_max = 0;
    DWORD support = support_both;
};

/// Property 125, the 88-byte record.
struct strobe_property {
    std::int32_t enable = 0;
    std::int32_t delay = 0, delay_min = 0, delay_max = 0, delay_default = 0;
    std::int32_t duration = 0, duration_min = 0, duration_max = 0, duration_default = 0;
    std::int32_t polarity = 0;
    std::int32_t follow_exposure = 0;
    std::uint32_t restrictions = 0;
    DWORD support = support_both;
};

/// A property of IAMCameraControl or IAMVideoProcAmp.
struct direct_show_property {
    std::int32_t value = 0;
    std::uint32_t flags = 2;  ///< 1 automatic, 2 manual
    std::uint32_t capabilities = 2;
    std::int32_t min = 0;
    std::int32_t max = 1;
    std::int32_t step = 1;
    std::int32_t default_value = 0;
    limit_policy policy = limit_policy::refuse;
};

/// The fixed driver properties of a camera, each there only if it stands in its map. Tests change the fields
/// directly; what the driver is told through its interfaces goes through the rules of `simulated_camera`.
struct vendor_model {
    std::map<DWORD, integer_property> integers;
    std::map<DWORD, float_property> floats;
    std::map<DWORD, gpio_property> gpio;                  ///< 122 alone
    std::map<DWORD, strobe_property> strobe;              ///< 125 alone
    std::map<DWORD, integer_property> color_enhancement;  ///< property 0 of the set of its own
    std::map<LONG, direct_show_property> camera_control;
    std::map<LONG, direct_show_property> video_proc_amp;
    std::uint64_t software_triggers = 0;  ///< how many have come while the trigger was on

    /// Removes a vendor property of any record.
    void remove(DWORD id);
};

/// Every property and DirectShow interface that the built-in items use, as a capable camera has them.
[[nodiscard]] vendor_model full_vendor_model();

}  // namespace simcam
