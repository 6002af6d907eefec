#pragma once

#include "inspection/camera/live_camera.h"

#include <ostream>
#include <string>

namespace selvane_inspect {

/// A camera that stands behind a file name for as long as this lives; one at a time. Descriptions are opened
/// by their names alone, more than once and deep inside a command.
class connected_camera {
public:
    /// `trace` is told each access; null for nobody. Both outlive this.
    connected_camera(std::string file, live_camera& camera, std::ostream* trace);
    connected_camera(const connected_camera&) = delete;
    connected_camera& operator=(const connected_camera&) = delete;
    ~connected_camera();

    /// Null where no camera stands behind that name.
    [[nodiscard]] static const connected_camera* behind(const std::string& file);

    [[nodiscard]] live_camera& camera() const noexcept { return camera_; }
    [[nodiscard]] std::ostream* trace() const noexcept { return trace_; }

private:
    std::string file_;
    live_camera& camera_;
    std::ostream* trace_;
};

/// Control of the camera behind a file name for as long as this lives; of a file, nothing.
class camera_control {
public:
    /// Throws `inspect_error` when another program has it.
    explicit camera_control(const std::string& file);
    camera_control(const camera_control&) = delete;
    camera_control& operator=(const camera_control&) = delete;
    ~camera_control();

private:
    live_camera* camera_ = nullptr;
};

}  // namespace selvane_inspect
