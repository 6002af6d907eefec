#include "simcam/picture_state.h"

#include "simcam/feature_server.h"
#include "simcam/vendor_model.h"
#include "wire/device_set.h"
#include "wire/vendor_set.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace simcam {
namespace {

constexpr double decibels_per_power_of_ten = 20;
constexpr double hundredths = 100;
// Of gains that are told in other units than decibels.
constexpr double most_decibels = 96;

// The names under which descriptions have the rate.
constexpr const char* rate_names[] = {"FrameRate", "AcquisitionFrameRate"};

struct pattern_word {
    std::string_view word;  // within the name of the entry
    test_pattern pattern;
};
constexpr pattern_word pattern_words[] = {
    {"Ramp", test_pattern::grey_ramp},
    {"Bar", test_pattern::color_bars},
    {"Check", test_pattern::checkerboard},
};

std::optional<double> ask(const feature_server& features, std::string_view name, std::string_view suffix) {
    const std::string path = std::string(name) + std::string(suffix);
    std::uint64_t raw = 0;
    if (features.form_of(path) == value_form::text || FAILED(features.get(path, raw))) return std::nullopt;
    if (features.form_of(path) == value_form::integer)
        return static_cast<double>(static_cast<std::int64_t>(raw));
    double value = 0;
    std::memcpy(&value, &raw, sizeof(value));
    return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

std::optional<double> value_of(const feature_server& features, std::string_view name) {
    return ask(features, name, wire::path_suffix::value);
}

bool is_on(const feature_server& features, std::string_view name) {
    return value_of(features, name).value_or(0) != 0;
}

// Integers without a default answer 0, which is usual for nothing that is compared with it.
std::optional<double> usual_value(const feature_server& features, std::string_view name) {
    const double stated = ask(features, name, wire::path_suffix::default_value).value_or(0);
    if (stated > 0) return stated;
    const double min = ask(features, name, wire::path_suffix::min).value_or(0);
    const double max = ask(features, name, wire::path_suffix::max).value_or(0);
    const double middle = min > 0 ? std::sqrt(min * max) : max / 2;
    return middle > 0 ? std::optional<double>(middle) : std::nullopt;
}

std::optional<double> compared_with_usual(const feature_server& features, std::string_view name) {
    const std::optional<double> now = value_of(features, name);
    const std::optional<double> usual = usual_value(features, name);
    if (!now || !usual) return std::nullopt;
    return *now / *usual;
}

const integer_property* find(const vendor_model& vendor, DWORD id) noexcept {
    const auto found = vendor.integers.find(id);
    return found == vendor.integers.end() ? nullptr : &found->second;
}

std::optional<double> compared_with_usual(const vendor_model& vendor, DWORD id) {
    const integer_property* property = find(vendor, id);
    if (property == nullptr || property->default_value <= 0) return std::nullopt;
    return static_cast<double>(property->value) / property->default_value;
}

// An automatic exposure brings the picture to its reference, whatever the light.
double light_of(const feature_server& features, const vendor_model& vendor) {
    if (features.find_node("ExposureTime") != nullptr) {
        const char* decides = is_on(features, "ExposureAuto") ? "ExposureAutoReference" : "ExposureTime";
        return compared_with_usual(features, decides).value_or(1);
    }
    const integer_property* exposure = find(vendor, SELVANE_EXPOSURE_MICROSECONDS);
    if (exposure == nullptr) exposure = find(vendor, SELVANE_EXPOSURE_TICKS);
    if (exposure == nullptr || exposure->default_value <= 0) return 1;
    if ((exposure->flags & wire::automatic) != 0)
        return compared_with_usual(vendor, SELVANE_AUTO_EXPOSURE_REFERENCE).value_or(1);
    return static_cast<double>(exposure->value) / exposure->default_value;
}

double gain_of(const feature_server& features, const vendor_model& vendor) {
    double decibels = value_of(features, "Gain").value_or(0);
    if (const integer_property* gain = find(vendor, SELVANE_GAIN)) decibels += gain->value / hundredths;
    return std::pow(10.0, std::clamp(decibels, -most_decibels, most_decibels) / decibels_per_power_of_ten);
}

test_pattern pattern_of(const feature_server& features) {
    std::string entry;
    const std::string path = std::string("TestPattern") + std::string(wire::path_suffix::selected_entry);
    if (FAILED(features.get_text(path, entry))) return test_pattern::off;
    const auto* found = std::find_if(
        std::begin(pattern_words), std::end(pattern_words),
        [&](const pattern_word& candidate) { return entry.find(candidate.word) != std::string::npos; });
    return found == std::end(pattern_words) ? test_pattern::off : found->pattern;
}

struct span {
    double begin = 0;
    double length = 1;
};

// Whatever a description says, a part of the sensor lies on it and is not empty.
span part_of(double sensor, double offset, double size) {
    if (sensor < 1 || size < 1) return {};
    const double length = std::min(size / sensor, 1.0);
    return {std::clamp(offset / sensor, 0.0, 1.0 - length), length};
}

std::optional<span> scanned(const feature_server& features, std::string_view sensor, std::string_view offset,
                            std::string_view size) {
    const std::optional<double> all = value_of(features, sensor);
    const std::optional<double> used = value_of(features, size);
    if (!all || !used) return std::nullopt;
    return part_of(*all, value_of(features, offset).value_or(0), *used);
}

// The fixed properties tell the offsets alone: the largest is taken for half of the sensor.
span scanned(const vendor_model& vendor, DWORD offset) {
    const integer_property* property = find(vendor, offset);
    return property == nullptr ? span() : part_of(2.0 * property->max, property->value, property->max);
}

sensor_area area_of(const feature_server& features, const vendor_model& vendor) {
    const std::optional<span> x = scanned(features, "SensorWidth", "OffsetX", "Width");
    const std::optional<span> y = scanned(features, "SensorHeight", "OffsetY", "Height");
    const span across = x ? *x : scanned(vendor, SELVANE_PARTIAL_SCAN_X);
    const span down = y ? *y : scanned(vendor, SELVANE_PARTIAL_SCAN_Y);
    return {across.begin, down.begin, across.length, down.length};
}

frame_rate_range rate_of(const feature_server& features) {
    frame_rate_range rate;
    const char* name = find_frame_rate(features);
    const std::optional<double> now = name != nullptr ? value_of(features, name) : std::nullopt;
    if (!now || *now <= 0) return rate;
    rate.min = std::max(ask(features, name, wire::path_suffix::min).value_or(*now), 0.01);
    rate.max = std::max(ask(features, name, wire::path_suffix::max).value_or(*now), rate.min);
    rate.now = std::clamp(*now, rate.min, rate.max);
    // The automatic rate is the highest that the exposure leaves room for.
    if (is_on(features, std::string(name) + "Auto")) {
        const double exposure = value_of(features, "ExposureTime").value_or(0);
        rate.now = exposure > 0 ? std::clamp(1 / exposure, rate.min, rate.max) : rate.max;
    }
    return rate;
}

}  // namespace

const char* find_frame_rate(const feature_server& features) {
    const auto* found = std::find_if(std::begin(rate_names), std::end(rate_names),
                                     [&](const char* name) { return features.find_node(name) != nullptr; });
    return found == std::end(rate_names) ? nullptr : *found;
}

picture_state read_picture_state(const feature_server& features, const vendor_model& vendor) {
    picture_state state;
    state.light = std::max(light_of(features, vendor), 0.0);
    state.gain = gain_of(features, vendor);
    state.gamma = std::max(value_of(features, "Gamma").value_or(1), 0.01);
    state.black_level = std::clamp(value_of(features, "BlackLevel").value_or(0), 0.0, 255.0);
    state.reverse_x = is_on(features, "ReverseX");
    state.reverse_y = is_on(features, "ReverseY");
    state.pattern = pattern_of(features);
    state.area = area_of(features, vendor);
    state.frame_rate = rate_of(features);
    return state;
}

}  // namespace simcam
