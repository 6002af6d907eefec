#pragma once

#include "propui/slider_controller.h"
#include "tests/support/fake_item.h"

#include <gtest/gtest.h>

namespace ZELPropUI {

using Log = std::vector<std::string>;

/// One controller on one fake item; the item lives as long as the controller does.
template <class Controller>
class ControllerTest : public testing::Test {
protected:
    static constexpr InterfaceKey key = 7;

    ControllerTest() {
        const auto item = platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script_));
        controller_ = platform::com_ptr<Controller>::attach(new Controller(item.get(), key));
    }
    ~ControllerTest() override {
        controller_.reset();
        EXPECT_EQ(script_.living_items, 0);
    }

    test_support::FakeInterface& At() { return script_.interfaces[key]; }

    test_support::FakeScript script_;
    platform::com_ptr<Controller> controller_;
};

}  // namespace ZELPropUI
