#pragma once

#include "tests/items/item_test.h"

namespace item_tests {

constexpr std::uint32_t exposure = SELVANE_CAMERA_CONTROL_EXPOSURE;

/// The kinds of drivers that the two classes of the item Exposure work with.
class ExposureFixture : public ItemTest {
protected:
    // The oldest kind: ticks of 1/10000 s.
    void OfferTicks() {
        Vendor(SELVANE_EXPOSURE_TICKS).bytes = IntRecord(50, 0, 0, 1, 10000, 333);
        Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = IntRecord(128, 0, 0, 0, 255, 100);
        Vendor(SELVANE_AUTO_MAX_TICKS).bytes = IntRecord(5000, 0, 0, 10, 20000, 3333);
        Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(0);
    }
    void OfferMicroseconds() {
        OfferTicks();
        Vendor(SELVANE_EXPOSURE_MICROSECONDS).bytes = IntRecord(5000, 0, 0, 100, 30000000, 33333);
        Vendor(SELVANE_AUTO_MAX_MICROSECONDS).bytes = IntRecord(500000, 0, 0, 1000, 2000000, 333333);
    }
    // `capabilities` bit 0: the float property has the automatic mode.
    void OfferFloat(std::uint32_t flags = 2, std::uint32_t capabilities = 1) {
        Vendor(SELVANE_EXPOSURE_FLOAT).bytes = FloatRecord(0.01F, 0.0001F, 4.0F, 0.033F, flags, capabilities);
        Vendor(SELVANE_AUTO_MAX_FLOAT).bytes = FloatRecord(0.5F, 0.001F, 2.0F, 0.3333F);
        Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = IntRecord(128, 0, 0, 0, 255, 100);
        Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(0);
    }
    void OfferCamera(std::int32_t capabilities, std::int32_t flags = 2) {
        driver.CameraControl()[exposure] = {-13, 0, 1, -6, capabilities, -5, flags};
    }
    ScriptedControl& Camera() { return driver.CameraControl()[exposure]; }
};

}  // namespace item_tests
