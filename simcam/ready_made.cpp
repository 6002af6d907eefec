#include "simcam/camera_options.h"
#include "simcam/firmware.h"

#include <algorithm>

namespace simcam {
namespace {

constexpr std::uint32_t another_device_kind = 3;

// The bundled camera: description, registers and their behaviour, without fixed driver properties.
camera_options described() {
    camera_options made;
    made.descriptions.emplace_back(bundled_description("simulated_camera"));
    made.memory = bundled_memory("simulated_camera");
    made.prepare_memory = install_firmware;
    made.start_from_defaults = true;
    return made;
}

camera_options with_description(std::string_view name) {
    camera_options made;
    made.descriptions.emplace_back(bundled_description(name));
    return made;
}

camera_options full() {
    camera_options made = described();
    made.vendor = full_vendor_model();
    return made;
}

camera_options builtin() {
    camera_options made = with_description("identity");
    made.vendor = full_vendor_model();
    return made;
}

camera_options simple() { return with_description("value_nodes"); }

void remove_color(vendor_model& model) {
    model.color_enhancement.clear();
    for (const DWORD id : {SELVANE_WHITE_BALANCE_RED, SELVANE_WHITE_BALANCE_GREEN, SELVANE_WHITE_BALANCE_BLUE,
                           SELVANE_WHITE_BALANCE_ONE_PUSH}) {
        model.remove(id);
    }
    model.video_proc_amp.erase(wire::video_proc_amp_white_balance);
}

camera_options oldest() {
    camera_options made = with_description("identity");
    made.named_access = false;
    made.description_field = 0;
    made.vendor = full_vendor_model();
    for (const DWORD id :
         {SELVANE_EXPOSURE_FLOAT, SELVANE_AUTO_MAX_FLOAT, SELVANE_EXPOSURE_MICROSECONDS,
          SELVANE_AUTO_MAX_MICROSECONDS, SELVANE_AUTO_MAX_AUTOMATIC, SELVANE_PARTIAL_SCAN_AUTO_CENTER,
          SELVANE_BINNING, SELVANE_SOFTWARE_TRIGGER, SELVANE_TRIGGER_DELAY, SELVANE_WHITE_BALANCE_GREEN,
          SELVANE_FOCUS_AUTO_MIN, SELVANE_FOCUS_AUTO_MAX, SELVANE_FOCUS_REGION_ENABLE,
          SELVANE_FOCUS_REGION_LEFT, SELVANE_FOCUS_REGION_TOP, SELVANE_FOCUS_REGION_RIGHT,
          SELVANE_FOCUS_REGION_BOTTOM}) {
        made.vendor.remove(id);
    }
    made.vendor.color_enhancement.clear();
    made.vendor.integers[SELVANE_TRIGGER].capabilities = 0;
    strobe_property& strobe = made.vendor.strobe[SELVANE_STROBE];
    strobe.restrictions = wire::strobe_no_delay | wire::strobe_no_duration;
    strobe.follow_exposure = 1;
    return made;
}

camera_options colourless() {
    camera_options made = builtin();
    remove_color(made.vendor);
    return made;
}

camera_options empty() {
    camera_options made;
    made.camera_control = false;
    made.video_proc_amp = false;
    return made;
}

camera_options foreign() {
    camera_options made = full();
    made.device_kind = another_device_kind;
    return made;
}

struct recipe {
    camera_name name;
    camera_options (*make)() = nullptr;
};

constexpr recipe recipes[] = {
    {{"full", "a description with marks for all pages, and every fixed driver property"}, full},
    {{"described", "the same description alone"}, described},
    {{"builtin", "every fixed driver property, and a description without marks"}, builtin},
    {{"simple", "a small description whose nodes hold their values themselves"}, simple},
    {{"oldest", "register access alone, the first driver properties, the old form of description requests"},
     oldest},
    {{"colourless", "fixed driver properties of a monochrome camera: nothing for the colour page"},
     colourless},
    {{"empty", "served by the driver, but with no description and no property"}, empty},
    {{"foreign", "the full camera under another device kind: not for these pages"}, foreign},
};

std::vector<camera_name> names() {
    std::vector<camera_name> all;
    for (const recipe& known : recipes) all.push_back(known.name);
    return all;
}

}  // namespace

const std::vector<camera_name>& camera_names() {
    static const std::vector<camera_name> all = names();
    return all;
}

std::optional<camera_options> ready_made(std::string_view name) {
    const auto* found = std::find_if(std::begin(recipes), std::end(recipes),
                                     [&](const recipe& known) { return known.name.name == name; });
    if (found == std::end(recipes)) return std::nullopt;
    return found->make();
}

}  // namespace simcam
