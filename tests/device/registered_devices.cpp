#include "tests/device/registered_devices.h"

#include "platform/text.h"
#include "tests/device/camera_module.h"
#include "tests/host/host_process.h"

#include <uuids.h>

namespace device_test {
namespace {

bool run_regsvr32(std::vector<std::string> options) {
    options.push_back(camera_module::path().u8string());
    return host_test::RunProgram("regsvr32", options).code == 0;
}

}  // namespace

registered_devices::registered_devices() : there_(run_regsvr32({"/s"})) {}
registered_devices::~registered_devices() { static_cast<void>(run_regsvr32({"/s", "/u"})); }

bool class_key_exists(const std::wstring& key) {
    HKEY open = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &open) != ERROR_SUCCESS) return false;
    RegCloseKey(open);
    return true;
}

std::wstring device_key(const selvane_camera::device_record& device) {
    return L"CLSID\\" + platform::format_guid(CLSID_VideoInputDeviceCategory) + L"\\Instance\\" +
           platform::format_guid(device.clsid);
}

std::string device_name(const selvane_camera::device_record& device) { return platform::narrow(device.name); }

}  // namespace device_test
