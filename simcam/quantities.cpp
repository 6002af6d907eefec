#include "simcam/quantities.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>

namespace simcam {
namespace {

// One property that shows a quantity, and how many of its units make one of the quantity's.
struct view {
    int quantity;
    view_source source;
    LONG id;
    double per_unit;
};

constexpr int exposure = 0;        // seconds
constexpr int exposure_limit = 1;  // seconds
constexpr int gain = 2;            // dB

constexpr view views[] = {
    {exposure, view_source::integer, SELVANE_EXPOSURE_TICKS, 1e4},
    {exposure, view_source::integer, SELVANE_EXPOSURE_MICROSECONDS, 1e6},
    {exposure, view_source::real, SELVANE_EXPOSURE_FLOAT, 1.0},
    {exposure, view_source::camera_control, wire::camera_control_exposure, 1e4},
    {exposure_limit, view_source::integer, SELVANE_AUTO_MAX_TICKS, 1e4},
    {exposure_limit, view_source::integer, SELVANE_AUTO_MAX_MICROSECONDS, 1e6},
    {exposure_limit, view_source::real, SELVANE_AUTO_MAX_FLOAT, 1.0},
    {gain, view_source::integer, SELVANE_GAIN, 100.0},
    {gain, view_source::video_proc_amp, wire::video_proc_amp_gain, 10.0},
};

const view* find_view(view_source source, LONG id) noexcept {
    const auto* found = std::find_if(std::begin(views), std::end(views), [&](const view& candidate) {
        return candidate.source == source && candidate.id == id;
    });
    return found == std::end(views) ? nullptr : found;
}

template <class Map, class Use>
void use_property(Map& map, LONG id, Use use) {
    const auto found = map.find(static_cast<typename std::decay_t<Map>::key_type>(id));
    if (found != map.end()) use(found->second);
}

// Calls `use` with the property of a view, if the camera has it.
template <class Model, class Use>
void with_view(Model& model, const view& seen, Use use) {
    switch (seen.source) {
        case view_source::integer:
            use_property(model.integers, seen.id, use);
            break;
        case view_source::real:
            use_property(model.floats, seen.id, use);
            break;
        case view_source::camera_control:
            use_property(model.camera_control, seen.id, use);
            break;
        case view_source::video_proc_amp:
            use_property(model.video_proc_amp, seen.id, use);
            break;
    }
}

template <class Property>
void show(Property& property, double amount, std::uint32_t mode) {
    const double limited =
        std::clamp(amount, static_cast<double>(property.min), static_cast<double>(property.max));
    if constexpr (std::is_same_v<Property, float_property>)
        property.value = static_cast<float>(limited);
    else
        property.value = static_cast<std::int32_t>(std::lround(limited));
    if ((property.capabilities & mode) != 0) property.flags = mode;
}

}  // namespace

void follow_view(vendor_model& model, view_source source, LONG id) {
    const view* set = find_view(source, id);
    if (set == nullptr) return;
    double amount = 0;
    std::uint32_t mode = 0;
    with_view(model, *set, [&](const auto& property) {
        amount = static_cast<double>(property.value) / set->per_unit;
        mode = property.flags;
    });
    for (const view& other : views) {
        if (other.quantity != set->quantity || &other == set) continue;
        with_view(model, other, [&](auto& property) { show(property, amount * other.per_unit, mode); });
    }
}

bool is_quantity_automatic(const vendor_model& model, LONG id) {
    const view* asked = find_view(view_source::integer, id);
    if (asked == nullptr) return false;
    return std::any_of(std::begin(views), std::end(views), [&](const view& other) {
        bool automatic = false;
        if (other.quantity == asked->quantity) {
            with_view(model, other,
                      [&](const auto& property) { automatic = (property.flags & wire::automatic) != 0; });
        }
        return automatic;
    });
}

}  // namespace simcam
