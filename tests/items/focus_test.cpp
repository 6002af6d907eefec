#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeFocusItem;

constexpr std::uint32_t focus = 6;  // property of the camera control

class FocusTest : public ItemTest {
protected:
    struct KeyAndProperty {
        InterfaceKey key;
        std::uint32_t id;
    };
    static constexpr KeyAndProperty ranges[] = {
        {3, SELVANE_FOCUS_AUTO_MIN},   {4, SELVANE_FOCUS_AUTO_MAX},      {6, SELVANE_FOCUS_REGION_LEFT},
        {7, SELVANE_FOCUS_REGION_TOP}, {8, SELVANE_FOCUS_REGION_BOTTOM}, {9, SELVANE_FOCUS_REGION_RIGHT}};

    void OfferAll() {
        for (const KeyAndProperty& range : ranges) {
            const auto id = static_cast<std::int32_t>(range.id);
            Vendor(range.id).bytes = IntRecord(id, 0, 0, -id, 10 * id, 5 * id);
        }
        Vendor(SELVANE_FOCUS_ONE_PUSH).bytes = IntRecord(0);
        Vendor(SELVANE_FOCUS_REGION_ENABLE).bytes = IntRecord(0);
        driver.CameraControl()[focus] = {10, 900, 5, 450, 3, 123, 1};
    }
    ScriptedControl& Camera() { return driver.CameraControl()[focus]; }
};

TEST_F(FocusTest, NeedsBothInterfacesAndTheOnePushProperty) {
    EXPECT_FALSE(Make(MakeFocusItem));
    Vendor(SELVANE_FOCUS_ONE_PUSH);
    EXPECT_FALSE(Make(MakeFocusItem)) << "the property exists, the camera control does not";
    driver.CameraControl();
    EXPECT_TRUE(Make(MakeFocusItem));
    driver.RemoveProperty(VendorSet(), SELVANE_FOCUS_ONE_PUSH);
    EXPECT_FALSE(Make(MakeFocusItem));
    Vendor(SELVANE_FOCUS_ONE_PUSH);
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeFocusItem));
}

TEST_F(FocusTest, SupportsWhatTheDriverHas) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (InterfaceKey key = 0; key <= 9; ++key) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
    }
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_FOCUS_ONE_PUSH), Control(Kind::camera_range, focus),
                        QueryVendor(SELVANE_FOCUS_ONE_PUSH), QueryVendor(SELVANE_FOCUS_AUTO_MIN),
                        QueryVendor(SELVANE_FOCUS_AUTO_MAX), QueryVendor(SELVANE_FOCUS_REGION_ENABLE),
                        QueryVendor(SELVANE_FOCUS_REGION_LEFT), QueryVendor(SELVANE_FOCUS_REGION_TOP),
                        QueryVendor(SELVANE_FOCUS_REGION_BOTTOM), QueryVendor(SELVANE_FOCUS_REGION_RIGHT)}));
    EXPECT_FALSE(item->SupportsInterface(10));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Asked().empty());

    Camera().capabilities = 0;
    EXPECT_TRUE(item->SupportsInterface(1)) << "any answer of the range is enough";
    Camera().range_result = driver_failure;
    EXPECT_FALSE(item->SupportsInterface(1));
    for (const std::uint32_t id :
         {SELVANE_FOCUS_ONE_PUSH, SELVANE_FOCUS_AUTO_MIN, SELVANE_FOCUS_AUTO_MAX, SELVANE_FOCUS_REGION_TOP,
          SELVANE_FOCUS_REGION_LEFT, SELVANE_FOCUS_REGION_BOTTOM, SELVANE_FOCUS_REGION_RIGHT,
          SELVANE_FOCUS_REGION_ENABLE}) {
        Vendor(id).support = 0;
    }
    for (InterfaceKey key = 0; key <= 9; ++key) {
        EXPECT_FALSE(item->SupportsInterface(key)) << key;
    }
}

TEST_F(FocusTest, EachKeyHasItsOperations) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    ExpectOnly(*item, 0, op_push);
    ExpectOnly(*item, 1, op_push | op_range);
    ExpectOnly(*item, 2, op_push | op_get_switch);
    ExpectOnly(*item, 3, op_push | op_range);
    ExpectOnly(*item, 4, op_push | op_range);
    ExpectOnly(*item, 5, op_push | op_switch | op_switch_default);
    for (const InterfaceKey key : {6U, 7U, 8U, 9U}) {
        ExpectOnly(*item, key, op_push | op_range);
    }
    ExpectOnly(*item, 10, op_push);
    ExpectOnly(*item, 0x100000000, op_push);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(FocusTest, TheRegionIsAvailableWhileItIsEnabled) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (const InterfaceKey key : {6U, 7U, 8U, 9U}) {
        for (const std::int32_t enabled : {0, 1, -1}) {
            Vendor(SELVANE_FOCUS_REGION_ENABLE).bytes = IntRecord(enabled);
            EXPECT_EQ(Available(item, key), enabled != 0) << key;
            EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_FOCUS_REGION_ENABLE)});
        }
        Vendor(SELVANE_FOCUS_REGION_ENABLE).get_result = driver_failure;
        EXPECT_FALSE(Available(item, key));
        Vendor(SELVANE_FOCUS_REGION_ENABLE).get_result = S_OK;
        (void)Asked();
    }
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U, 5U, 10U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    EXPECT_TRUE(Asked().empty());
}

