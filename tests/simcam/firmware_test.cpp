#include "simcam/firmware.h"

#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

#include <string>

namespace simcam_test {
namespace {

using namespace simcam;
namespace reg = firmware_register;

class Firmware : public testing::Test {
protected:
    std::int64_t Integer(const char* path) {
        std::int64_t value = 0;
        EXPECT_EQ(camera_->get_named(path, value), S_OK) << path;
        return value;
    }
    double Real(const char* path) {
        double value = 0;
        EXPECT_EQ(camera_->get_named(path, value), S_OK) << path;
        return value;
    }
    std::string Text(const char* path) {
        std::string text;
        EXPECT_EQ(camera_->get_named(path, text), S_OK) << path;
        return text;
    }
    camera_ptr camera_ = make_camera("described");
};

TEST_F(Firmware, KnowsWhoItIs) {
    EXPECT_EQ(Text("DeviceVendorName/Value"), "Selvane");
    EXPECT_EQ(Text("DeviceModelName/Value"), "SIM1203C");
    EXPECT_EQ(camera_->set_named("DeviceVendorName/Value", "X"), E_ACCESSDENIED);
    EXPECT_EQ(set_register(*camera_, 0, {'X'}), E_ACCESSDENIED);
    EXPECT_EQ(camera_->set_named("DeviceUserID/Value", "door"), S_OK);
    EXPECT_EQ(Text("DeviceUserID/Value").substr(0, 4), "door");
}

TEST_F(Firmware, StartsFromTheDefaultsOfTheDescription) {
    EXPECT_DOUBLE_EQ(Real("ExposureTime/Value"), 0.01);
    EXPECT_DOUBLE_EQ(Real("ExposureAutoMax/Value"), 1.0);
    EXPECT_EQ(Integer("BlackLevel/Value"), 16);
    EXPECT_EQ(Integer("Width/Value"), 1024);
    EXPECT_EQ(Real("FrameRate/Value"), 30.0);
    EXPECT_EQ(Integer("Stabilizer/Value"), 1);
    EXPECT_EQ(Text("LightSource/SelectedEntry"), "Daylight");
    EXPECT_EQ(Integer("LightSourceTemperature/Value"), 5500);
}

TEST_F(Firmware, StatesItsLimits) {
    EXPECT_NEAR(Real("ExposureTime/Min"), 0.00002, 1e-12);
    EXPECT_NEAR(Real("ExposureTime/Max"), 4.0, 1e-9);
    EXPECT_EQ(Integer("OffsetX/Max"), 1024);
    EXPECT_EQ(camera_->set_named("Width/Value", 2000), S_OK);
    EXPECT_EQ(Integer("OffsetX/Max"), 48);
}

TEST_F(Firmware, WarmsUpByReads) {
    const double first = Real("DeviceTemperature/Value");
    EXPECT_NEAR(Real("DeviceTemperature/Value"), first + 0.01, 1e-9);
    camera_->memory().poke_number(reg::temperature, 2, 4000);
    EXPECT_DOUBLE_EQ(Real("DeviceTemperature/Value"), 36.5);
    EXPECT_EQ(set_register(*camera_, reg::temperature, bytes(2)), E_ACCESSDENIED);
}

TEST_F(Firmware, CountsFramesByReadsAndTriggers) {
    EXPECT_EQ(Integer("FrameCounter/Value"), 1);
    EXPECT_EQ(Integer("FrameCounter/Value"), 2);
    EXPECT_EQ(camera_->set_named("TriggerSoftware/Execute", 1), S_OK);
    EXPECT_EQ(Integer("FrameCounter/Value"), 3);
    EXPECT_EQ(camera_->set_named("TriggerEnable/Value", true), S_OK);
    EXPECT_EQ(camera_->set_named("TriggerSoftware/Execute", 1), S_OK);
    EXPECT_EQ(Integer("FrameCounter/Value"), 5);
}

TEST_F(Firmware, HidesItsCommands) {
    EXPECT_EQ(get_register(*camera_, reg::software_trigger, 4).result, E_ACCESSDENIED);
    EXPECT_EQ(get_register(*camera_, reg::reset, 4).result, E_ACCESSDENIED);
    EXPECT_EQ(camera_->set_named("DeviceReset/Execute", 1), S_OK);
    EXPECT_EQ(camera_->memory().peek(reg::reset, 4), text_bytes("RST!"));
}

TEST_F(Firmware, ClearsCommandsWhenTheyAreDone) {
    EXPECT_EQ(camera_->set_named("Zoom/Value", 999), S_OK);
    EXPECT_EQ(camera_->set_named("ZoomHome/Execute", 1), S_OK);
    EXPECT_EQ(Integer("Zoom/Value"), 200);
    EXPECT_EQ(camera_->memory().peek_number(reg::lens_command, 4), 0U);
    EXPECT_EQ(camera_->set_named("UserSetLoad/Execute", 1), S_OK);
    EXPECT_EQ(camera_->memory().peek_number(reg::user_set_command, 4), 0U);
}

TEST_F(Firmware, KeepsThePartialScanCentered) {
    EXPECT_EQ(camera_->set_named("OffsetX/Value", 8), S_OK);
    EXPECT_EQ(camera_->set_named("AutoCenter/Value", true), S_OK);
    EXPECT_EQ(Integer("OffsetX/Value"), 512);
    EXPECT_EQ(Integer("OffsetY/Value"), 384);
    EXPECT_EQ(Integer("OffsetX/IsLocked"), 0);
    EXPECT_EQ(camera_->set_named("Height/Value", 100), S_OK);
    EXPECT_EQ(Integer("OffsetY/Value"), 716);
    EXPECT_EQ(camera_->set_named("AutoCenter/Value", false), S_OK);
    EXPECT_EQ(Integer("OffsetX/IsLocked"), 1);
    EXPECT_EQ(camera_->set_named("OffsetX/Value", 8), S_OK);
    EXPECT_EQ(Integer("OffsetX/Value"), 8);
}

TEST_F(Firmware, LocksAndOpensFeaturesWithTheirModes) {
    EXPECT_EQ(Integer("ExposureTime/IsLocked"), 1);
    EXPECT_EQ(camera_->set_named("ExposureAuto/Value", true), S_OK);
    EXPECT_EQ(Integer("ExposureTime/IsLocked"), 0);
    EXPECT_EQ(Integer("ExposureAuto/IsLocked"), 1);
    EXPECT_EQ(Integer("WdrMode/IsLocked"), 0);
    EXPECT_EQ(camera_->set_named("WdrEnable/Value", true), S_OK);
    EXPECT_EQ(Integer("WdrMode/IsLocked"), 1);
    EXPECT_EQ(Integer("WdrRatio/Value"), 4);
    EXPECT_EQ(Integer("TriggerSoftware/IsLocked"), 0);
    camera_->memory().poke(reg::status, {0x0E});
    EXPECT_EQ(Integer("ExposureAuto/IsLocked"), 0);
}

TEST_F(Firmware, KeepsAFieldApartFromItsNeighbours) {
    EXPECT_EQ(camera_->set_named("WdrRatio/Value", 16), S_OK);
    EXPECT_EQ(camera_->set_named("WdrMode/SelectedEntry", "Logarithmic"), S_OK);
    EXPECT_EQ(camera_->set_named("WdrEnable/Value", true), S_OK);
    EXPECT_EQ(camera_->memory().peek_number(0x1050, 4), (16U << 8) | (2U << 2) | 1U);
}

TEST_F(Firmware, SelectsByRegisters) {
    EXPECT_EQ(camera_->set_named("ColorMatrixSelector/SelectedEntry", "GG"), S_OK);
    EXPECT_EQ(Real("ColorMatrixValue/Value"), 1.0);
    EXPECT_EQ(camera_->set_named("ColorMatrixSelector/SelectedEntry", "GB"), S_OK);
    EXPECT_EQ(Real("ColorMatrixValue/Value"), 0.0);
    EXPECT_EQ(camera_->set_named("ColorMatrixValue/Value", -0.5), S_OK);
    EXPECT_EQ(camera_->memory().peek(0x1434, 4), (bytes{0, 0, 0, 0xBF}));
    EXPECT_EQ(camera_->set_named("LutIndex/Value", 255), S_OK);
    EXPECT_EQ(Integer("LutValue/Value"), 4080);
    EXPECT_EQ(camera_->set_named("LutValue/Value", 0x123), S_OK);
    EXPECT_EQ(camera_->memory().peek(0x21FE, 2), (bytes{0x23, 0x01}));
    EXPECT_EQ(camera_->set_named("GainSelector/SelectedEntry", "Blue"), S_OK);
    EXPECT_EQ(camera_->set_named("Gain/Value", 12.3), S_OK);
    EXPECT_EQ(camera_->memory().peek(0x1026, 2), (bytes{123, 0}));
}

TEST_F(Firmware, LeavesOutWhatItLacks) {
    EXPECT_EQ(Integer("Teleconverter/IsImplemented"), 0);
    EXPECT_EQ(Integer("FanSpeed/IsImplemented"), 0);
    EXPECT_EQ(Integer("UserSetSelector/Factory/IsImplemented"), 0);
    EXPECT_EQ(Integer("Zoom/IsImplemented"), 1);
    EXPECT_TRUE(FAILED(camera_->set_named("UserSetSave/Execute", 1)));
    EXPECT_EQ(camera_->set_named("UserSetSelector/SelectedEntry", "UserSet2"), S_OK);
    EXPECT_EQ(camera_->set_named("UserSetSave/Execute", 1), S_OK);
}

}  // namespace
}  // namespace simcam_test
