#pragma once

namespace simcam {

class feature_server;
struct vendor_model;

enum class test_pattern { off, grey_ramp, color_bars, checkerboard };

/// A part of the sensor, in fractions of its width and height.
struct sensor_area {
    double left = 0;
    double top = 0;
    double width = 1;
    double height = 1;
};

/// Frames a second.
struct frame_rate_range {
    double now = 30;
    double min = 30;
    double max = 30;
};

/// What the picture of a camera depends on, all of it at one moment.
struct picture_state {
    double light = 1;        ///< that reaches the sensor, 1 for what is usual
    double gain = 1;         ///< factor
    double gamma = 1;        ///< above 1 lifts the dark parts
    double black_level = 0;  ///< what black becomes, of 255
    bool reverse_x = false;
    bool reverse_y = false;
    test_pattern pattern = test_pattern::off;
    sensor_area area;
    frame_rate_range frame_rate;
};

/// Features of the descriptions go before the driver's fixed properties, as they do on the pages; gains act
/// one behind the other. What a camera does not have stays usual. A feature with a default is usual there,
/// one without in the middle of its range. Whoever calls keeps others away from both meanwhile.
[[nodiscard]] picture_state read_picture_state(const feature_server& features, const vendor_model& vendor);

/// The feature that tells the frame rate; null for a camera without one.
[[nodiscard]] const char* find_frame_rate(const feature_server& features);

}  // namespace simcam
