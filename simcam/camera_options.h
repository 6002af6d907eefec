#pragma once

#include "genicam/idevice_port.h"
#include "simcam/vendor_model.h"

#include <chrono>
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
    std::vector<std::string> descriptions;  ///< texts of device descriptions, by index
    bool named_access = true;               ///< property 4 of the device set
    bool register_access = true;            ///< property 3 of the device set
    bool gate_set = true;
    bool vendor_set = true;             ///< the vendor property set as a whole
    bool color_enhancement_set = true;  ///< the set of the colour enhancement switch
    std::uint32_t device_kind = 5;
    /// First field of the description requests that the driver accepts.
    std::uint32_t description_field = 1;
    bool property_set = true;    ///< whether the filter has IKsPropertySet at all
    bool camera_control = true;  ///< whether it has IAMCameraControl
    bool video_proc_amp = true;
    vendor_model vendor;
    /// Scatters the registers that `memory` does not tell, as `register_memory::scatter` does; 0 for zeros.
    std::uint64_t memory_seed = 0;
    /// Contents of the register memory at the start, in the form that `register_memory::load` takes.
    std::string memory;
    /// Writes the `Default` of every feature that states one, where it can be written.
    bool start_from_defaults = false;
    /// Gives the registers their behaviour: protected areas, commands, registers that change by themselves.
    std::function<void(register_memory&)> prepare_memory;
    /// Where registers are read and written in the place of the memory; outlives the camera.
    GenICam::IDevicePort* registers = nullptr;
    /// How long each call of the driver takes, as the bus of a real camera does.
    std::chrono::milliseconds call_delay{0};
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
[[nodiscard]] const std::vector<std::string_view>& bundled_description_names();
/// The register contents that belong to a bundled description; empty where there are none.
[[nodiscard]] std::string_view bundled_memory(std::string_view name);

}  // namespace simcam
