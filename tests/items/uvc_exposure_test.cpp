#include "tests/items/exposure_fixture.h"

#include <cmath>

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeUVCExposure;

using UVCExposureTest = ExposureFixture;

/// A kind of driver by how it counts time.
struct TimeUnit {
    const char* name;
    std::int32_t a_second;
    std::uint32_t exposure;
    RangeInfo exposure_range;
    std::uint32_t auto_max;
    RangeInfo auto_max_range;
};
const TimeUnit ticks = {
    "Ticks", 10000, SELVANE_EXPOSURE_TICKS, {1, 10000, 333, 1}, SELVANE_AUTO_MAX_TICKS, {10, 20000, 3333, 1}};
const TimeUnit microseconds = {"Microseconds",
                               1000000,
                               SELVANE_EXPOSURE_MICROSECONDS,
                               {100, 30000000, 33333, 1},
                               SELVANE_AUTO_MAX_MICROSECONDS,
                               {1000, 2000000, 333333, 1}};

class UVCExposureUnitTest : public ExposureFixture, public testing::WithParamInterface<TimeUnit> {
protected:
    Item MakeItem() {
        OfferTicks();
        if (GetParam().exposure == SELVANE_EXPOSURE_MICROSECONDS) OfferMicroseconds();
        return Make(MakeUVCExposure);
    }
    // A range in seconds.
    static AbsRangeInfo Seconds(const RangeInfo& range) {
        const double a_second = GetParam().a_second;
        return {range.min / a_second, range.max / a_second, range.default_value / a_second};
    }
};
INSTANTIATE_TEST_SUITE_P(In, UVCExposureUnitTest, testing::Values(ticks, microseconds),
                         [](const auto& unit) { return std::string(unit.param.name); });

TEST_P(UVCExposureUnitTest, AutoMaxValueIsAProperty) {
    const Item item = MakeItem();
    const TimeUnit& unit = GetParam();
    EXPECT_EQ(Range(item, 4), unit.auto_max_range);
    EXPECT_EQ(Value(item, 4), unit.a_second / 2);
    EXPECT_EQ(item->SetValue(4, 7000), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(unit.auto_max), GetInt(unit.auto_max),
                                 SetVendor(unit.auto_max, IntRecord(7000, 2))}));
}

TEST_P(UVCExposureUnitTest, SecondsAreCountedInTheUnit) {
    const Item item = MakeItem();
    const TimeUnit& unit = GetParam();
    EXPECT_EQ(AbsRange(item, 1), Seconds(unit.exposure_range));
    EXPECT_EQ(AbsRange(item, 5), Seconds(unit.auto_max_range));
    Vendor(unit.exposure).bytes = IntRecord(unit.a_second);
    EXPECT_EQ(AbsValue(item, 1), 1.0);
    EXPECT_EQ(AbsValue(item, 5), 0.5);
    EXPECT_EQ(Asked(), (Requests{GetInt(unit.exposure), GetInt(unit.auto_max), GetInt(unit.exposure),
                                 GetInt(unit.auto_max)}));
    EXPECT_EQ(item->SetAbsValue(1, 0.5), S_OK);
    EXPECT_EQ(item->SetAbsValue(5, 0.25), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(unit.exposure, IntRecord(unit.a_second / 2, 2)),
                                 SetVendor(unit.auto_max, IntRecord(unit.a_second / 4, 2))}));
}

TEST_F(UVCExposureTest, NeedsThePropertySetAndTheTickProperty) {
    EXPECT_FALSE(Make(MakeUVCExposure));
    OfferMicroseconds();
    driver.RemoveProperty(VendorSet(), SELVANE_EXPOSURE_TICKS);
    EXPECT_FALSE(Make(MakeUVCExposure)) << "239 alone is not enough";
    OfferTicks();
    EXPECT_TRUE(Make(MakeUVCExposure));
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeUVCExposure));
}

TEST_F(UVCExposureTest, FactoryAsksForBothTimeProperties) {
    OfferTicks();
    ZELAdapterHelper::CZELItemDataBase* made = nullptr;
    MakeUVCExposure(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    const Item item = Item::attach(made);
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_EXPOSURE_TICKS), QueryVendor(SELVANE_EXPOSURE_MICROSECONDS)}));
}

TEST_F(UVCExposureTest, FactoryTakesANullFilterAndClearsItsResult) {
    int something = 0;
    auto* made = reinterpret_cast<ZELAdapterHelper::CZELItemDataBase*>(&something);
    MakeUVCExposure(&made, nullptr, *ZELAdapterHelper::StaticItemTable().begin());
    EXPECT_EQ(made, nullptr);
}

