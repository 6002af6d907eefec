#include "tests/items/exposure_fixture.h"

#include <cmath>
#include <limits>

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeExposureItem;

using ExposureItemTest = ExposureFixture;

TEST_F(ExposureItemTest, NeedsThePropertySetAndTheFloatProperty) {
    EXPECT_FALSE(Make(MakeExposureItem));
    OfferFloat();
    EXPECT_TRUE(Make(MakeExposureItem));
    Vendor(SELVANE_EXPOSURE_FLOAT).support = 0;
    EXPECT_FALSE(Make(MakeExposureItem));
    Vendor(SELVANE_EXPOSURE_FLOAT).support = 3;
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeExposureItem));
}

TEST_F(ExposureItemTest, ConstructionReadsInOrder) {
    OfferFloat();
    OfferCamera(3);
    ZELAdapterHelper::CZELItemDataBase* made = nullptr;
    MakeExposureItem(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    const Item item = Item::attach(made);
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_EXPOSURE_FLOAT), GetFloat(SELVANE_EXPOSURE_FLOAT),
                        Control(Kind::camera_range, exposure), QueryVendor(SELVANE_AUTO_MAX_AUTOMATIC),
                        QueryVendor(SELVANE_EXPOSURE_TICKS)}));
}

TEST_F(ExposureItemTest, SupportIsWhatConstructionFound) {
    OfferFloat();
    OfferCamera(2);
    const Item item = Make(MakeExposureItem);
    Camera().capabilities = 0;
    driver.RemoveProperty(VendorSet(), SELVANE_AUTO_MAX_AUTOMATIC);
    EXPECT_TRUE(item->SupportsInterface(0));
    EXPECT_TRUE(item->SupportsInterface(1));
    EXPECT_TRUE(item->SupportsInterface(2));
    EXPECT_TRUE(item->SupportsInterface(6));
    EXPECT_TRUE(Asked().empty());
    EXPECT_TRUE(item->SupportsInterface(3));
    EXPECT_TRUE(item->SupportsInterface(4));
    EXPECT_TRUE(item->SupportsInterface(5));
    EXPECT_EQ(Asked(), (Requests{QueryVendor(SELVANE_AUTO_EXPOSURE_REFERENCE),
                                 QueryVendor(SELVANE_AUTO_MAX_FLOAT), QueryVendor(SELVANE_AUTO_MAX_FLOAT)}));
    driver.RemoveProperty(VendorSet(), SELVANE_AUTO_EXPOSURE_REFERENCE);
    driver.RemoveProperty(VendorSet(), SELVANE_AUTO_MAX_FLOAT);
    EXPECT_FALSE(item->SupportsInterface(3));
    EXPECT_FALSE(item->SupportsInterface(4));
    EXPECT_FALSE(item->SupportsInterface(5));
    EXPECT_FALSE(item->SupportsInterface(7));
}

TEST_F(ExposureItemTest, AutomaticModeExistsWhereTheFloatPropertyReadsOrTheCameraHasIt) {
    struct Case {
        HRESULT read;
        std::int32_t capabilities;
        bool has_auto;
        bool has_manual;
    };
    // A readable float property is enough, whatever its own capabilities and the camera say.
    const Case cases[] = {
        {S_OK, 0, true, false},
        {S_OK, 1, true, false},
        {S_OK, 2, true, true},
        {driver_failure, 0, false, false},
        {driver_failure, 1, true, false},
        {driver_failure, 2, false, true},
        {driver_failure, 3, true, true},
    };
    OfferFloat(2, 0);
    for (const Case& one : cases) {
        Vendor(SELVANE_EXPOSURE_FLOAT).get_result = one.read;
        OfferCamera(one.capabilities);
        const Item item = Make(MakeExposureItem);
        EXPECT_EQ(item->SupportsInterface(2), one.has_auto) << one.read << ' ' << one.capabilities;
        EXPECT_EQ(item->SupportsInterface(0), one.has_manual) << one.read << ' ' << one.capabilities;
    }
    Camera().range_result = driver_failure;
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_FALSE(item->SupportsInterface(2));
}

TEST_F(ExposureItemTest, WorksWithoutCameraControl) {
    OfferFloat(3, 1);
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_TRUE(item->SupportsInterface(2));
    EXPECT_TRUE(Switch(item, 2));
    ExpectOnly(*item, 0, op_abs_unit);
}

TEST_F(ExposureItemTest, AutomaticModeWithNeitherFloatModeNorCameraIsMissing) {
    OfferFloat(3, 0);
    const Item item = Make(MakeExposureItem);
    EXPECT_TRUE(item->SupportsInterface(2));
    ExpectOnly(*item, 2, op_abs_unit);
}