TEST_F(FocusTest, TickingTheRegionEnablesItsEdges) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    EXPECT_FALSE(Available(item, 6));
    EXPECT_EQ(item->SetSwitch(5, true), S_OK);
    for (const InterfaceKey key : {6U, 7U, 8U, 9U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
}

TEST_F(FocusTest, OnlyOnePushRunningIsReadOnly) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (InterfaceKey key = 0; key <= 10; ++key) {
        bool read_only = key != 2;
        EXPECT_EQ(item->IsReadOnly(key, read_only), S_OK);
        EXPECT_EQ(read_only, key == 2) << key;
    }
}

TEST_F(FocusTest, PositionIsTheCameraControls) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    EXPECT_EQ(Range(item, 1), (RangeInfo{10, 900, 450, 5}));
    EXPECT_EQ(Value(item, 1), 123);
    EXPECT_EQ(item->SetValue(1, 222), S_OK);
    EXPECT_EQ(Asked(), (Requests{Control(Kind::camera_range, focus), Control(Kind::camera_get, focus),
                                 Control(Kind::camera_set, focus, 222, 2)}));
}

TEST_F(FocusTest, RangesAreProperties) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (const KeyAndProperty& one : ranges) {
        const auto id = static_cast<std::int32_t>(one.id);
        EXPECT_EQ(Range(item, one.key), (RangeInfo{-id, 10 * id, 5 * id, 1}));
        EXPECT_EQ(Value(item, one.key), id);
        EXPECT_EQ(item->SetValue(one.key, 17), S_OK);
        EXPECT_EQ(Asked(), (Requests{GetInt(one.id), GetInt(one.id), SetVendor(one.id, IntRecord(17, 2))}));
    }
}

TEST_F(FocusTest, SwitchesAreProperties) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (const std::int32_t value : {0, 1, -1}) {
        Vendor(SELVANE_FOCUS_ONE_PUSH).bytes = IntRecord(value);
        Vendor(SELVANE_FOCUS_REGION_ENABLE).bytes = IntRecord(value == 0 ? 1 : 0);
        EXPECT_EQ(Switch(item, 2), value != 0);
        EXPECT_EQ(Switch(item, 5), value == 0);
        EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_FOCUS_ONE_PUSH), GetInt(SELVANE_FOCUS_REGION_ENABLE)}));
    }
    EXPECT_EQ(item->SetSwitch(5, true), S_OK);
    EXPECT_EQ(item->SetSwitch(5, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(SELVANE_FOCUS_REGION_ENABLE, IntRecord(1, 2)),
                                 SetVendor(SELVANE_FOCUS_REGION_ENABLE, IntRecord(0, 2))}));
}

TEST_F(FocusTest, TheRegionIsOffByDefault) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    bool on = true;
    EXPECT_EQ(item->GetSwitchDefault(5, on), S_OK);
    EXPECT_FALSE(on);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(FocusTest, PushStartsOnePushWhateverItsKey) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    for (const InterfaceKey key : {0U, 5U, 99U}) {
        EXPECT_EQ(item->Push(key), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_FOCUS_ONE_PUSH, IntRecord(1, 2))});
    }
}

TEST_F(FocusTest, FailuresAreHandedOn) {
    OfferAll();
    const Item item = Make(MakeFocusItem);
    Vendor(SELVANE_FOCUS_ONE_PUSH).get_result = driver_failure;
    Vendor(SELVANE_FOCUS_ONE_PUSH).set_result = driver_refusal;
    Vendor(SELVANE_FOCUS_REGION_TOP).get_result = driver_failure;
    Camera().get_result = driver_failure;
    Camera().set_result = driver_refusal;
    Camera().range_result = driver_refusal;
    ExpectFailures(*item, {{op_get_range, 1, driver_refusal},
                           {op_get_range, 7, driver_failure},
                           {op_get_value, 1, driver_failure},
                           {op_get_value, 7, driver_failure},
                           {op_set_value, 1, driver_refusal},
                           {op_get_switch, 2, driver_failure},
                           {op_push, 0, driver_refusal}});
}

}  // namespace
}  // namespace item_tests
