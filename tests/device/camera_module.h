#pragma once

#include "apps/device/device_table.h"
#include "platform/com_ptr.h"

#include <strmif.h>
#include <windows.h>

#include <filesystem>
#include <string>

namespace device_test {

using filter_ptr = platform::com_ptr<IBaseFilter>;
using pin_ptr = platform::com_ptr<IPin>;

inline constexpr const selvane_camera::device_record& full_device = selvane_camera::devices[0];
inline constexpr const selvane_camera::device_record& registers_device = selvane_camera::devices[1];
inline constexpr const selvane_camera::device_record& builtin_device = selvane_camera::devices[2];

/// selvane_camera.ax as the build made it, loaded for as long as this lives.
class camera_module {
public:
    camera_module();
    camera_module(const camera_module&) = delete;
    camera_module& operator=(const camera_module&) = delete;
    ~camera_module();

    [[nodiscard]] HRESULT get_class(REFCLSID clsid, REFIID iid, void** out) const;
    [[nodiscard]] filter_ptr make_filter(const selvane_camera::device_record& device) const;
    [[nodiscard]] bool can_unload() const;

    [[nodiscard]] static std::filesystem::path path();

private:
    template <class Function>
    [[nodiscard]] Function* entry(const char* name) const;

    HMODULE module_;
};

/// Asks an object for an interface, which it must have.
template <class Interface, class Object>
[[nodiscard]] platform::com_ptr<Interface> ask(const platform::com_ptr<Object>& object) {
    platform::com_ptr<Interface> found;
    if (object) object->QueryInterface(__uuidof(Interface), found.put_void());
    return found;
}

[[nodiscard]] pin_ptr pin_of(const filter_ptr& filter);

/// Writes a value of 8 bytes by the name of its feature, as the pages do over named access.
[[nodiscard]] HRESULT set_feature(IUnknown& filter, const char* feature, double value);
[[nodiscard]] HRESULT get_feature(IUnknown& filter, const char* feature, double& value);

/// Waits until something is so, for at most a minute.
template <class Condition>
[[nodiscard]] bool wait_for(Condition condition) {
    for (int tries = 0; tries < 6000; ++tries) {
        if (condition()) return true;
        Sleep(10);
    }
    return false;
}

}  // namespace device_test
