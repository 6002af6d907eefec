#include "tests/items/item_test.h"

#include <cmath>
#include <limits>

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeExposureItem;

constexpr std::uint32_t exposure = 4;  // property of the camera control

class ExposureItemTest : public ItemTest {
protected:
    // `capabilities` bit 0: the float property has the automatic mode.
    void OfferFloat(std::uint32_t flags = 2, std::uint32_t capabilities = 1) {
        Vendor(200).bytes = FloatRecord(0.01F, 0.0001F, 4.0F, 0.033F, flags, capabilities);
        Vendor(246).bytes = FloatRecord(0.5F, 0.001F, 2.0F, 0.3333F);
        Vendor(106).bytes = IntRecord(128, 0, 0, 0, 255, 100);
        Vendor(202).bytes = IntRecord(0);
    }
    void OfferTicks() { Vendor(109).bytes = IntRecord(50, 0, 0, 1, 10000, 333); }
    void OfferCamera(std::int32_t capabilities, std::int32_t flags = 2) {
        driver.CameraControl()[exposure] = {-13, 0, 1, -6, capabilities, -5, flags};
    }
    ScriptedControl& Camera() { return driver.CameraControl()[exposure]; }
};

TEST_F(ExposureItemTest, NeedsThePropertySetAndTheFloatProperty) {
    EXPECT_FALSE(Make(MakeExposureItem));
    OfferFloat();
    EXPECT_TRUE(Make(MakeExposureItem));
    Vendor(200).support = 0;
    EXPECT_FALSE(Make(MakeExposureItem));
    Vendor(200).support = 3;
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeExposureItem));
}

TEST_F(ExposureItemTest, ConstructionReadsInOrder) {
    OfferFloat();
    OfferCamera(3);
    ZELAdapterHelper::CZELItemDataBase* made = nullptr;
    MakeExposureItem(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    const Item item = Item::attach(made);
    EXPECT_EQ(Asked(), (Requests{QueryVendor(200), GetFloat(200), Control(Kind::CameraGetRange, exposure),
                                 QueryVendor(202), QueryVendor(109)}));
}

TEST_F(ExposureItemTest, EachKeyHasItsOperations) {
    OfferFloat();
    OfferTicks();
    const Item item = Make(MakeExposureItem);
    ExpectOnly(*item, 0, op_range | op_abs_unit);
    ExpectOnly(*item, 1, op_abs | op_abs_unit);
    ExpectOnly(*item, 2, op_switch | op_abs_unit);
    ExpectOnly(*item, 3, op_range | op_abs_unit);
    ExpectOnly(*item, 4, op_range | op_abs_unit);
    ExpectOnly(*item, 5, op_abs | op_abs_unit);
    ExpectOnly(*item, 6, op_switch | op_abs_unit);
    ExpectOnly(*item, 7, op_abs_unit);
    ExpectOnly(*item, 0x100000000, op_abs_unit);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(ExposureItemTest, SupportIsWhatConstructionFound) {
    OfferFloat();
    OfferCamera(2);
    const Item item = Make(MakeExposureItem);
    Camera().capabilities = 0;
    driver.RemoveProperty(VendorSet(), 202);
    EXPECT_TRUE(item->SupportsInterface(0));
    EXPECT_TRUE(item->SupportsInterface(1));
    EXPECT_TRUE(item->SupportsInterface(2));
    EXPECT_TRUE(item->SupportsInterface(6));
    EXPECT_TRUE(Asked().empty());
    EXPECT_TRUE(item->SupportsInterface(3));
    EXPECT_TRUE(item->SupportsInterface(4));
    EXPECT_TRUE(item->SupportsInterface(5));
    EXPECT_EQ(Asked(), (Requests{QueryVendor(106), QueryVendor(246), QueryVendor(246)}));
    driver.RemoveProperty(VendorSet(), 106);
    driver.RemoveProperty(VendorSet(), 246);
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
        Vendor(200).get_result = one.read;
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
    Vendor(202).bytes = IntRecord(1);
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(Available(item, 0));
    EXPECT_FALSE(Available(item, 1));
    EXPECT_EQ(Asked(), (Requests{GetFloat(200), GetFloat(200)}));
    EXPECT_FALSE(Available(item, 4));
    EXPECT_FALSE(Available(item, 5));
    EXPECT_EQ(Asked(), (Requests{GetInt(202), GetInt(202)}));
    for (const InterfaceKey key : {2U, 3U, 6U, 7U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    OfferFloat(2);
    for (const InterfaceKey key : {0U, 1U, 4U, 5U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    Vendor(200).get_result = driver_failure;
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
    EXPECT_EQ(Asked(), (Requests{GetInt(109), GetInt(109), SetVendor(109, IntRecord(60, 2))}));
}

TEST_F(ExposureItemTest, RawValueOverTheCameraControl) {
    OfferFloat();
    OfferCamera(3, 1);
    const Item item = Make(MakeExposureItem);
    EXPECT_EQ(Range(item, 0), (RangeInfo{-13, 0, -6, 1}));
    EXPECT_EQ(Value(item, 0), -5);
    EXPECT_EQ(item->SetValue(0, -3), S_OK);
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::CameraGetRange, exposure), Control(Kind::CameraGet, exposure),
                        Control(Kind::CameraGet, exposure), Control(Kind::CameraSet, exposure, -3, 1)}));
}

TEST_F(ExposureItemTest, AutoReferenceIsAProperty) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    EXPECT_EQ(Range(item, 3), (RangeInfo{0, 255, 100, 1}));
    EXPECT_EQ(Value(item, 3), 128);
    EXPECT_EQ(item->SetValue(3, 90), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(106), GetInt(106), SetVendor(106, IntRecord(90, 2))}));
}

