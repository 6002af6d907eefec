#include "simcam/vendor_driver.h"

#include "simcam/quantities.h"
#include "wire/vendor_set.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace simcam {
namespace {

constexpr std::int32_t partial_scan_grid = 4;
constexpr int focus_run_reads = 2;

// What the automatic mode of a switch that is not a flag governs.
struct governed {
    DWORD id;
    DWORD by;
};
constexpr governed governed_by_switch[] = {
    {SELVANE_AUTO_MAX_TICKS, SELVANE_AUTO_MAX_AUTOMATIC},
    {SELVANE_AUTO_MAX_MICROSECONDS, SELVANE_AUTO_MAX_AUTOMATIC},
    {SELVANE_AUTO_MAX_FLOAT, SELVANE_AUTO_MAX_AUTOMATIC},
    {SELVANE_PARTIAL_SCAN_X, SELVANE_PARTIAL_SCAN_AUTO_CENTER},
    {SELVANE_PARTIAL_SCAN_Y, SELVANE_PARTIAL_SCAN_AUTO_CENTER},
};

constexpr DWORD governed_by_white_balance[] = {SELVANE_WHITE_BALANCE_RED, SELVANE_WHITE_BALANCE_GREEN,
                                               SELVANE_WHITE_BALANCE_BLUE, SELVANE_WHITE_BALANCE_ONE_PUSH};

// Limits of a range in which the lower may not pass the upper.
struct ordered_pair {
    DWORD lower;
    DWORD upper;
};
constexpr ordered_pair ordered_pairs[] = {
    {SELVANE_FOCUS_AUTO_MIN, SELVANE_FOCUS_AUTO_MAX},
    {SELVANE_FOCUS_REGION_LEFT, SELVANE_FOCUS_REGION_RIGHT},
    {SELVANE_FOCUS_REGION_TOP, SELVANE_FOCUS_REGION_BOTTOM},
};

template <class Number>
HRESULT apply_limits(limit_policy policy, Number min, Number max, Number& value) noexcept {
    if (policy == limit_policy::accept || (value >= min && value <= max)) return S_OK;
    if (policy == limit_policy::refuse) return E_INVALIDARG;
    value = value < min ? min : max;
    return S_OK;
}

template <class Record>
HRESULT read_record(const void* data, DWORD size, Record& record) noexcept {
    if (data == nullptr) return E_POINTER;
    if (size < sizeof(Record)) return buffer_too_small_hr;
    std::memcpy(&record, data, sizeof(Record));
    return S_OK;
}

template <class Record>
HRESULT give_record(const Record& record, void* data, DWORD size, DWORD& returned) noexcept {
    if (data == nullptr) return E_POINTER;
    if (size < sizeof(Record)) return buffer_too_small_hr;
    std::memcpy(data, &record, sizeof(Record));
    returned = sizeof(Record);
    return S_OK;
}

wire::integer_record record_of(const integer_property& property) noexcept {
    return {{},           property.value, property.flags,        property.capabilities,
            property.min, property.max,   property.default_value};
}

wire::float_record record_of(const float_property& property) noexcept {
    return {{},
            property.value,
            property.min,
            property.max,
            property.default_value,
            property.flags,
            property.capabilities,
            {}};
}

wire::gpio_record record_of(const gpio_property& property) noexcept {
    return {{}, property.input, property.output, property.input_max, property.output_max};
}

wire::strobe_record record_of(const strobe_property& property) noexcept {
    wire::strobe_record record = {};
    record.enable = static_cast<std::uint32_t>(property.enable);
    record.delay = property.delay;
    record.delay_min = property.delay_min;
    record.delay_max = property.delay_max;
    record.delay_default = property.delay_default;
    record.duration = property.duration;
    record.duration_min = property.duration_min;
    record.duration_max = property.duration_max;
    record.duration_default = property.duration_default;
    record.polarity = static_cast<std::uint32_t>(property.polarity);
    record.follow_exposure = static_cast<std::uint32_t>(property.follow_exposure);
    record.restrictions = property.restrictions;
    return record;
}

HRESULT set_gpio(gpio_property& property, const void* data, DWORD size) {
    wire::gpio_record record = {};
    if (const HRESULT hr = read_record(data, size, record); FAILED(hr)) return hr;
    if (record.output < 0 || record.output > property.output_max) return E_INVALIDARG;
    property.output = record.output;
    return S_OK;
}

// Limits and restrictions are the camera's own; a duration of 0 is what the mode "constant" sends.
HRESULT set_strobe(strobe_property& property, const void* data, DWORD size) {
    wire::strobe_record record = {};
    if (const HRESULT hr = read_record(data, size, record); FAILED(hr)) return hr;
    property.enable = record.enable != 0 ? 1 : 0;
    if ((property.restrictions & wire::strobe_no_polarity) == 0)
        property.polarity = record.polarity != 0 ? 1 : 0;
    if ((property.restrictions & wire::strobe_no_delay) == 0) {
        property.delay = std::clamp(record.delay, property.delay_min, property.delay_max);
    }
    if ((property.restrictions & wire::strobe_no_duration) == 0) {
        property.duration = record.duration == 0
                                ? 0
                                : std::clamp(record.duration, property.duration_min, property.duration_max);
        property.follow_exposure = record.follow_exposure != 0 ? 1 : 0;
    }
    return S_OK;
}

// Calls `serve` with the property of that number, whatever its record.
template <class Model, class Serve>
HRESULT with_property(Model& model, REFGUID set, DWORD id, Serve serve) {
    if (set == wire::color_enhancement_set) {
        const auto found = model.color_enhancement.find(id);
        return found == model.color_enhancement.end() ? property_unknown : serve(found->second);
    }
    if (const auto found = model.integers.find(id); found != model.integers.end())
        return serve(found->second);
    if (const auto found = model.floats.find(id); found != model.floats.end()) return serve(found->second);
    if (const auto found = model.gpio.find(id); found != model.gpio.end()) return serve(found->second);
    if (const auto found = model.strobe.find(id); found != model.strobe.end()) return serve(found->second);
    return property_unknown;
}

}  // namespace