TEST_F(UVCExposureTest, SupportsWhatTheDriverHas) {
    OfferTicks();
    OfferCamera(3);
    const Item item = Make(MakeUVCExposure);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U, 5U, 6U}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
    }
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::camera_range, exposure), QueryVendor(SELVANE_EXPOSURE_TICKS),
                        Control(Kind::camera_range, exposure), QueryVendor(SELVANE_AUTO_EXPOSURE_REFERENCE),
                        QueryVendor(SELVANE_AUTO_MAX_TICKS), QueryVendor(SELVANE_AUTO_MAX_TICKS),
                        QueryVendor(SELVANE_AUTO_MAX_AUTOMATIC)}));
    EXPECT_FALSE(item->SupportsInterface(7));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCExposureTest, SupportsMicrosecondPropertiesWhereTheyReplaceTicks) {
    OfferMicroseconds();
    const Item item = Make(MakeUVCExposure);
    EXPECT_TRUE(item->SupportsInterface(1));
    EXPECT_TRUE(item->SupportsInterface(4));
    EXPECT_TRUE(item->SupportsInterface(5));
    EXPECT_EQ(Asked(), (Requests{QueryVendor(SELVANE_EXPOSURE_MICROSECONDS),
                                 QueryVendor(SELVANE_AUTO_MAX_MICROSECONDS),
                                 QueryVendor(SELVANE_AUTO_MAX_MICROSECONDS)}));
    driver.RemoveProperty(VendorSet(), SELVANE_AUTO_MAX_MICROSECONDS);
    EXPECT_FALSE(item->SupportsInterface(4)) << "201 does not stand in for 240";
    EXPECT_FALSE(item->SupportsInterface(5));
}

TEST_F(UVCExposureTest, CameraKeysFollowTheCapabilities) {
    OfferTicks();
    OfferCamera(3);
    const Item item = Make(MakeUVCExposure);
    for (const std::int32_t capabilities : {0, 1, 2, 3, 4}) {
        Camera().capabilities = capabilities;
        EXPECT_EQ(item->SupportsInterface(0), (capabilities & 2) != 0) << capabilities;
        EXPECT_EQ(item->SupportsInterface(2), (capabilities & 1) != 0) << capabilities;
    }
    Camera().capabilities = 3;
    Camera().range_result = driver_failure;
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_FALSE(item->SupportsInterface(2));
}

