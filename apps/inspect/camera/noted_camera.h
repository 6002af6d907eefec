#pragma once

#include "apps/inspect/camera/live_camera.h"
#include "apps/inspect/traced_port.h"

#include <ostream>

namespace selvane_inspect {

/// A camera whose accesses are told, each in a line and with its time, as they come by. Camera and stream
/// outlive it.
class noted_camera final : public live_camera {
public:
    noted_camera(live_camera& camera, std::ostream& to) : camera_(camera), port_(camera), to_(to) {}

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;
    [[nodiscard]] std::string_view description() const override { return camera_.description(); }
    [[nodiscard]] const std::string& ending() const noexcept override { return camera_.ending(); }
    void take_control() override { camera_.take_control(); }
    void leave_control() noexcept override { camera_.leave_control(); }

private:
    void tell();

    live_camera& camera_;
    traced_port port_;
    std::ostream& to_;
};

}  // namespace selvane_inspect