TEST_F(ExposureItemTest, AutoMaxValueReadsInTicks) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    EXPECT_EQ(Range(item, 4), (RangeInfo{10, 20000, 3333, 1}));
    EXPECT_EQ(Value(item, 4), 5000);
    EXPECT_EQ(Asked(), (Requests{GetFloat(246), GetFloat(246)}));

    // Rounded by the added half, and at least 1 where it is a minimum or the value.
    Vendor(246).bytes = FloatRecord(0.00001F, 0.0F, 0.00004F, 0.00016F);
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, 0, 2, 1}));
    EXPECT_EQ(Value(item, 4), 1);
    Vendor(246).bytes = FloatRecord(-1.0F, -1.0F, -1.0F, -0.5F);
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, -9999, -4999, 1}));
    EXPECT_EQ(Value(item, 4), 1);
}

TEST_F(ExposureItemTest, TicksAreComputedIn32Bits) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    // In 64 bits these would be 8388609 and 16777217; in 32 bits the half does not fit behind so large a
    // number.
    Vendor(246).bytes = FloatRecord(838.8609F, 1677.7217F);
    EXPECT_EQ(Value(item, 4), 8388610);
    EXPECT_EQ(Range(item, 4).min, 16777216);
}

TEST_F(ExposureItemTest, TicksThatDoNotFitGiveTheSmallestInteger) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(246).bytes = FloatRecord(std::nanf(""), 1e30F, 1e30F, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(Range(item, 4), (RangeInfo{1, INT32_MIN, INT32_MIN, 1}));
    EXPECT_EQ(Value(item, 4), 1);
}

TEST_F(ExposureItemTest, AutoMaxValueIsWrittenAsSeconds) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    for (const std::int32_t ticks : {3333, 1, 0, -7, 16777217, INT32_MAX}) {
        EXPECT_EQ(item->SetValue(4, ticks), S_OK);
        const float seconds = static_cast<float>(ticks) / 10000.0F;
        EXPECT_EQ(Asked(), Requests{SetVendor(246, FloatRecord(seconds, 0, 0, 0, 2))}) << ticks;
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
    EXPECT_EQ(Asked(), Requests(5, GetFloat(200)));
}

TEST_F(ExposureItemTest, AutomaticModeGoesBackInTheRecordThatWasRead) {
    OfferFloat(0xF0, 1);
    Vendor(200).Put(0, std::uint8_t{0xAA}).Put(55, std::uint8_t{0xBB});
    const Item item = Make(MakeExposureItem);
    Bytes expected = Vendor(200).bytes;

    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), Requests{GetFloat(200)}) << "off already";
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    expected[40] = 1;
    EXPECT_EQ(Asked(), (Requests{GetFloat(200), SetVendor(200, expected)}));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(), Requests{GetFloat(200)}) << "on already";
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    expected[40] = 2;
    EXPECT_EQ(Asked(), (Requests{GetFloat(200), SetVendor(200, expected)}));
}

TEST_F(ExposureItemTest, AutomaticModeIsNotWrittenWhenItCannotBeRead) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(200).get_result = driver_failure;
    EXPECT_EQ(item->SetSwitch(2, true), driver_failure);
    EXPECT_EQ(Asked(), Requests{GetFloat(200)});
    bool on = true;
    EXPECT_EQ(item->GetSwitch(2, on), driver_failure);
    EXPECT_TRUE(on);
    Vendor(200).get_result = S_OK;
    Vendor(200).set_result = driver_refusal;
    EXPECT_EQ(item->SetSwitch(2, true), driver_refusal);
}