TEST_F(ExposureItemTest, ValuesGiveWayToTheirAutomaticModes) {
    OfferFloat(1);
    Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(1);
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(Available(item, 0));
    EXPECT_FALSE(Available(item, 1));
    EXPECT_EQ(Asked(), (Requests{GetFloat(SELVANE_EXPOSURE_FLOAT), GetFloat(SELVANE_EXPOSURE_FLOAT)}));
    EXPECT_FALSE(Available(item, 4));
    EXPECT_FALSE(Available(item, 5));
    EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_AUTO_MAX_AUTOMATIC), GetInt(SELVANE_AUTO_MAX_AUTOMATIC)}));
    for (const InterfaceKey key : {2U, 3U, 6U, 7U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    OfferFloat(2);
    for (const InterfaceKey key : {0U, 1U, 4U, 5U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    Vendor(SELVANE_EXPOSURE_FLOAT).get_result = driver_failure;
    bool available = false;
    EXPECT_EQ(item->IsAvailable(1, available), driver_failure);
    EXPECT_TRUE(available);
}

TEST_F(ExposureItemTest, RawValueOverTheTickProperty) {
    OfferFloat();
    OfferTicks();
    OfferCamera(3);
    const Item item = Make(MakeExposureItem);
    EXPECT_EQ(Range(item, 0), (RangeInfo{1, 10000, 333, 1}));
    EXPECT_EQ(Value(item, 0), 50);
    EXPECT_EQ(item->SetValue(0, 60), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_EXPOSURE_TICKS), GetInt(SELVANE_EXPOSURE_TICKS),
                                 SetVendor(SELVANE_EXPOSURE_TICKS, IntRecord(60, 2))}));
}

TEST_F(ExposureItemTest, AutoMaxValueReadsInTicks) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    EXPECT_EQ(Range(item, 4), (RangeInfo{10, 20000, 3333, 1}));
    EXPECT_EQ(Value(item, 4), 5000);
    EXPECT_EQ(Asked(), (Requests{GetFloat(SELVANE_AUTO_MAX_FLOAT), GetFloat(SELVANE_AUTO_MAX_FLOAT)}));

    // Rounded by the added half, and at least 1 where it is a minimum or the value.
    Vendor(SELVANE_AUTO_MAX_FLOAT).bytes = FloatRecord(0.00001F, 0.0F, 0.00004F, 0.00016F);
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, 0, 2, 1}));
    EXPECT_EQ(Value(item, 4), 1);
    Vendor(SELVANE_AUTO_MAX_FLOAT).bytes = FloatRecord(-1.0F, -1.0F, -1.0F, -0.5F);
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, -9999, -4999, 1}));
    EXPECT_EQ(Value(item, 4), 1);
}

TEST_F(ExposureItemTest, TicksAreComputedIn32Bits) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    // In 64 bits these would be 8388609 and 16777217; in 32 bits the half does not fit behind so large a
    // number.
    Vendor(SELVANE_AUTO_MAX_FLOAT).bytes = FloatRecord(838.8609F, 1677.7217F);
    EXPECT_EQ(Value(item, 4), 8388610);
    EXPECT_EQ(Range(item, 4).min, 16777216);
}

TEST_F(ExposureItemTest, TicksThatDoNotFitGiveTheSmallestInteger) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(SELVANE_AUTO_MAX_FLOAT).bytes =
        FloatRecord(std::nanf(""), 1e30F, 1e30F, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, INT32_MIN, INT32_MIN, 1}));
    EXPECT_EQ(Value(item, 4), 1);
}

TEST_F(ExposureItemTest, AutoMaxValueIsWrittenAsSeconds) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    for (const std::int32_t ticks : {3333, 1, 0, -7, 16777217, INT32_MAX}) {
        EXPECT_EQ(item->SetValue(4, ticks), S_OK);
        const float seconds = static_cast<float>(ticks) / 10000.0F;
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_AUTO_MAX_FLOAT, FloatRecord(seconds, 0, 0, 0, 2))})
            << ticks;
    }
}

TEST_F(ExposureItemTest, AutomaticModeOfTheFloatProperty) {
    OfferFloat(2);
    OfferCamera(3, 1);
    const Item item = Make(MakeExposureItem);
    for (const std::uint32_t flags : {0U, 1U, 2U, 3U, 0xFFFFFFFEU}) {
        OfferFloat(flags);
        EXPECT_EQ(Switch(item, 2), (flags & 1) != 0) << flags;
    }
    EXPECT_EQ(Asked(), Requests(5, GetFloat(SELVANE_EXPOSURE_FLOAT)));
}

