#pragma once

#include "simcam/picture_state.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace simcam {

enum class pixel_format {
    rgb24,  ///< blue, green, red; rows from the bottom, each padded to a multiple of four bytes
    yuy2,   ///< Y, U, Y, V for two pixels; rows from the top; the width is even
};

struct frame_format {
    pixel_format pixels = pixel_format::rgb24;
    int width = 640;
    int height = 480;
};

/// Bytes from one row to the next.
[[nodiscard]] std::size_t row_size(const frame_format& format) noexcept;
[[nodiscard]] std::size_t frame_size(const frame_format& format) noexcept;

/// Makes the pictures of one stream. Keeps what stays the same from one frame to the next.
class picture_painter {
public:
    /// Fills `frame_size(format)` bytes. The number of the frame moves the mark at the upper edge, which
    /// keeps its brightness in any light and shows that the stream lives.
    void paint(const picture_state& state, const frame_format& format, std::uint64_t number,
               std::uint8_t* frame);

private:
    struct tone {
        test_pattern pattern;
        pixel_format pixels;
        double factor;
        double gamma;
        double black_level;
        [[nodiscard]] bool operator==(const tone& other) const noexcept;
    };
    void develop(const tone& wanted);
    void choose_columns(const picture_state& state, int width);

    std::optional<test_pattern> drawn_;
    std::vector<std::uint32_t> scene_;
    std::optional<tone> developed_for_;
    std::vector<std::uint32_t> developed_;  // as 0x00RRGGBB or 0x00YYUUVV
    std::vector<std::uint32_t> columns_;    // of the scene, for each pixel of a row
};

}  // namespace simcam
