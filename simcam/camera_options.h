#pragma once

#include "simcam/vendor_model.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simcam {

class register_memory;

/// What a camera is and what its driver offers.
struct camera_options {
    std::vector<std::string> descriptions; ///< texts of device descriptions, by index
    bool named_access = true;              ///< property 4 of the device set
    bool register_access = true;           ///< property 3 of the device set
    bool gate_set = true;
    std::uint32_t device_kind = 5;
    /// First field of the description requests that the driver accepts.
    std::uint32_t description_field = 1;
    bool property_set = true;   ///< whether the filter has IKsPropertySet at all
    bool camera_control = true; ///< whether it has IAMCameraControl
    bool video_proc_amp = true;
    vendor_model vendor;
    /// Fills the register memory before the camera is used.
    std::function<void(register_memory&)> prepare_memory;
    /// Keeps the transcript; benchmarks and fuzzers do without.
    bool keep_transcript = true;
};

/// Names that `ready_made` and `make_camera` know, with a word about each.
struct camera_name {
    std::string_view name;
    std::string_view about;
};
[[nodiscard]] const std::vector<camera_name>& camera_names();

/// The options of a ready-made camera; empty for an unknown name.
[[nodiscard]] std::optional<camera_options> ready_made(std::string_view name);

/// A description that is built into the program, by its file name without extension ("simulated_camera");
/// empty for an unknown one.
[[nodiscard]] std::string_view bundled_description(std::string_view name);
[[nodiscard]] std::vector<std::string_view> bundled_description_names();

} // namespace simcam