HRESULT vendor_driver::query(REFGUID set, DWORD id, DWORD& support) const {
    return with_property(model_, set, id, [&](const auto& property) {
        support = property.support;
        return S_OK;
    });
}

HRESULT vendor_driver::get(REFGUID set, DWORD id, void* data, DWORD size, DWORD& returned) {
    if (set == wire::vendor_set && id == SELVANE_FOCUS_ONE_PUSH) {
        const auto found = model_.integers.find(id);
        if (found != model_.integers.end()) found->second.value = focus_reads_left_ > 0 ? 1 : 0;
        if (focus_reads_left_ > 0) --focus_reads_left_;
    }
    return with_property(model_, set, id, [&](const auto& property) {
        if ((property.support & support_get) == 0) return property_unknown;
        return give_record(record_of(property), data, size, returned);
    });
}

HRESULT vendor_driver::set(REFGUID set, DWORD id, const void* data, DWORD size) {
    const DWORD rules = set == wire::vendor_set ? id : 0;
    return with_property(model_, set, id, [&](auto& property) {
        using property_type = std::decay_t<decltype(property)>;
        if ((property.support & support_set) == 0) return property_unknown;
        if constexpr (std::is_same_v<property_type, integer_property>) {
            return set_integer(rules, property, data, size);
        } else if constexpr (std::is_same_v<property_type, float_property>) {
            return set_float(rules, property, data, size);
        } else if constexpr (std::is_same_v<property_type, gpio_property>) {
            return set_gpio(property, data, size);
        } else {
            return set_strobe(property, data, size);
        }
    });
}

bool vendor_driver::is_governed(DWORD id) const {
    for (const governed& rule : governed_by_switch) {
        if (rule.id != id) continue;
        const auto found = model_.integers.find(rule.by);
        if (found != model_.integers.end() && found->second.value != 0) return true;
    }
    const bool color = std::find(std::begin(governed_by_white_balance), std::end(governed_by_white_balance),
                                 id) != std::end(governed_by_white_balance);
    if (color) {
        const auto found = model_.video_proc_amp.find(wire::video_proc_amp_white_balance);
        return found != model_.video_proc_amp.end() && (found->second.flags & wire::automatic) != 0;
    }
    return is_quantity_automatic(model_, static_cast<LONG>(id));
}

HRESULT vendor_driver::set_integer(DWORD id, integer_property& property, const void* data, DWORD size) {
    wire::integer_record record = {};
    if (const HRESULT hr = read_record(data, size, record); FAILED(hr)) return hr;
    if (id == SELVANE_SOFTWARE_TRIGGER) return software_trigger(record.flags);
    if (is_governed(id)) return E_ACCESSDENIED;
    std::int32_t value = record.value;
    if (const HRESULT hr = apply_limits(property.policy, property.min, property.max, value); FAILED(hr))
        return hr;
    keep_order(id, value);
    property.value = value;
    if (id == SELVANE_TRIGGER) {
        property.flags = record.flags & (wire::trigger_mode_bits | property.capabilities);
    }
    act_on(id, property);
    return S_OK;
}