TEST_F(ExposureItemTest, AutomaticModeGoesBackInTheRecordThatWasRead) {
    OfferFloat(0xF0, 1);
    Vendor(SELVANE_EXPOSURE_FLOAT).Put(0, std::uint8_t{0xAA}).Put(55, std::uint8_t{0xBB});
    const Item item = Make(MakeExposureItem);
    Bytes expected = Vendor(SELVANE_EXPOSURE_FLOAT).bytes;

    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), Requests{GetFloat(SELVANE_EXPOSURE_FLOAT)}) << "off already";
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    expected[40] = 1;
    EXPECT_EQ(Asked(),
              (Requests{GetFloat(SELVANE_EXPOSURE_FLOAT), SetVendor(SELVANE_EXPOSURE_FLOAT, expected)}));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(), Requests{GetFloat(SELVANE_EXPOSURE_FLOAT)}) << "on already";
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    expected[40] = 2;
    EXPECT_EQ(Asked(),
              (Requests{GetFloat(SELVANE_EXPOSURE_FLOAT), SetVendor(SELVANE_EXPOSURE_FLOAT, expected)}));
}

TEST_F(ExposureItemTest, AutomaticModeIsNotWrittenWhenItCannotBeRead) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(SELVANE_EXPOSURE_FLOAT).get_result = driver_failure;
    EXPECT_EQ(item->SetSwitch(2, true), driver_failure);
    EXPECT_EQ(Asked(), Requests{GetFloat(SELVANE_EXPOSURE_FLOAT)});
    bool on = true;
    EXPECT_EQ(item->GetSwitch(2, on), driver_failure);
    EXPECT_TRUE(on);
    Vendor(SELVANE_EXPOSURE_FLOAT).get_result = S_OK;
    Vendor(SELVANE_EXPOSURE_FLOAT).set_result = driver_refusal;
    EXPECT_EQ(item->SetSwitch(2, true), driver_refusal);
}

TEST_F(ExposureItemTest, AutomaticModeOfTheCameraControl) {
    OfferFloat(1, 0);
    OfferCamera(3, 2);
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(Switch(item, 2));
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), Requests(2, Control(Kind::camera_get, exposure)));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::camera_get, exposure), Control(Kind::camera_set, exposure, -5, 1)}));
    EXPECT_TRUE(Switch(item, 2));
}

TEST_F(ExposureItemTest, AFloatPropertyThatCannotBeReadAtFirstLeavesTheModeToTheCameraControl) {
    OfferFloat(1, 1);
    OfferCamera(3, 2);
    Vendor(SELVANE_EXPOSURE_FLOAT).get_result = driver_failure;
    const Item item = Make(MakeExposureItem);
    Vendor(SELVANE_EXPOSURE_FLOAT).get_result = S_OK;
    EXPECT_FALSE(Switch(item, 2));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(), (Requests{Control(Kind::camera_get, exposure), Control(Kind::camera_get, exposure),
                                 Control(Kind::camera_set, exposure, -5, 1)}));
}

TEST_F(ExposureItemTest, SecondsAreTheFloatFields) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    const auto wide = [](float value) { return static_cast<double>(value); };
    EXPECT_EQ(AbsRange(item, 1), (AbsRangeInfo{wide(0.0001F), 4.0, wide(0.033F)}));
    EXPECT_EQ(AbsValue(item, 1), wide(0.01F));
    EXPECT_EQ(AbsRange(item, 5), (AbsRangeInfo{wide(0.001F), 2.0, wide(0.3333F)}));
    EXPECT_EQ(AbsValue(item, 5), 0.5);
    EXPECT_EQ(Asked(), (Requests{GetFloat(SELVANE_EXPOSURE_FLOAT), GetFloat(SELVANE_EXPOSURE_FLOAT),
                                 GetFloat(SELVANE_AUTO_MAX_FLOAT), GetFloat(SELVANE_AUTO_MAX_FLOAT)}));
    EXPECT_EQ(item->SetAbsValue(1, 0.1), S_OK);
    EXPECT_EQ(item->SetAbsValue(5, 1.0 / 3), S_OK);
    EXPECT_EQ(
        Asked(),
        (Requests{SetVendor(SELVANE_EXPOSURE_FLOAT, FloatRecord(0.1F, 0, 0, 0, 2)),
                  SetVendor(SELVANE_AUTO_MAX_FLOAT, FloatRecord(static_cast<float>(1.0 / 3), 0, 0, 0, 2))}));
}

TEST_F(ExposureItemTest, FailuresAreHandedOn) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(SELVANE_AUTO_MAX_FLOAT).get_result = driver_failure;
    Vendor(SELVANE_AUTO_MAX_FLOAT).set_result = driver_refusal;
    ExpectFailures(*item, {{op_get_range, 4, driver_failure},
                           {op_get_value, 4, driver_failure},
                           {op_set_value, 4, driver_refusal},
                           {op_get_abs_range, 5, driver_failure},
                           {op_get_abs_value, 5, driver_failure},
                           {op_set_abs_value, 5, driver_refusal}});
}

}  // namespace
}  // namespace item_tests
