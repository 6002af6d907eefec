#pragma once

#include "simcam/picture_state.h"

#include <cstdint>
#include <vector>

namespace simcam {

constexpr int scene_width = 512;
constexpr int scene_height = 384;

/// What stands before the lens, or the test pattern in its place: rows from the top, each point 0x00RRGGBB.
/// The scene has grey steps, patches of colour, a circle, a black card, and a letter that tells how the
/// picture is turned.
[[nodiscard]] std::vector<std::uint32_t> draw_scene(test_pattern pattern);

}  // namespace simcam