HRESULT vendor_driver::set_float(DWORD id, float_property& property, const void* data, DWORD size) {
    wire::float_record record = {};
    if (const HRESULT hr = read_record(data, size, record); FAILED(hr)) return hr;
    if (is_governed(id)) return E_ACCESSDENIED;
    const bool automatic = (record.flags & wire::automatic) != 0;
    if (automatic && (property.capabilities & wire::automatic) == 0) return E_INVALIDARG;
    if (!automatic) {
        float value = record.value;
        const HRESULT hr = apply_limits(property.policy, property.min, property.max, value);
        if (FAILED(hr)) return hr;
        property.value = value;
    }
    property.flags = automatic ? wire::automatic : wire::manual;
    follow_view(model_, view_source::real, static_cast<LONG>(id));
    return S_OK;
}

HRESULT vendor_driver::software_trigger(std::uint32_t flags) {
    if ((flags & wire::software_trigger_fire) == 0) return E_INVALIDARG;
    const auto trigger = model_.integers.find(SELVANE_TRIGGER);
    if (trigger == model_.integers.end() || (trigger->second.flags & wire::trigger_off) != 0)
        return not_ready;
    ++model_.software_triggers;
    return S_OK;
}

void vendor_driver::keep_order(DWORD id, std::int32_t& value) const {
    for (const ordered_pair& pair : ordered_pairs) {
        if (id != pair.lower && id != pair.upper) continue;
        const auto partner = model_.integers.find(id == pair.lower ? pair.upper : pair.lower);
        if (partner == model_.integers.end()) continue;
        value = id == pair.lower ? std::min(value, partner->second.value)
                                 : std::max(value, partner->second.value);
    }
}

void vendor_driver::act_on(DWORD id, integer_property& property) {
    const bool on = property.value != 0;
    switch (id) {
        case SELVANE_PARTIAL_SCAN_AUTO_CENTER:
            if (on) center_partial_scan();
            break;
        case SELVANE_WHITE_BALANCE_ONE_PUSH:
            if (on) balance_white();
            property.value = 0;
            break;
        case SELVANE_FOCUS_ONE_PUSH:
            if (on) start_focus();
            break;
        default:
            follow_view(model_, view_source::integer, static_cast<LONG>(id));
            break;
    }
}

void vendor_driver::center_partial_scan() {
    for (const DWORD id : {SELVANE_PARTIAL_SCAN_X, SELVANE_PARTIAL_SCAN_Y}) {
        const auto found = model_.integers.find(id);
        if (found == model_.integers.end()) continue;
        integer_property& offset = found->second;
        offset.value = (offset.max - offset.min) / 2 / partial_scan_grid * partial_scan_grid + offset.min;
    }
}

void vendor_driver::balance_white() {
    for (const DWORD id :
         {SELVANE_WHITE_BALANCE_RED, SELVANE_WHITE_BALANCE_GREEN, SELVANE_WHITE_BALANCE_BLUE}) {
        const auto found = model_.integers.find(id);
        if (found != model_.integers.end()) found->second.value = found->second.default_value;
    }
}

void vendor_driver::start_focus() {
    focus_reads_left_ = focus_run_reads;
    const auto focus = model_.camera_control.find(wire::camera_control_focus);
    if (focus == model_.camera_control.end()) return;
    std::int32_t lower = focus->second.min;
    std::int32_t upper = focus->second.max;
    if (const auto min = model_.integers.find(SELVANE_FOCUS_AUTO_MIN); min != model_.integers.end()) {
        lower = min->second.value;
    }
    if (const auto max = model_.integers.find(SELVANE_FOCUS_AUTO_MAX); max != model_.integers.end()) {
        upper = max->second.value;
    }
    focus->second.value = lower + (upper - lower) / 2;
}

HRESULT vendor_driver::set_control(control_map& controls, LONG property, LONG value, LONG flags) {
    const auto found = controls.find(property);
    if (found == controls.end()) return property_unknown;
    direct_show_property& control = found->second;
    const auto mode = static_cast<std::uint32_t>(flags);
    if ((mode != wire::automatic && mode != wire::manual) || (control.capabilities & mode) == 0)
        return E_INVALIDARG;
    if (mode == wire::manual) {
        auto wanted = static_cast<std::int32_t>(value);
        const HRESULT hr = apply_limits(control.policy, control.min, control.max, wanted);
        if (FAILED(hr)) return hr;
        control.value = wanted;
    }
    control.flags = mode;
    const bool camera = &controls == &model_.camera_control;
    follow_view(model_, camera ? view_source::camera_control : view_source::video_proc_amp, property);
    return S_OK;
}

}  // namespace simcam
