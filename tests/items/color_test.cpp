#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::MakeUVCColorEnhancement;
using ZELAdapterHelper::MakeUVCWhiteBalance;

const GUID& ColorSet() {
    static const GUID set = Guid(L"{8CBCF1C6-53C3-4D79-8EDB-C0646575DAC8}");
    return set;
}

class ColorEnhancementTest : public ItemTest {
protected:
    ScriptedProperty& Color() { return driver.Property(ColorSet(), 0); }
};

TEST_F(ColorEnhancementTest, NeedsItsPropertyToBeSupported) {
    EXPECT_FALSE(Make(MakeUVCColorEnhancement));
    driver.Property(VendorSet(), 0);
    EXPECT_FALSE(Make(MakeUVCColorEnhancement)) << "the vendor set does not stand in for its own";
    for (const std::uint32_t support : {0U, 1U, 2U, 3U, 4U}) {
        Color().support = support;
        EXPECT_EQ(static_cast<bool>(Make(MakeUVCColorEnhancement)), (support & 3) != 0) << support;
    }
    Color().support = 3;
    Color().support_result = driver_failure;
    EXPECT_FALSE(Make(MakeUVCColorEnhancement));
    Color().support_result = S_OK;
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeUVCColorEnhancement));
}

TEST_F(ColorEnhancementTest, SupportIsAskedEachTime) {
    Color();
    const Item item = Make(MakeUVCColorEnhancement);
    EXPECT_TRUE(item->SupportsInterface(0));
    Color().support = 0;
    EXPECT_FALSE(item->SupportsInterface(0));
    EXPECT_EQ(Asked(), Requests(2, Query(ColorSet(), 0)));
    EXPECT_FALSE(item->SupportsInterface(1));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(ColorEnhancementTest, IsASwitchAndNothingElse) {
    Color();
    const Item item = Make(MakeUVCColorEnhancement);
    ExpectOnly(*item, 0, op_switch);
    ExpectOnly(*item, 1, op_switch);
    EXPECT_TRUE(Asked().empty());
    EXPECT_TRUE(Available(item, 0));
}

TEST_F(ColorEnhancementTest, SwitchIsTheValueAndItsFlagsStayZero) {
    Color();
    const Item item = Make(MakeUVCColorEnhancement);
    for (const std::int32_t value : {0, 1, -1}) {
        Color().bytes = IntRecord(value);
        EXPECT_EQ(Switch(item, 0), value != 0);
        EXPECT_EQ(Asked(), Requests{Get(ColorSet(), 0, 48)});
    }
    EXPECT_EQ(item->SetSwitch(0, true), S_OK);
    EXPECT_EQ(item->SetSwitch(0, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{Set(ColorSet(), 0, IntRecord(1)), Set(ColorSet(), 0, IntRecord(0))}));
}

TEST_F(ColorEnhancementTest, TheKeyIsTheNumberOfTheProperty) {
    Color();
    driver.Property(ColorSet(), 7).bytes = IntRecord(1);
    const Item item = Make(MakeUVCColorEnhancement);
    EXPECT_TRUE(Switch(item, 7));
    EXPECT_EQ(item->SetSwitch(7, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{Get(ColorSet(), 7, 48), Set(ColorSet(), 7, IntRecord(0))}));
}

TEST_F(ColorEnhancementTest, FailuresAreHandedOn) {
    Color();
    const Item item = Make(MakeUVCColorEnhancement);
    Color().get_result = driver_failure;
    Color().set_result = driver_refusal;
    ExpectFailures(*item, {{op_get_switch, 0, driver_failure}, {op_set_switch, 0, driver_refusal}});
}

constexpr std::uint32_t white_balance = 7;  // property of the proc amp

class WhiteBalanceTest : public ItemTest {
protected:
    struct Gain {
        InterfaceKey key;
        std::uint32_t id;
    };
    static constexpr Gain gains[] = {
        {0, SELVANE_WHITE_BALANCE_RED}, {1, SELVANE_WHITE_BALANCE_BLUE}, {4, SELVANE_WHITE_BALANCE_GREEN}};

    void OfferAll(std::int32_t flags = 2) {
        Vendor(SELVANE_WHITE_BALANCE_RED).bytes = IntRecord(64, 0, 0, 0, 255, 32);
        Vendor(SELVANE_WHITE_BALANCE_BLUE).bytes = IntRecord(65, 0, 0, 1, 254, 33);
        Vendor(SELVANE_WHITE_BALANCE_GREEN).bytes = IntRecord(66, 0, 0, 2, 253, 34);
        Vendor(SELVANE_WHITE_BALANCE_ONE_PUSH).bytes = IntRecord(0);
        driver.VideoProcAmp()[white_balance] = {2800, 6500, 1, 4600, 3, 5000, flags};
    }
    ScriptedControl& Amp() { return driver.VideoProcAmp()[white_balance]; }
};

TEST_F(WhiteBalanceTest, NeedsBothInterfacesAndNoProperty) {
    EXPECT_FALSE(Make(MakeUVCWhiteBalance));
    driver.VideoProcAmp();
    ExpectNeedsNoProperty(MakeUVCWhiteBalance, {0, 1, 2, 3, 4, 5});
}

TEST_F(WhiteBalanceTest, SupportsWhatTheDriverHas) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
    }
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_WHITE_BALANCE_RED), QueryVendor(SELVANE_WHITE_BALANCE_BLUE),
                        Control(Kind::amp_range, white_balance), QueryVendor(SELVANE_WHITE_BALANCE_ONE_PUSH),
                        QueryVendor(SELVANE_WHITE_BALANCE_GREEN)}));
    EXPECT_FALSE(item->SupportsInterface(5));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(WhiteBalanceTest, ACameraWithoutGreenLacksThatAlone) {
    OfferAll();
    driver.RemoveProperty(VendorSet(), SELVANE_WHITE_BALANCE_GREEN);
    const Item item = Make(MakeUVCWhiteBalance);
    EXPECT_FALSE(item->SupportsInterface(4));
    for (const InterfaceKey key : {0U, 1U, 2U, 3U}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
    }
}

