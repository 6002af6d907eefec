#pragma once

#include "apps/host/page_server.h"
#include "tests/device/camera_module.h"
#include "tests/device/test_sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace device_test {

/// The module in the process of the test; every object must be gone at the end.
class DeviceTest : public testing::Test {
protected:
    void TearDown() override {
        ReleaseAll();
        EXPECT_TRUE(wait_for([&] { return module.can_unload(); })) << "an object is left";
        EXPECT_EQ(sink.references(), 0U);
    }
    virtual void ReleaseAll() {
        pin.reset();
        filter.reset();
    }
    void Open(const selvane_camera::device_record& device) {
        filter = module.make_filter(device);
        ASSERT_TRUE(filter);
        pin = pin_of(filter);
        ASSERT_TRUE(pin);
    }
    void Connect() { ASSERT_EQ(pin->Connect(&sink, nullptr), S_OK); }
    void Disconnect() { EXPECT_EQ(pin->Disconnect(), S_OK); }
    [[nodiscard]] bool Receives(std::size_t frames) {
        return wait_for([&] { return sink.count() >= frames; });
    }

    selvane_host::com_apartment apartment;
    camera_module module;
    test_sink sink;
    filter_ptr filter;
    pin_ptr pin;
};

}  // namespace device_test
