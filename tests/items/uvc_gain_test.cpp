#include "tests/items/item_test.h"

#include <cmath>

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeUVCGain;

constexpr std::uint32_t gain = 9;  // property of the proc amp

class UVCGainTest : public ItemTest {
protected:
    void OfferDecibels() { Vendor(SELVANE_GAIN).bytes = IntRecord(1234, 0, 0, -300, 4800, 29); }
    void OfferAmp(std::int32_t capabilities = 3, std::int32_t flags = 2) {
        driver.VideoProcAmp()[gain] = {16, 255, 2, 32, capabilities, 100, flags};
    }
    ScriptedControl& Amp() { return driver.VideoProcAmp()[gain]; }
};

TEST_F(UVCGainTest, NeedsThePropertySetAndTheGainProperty) {
    EXPECT_FALSE(Make(MakeUVCGain));
    OfferAmp();
    EXPECT_FALSE(Make(MakeUVCGain));
    OfferDecibels();
    EXPECT_TRUE(Make(MakeUVCGain));
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeUVCGain));
}

TEST_F(UVCGainTest, ConstructionReadsThePropertyAndThenTheCapabilities) {
    OfferDecibels();
    OfferAmp();
    ZELAdapterHelper::CZELItemDataBase* made = nullptr;
    MakeUVCGain(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    const Item item = Item::attach(made);
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_GAIN), GetInt(SELVANE_GAIN), Control(Kind::amp_range, gain)}));
}

TEST_F(UVCGainTest, AFailedFirstReadDoesNotMatter) {
    OfferDecibels();
    Vendor(SELVANE_GAIN).get_result = driver_failure;
    const Item item = Make(MakeUVCGain);
    ASSERT_TRUE(item);
    EXPECT_TRUE(item->SupportsInterface(1));
}

TEST_F(UVCGainTest, EachKeyHasItsOperations) {
    OfferDecibels();
    OfferAmp();
    const Item item = Make(MakeUVCGain);
    ExpectOnly(*item, 0, op_range | op_abs_unit);
    ExpectOnly(*item, 1, op_abs | op_abs_unit);
    ExpectOnly(*item, 2, op_switch | op_abs_unit);
    ExpectOnly(*item, 3, op_abs_unit);
    ExpectOnly(*item, 0x100000000, op_abs_unit);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGainTest, SupportIsWhatConstructionFound) {
    OfferDecibels();
    for (const std::int32_t capabilities : {0, 1, 2, 3, 4}) {
        OfferAmp(capabilities);
        const Item item = Make(MakeUVCGain);
        Amp().capabilities = 0;
        EXPECT_EQ(item->SupportsInterface(0), (capabilities & 2) != 0) << capabilities;
        EXPECT_TRUE(item->SupportsInterface(1));
        EXPECT_EQ(item->SupportsInterface(2), (capabilities & 1) != 0) << capabilities;
        EXPECT_FALSE(item->SupportsInterface(3));
        EXPECT_TRUE(Asked().empty());
    }
    OfferAmp();
    Amp().range_result = driver_failure;
    const Item item = Make(MakeUVCGain);
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_FALSE(item->SupportsInterface(2));
}

TEST_F(UVCGainTest, WithoutProcAmpOnlyDecibelsAreLeft) {
    OfferDecibels();
    const Item item = Make(MakeUVCGain);
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_TRUE(item->SupportsInterface(1));
    EXPECT_FALSE(item->SupportsInterface(2));
    EXPECT_TRUE(Available(item, 0));
    EXPECT_TRUE(Available(item, 1));
    ExpectOnly(*item, 0, op_abs_unit);
    ExpectOnly(*item, 2, op_abs_unit);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGainTest, ValuesGiveWayToTheAutomaticMode) {
    OfferDecibels();
    OfferAmp(3, 1);
    const Item item = Make(MakeUVCGain);
    EXPECT_FALSE(Available(item, 0));
    EXPECT_FALSE(Available(item, 1));
    EXPECT_EQ(Asked(), Requests(2, Control(Kind::amp_get, gain)));
    EXPECT_TRUE(Available(item, 2));
    EXPECT_TRUE(Available(item, 3));
    EXPECT_TRUE(Asked().empty());
    Amp().flags = 2;
    EXPECT_TRUE(Available(item, 0));
    EXPECT_TRUE(Available(item, 1));
    Amp().get_result = driver_failure;
    bool available = false;
    EXPECT_EQ(item->IsAvailable(1, available), driver_failure);
    EXPECT_TRUE(available);
}

