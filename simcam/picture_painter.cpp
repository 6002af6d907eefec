#include "simcam/picture_painter.h"

#include "simcam/picture_scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace simcam {
namespace {

constexpr double brightest = 255;
constexpr int mark_pace = 4;  // pixels a frame at a width of 640
constexpr int mark_parts = 40;
constexpr std::uint8_t mark_level = 235;

using curve = std::array<std::uint8_t, 256>;

curve tone_curve(double factor, double gamma, double black_level) {
    curve levels{};
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const double light = std::min(static_cast<double>(level) / brightest * factor, 1.0);
        const double shown = black_level + (brightest - black_level) * std::pow(light, 1 / gamma);
        levels[level] = static_cast<std::uint8_t>(std::lround(shown));
    }
    return levels;
}

constexpr std::uint32_t byte_of(std::uint32_t point, unsigned shift) noexcept {
    return point >> shift & 0xFF;
}

// The usual conversion for standard definition, within the limits of video.
std::uint32_t to_yuv(std::uint32_t rgb) noexcept {
    const int red = static_cast<int>(byte_of(rgb, 16));
    const int green = static_cast<int>(byte_of(rgb, 8));
    const int blue = static_cast<int>(byte_of(rgb, 0));
    const int y = ((66 * red + 129 * green + 25 * blue + 128) >> 8) + 16;
    const int u = ((-38 * red - 74 * green + 112 * blue + 128) >> 8) + 128;
    const int v = ((112 * red - 94 * green - 18 * blue + 128) >> 8) + 128;
    return static_cast<std::uint32_t>(y << 16 | u << 8 | v);
}

void write_rgb_row(const std::uint32_t* source, const std::vector<std::uint32_t>& columns,
                   std::uint8_t* row) noexcept {
    for (const std::uint32_t column : columns) {
        const std::uint32_t point = source[column];
        row[0] = static_cast<std::uint8_t>(point);
        row[1] = static_cast<std::uint8_t>(point >> 8);
        row[2] = static_cast<std::uint8_t>(point >> 16);
        row += 3;
    }
}

void write_yuv_row(const std::uint32_t* source, const std::vector<std::uint32_t>& columns,
                   std::uint8_t* row) noexcept {
    for (std::size_t x = 0; x + 1 < columns.size(); x += 2) {
        const std::uint32_t left = source[columns[x]];
        const std::uint32_t right = source[columns[x + 1]];
        row[0] = static_cast<std::uint8_t>(byte_of(left, 16));
        row[1] = static_cast<std::uint8_t>((byte_of(left, 8) + byte_of(right, 8)) / 2);
        row[2] = static_cast<std::uint8_t>(byte_of(right, 16));
        row[3] = static_cast<std::uint8_t>((byte_of(left, 0) + byte_of(right, 0)) / 2);
        row += 4;
    }
}

// The row of the frame that is the n-th from the top of the picture.
std::size_t row_index(const frame_format& format, int y) noexcept {
    return static_cast<std::size_t>(format.pixels == pixel_format::rgb24 ? format.height - 1 - y : y);
}

std::uint32_t scene_row(const picture_state& state, int y, int height) noexcept {
    const int seen = state.reverse_y ? height - 1 - y : y;
    const double down = state.area.top + state.area.height * (seen + 0.5) / height;
    return static_cast<std::uint32_t>(std::clamp(static_cast<int>(down * scene_height), 0, scene_height - 1));
}

void write_mark(const frame_format& format, std::uint64_t number, std::uint8_t* frame) noexcept {
    const auto size = static_cast<std::size_t>(std::max(format.width / mark_parts / 2, 1)) * 2;
    const auto pace = static_cast<std::uint64_t>(std::max(mark_pace * format.width / 640, 1));
    const auto room = static_cast<std::uint64_t>(format.width) - size;
    const auto left = static_cast<std::size_t>(number * pace % room / 2 * 2);
    const std::size_t pixel = format.pixels == pixel_format::rgb24 ? 3 : 2;
    for (int y = 0; y < std::min(static_cast<int>(size), format.height); ++y) {
        std::uint8_t* row = frame + row_index(format, y) * row_size(format) + left * pixel;
        std::memset(row, mark_level, size * pixel);
        for (std::size_t at = 1; format.pixels == pixel_format::yuy2 && at < size * pixel; at += 2)
            row[at] = 128;
    }
}

}  // namespace

std::size_t row_size(const frame_format& format) noexcept {
    const auto width = static_cast<std::size_t>(format.width);
    return format.pixels == pixel_format::rgb24 ? (width * 3 + 3) / 4 * 4 : width * 2;
}

std::size_t frame_size(const frame_format& format) noexcept {
    return row_size(format) * static_cast<std::size_t>(format.height);
}

bool picture_painter::tone::operator==(const tone& other) const noexcept {
    return pattern == other.pattern && pixels == other.pixels && factor == other.factor &&
           gamma == other.gamma && black_level == other.black_level;
}

void picture_painter::develop(const tone& wanted) {
    if (developed_for_ && *developed_for_ == wanted) return;
    if (!drawn_ || *drawn_ != wanted.pattern) scene_ = draw_scene(wanted.pattern);
    drawn_ = wanted.pattern;
    const curve levels = tone_curve(wanted.factor, wanted.gamma, wanted.black_level);
    developed_.resize(scene_.size());
    std::transform(scene_.begin(), scene_.end(), developed_.begin(), [&](std::uint32_t point) {
        const std::uint32_t red = levels[byte_of(point, 16)];
        const std::uint32_t green = levels[byte_of(point, 8)];
        const std::uint32_t rgb = red << 16 | green << 8 | levels[byte_of(point, 0)];
        return wanted.pixels == pixel_format::rgb24 ? rgb : to_yuv(rgb);
    });
    developed_for_ = wanted;
}

void picture_painter::choose_columns(const picture_state& state, int width) {
    columns_.resize(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) {
        const int seen = state.reverse_x ? width - 1 - x : x;
        const double across = state.area.left + state.area.width * (seen + 0.5) / width;
        columns_[static_cast<std::size_t>(x)] = static_cast<std::uint32_t>(
            std::clamp(static_cast<int>(across * scene_width), 0, scene_width - 1));
    }
}

void picture_painter::paint(const picture_state& state, const frame_format& format, std::uint64_t number,
                            std::uint8_t* frame) {
    // The sensor puts a test pattern in the place of the light.
    const double light = state.pattern == test_pattern::off ? state.light : 1;
    develop({state.pattern, format.pixels, light * state.gain, state.gamma, state.black_level});
    choose_columns(state, format.width);
    const std::size_t size = row_size(format);
    const std::uint8_t* above = nullptr;
    std::uint32_t row_above = 0;
    for (int y = 0; y < format.height; ++y) {
        std::uint8_t* row = frame + row_index(format, y) * size;
        const std::uint32_t source = scene_row(state, y, format.height);
        const std::uint32_t* points = developed_.data() + std::size_t{source} * scene_width;
        if (above != nullptr && source == row_above) {
            std::memcpy(row, above, size);
        } else if (format.pixels == pixel_format::rgb24) {
            write_rgb_row(points, columns_, row);
        } else {
            write_yuv_row(points, columns_, row);
        }
        above = row;
        row_above = source;
    }
    write_mark(format, number, frame);
}

}  // namespace simcam
