#pragma once

#include "apps/device/device_table.h"

#include <string>

namespace device_test {

/// The devices of selvane_camera.ax are entered in the registry for as long as this lives, as a user enters
/// them: by regsvr32.
class registered_devices {
public:
    registered_devices();
    registered_devices(const registered_devices&) = delete;
    registered_devices& operator=(const registered_devices&) = delete;
    ~registered_devices();

    [[nodiscard]] bool are_there() const noexcept { return there_; }

private:
    bool there_;
};

/// Whether a key of HKEY_CLASSES_ROOT is there.
[[nodiscard]] bool class_key_exists(const std::wstring& key);
/// Where a device stands among the video input devices.
[[nodiscard]] std::wstring device_key(const selvane_camera::device_record& device);
[[nodiscard]] std::string device_name(const selvane_camera::device_record& device);

}  // namespace device_test
