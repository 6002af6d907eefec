#pragma once

#include "apps/check/driver_check.h"
#include "simcam/simulated_camera.h"

#include <string>
#include <utility>
#include <vector>

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

/// A driver without a fault: the description, both roads, every vendor property.
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

}  // namespace check_test
