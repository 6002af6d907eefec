#pragma once

#include "platform/com_part.h"
#include "simcam/driver_call.h"

#include <array>

namespace simcam {

/// The ends of a range, step, default and capabilities, in the order of `GetRange`.
using range_outputs = std::array<LONG*, 5>;

/// The interfaces by which a capture filter shows its camera, as parts of that filter. Behind them stands a
/// `Driver`, which outlives them and has these operations:
///
///     HRESULT query(REFGUID set, DWORD id, DWORD* support);
///     HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size,
///                 DWORD* returned);
///     HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size);
///     HRESULT control_range(call_kind kind, LONG property, const range_outputs& out);
///     HRESULT control_get(call_kind kind, LONG property, LONG* value, LONG* flags);
///     HRESULT control_set(call_kind kind, LONG property, LONG value, LONG flags);
///
/// The kind tells operation and interface.
template <class Driver>
class driver_faces {
public:
    driver_faces(IUnknown& filter, Driver& driver) noexcept
        : property_set_(filter, driver), camera_control_(filter, driver), proc_amp_(filter, driver) {}

    // Without a reference.
    [[nodiscard]] IKsPropertySet* property_set() noexcept { return &property_set_; }
    [[nodiscard]] IAMCameraControl* camera_control() noexcept { return &camera_control_; }
    [[nodiscard]] IAMVideoProcAmp* video_proc_amp() noexcept { return &proc_amp_; }

private:
    class property_set_face final : public platform::com_part<IKsPropertySet> {
    public:
        property_set_face(IUnknown& filter, Driver& driver) noexcept
            : platform::com_part<IKsPropertySet>(filter), driver_(driver) {}
        HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                      LPVOID data, DWORD data_size) override {
            return driver_.set(set, id, instance, instance_size, data, data_size);
        }
        HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                      LPVOID data, DWORD data_size, DWORD* returned) override {
            return driver_.get(set, id, instance, instance_size, data, data_size, returned);
        }
        HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
            return driver_.query(set, id, support);
        }

    private:
        Driver& driver_;
    };

    // IAMCameraControl and IAMVideoProcAmp have the same operations.
    template <class Interface, call_kind range, call_kind get, call_kind set>
    class control_face final : public platform::com_part<Interface> {
    public:
        control_face(IUnknown& filter, Driver& driver) noexcept
            : platform::com_part<Interface>(filter), driver_(driver) {}
        HRESULT STDMETHODCALLTYPE GetRange(LONG property, LONG* min, LONG* max, LONG* step,
                                           LONG* default_value, LONG* flags) override {
            return driver_.control_range(range, property, {min, max, step, default_value, flags});
        }
        HRESULT STDMETHODCALLTYPE Set(LONG property, LONG value, LONG flags) override {
            return driver_.control_set(set, property, value, flags);
        }
        HRESULT STDMETHODCALLTYPE Get(LONG property, LONG* value, LONG* flags) override {
            return driver_.control_get(get, property, value, flags);
        }

    private:
        Driver& driver_;
    };

    property_set_face property_set_;
    control_face<IAMCameraControl, call_kind::camera_range, call_kind::camera_get, call_kind::camera_set>
        camera_control_;
    control_face<IAMVideoProcAmp, call_kind::amp_range, call_kind::amp_get, call_kind::amp_set> proc_amp_;
};

}  // namespace simcam
