#include "simcam/vendor_model.h"

namespace simcam {
namespace {

constexpr std::uint32_t both_modes = wire::automatic | wire::manual;

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
    model.integers[SELVANE_EXPOSURE_TICKS] = automatic_number(333, 1, 40000);
    model.integers[SELVANE_EXPOSURE_MICROSECONDS] = automatic_number(33333, 20, 4000000);
    model.floats[SELVANE_EXPOSURE_FLOAT] = real(0.033333F, 0.00002F, 4.0F, both_modes);
    model.camera_control[wire::camera_control_exposure] = control(333, 1, 40000, both_modes);

    model.integers[SELVANE_AUTO_EXPOSURE_REFERENCE] = number(128, 0, 255);
    model.integers[SELVANE_AUTO_MAX_TICKS] = number(10000, 1, 40000);
    model.integers[SELVANE_AUTO_MAX_MICROSECONDS] = number(1000000, 20, 4000000);
    model.floats[SELVANE_AUTO_MAX_FLOAT] = real(1.0F, 0.00002F, 4.0F, wire::manual);
    model.integers[SELVANE_AUTO_MAX_AUTOMATIC] = on_off(false);
}

void add_gain(vendor_model& model) {
    model.integers[SELVANE_GAIN] = automatic_number(0, 0, 4800);
    model.video_proc_amp[wire::video_proc_amp_gain] = control(0, 0, 480, both_modes);
}

void add_partial_scan(vendor_model& model) {
    model.integers[SELVANE_PARTIAL_SCAN_AUTO_CENTER] = on_off(false);
    model.integers[SELVANE_PARTIAL_SCAN_X] = number(0, 0, 1024);
    model.integers[SELVANE_PARTIAL_SCAN_Y] = number(0, 0, 768);
    model.integers[SELVANE_BINNING] = number(1, 1, 4);
}

void add_input_and_output(vendor_model& model) {
    gpio_property gpio;
    gpio.input = 1;
    gpio.input_max = 3;
    gpio.output_max = 3;
    model.gpio[SELVANE_GPIO] = gpio;

    strobe_property strobe;
    strobe.delay_max = 100000;
    strobe.duration = strobe.duration_default = 1000;
    strobe.duration_max = 100000;
    strobe.polarity = 1;
    model.strobe[SELVANE_STROBE] = strobe;

    integer_property trigger = number(0, 0, 1);
    trigger.flags = wire::trigger_off;
    trigger.capabilities = wire::trigger_polarity | wire::trigger_operation;
    model.integers[SELVANE_TRIGGER] = trigger;
    model.integers[SELVANE_SOFTWARE_TRIGGER] = on_off(false);
    model.floats[SELVANE_TRIGGER_DELAY] = real(0.0F, 0.0F, 1000000.0F, wire::manual);
}

void add_color(vendor_model& model) {
    model.color_enhancement[0] = on_off(false);
    model.integers[SELVANE_WHITE_BALANCE_RED] = number(95, 0, 255);
    model.integers[SELVANE_WHITE_BALANCE_GREEN] = number(64, 0, 255);
    model.integers[SELVANE_WHITE_BALANCE_BLUE] = number(120, 0, 255);
    model.integers[SELVANE_WHITE_BALANCE_ONE_PUSH] = on_off(false);
    direct_show_property temperature = control(6500, 2500, 10000, both_modes);
    temperature.policy = limit_policy::clamp;  // a change of the mode comes with the value 0
    model.video_proc_amp[wire::video_proc_amp_white_balance] = temperature;
}

void add_focus(vendor_model& model) {
    model.integers[SELVANE_FOCUS_ONE_PUSH] = on_off(false);
    model.camera_control[wire::camera_control_focus] = control(420, 0, 1023, both_modes);
    model.integers[SELVANE_FOCUS_AUTO_MIN] = number(100, 0, 1023);
    model.integers[SELVANE_FOCUS_AUTO_MAX] = number(900, 0, 1023);
    model.integers[SELVANE_FOCUS_REGION_ENABLE] = on_off(false);
    model.integers[SELVANE_FOCUS_REGION_LEFT] = number(640, 0, 2047);
    model.integers[SELVANE_FOCUS_REGION_TOP] = number(384, 0, 1535);
    model.integers[SELVANE_FOCUS_REGION_RIGHT] = number(1407, 0, 2047);
    model.integers[SELVANE_FOCUS_REGION_BOTTOM] = number(1151, 0, 1535);
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
