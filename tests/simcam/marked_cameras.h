#pragma once

#include "simcam/camera_options.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simcam_test {

/// A description of a real camera that carries marks for the pages.
struct marked_description {
    std::string name;
    std::string text;
};

/// All of the folder of descriptions, by name; none where the folder is absent.
[[nodiscard]] std::vector<marked_description> marked_descriptions();

/// A driver with this description, whose registers are scattered by the seed, or zero for 0.
[[nodiscard]] simcam::camera_options camera_of(const marked_description& marked, std::uint64_t seed);

}  // namespace simcam_test