TEST_F(UVCGainTest, ValuesAreAvailableWithoutAnAutomaticMode) {
    OfferDecibels();
    OfferAmp(2, 1);
    const Item item = Make(MakeUVCGain);
    EXPECT_TRUE(Available(item, 0));
    EXPECT_TRUE(Available(item, 1));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGainTest, RawValueKeepsTheMode) {
    OfferDecibels();
    OfferAmp(3, 1);
    const Item item = Make(MakeUVCGain);
    EXPECT_EQ(Range(item, 0), (RangeInfo{16, 255, 32, 2}));
    EXPECT_EQ(Value(item, 0), 100);
    EXPECT_EQ(Asked(), (Requests{Control(Kind::amp_range, gain), Control(Kind::amp_get, gain)}));
    for (const std::int32_t flags : {1, 2, 0x12}) {
        Amp().flags = flags;
        EXPECT_EQ(item->SetValue(0, 50), S_OK);
        EXPECT_EQ(Asked(), (Requests{Control(Kind::amp_get, gain), Control(Kind::amp_set, gain, 50, flags)}));
    }
}

TEST_F(UVCGainTest, AutomaticModeIsWrittenEachTimeWithTheValueThatWasRead) {
    OfferDecibels();
    OfferAmp(3, 2);
    const Item item = Make(MakeUVCGain);
    for (const bool on : {false, false, true, true}) {
        EXPECT_EQ(item->SetSwitch(2, on), S_OK);
        EXPECT_EQ(Asked(),
                  (Requests{Control(Kind::amp_get, gain), Control(Kind::amp_set, gain, 100, on ? 1 : 2)}));
        EXPECT_EQ(Switch(item, 2), on);
        (void)Asked();
    }
    for (const std::int32_t flags : {0, 1, 2, 3, 4}) {
        Amp().flags = flags;
        EXPECT_EQ(Switch(item, 2), (flags & 1) != 0) << flags;
    }
}

TEST_F(UVCGainTest, NothingIsWrittenWhenTheFlagsCannotBeRead) {
    OfferDecibels();
    OfferAmp();
    const Item item = Make(MakeUVCGain);
    Amp().get_result = driver_failure;
    std::int32_t value = 77;
    bool on = true;
    EXPECT_EQ(item->SetValue(0, 1), driver_failure);
    EXPECT_EQ(item->SetSwitch(2, true), driver_failure);
    EXPECT_EQ(item->GetValue(0, value), driver_failure);
    EXPECT_EQ(item->GetSwitch(2, on), driver_failure);
    EXPECT_EQ(Asked(), Requests(4, Control(Kind::amp_get, gain)));
    EXPECT_EQ(value, 77);
    EXPECT_TRUE(on);
    Amp().get_result = S_OK;
    Amp().set_result = driver_refusal;
    EXPECT_EQ(item->SetValue(0, 1), driver_refusal);
    EXPECT_EQ(item->SetSwitch(2, true), driver_refusal);
}

TEST_F(UVCGainTest, DecibelsAreHundredths) {
    OfferDecibels();
    const Item item = Make(MakeUVCGain);
    EXPECT_EQ(AbsValue(item, 1), 12.34);
    EXPECT_EQ(AbsRange(item, 1), (AbsRangeInfo{-3.0, 48.0, 0.29}));
    EXPECT_EQ(Asked(), Requests(2, GetInt(SELVANE_GAIN)));
    const std::pair<double, std::int32_t> writes[] = {
        {0.29, 28}, {12.34, 1234}, {-0.29, -28}, {1e300, INT32_MIN}, {std::nan(""), INT32_MIN},
    };
    for (const auto& [decibels, ticks] : writes) {
        EXPECT_EQ(item->SetAbsValue(1, decibels), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_GAIN, IntRecord(ticks, 2))}) << decibels;
    }
}

TEST_F(UVCGainTest, UnitIsDecibelsOnALinearScale) {
    OfferDecibels();
    const Item item = Make(MakeUVCGain);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U}) {
        SharedString unit;
        std::int32_t scale = 77;
        EXPECT_EQ(item->GetAbsUnit(key, unit, scale), S_OK);
        EXPECT_EQ(unit.View(), L"dB");
        EXPECT_EQ(scale, key == 1 ? 0 : 77) << key;
    }
}

TEST_F(UVCGainTest, FailuresAreHandedOn) {
    OfferDecibels();
    OfferAmp();
    const Item item = Make(MakeUVCGain);
    Vendor(SELVANE_GAIN).get_result = driver_failure;
    Vendor(SELVANE_GAIN).set_result = driver_refusal;
    Amp().range_result = driver_refusal;
    ExpectFailures(*item, {{op_get_abs_range, 1, driver_failure},
                           {op_get_abs_value, 1, driver_failure},
                           {op_set_abs_value, 1, driver_refusal},
                           {op_get_range, 0, driver_refusal}});
}

}  // namespace
}  // namespace item_tests
