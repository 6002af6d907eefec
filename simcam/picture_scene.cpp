#include "simcam/picture_scene.h"

#include <cmath>
#include <iterator>

namespace simcam {
namespace {

struct rectangle {
    int left;
    int top;
    int right;
    int bottom;
    [[nodiscard]] constexpr bool holds(int x, int y) const noexcept {
        return x >= left && x < right && y >= top && y < bottom;
    }
};

constexpr std::uint32_t patches[] = {0x702020, 0x206028, 0x203070, 0x686018, 0x602060, 0x186060};
constexpr std::uint32_t bars[] = {0xC0C0C0, 0xC0C000, 0x00C0C0, 0x00C000,
                                  0xC000C0, 0xC00000, 0x0000C0, 0x101010};
constexpr std::uint32_t letter_color = 0x787060;
constexpr std::uint32_t circle_color = 0x808080;

constexpr rectangle patch_row = {32, 24, 480, 80};
constexpr rectangle step_row = {32, 304, 480, 360};
// What is black before the lens shows the black level.
constexpr rectangle black_card = {176, 136, 208, 200};
constexpr int steps = 8;
constexpr int check = 32;

// An F, which looks different from each side.
constexpr rectangle letter[] = {{72, 120, 90, 272}, {90, 120, 152, 138}, {90, 184, 132, 202}};

constexpr std::uint32_t grey(int level) noexcept { return static_cast<std::uint32_t>(level) * 0x010101U; }

constexpr int index_in(const rectangle& row, int x, int count) noexcept {
    return (x - row.left) * count / (row.right - row.left);
}

bool is_on_circle(int x, int y) noexcept {
    constexpr double center_x = 320;
    constexpr double center_y = 192;
    constexpr double radius = 84;
    constexpr double half_stroke = 3;
    return std::abs(std::hypot(x - center_x, y - center_y) - radius) <= half_stroke;
}

std::uint32_t scene_at(int x, int y) noexcept {
    if (patch_row.holds(x, y)) return patches[index_in(patch_row, x, static_cast<int>(std::size(patches)))];
    if (step_row.holds(x, y)) return grey(index_in(step_row, x, steps) * 128 / (steps - 1));
    for (const rectangle& stroke : letter) {
        if (stroke.holds(x, y)) return letter_color;
    }
    if (black_card.holds(x, y)) return 0;
    if (is_on_circle(x, y)) return circle_color;
    // A background that is darker at the bottom, a little bluish.
    const auto shade = static_cast<std::uint32_t>(64 - y * 32 / scene_height);
    return shade << 16 | shade << 8 | (shade + 16);
}

std::uint32_t pattern_at(test_pattern pattern, int x, int y) noexcept {
    switch (pattern) {
        case test_pattern::grey_ramp:
            return grey(x * 256 / scene_width);
        case test_pattern::color_bars:
            return bars[x * static_cast<int>(std::size(bars)) / scene_width];
        case test_pattern::checkerboard:
            return grey((x / check + y / check) % 2 == 0 ? 32 : 192);
        default:
            return scene_at(x, y);
    }
}

}  // namespace

std::vector<std::uint32_t> draw_scene(test_pattern pattern) {
    std::vector<std::uint32_t> scene;
    scene.reserve(std::size_t{scene_width} * scene_height);
    for (int y = 0; y < scene_height; ++y) {
        for (int x = 0; x < scene_width; ++x) scene.push_back(pattern_at(pattern, x, y));
    }
    return scene;
}

}  // namespace simcam
