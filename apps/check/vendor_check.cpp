#include "apps/check/vendor_check.h"

#include "wire/vendor_set.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <fmt/format.h>

namespace selvane_check {
namespace {

// What a page reads of it, and the size of its record. Buttons are written alone.
struct readable_property {
    DWORD id;
    DWORD size;
};

constexpr DWORD integer_size = sizeof(wire::integer_record);
constexpr readable_property readable_properties[] = {
    {SELVANE_WHITE_BALANCE_BLUE, integer_size},
    {SELVANE_WHITE_BALANCE_RED, integer_size},
    {SELVANE_AUTO_EXPOSURE_REFERENCE, integer_size},
    {SELVANE_EXPOSURE_TICKS, integer_size},
    {SELVANE_TRIGGER, integer_size},
    {SELVANE_PARTIAL_SCAN_X, integer_size},
    {SELVANE_PARTIAL_SCAN_Y, integer_size},
    {SELVANE_GPIO, sizeof(wire::gpio_record)},
    {SELVANE_STROBE, sizeof(wire::strobe_record)},
    {SELVANE_AUTO_MAX_TICKS, integer_size},
    {SELVANE_AUTO_MAX_AUTOMATIC, integer_size},
    {SELVANE_WHITE_BALANCE_GREEN, integer_size},
    {SELVANE_PARTIAL_SCAN_AUTO_CENTER, integer_size},
    {SELVANE_SOFTWARE_TRIGGER, integer_size},
    {SELVANE_TRIGGER_DELAY, sizeof(wire::float_record)},
    {SELVANE_EXPOSURE_MICROSECONDS, integer_size},
    {SELVANE_AUTO_MAX_MICROSECONDS, integer_size},
    {SELVANE_GAIN, integer_size},
    {SELVANE_FOCUS_AUTO_MIN, integer_size},
    {SELVANE_FOCUS_AUTO_MAX, integer_size},
    {SELVANE_FOCUS_REGION_TOP, integer_size},
    {SELVANE_FOCUS_REGION_LEFT, integer_size},
    {SELVANE_FOCUS_REGION_BOTTOM, integer_size},
    {SELVANE_FOCUS_REGION_RIGHT, integer_size},
    {SELVANE_FOCUS_REGION_ENABLE, integer_size},
};

constexpr DWORD focus_properties[] = {SELVANE_FOCUS_ONE_PUSH,     SELVANE_FOCUS_AUTO_MIN,
                                      SELVANE_FOCUS_AUTO_MAX,     SELVANE_FOCUS_REGION_TOP,
                                      SELVANE_FOCUS_REGION_LEFT,  SELVANE_FOCUS_REGION_BOTTOM,
                                      SELVANE_FOCUS_REGION_RIGHT, SELVANE_FOCUS_REGION_ENABLE};

DWORD support_of(driver_watch& driver, REFGUID set, DWORD id) {
    DWORD support = 0;
    return SUCCEEDED(driver.query(set, id, &support)) ? support : 0;
}

void check_record(driver_watch& driver, finding_book& findings, REFGUID set, readable_property property) {
    if ((support_of(driver, set, property.id) & SELVANE_SUPPORT_GET) == 0) return;
    std::array<std::uint8_t, sizeof(wire::strobe_record)> record{};
    DWORD returned = 0;
    const HRESULT hr =
        driver.get(set, property.id, record.data(), property.size, record.data(), property.size, &returned);
    if (FAILED(hr) || returned >= property.size) return;
    findings.add(fault_kind::vendor_short,
                 fmt::format("{} {} is answered with {} of {} bytes",
                             set == wire::vendor_set ? "vendor property" : "colour enhancement property",
                             property.id, returned, property.size));
}

}  // namespace

void check_vendor_properties(driver_watch& driver, finding_book& findings) {
    for (const readable_property property : readable_properties) {
        check_record(driver, findings, wire::vendor_set, property);
    }
    check_record(driver, findings, wire::color_enhancement_set, {SELVANE_COLOR_ENHANCEMENT, integer_size});
    const auto supports = [&](DWORD id) { return support_of(driver, wire::vendor_set, id) != 0; };
    if (supports(SELVANE_EXPOSURE_MICROSECONDS) && !supports(SELVANE_EXPOSURE_TICKS)) {
        findings.add(fault_kind::exposure_ticks, "vendor property 239 is supported, and 109 is not");
    }
    const bool focus = std::any_of(std::begin(focus_properties), std::end(focus_properties), supports);
    if (focus && !driver.has_camera_control()) {
        findings.add(fault_kind::focus_control,
                     "properties of the focus are supported, and there is no IAMCameraControl");
    }
}

}  // namespace selvane_check