TEST_F(WhiteBalanceTest, AutomaticModeNeedsItsCapability) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    for (const std::int32_t capabilities : {0, 1, 2, 3}) {
        Amp().capabilities = capabilities;
        EXPECT_EQ(item->SupportsInterface(2), (capabilities & 1) != 0);
    }
    Amp().range_result = driver_failure;
    EXPECT_FALSE(item->SupportsInterface(2));
}

TEST_F(WhiteBalanceTest, EachKeyHasItsOperations) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    ExpectOnly(*item, 0, op_range);
    ExpectOnly(*item, 1, op_range);
    ExpectOnly(*item, 2, op_switch);
    ExpectOnly(*item, 3, op_push);
    ExpectOnly(*item, 4, op_range);
    ExpectOnly(*item, 5, op_none);
    ExpectOnly(*item, 0x100000000, op_none);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(WhiteBalanceTest, EverythingButTheSwitchGivesWayToTheAutomaticMode) {
    OfferAll(1);
    const Item item = Make(MakeUVCWhiteBalance);
    EXPECT_TRUE(Available(item, 2));
    EXPECT_TRUE(Asked().empty());
    for (const InterfaceKey key : {0U, 1U, 3U, 4U, 5U}) {
        Amp().flags = 1;
        EXPECT_FALSE(Available(item, key)) << key;
        EXPECT_EQ(Asked(),
                  (Requests{Control(Kind::amp_range, white_balance), Control(Kind::amp_get, white_balance)}));
        Amp().flags = 2;
        EXPECT_TRUE(Available(item, key)) << key;
        (void)Asked();
    }
    Amp().flags = 1;
    Amp().capabilities = 2;
    EXPECT_TRUE(Available(item, 0)) << "no automatic mode to give way to";
    Amp().capabilities = 3;
    Amp().get_result = driver_failure;
    bool available = false;
    EXPECT_EQ(item->IsAvailable(0, available), driver_failure);
    EXPECT_TRUE(available);
}

TEST_F(WhiteBalanceTest, GainsAreProperties) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    EXPECT_EQ(Range(item, 0), (RangeInfo{0, 255, 32, 1}));
    EXPECT_EQ(Range(item, 1), (RangeInfo{1, 254, 33, 1}));
    EXPECT_EQ(Range(item, 4), (RangeInfo{2, 253, 34, 1}));
    EXPECT_EQ(Value(item, 0), 64);
    EXPECT_EQ(Value(item, 1), 65);
    EXPECT_EQ(Value(item, 4), 66);
    (void)Asked();
    for (const Gain& gain : gains) {
        (void)Range(item, gain.key);
        (void)Value(item, gain.key);
        EXPECT_EQ(item->SetValue(gain.key, 99), S_OK);
        EXPECT_EQ(Asked(),
                  (Requests{GetInt(gain.id), GetInt(gain.id), SetVendor(gain.id, IntRecord(99, 2))}));
    }
}

TEST_F(WhiteBalanceTest, AutomaticModeIsWrittenWithoutReading) {
    OfferAll(2);
    const Item item = Make(MakeUVCWhiteBalance);
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(item->SetSwitch(2, true), S_OK);
    EXPECT_EQ(item->SetSwitch(2, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{Control(Kind::amp_set, white_balance, 0, 1),
                                 Control(Kind::amp_set, white_balance, 0, 1),
                                 Control(Kind::amp_set, white_balance, 0, 2)}));
    for (const std::int32_t flags : {0, 1, 2, 3}) {
        Amp().flags = flags;
        EXPECT_EQ(Switch(item, 2), (flags & 1) != 0);
    }
    EXPECT_EQ(Asked(), Requests(4, Control(Kind::amp_get, white_balance)));
}

TEST_F(WhiteBalanceTest, OnePushWritesOne) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    EXPECT_EQ(item->Push(3), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_WHITE_BALANCE_ONE_PUSH, IntRecord(1, 2))});
}

TEST_F(WhiteBalanceTest, FailuresAreHandedOn) {
    OfferAll();
    const Item item = Make(MakeUVCWhiteBalance);
    Vendor(SELVANE_WHITE_BALANCE_RED).get_result = driver_failure;
    Vendor(SELVANE_WHITE_BALANCE_RED).set_result = driver_refusal;
    Vendor(SELVANE_WHITE_BALANCE_ONE_PUSH).set_result = driver_refusal;
    Amp().get_result = driver_failure;
    Amp().set_result = driver_refusal;
    ExpectFailures(*item, {{op_get_range, 0, driver_failure},
                           {op_get_value, 0, driver_failure},
                           {op_set_value, 0, driver_refusal},
                           {op_get_switch, 2, driver_failure},
                           {op_set_switch, 2, driver_refusal},
                           {op_push, 3, driver_refusal}});
}

}  // namespace
}  // namespace item_tests
