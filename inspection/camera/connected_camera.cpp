#include "inspection/camera/connected_camera.h"

#include <utility>

namespace selvane_inspect {
namespace {

const connected_camera* connected = nullptr;

}  // namespace

connected_camera::connected_camera(std::string file, live_camera& camera, std::ostream* trace)
    : file_(std::move(file)), camera_(camera), trace_(trace) {
    connected = this;
}

connected_camera::~connected_camera() { connected = nullptr; }

const connected_camera* connected_camera::behind(const std::string& file) {
    return connected != nullptr && connected->file_ == file ? connected : nullptr;
}

camera_control::camera_control(const std::string& file) {
    const connected_camera* const behind = connected_camera::behind(file);
    if (behind == nullptr) return;
    behind->camera().take_control();
    camera_ = &behind->camera();
}

camera_control::~camera_control() {
    if (camera_ != nullptr) camera_->leave_control();
}

}  // namespace selvane_inspect
