#pragma once

#include "simcam/simulated_camera.h"

#include <string>
#include <vector>

namespace simcam {

// Names of files are in UTF-8.

/// Puts the contents of files in the place of a camera's descriptions, whose register contents and behaviour
/// go with them. Gives the words about the first file that cannot be read; empty if all is well.
[[nodiscard]] std::string replace_descriptions(camera_options& camera, const std::vector<std::string>& files);

/// The words about the first file that is no description, of those that a camera was made with; empty if all
/// are.
[[nodiscard]] std::string find_malformed(simulated_camera& camera, const std::vector<std::string>& files);

}  // namespace simcam
