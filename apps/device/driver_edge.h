#pragma once

#include "platform/windows/com_edge.h"
#include "simcam/driver_faces.h"
#include "simcam/simulated_camera.h"

namespace selvane_camera {

/// Makes the calls of a filter's faces on the camera. What the camera throws ends here.
class driver_edge {
public:
    /// Gives the camera, which may have to be made first.
    using camera_finder = simcam::simulated_camera& (*)(void* context);
    driver_edge(camera_finder find, void* context) noexcept : find_(find), context_(context) {}

    HRESULT query(REFGUID set, DWORD id, DWORD* support) {
        return at([&](auto& camera) { return camera.property_set()->QuerySupported(set, id, support); });
    }
    HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size,
                DWORD* returned) {
        return at([&](auto& camera) {
            return camera.property_set()->Get(set, id, instance, instance_size, data, data_size, returned);
        });
    }
    HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size) {
        return at([&](auto& camera) {
            return camera.property_set()->Set(set, id, instance, instance_size, data, data_size);
        });
    }
    HRESULT control_range(simcam::call_kind kind, LONG property, const simcam::range_outputs& out) {
        return at_control(kind, [&](auto* control) {
            return control->GetRange(property, out[0], out[1], out[2], out[3], out[4]);
        });
    }
    HRESULT control_get(simcam::call_kind kind, LONG property, LONG* value, LONG* flags) {
        return at_control(kind, [&](auto* control) { return control->Get(property, value, flags); });
    }
    HRESULT control_set(simcam::call_kind kind, LONG property, LONG value, LONG flags) {
        return at_control(kind, [&](auto* control) { return control->Set(property, value, flags); });
    }

private:
    template <class Work>
    HRESULT at(Work work) noexcept {
        return platform::at_com_edge([&] { return work(find_(context_)); });
    }
    template <class Work>
    HRESULT at_control(simcam::call_kind kind, Work work) noexcept {
        return at([&](simcam::simulated_camera& camera) {
            return simcam::is_camera_control(kind) ? work(camera.camera_control())
                                                   : work(camera.video_proc_amp());
        });
    }

    camera_finder find_;
    void* context_;
};

}  // namespace selvane_camera