TEST_F(UVCExposureTest, WithoutCameraControlItsKeysAreNotSupported) {
    OfferTicks();
    const Item item = Make(MakeUVCExposure);
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_FALSE(item->SupportsInterface(2));
    ExpectOnly(*item, 0, op_abs_unit);
    ExpectOnly(*item, 2, op_abs_unit);
    EXPECT_TRUE(Available(item, 0));
    EXPECT_TRUE(Available(item, 1));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCExposureTest, ValuesGiveWayToTheirAutomaticModes) {
    OfferTicks();
    OfferCamera(3, 1);
    Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(1);
    const Item item = Make(MakeUVCExposure);
    EXPECT_FALSE(Available(item, 0));
    EXPECT_FALSE(Available(item, 1));
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::camera_range, exposure), Control(Kind::camera_get, exposure),
                        Control(Kind::camera_range, exposure), Control(Kind::camera_get, exposure)}));
    EXPECT_FALSE(Available(item, 4));
    EXPECT_FALSE(Available(item, 5));
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_AUTO_MAX_AUTOMATIC), GetInt(SELVANE_AUTO_MAX_AUTOMATIC),
                        QueryVendor(SELVANE_AUTO_MAX_AUTOMATIC), GetInt(SELVANE_AUTO_MAX_AUTOMATIC)}));
    for (const InterfaceKey key : {2U, 3U, 6U, 7U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    EXPECT_TRUE(Asked().empty());

    Camera().flags = 2;
    Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(0);
    for (const InterfaceKey key : {0U, 1U, 4U, 5U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
}

TEST_F(UVCExposureTest, ValuesAreAvailableWhereNoAutomaticModeExists) {
    OfferTicks();
    OfferCamera(3, 1);
    Camera().capabilities = 2;
    driver.RemoveProperty(VendorSet(), SELVANE_AUTO_MAX_AUTOMATIC);
    const Item item = Make(MakeUVCExposure);
    for (const InterfaceKey key : {0U, 1U, 4U, 5U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
}

TEST_F(UVCExposureTest, AvailabilityHandsOnAFailedReadOfTheSwitch) {
    OfferTicks();
    OfferCamera(3, 1);
    Camera().get_result = driver_failure;
    Vendor(SELVANE_AUTO_MAX_AUTOMATIC).get_result = driver_refusal;
    const Item item = Make(MakeUVCExposure);
    bool available = false;
    EXPECT_EQ(item->IsAvailable(0, available), driver_failure);
    EXPECT_TRUE(available);
    EXPECT_EQ(item->IsAvailable(5, available), driver_refusal);
}

TEST_F(UVCExposureTest, RawValueIsNotWrittenWhenTheModeCannotBeRead) {
    OfferTicks();
    OfferCamera(3);
    Camera().get_result = driver_failure;
    const Item item = Make(MakeUVCExposure);
    std::int32_t value = 77;
    EXPECT_EQ(item->SetValue(0, -3), driver_failure);
    EXPECT_EQ(item->SetSwitch(2, true), driver_failure);
    EXPECT_EQ(item->GetValue(0, value), driver_failure);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(Asked(), Requests(3, Control(Kind::camera_get, exposure)));

    Camera().get_result = S_OK;
    Camera().set_result = driver_refusal;
    EXPECT_EQ(item->SetValue(0, -3), driver_refusal);
}

TEST_F(UVCExposureTest, RawValueInMicrosecondsLeavesTheCameraControlAlone) {
    OfferMicroseconds();
    OfferCamera(3);
    const Item item = Make(MakeUVCExposure);
    EXPECT_EQ(Range(item, 0), (RangeInfo{100, 30000000, 33333, 1}));
    EXPECT_EQ(Value(item, 0), 5000);
    EXPECT_EQ(item->SetValue(0, 1234), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_EXPOSURE_MICROSECONDS), GetInt(SELVANE_EXPOSURE_MICROSECONDS),
                                 SetVendor(SELVANE_EXPOSURE_MICROSECONDS, IntRecord(1234, 2))}));
}

TEST_F(UVCExposureTest, AutomaticModeIsBitZeroOfTheFlags) {
    OfferTicks();
    OfferCamera(3);
    const Item item = Make(MakeUVCExposure);
    for (const std::int32_t flags : {0, 1, 2, 3, 4, 5}) {
        Camera().flags = flags;
        EXPECT_EQ(Switch(item, 2), (flags & 1) != 0) << flags;
    }
}

TEST_F(UVCExposureTest, AutomaticModeIsWrittenOnlyWhenTheFlagsDiffer) {
    OfferTicks();
    OfferCamera(3, 2);
    const Item item = Make(MakeUVCExposure);
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), Requests{Control(Kind::camera_get, exposure)});
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::camera_get, exposure), Control(Kind::camera_set, exposure, -5, 1)}));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(), Requests{Control(Kind::camera_get, exposure)});
    // All flags count, not the one bit.
    Camera().flags = 3;
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::camera_get, exposure), Control(Kind::camera_set, exposure, -5, 1)}));
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked().back(), Control(Kind::camera_set, exposure, -5, 2));
}

TEST_F(UVCExposureTest, SecondsAreCutToTicks) {
    OfferTicks();
    const Item item = Make(MakeUVCExposure);
    const std::pair<double, std::int32_t> writes[] = {
        {0.00019, 1},
        {0.00009, 0},
        {-0.00019, -1},
        {214748.3648, INT32_MIN},
        {1e300, INT32_MIN},
        {-1e300, INT32_MIN},
        {std::nan(""), INT32_MIN},
    };
    for (const auto& [seconds, ticks] : writes) {
        EXPECT_EQ(item->SetAbsValue(1, seconds), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_EXPOSURE_TICKS, IntRecord(ticks, 2))}) << seconds;
    }
}

TEST_F(UVCExposureTest, FailuresAreHandedOn) {
    OfferTicks();
    OfferCamera(3);
    const Item item = Make(MakeUVCExposure);
    Camera().get_result = driver_failure;
    Camera().range_result = driver_refusal;
    Camera().set_result = driver_refusal;
    Vendor(SELVANE_EXPOSURE_TICKS).get_result = driver_failure;
    Vendor(SELVANE_EXPOSURE_TICKS).set_result = driver_refusal;
    Vendor(SELVANE_AUTO_MAX_AUTOMATIC).get_result = driver_failure;
    ExpectFailures(*item, {{op_get_switch, 2, driver_failure},
                           {op_get_switch, 6, driver_failure},
                           {op_get_range, 0, driver_refusal},
                           {op_get_abs_range, 1, driver_failure},
                           {op_get_abs_value, 1, driver_failure},
                           {op_set_abs_value, 1, driver_refusal}});
}

TEST_F(UVCExposureTest, HoldsTheFilterWhileItLives) {
    OfferTicks();
    OfferCamera(3);
    {
        const Item item = Make(MakeUVCExposure);
        EXPECT_EQ(driver.OutstandingReferences(), 2);
    }
    EXPECT_EQ(driver.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace item_tests
