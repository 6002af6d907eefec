#pragma once

#include "apps/check/driver_check.h"
#include "simcam/simulated_camera.h"
#include "wire/device_set.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace check_test {

using simcam::camera_options;
using simcam::camera_ptr;

/// An item with a number, a switch and a box over registers.
inline std::string LampDescription() {
    const auto feature = [](const char* kind, const char* name, const char* id, const std::string& elements) {
        return std::string("<") + kind + " Name=\"" + name +
               "\"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D200" + id +
               "}</ZELElementGUID></Extension><pIsLocked>Yes</pIsLocked>" + elements + "</" + kind + ">\n";
    };
    const auto reg = [](const char* name, const char* address) {
        return std::string("<IntReg Name=\"") + name + "\"><Address>" + address +
               "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>\n";
    };
    return R"(<RegisterDescription ModelName="Lamp" VendorName="Test">
<Category Name="Root"><pFeature>Group</pFeature></Category>
<Category Name="Group"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>
<Category Name="Item"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID></Extension>
<pFeature>Brightness</pFeature><pFeature>LampOn</pFeature><pFeature>Mode</pFeature></Category>
)" + feature("Integer", "Brightness", "1", "<pValue>BrightnessReg</pValue><Min>0</Min><Max>100</Max>") +
           feature("Boolean", "LampOn", "2", "<pValue>LampOnReg</pValue>") +
           feature("Enumeration", "Mode", "3",
                   "<EnumEntry Name=\"Steady\"><Value>0</Value></EnumEntry><EnumEntry "
                   "Name=\"Blink\"><Value>1</Value></EnumEntry><pValue>ModeReg</pValue>") +
           "<Integer Name=\"Yes\"><Value>1</Value></Integer>\n" + reg("BrightnessReg", "0x0") +
           reg("LampOnReg", "0x4") + reg("ModeReg", "0x8") +
           "<Port Name=\"Device\"/></RegisterDescription>\n";
}

/// A driver without a fault: the description, both access paths, every vendor property.
inline camera_options SoundCamera() {
    camera_options options;
    options.descriptions = {LampDescription()};
    options.vendor = simcam::full_vendor_model();
    return options;
}

inline camera_ptr SoundDriver() { return simcam::make_camera(SoundCamera()); }

/// The names of the rules that a driver breaks, each once.
inline std::vector<std::string> BrokenRules(const selvane_check::driver_report& report) {
    std::vector<std::string> names;
    for (const selvane_check::driver_finding& one : report.findings) {
        if (names.empty() || names.back() != one.rule->name) names.emplace_back(one.rule->name);
    }
    return names;
}

using Rules = std::vector<std::string>;

class CheckDriver : public testing::Test {
protected:
    // Calls take no time unless a test lets it pass.
    CheckDriver() {
        options_.clock = [this] { return now_; };
    }

    selvane_check::driver_report Check(const camera_ptr& camera) {
        return selvane_check::check_driver(*camera, options_);
    }
    Rules Broken(const camera_ptr& camera) { return BrokenRules(Check(camera)); }
    Rules Broken(camera_options options) { return Broken(simcam::make_camera(std::move(options))); }
    Rules BrokenBy(simcam::fault added, camera_options options = SoundCamera()) {
        const camera_ptr camera = simcam::make_camera(std::move(options));
        camera->add_fault(std::move(added));
        return Broken(camera);
    }
    std::string MessageBy(simcam::fault added) {
        const camera_ptr camera = SoundDriver();
        camera->add_fault(std::move(added));
        return MessageOf(camera);
    }
    std::string MessageOf(const camera_ptr& camera) {
        const selvane_check::driver_report report = Check(camera);
        return report.findings.empty() ? "" : report.findings.front().message;
    }
    static camera_options ByRegisters() {
        camera_options options = SoundCamera();
        options.named_access = false;
        return options;
    }

    selvane_check::check_options options_;
    std::uint64_t now_ = 0;
};

inline simcam::call_filter device_gets(DWORD id) {
    return simcam::property_calls(simcam::call_kind::get, wire::device_set, id);
}

}  // namespace check_test