TEST_F(ExposureItemTest, AutomaticModeOfTheCameraControl) {
    OfferFloat(1, 0);
    OfferCamera(3, 2);
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(Switch(item, 2));
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), Requests(2, Control(Kind::CameraGet, exposure)));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(),
              (Requests{Control(Kind::CameraGet, exposure), Control(Kind::CameraSet, exposure, -5, 1)}));
    EXPECT_TRUE(Switch(item, 2));
}

TEST_F(ExposureItemTest, AFloatPropertyThatCannotBeReadAtFirstLeavesTheModeToTheCameraControl) {
    OfferFloat(1, 1);
    OfferCamera(3, 2);
    Vendor(200).get_result = driver_failure;
    const Item item = Make(MakeExposureItem);
    Vendor(200).get_result = S_OK;
    EXPECT_FALSE(Switch(item, 2));
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(Asked(), (Requests{Control(Kind::CameraGet, exposure), Control(Kind::CameraGet, exposure),
                                 Control(Kind::CameraSet, exposure, -5, 1)}));
}

TEST_F(ExposureItemTest, SecondAutoSwitchIsAProperty) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    EXPECT_FALSE(Switch(item, 6));
    EXPECT_EQ(item->SetSwitch(6, true), S_OK);
    EXPECT_TRUE(Switch(item, 6));
    EXPECT_EQ(Asked(), (Requests{GetInt(202), SetVendor(202, IntRecord(1, 2)), GetInt(202)}));
    driver.RemoveProperty(VendorSet(), 202);
    EXPECT_FALSE(Make(MakeExposureItem)->SupportsInterface(6));
}

TEST_F(ExposureItemTest, SecondsAreTheFloatFields) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    const auto wide = [](float value) { return static_cast<double>(value); };
    EXPECT_EQ(AbsRange(item, 1), (AbsRangeInfo{wide(0.0001F), 4.0, wide(0.033F)}));
    EXPECT_EQ(AbsValue(item, 1), wide(0.01F));
    EXPECT_EQ(AbsRange(item, 5), (AbsRangeInfo{wide(0.001F), 2.0, wide(0.3333F)}));
    EXPECT_EQ(AbsValue(item, 5), 0.5);
    EXPECT_EQ(Asked(), (Requests{GetFloat(200), GetFloat(200), GetFloat(246), GetFloat(246)}));
    EXPECT_EQ(item->SetAbsValue(1, 0.1), S_OK);
    EXPECT_EQ(item->SetAbsValue(5, 1.0 / 3), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(200, FloatRecord(0.1F, 0, 0, 0, 2)),
                                 SetVendor(246, FloatRecord(static_cast<float>(1.0 / 3), 0, 0, 0, 2))}));
}

TEST_F(ExposureItemTest, UnitIsSecondsAndTheScaleOfTheTimesLogarithmic) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        SharedString unit;
        std::int32_t scale = 77;
        EXPECT_EQ(item->GetAbsUnit(key, unit, scale), S_OK);
        EXPECT_EQ(unit.View(), L"sec");
        EXPECT_EQ(scale, key == 1 || key == 5 ? 1 : 77) << key;
    }
}

TEST_F(ExposureItemTest, FailuresAreHandedOn) {
    OfferFloat();
    const Item item = Make(MakeExposureItem);
    Vendor(246).get_result = driver_failure;
    Vendor(246).set_result = driver_refusal;
    RangeInfo range{1, 2, 3, 4};
    AbsRangeInfo abs_range{1, 2, 3};
    std::int32_t ticks = 5;
    double seconds = 6;
    EXPECT_EQ(item->GetRange(4, range), driver_failure);
    EXPECT_EQ(item->GetValue(4, ticks), driver_failure);
    EXPECT_EQ(item->SetValue(4, 1), driver_refusal);
    EXPECT_EQ(item->GetAbsRange(5, abs_range), driver_failure);
    EXPECT_EQ(item->GetAbsValue(5, seconds), driver_failure);
    EXPECT_EQ(item->SetAbsValue(5, 1.0), driver_refusal);
    EXPECT_EQ(range, (RangeInfo{1, 2, 3, 4}));
    EXPECT_EQ(ticks, 5);
    EXPECT_EQ(abs_range, (AbsRangeInfo{1, 2, 3}));
    EXPECT_EQ(seconds, 6);
}

}  // namespace
}  // namespace item_tests
