#pragma once

#include "platform/com_ptr.h"
#include "simcam/driver_faces.h"

namespace simcam {

/// The interfaces of a driver before which another filter stands, as far as the driver has them.
struct driver_behind {
    explicit driver_behind(IUnknown& driver)
        : property_set(platform::query<IKsPropertySet>(&driver)),
          camera_control(platform::query<IAMCameraControl>(&driver)),
          video_proc_amp(platform::query<IAMVideoProcAmp>(&driver)) {}

    /// Works on the interface that the kind of a call tells.
    template <class Work>
    HRESULT with_control(call_kind kind, Work work) const {
        return is_camera_control(kind) ? work(*camera_control) : work(*video_proc_amp);
    }

    /// What the filter before it answers for the id, without a reference; null for what the driver is to
    /// answer itself.
    template <class Driver>
    [[nodiscard]] void* face(REFIID iid, driver_faces<Driver>& faces) const noexcept {
        if (iid == platform::iid_property_set && property_set) return faces.property_set();
        if (iid == platform::iid_camera_control && camera_control) return faces.camera_control();
        if (iid == platform::iid_video_proc_amp && video_proc_amp) return faces.video_proc_amp();
        return nullptr;
    }

    platform::com_ptr<IKsPropertySet> property_set;
    platform::com_ptr<IAMCameraControl> camera_control;
    platform::com_ptr<IAMVideoProcAmp> video_proc_amp;
};

}  // namespace simcam
