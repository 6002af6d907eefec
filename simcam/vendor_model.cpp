#include "simcam/vendor_model.h"

#include "items/standard_controls.h"
#include "items/vendor_properties.h"

namespace simcam {
namespace {

using namespace ZELAdapterHelper;

constexpr std::uint32_t both_modes = flag_automatic | flag_manual;

integer_property number(std::int32_t value, std::int32_t min, std::int32_t max) {
    integer_property made;
    made.value = made.default_value = value;
    made.min = min;
    made.max = max;
    return made;
}

integer_property automatic_number(std::int32_t value, std::int32_t min, std::int32_t max) {
    integer_property made = number(value, min, max);
    made.capabilities = both_modes;
    return made;
}

integer_property on_off(bool on) { return number(on ? 1 : 0, 0, 1); }

float_property real(float value, float min, float max, std::uint32_t capabilities) {
    float_property made;
    made.value = made.default_value = value;
    made.min = min;
    made.max = max;
    made.capabilities = capabilities;
    return made;
}

direct_show_property control(std::int32_t value, std::int32_t min, std::int32_t max,
                             std::uint32_t capabilities) {
    direct_show_property made;
    made.value = made.default_value = value;
    made.min = min;
    made.max = max;
    made.capabilities = capabilities;
    return made;
}

void add_exposure(vendor_model& model) {
    // 1/30 s, from 20 microseconds to 4 s, in each of the ways to say so.
    model.integers[property_exposure_ticks] = automatic_number(333, 1, 40000);
    model.integers[property_exposure_microseconds] = automatic_number(33333, 20, 4000000);
    model.floats[property_exposure_float] = real(0.033333F, 0.00002F, 4.0F, both_modes);
    model.camera_control[camera_control_exposure] = control(333, 1, 40000, both_modes);

    model.integers[property_auto_exposure_reference] = number(128, 0, 255);
    model.integers[property_auto_max_ticks] = number(10000, 1, 40000);
    model.integers[property_auto_max_microseconds] = number(1000000, 20, 4000000);
    model.floats[property_auto_max_float] = real(1.0F, 0.00002F, 4.0F, flag_manual);
    model.integers[property_auto_max_automatic] = on_off(false);
}

void add_gain(vendor_model& model) {
    model.integers[property_gain] = automatic_number(0, 0, 4800);
    model.video_proc_amp[video_proc_amp_gain] = control(0, 0, 480, both_modes);
}

void add_partial_scan(vendor_model& model) {
    model.integers[property_partial_scan_auto_center] = on_off(false);
    model.integers[property_partial_scan_x] = number(0, 0, 1024);
    model.integers[property_partial_scan_y] = number(0, 0, 768);
    model.integers[property_binning] = number(1, 1, 4);
}

void add_input_and_output(vendor_model& model) {
    gpio_property gpio;
    gpio.input = 1;
    gpio.input_max = 3;
    gpio.output_max = 3;
    model.gpio[property_gpio] = gpio;

    strobe_property strobe;
    strobe.delay_max = 100000;
    strobe.duration = strobe.duration_default = 1000;
    strobe.duration_max = 100000;
    strobe.polarity = 1;
    model.strobe[property_strobe] = strobe;

    integer_property trigger = number(0, 0, 1);
    trigger.flags = trigger_flag_off;
    trigger.capabilities = trigger_flag_polarity | trigger_flag_operation;
    model.integers[property_trigger] = trigger;
    model.integers[property_software_trigger] = on_off(false);
    model.floats[property_trigger_delay] = real(0.0F, 0.0F, 1000000.0F, flag_manual);
}

void add_color(vendor_model& model) {
    model.color_enhancement[0] = on_off(false);
    model.integers[property_white_balance_red] = number(95, 0, 255);
    model.integers[property_white_balance_green] = number(64, 0, 255);
    model.integers[property_white_balance_blue] = number(120, 0, 255);
    model.integers[property_white_balance_one_push] = on_off(false);
    direct_show_property temperature = control(6500, 2500, 10000, both_modes);
    temperature.policy = limit_policy::clamp;  // a change of the mode comes with the value 0
    model.video_proc_amp[video_proc_amp_white_balance] = temperature;
}

void add_focus(vendor_model& model) {
    model.integers[property_focus_one_push] = on_off(false);
    model.camera_control[camera_control_focus] = control(420, 0, 1023, both_modes);
    model.integers[property_focus_auto_min] = number(100, 0, 1023);
    model.integers[property_focus_auto_max] = number(900, 0, 1023);
    model.integers[property_focus_region_enable] = on_off(false);
    model.integers[property_focus_region_left] = number(640, 0, 2047);
    model.integers[property_focus_region_top] = number(384, 0, 1535);
    model.integers[property_focus_region_right] = number(1407, 0, 2047);
    model.integers[property_focus_region_bottom] = number(1151, 0, 1535);
}

}  // namespace

void vendor_model::remove(DWORD id) {
    integers.erase(id);
    floats.erase(id);
    gpio.erase(id);
    strobe.erase(id);
}

vendor_model full_vendor_model() {
    vendor_model model;
    add_exposure(model);
    add_gain(model);
    add_partial_scan(model);
    add_input_and_output(model);
    add_color(model);
    add_focus(model);
    return model;
}

}  // namespace simcam
