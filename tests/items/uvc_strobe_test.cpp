#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::MakeUVCStrobe;

constexpr InterfaceKey enable = 0;
constexpr InterfaceKey mode = 1;
constexpr InterfaceKey polarity = 2;
constexpr InterfaceKey duration = 3;
constexpr InterfaceKey delay = 4;

// The fields that the item cares for; the others are filled with marks that must come back untouched.
struct Strobe {
    std::uint32_t enable = 1;
    std::int32_t delay = 0;
    std::int32_t duration = 0;
    std::uint32_t polarity = 0;
    std::uint32_t follow_exposure = 0;
    std::uint32_t restrictions = 0;
    std::int32_t duration_min = 20;

    operator Bytes() const {
        return Block(88)
            .Put(0, 0xA0A1A2A3U)
            .Put(24, enable)
            .Put(28, delay)
            .Put(32, 5)
            .Put(36, 6000)
            .Put(40, 60)
            .Put(44, duration)
            .Put(48, duration_min)
            .Put(52, 7000)
            .Put(56, 70)
            .Put(60, polarity)
            .Put(64, 0xB0B1B2B3U)
            .Put(68, follow_exposure)
            .Put(72, 0xC0C1C2C3U)
            .Put(76, restrictions)
            .Put(80, 0xD0D1D2D3D4D5D6D7U);
    }
};

Strobe ConstantMode() { return {}; }

Strobe FixedMode(std::int32_t the_duration = 300, std::int32_t the_delay = 40) {
    Strobe strobe;
    strobe.duration = the_duration;
    strobe.delay = the_delay;
    return strobe;
}

Strobe ExposureMode(std::int32_t the_duration = 300) {
    Strobe strobe = FixedMode(the_duration);
    strobe.follow_exposure = 1;
    return strobe;
}

Strobe Restricted(Strobe strobe, std::uint32_t restrictions) {
    strobe.restrictions = restrictions;
    return strobe;
}

class UVCStrobeTest : public ItemTest {
protected:
    Item MakeWith(const Strobe& strobe) {
        Vendor(SELVANE_STROBE).bytes = strobe;
        return Make(MakeUVCStrobe);
    }
    static DriverRequest Read() { return Get(VendorSet(), SELVANE_STROBE, 88); }
    static DriverRequest Write(const Bytes& record) { return SetVendor(SELVANE_STROBE, record); }
    static std::vector<std::wstring> ModeTexts(const Item& item) {
        std::vector<SharedString> strings;
        EXPECT_EQ(item->GetMapStrings(mode, strings), S_OK);
        return TextsOf(strings);
    }
};

TEST_F(UVCStrobeTest, NeedsItsProperty) {
    EXPECT_FALSE(Make(MakeUVCStrobe));
    EXPECT_TRUE(MakeWith({}));
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeUVCStrobe));
}

TEST_F(UVCStrobeTest, EachKeyHasItsOperations) {
    const Item item = MakeWith({});
    ExpectOnly(*item, enable, op_switch);
    ExpectOnly(*item, mode, op_range | op_map_strings);
    ExpectOnly(*item, polarity, op_switch);
    ExpectOnly(*item, duration, op_range);
    ExpectOnly(*item, delay, op_range);
    ExpectOnly(*item, 5, op_none);
    ExpectOnly(*item, 0x100000000, op_none);
    EXPECT_FALSE(item->SupportsInterface(5));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Available(item, 5));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCStrobeTest, RestrictionsTakeAwayInterfaces) {
    for (std::uint32_t restrictions = 0; restrictions < 16; ++restrictions) {
        const Item item = MakeWith(Restricted({}, restrictions));
        EXPECT_TRUE(item->SupportsInterface(enable));
        EXPECT_TRUE(item->SupportsInterface(mode));
        EXPECT_EQ(item->SupportsInterface(polarity), (restrictions & 1) == 0) << restrictions;
        EXPECT_EQ(item->SupportsInterface(delay), (restrictions & 2) == 0) << restrictions;
        EXPECT_EQ(item->SupportsInterface(duration), (restrictions & 4) == 0) << restrictions;
        EXPECT_EQ(Asked(), Requests{Read()}) << "one read serves them all";
    }
}

TEST_F(UVCStrobeTest, WithoutARecordNothingIsSupportedOrAvailable) {
    const Item item = MakeWith({});
    Vendor(SELVANE_STROBE).get_result = driver_failure;
    for (const InterfaceKey key : {enable, mode, polarity, duration, delay}) {
        bool available = true;
        EXPECT_FALSE(item->SupportsInterface(key));
        EXPECT_EQ(item->IsAvailable(key, available), driver_failure);
        EXPECT_FALSE(available);
    }
    EXPECT_EQ(Asked(), Requests(10, Read())) << "a failed read leaves the record to be read again";
    Vendor(SELVANE_STROBE).get_result = S_OK;
    EXPECT_TRUE(item->SupportsInterface(enable));
}

TEST_F(UVCStrobeTest, AvailabilityFollowsEnableAndMode) {
    struct Case {
        Strobe strobe;
        bool duration;
        bool delay;
    };
    for (const Case& one : {Case{ConstantMode(), false, false}, Case{FixedMode(), true, true},
                            Case{ExposureMode(), false, true}}) {
        for (const std::uint32_t on : {0U, 1U, 5U}) {
            Strobe strobe = one.strobe;
            strobe.enable = on;
            const Item item = MakeWith(strobe);
            EXPECT_TRUE(Available(item, enable));
            EXPECT_EQ(Available(item, mode), on != 0);
            EXPECT_EQ(Available(item, polarity), on != 0);
            EXPECT_EQ(Available(item, duration), on != 0 && one.duration);
            EXPECT_EQ(Available(item, delay), on != 0 && one.delay);
        }
    }
}

TEST_F(UVCStrobeTest, ModeIsToldFromTheRecord) {
    struct Case {
        Strobe strobe;
        std::int32_t index;
    };
    Strobe only_delay = FixedMode(0, 40);
    Strobe only_duration = FixedMode(300, 0);
    Strobe follow_without_times;
    follow_without_times.follow_exposure = 1;
    Strobe follow_by_another_number = ExposureMode();
    follow_by_another_number.follow_exposure = 8;
    const Case cases[] = {
        {ConstantMode(), 0},
        {only_delay, 1},
        {only_duration, 1},
        {FixedMode(), 1},
        {ExposureMode(), 2},
        {follow_by_another_number, 2},
        {follow_without_times, 0},
        // Where "exposure" is the only mode, it has index 0.
        {Restricted(ExposureMode(), 4), 0},
        {Restricted(follow_without_times, 4), 0},
        // A fixed duration that the device says it cannot do: no entry of the list.
        {Restricted(FixedMode(), 4), 1},
        {Restricted(ConstantMode(), 4), 1},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(Value(MakeWith(one.strobe), mode), one.index) << &one - cases;
    }
}

TEST_F(UVCStrobeTest, ADurationOfZeroReadsAsTenUnlessTheModeIsConstant) {
    EXPECT_EQ(Value(MakeWith(ConstantMode()), duration), 0);
    EXPECT_EQ(Value(MakeWith(FixedMode(0, 40)), duration), 10);
    EXPECT_EQ(Value(MakeWith(Restricted(ConstantMode(), 4)), duration), 10);
    EXPECT_EQ(Value(MakeWith(FixedMode(1, 40)), duration), 1);
}

TEST_F(UVCStrobeTest, TheRecordIsReadOnce) {
    const Item item = MakeWith(FixedMode());
    EXPECT_TRUE(Switch(item, enable));
    Strobe other = ExposureMode(500);
    other.enable = 0;
    Vendor(SELVANE_STROBE).bytes = other;
    EXPECT_TRUE(Switch(item, enable));
    EXPECT_EQ(Value(item, duration), 300);
    EXPECT_EQ(Value(item, mode), 1);
    EXPECT_EQ(Asked(), Requests{Read()});

    EXPECT_EQ(item->Refresh(99), S_OK);
    EXPECT_TRUE(Asked().empty());
    EXPECT_FALSE(Switch(item, enable));
    EXPECT_EQ(Value(item, duration), 500);
    EXPECT_EQ(Value(item, mode), 2) << "the mode is told anew";
    EXPECT_EQ(Asked(), Requests{Read()});
}

TEST_F(UVCStrobeTest, SwitchesAreNonZeroFields) {
    for (const std::uint32_t value : {0U, 1U, 0x80000000U}) {
        Strobe strobe;
        strobe.enable = value;
        strobe.polarity = value == 0 ? 1 : 0;
        const Item item = MakeWith(strobe);
        EXPECT_EQ(Switch(item, enable), value != 0);
        EXPECT_EQ(Switch(item, polarity), value == 0);
    }
}

TEST_F(UVCStrobeTest, RangesComeFromTheRecord) {
    const Item item = MakeWith(FixedMode());
    EXPECT_EQ(Range(item, duration), (RangeInfo{20, 7000, 70, 10}));
    EXPECT_EQ(Range(item, delay), (RangeInfo{5, 6000, 60, 10}));
    Strobe from_zero = FixedMode();
    from_zero.duration_min = 0;
    EXPECT_EQ(Range(MakeWith(from_zero), duration).min, 10);
    from_zero.duration_min = -3;
    EXPECT_EQ(Range(MakeWith(from_zero), duration).min, -3);
}

TEST_F(UVCStrobeTest, ModesAreThoseThatTheDeviceCanDo) {
    const Item item = MakeWith(FixedMode());
    EXPECT_EQ(Range(item, mode), (RangeInfo{0, 3, 1, 1}));
    EXPECT_EQ(ModeTexts(item), (std::vector<std::wstring>{L"constant", L"fixed duration", L"exposure"}));
    const Item restricted = MakeWith(Restricted(ExposureMode(), 4));
    EXPECT_EQ(Range(restricted, mode), (RangeInfo{0, 1, 0, 1}));
    EXPECT_EQ(ModeTexts(restricted), std::vector<std::wstring>{L"exposure"});
}

TEST_F(UVCStrobeTest, TextsAreAppended) {
    const Item item = MakeWith(Restricted(ExposureMode(), 4));
    std::vector<SharedString> strings{SharedString(L"before")};
    EXPECT_EQ(item->GetMapStrings(mode, strings), S_OK);
    EXPECT_EQ(TextsOf(strings), (std::vector<std::wstring>{L"before", L"exposure"}));
}

TEST_F(UVCStrobeTest, ModesAreCollectedOnce) {
    const Item item = MakeWith(Restricted(ExposureMode(), 4));
    EXPECT_EQ(ModeTexts(item).size(), 1U);
    Vendor(SELVANE_STROBE).bytes = FixedMode();
    EXPECT_EQ(item->Refresh(0), S_OK);
    EXPECT_EQ(ModeTexts(item).size(), 1U);
    EXPECT_EQ(ModeTexts(MakeWith(FixedMode())).size(), 3U);
}

TEST_F(UVCStrobeTest, WritesInConstantModeZeroTheTimes) {
    // A strobe in constant mode has no times of its own; those that a write brings are dropped.
    for (const InterfaceKey key : {enable, polarity}) {
        const Item item = MakeWith(ConstantMode());
        EXPECT_EQ(item->SetSwitch(key, true), S_OK);
        Strobe expected;
        (key == enable ? expected.enable : expected.polarity) = 1;
        EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    }
    Strobe follow;
    follow.follow_exposure = 1;
    const Item item = MakeWith(follow);
    EXPECT_EQ(item->SetSwitch(enable, false), S_OK);
    Strobe expected;
    expected.enable = 0;
    EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    EXPECT_EQ(item->SetValue(delay, 50), S_OK);
    EXPECT_EQ(item->SetValue(duration, 50), S_OK);
    EXPECT_EQ(Asked(), Requests(2, Write(expected)));
}

TEST_F(UVCStrobeTest, ChangeToConstantModeZeroesTheTimes) {
    Strobe strobe = ExposureMode();
    strobe.polarity = 1;
    const Item item = MakeWith(strobe);
    EXPECT_EQ(item->SetValue(mode, 0), S_OK);
    Strobe expected;
    expected.polarity = 1;
    EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    EXPECT_EQ(Value(item, mode), 0);
    EXPECT_EQ(Value(item, delay), 0);
    EXPECT_TRUE(Asked().empty()) << "what was stored is what the item knows";
}

TEST_F(UVCStrobeTest, ModesCarryFollowExposureAndADuration) {
    const Item item = MakeWith(ConstantMode());
    EXPECT_EQ(item->SetValue(mode, 2), S_OK);
    Strobe expected = ConstantMode();
    expected.follow_exposure = 1;
    expected.duration = 10;
    EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    EXPECT_EQ(item->SetValue(mode, 1), S_OK);
    expected.follow_exposure = 0;
    EXPECT_EQ(Asked(), Requests{Write(expected)});
    EXPECT_EQ(Value(item, mode), 1);
    EXPECT_EQ(Value(item, duration), 10);
}

TEST_F(UVCStrobeTest, AZeroDurationIsSentAsTen) {
    const Item item = MakeWith(ExposureMode(0));
    EXPECT_EQ(item->SetSwitch(polarity, true), S_OK);
    Strobe expected = ExposureMode(10);
    expected.polarity = 1;
    EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    EXPECT_EQ(item->SetValue(duration, 0), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(expected)});

    const Item fixed = MakeWith(FixedMode());
    EXPECT_EQ(fixed->SetValue(duration, 0), S_OK);
    EXPECT_EQ(Asked(), (Requests{Read(), Write(FixedMode(10))}));
}

TEST_F(UVCStrobeTest, ValuesAndSwitchesAreWrittenInTheWholeRecord) {
    const Item item = MakeWith(FixedMode());
    Strobe expected = FixedMode();
    expected.duration = 500;
    EXPECT_EQ(item->SetValue(duration, 500), S_OK);
    EXPECT_EQ(Asked(), (Requests{Read(), Write(expected)}));
    expected.delay = 7;
    EXPECT_EQ(item->SetValue(delay, 7), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(expected)});
    expected.enable = 0;
    EXPECT_EQ(item->SetSwitch(enable, false), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(expected)});
    expected.polarity = 1;
    EXPECT_EQ(item->SetSwitch(polarity, true), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(expected)});
    EXPECT_EQ(Value(item, duration), 500);
    EXPECT_EQ(Value(item, delay), 7);
    EXPECT_FALSE(Switch(item, enable));
    EXPECT_TRUE(Switch(item, polarity));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCStrobeTest, AModeThatIsNotOfferedChangesNothingButIsStored) {
    const Item item = MakeWith(Restricted(ExposureMode(), 4));
    for (const std::int32_t index : {1, 2, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(item->SetValue(mode, index), S_OK);
        EXPECT_EQ(Asked().back(), Write(Restricted(ExposureMode(), 4))) << index;
        EXPECT_EQ(Value(item, mode), 0);
    }
    EXPECT_EQ(item->SetValue(mode, 0), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(Restricted(ExposureMode(), 4))});
}

TEST_F(UVCStrobeTest, AnIndexBeyondTheModesKeepsTheMode) {
    const Item item = MakeWith(FixedMode());
    for (const std::int32_t index : {-1, 3, INT32_MAX}) {
        EXPECT_EQ(item->SetValue(mode, index), S_OK);
        EXPECT_EQ(Asked().back(), Write(FixedMode())) << index;
        EXPECT_EQ(Value(item, mode), 1);
    }
}

TEST_F(UVCStrobeTest, TheOnlyModeOfARestrictedStrobeCanBeSelected) {
    const Item item = MakeWith(Restricted(FixedMode(), 4));
    EXPECT_EQ(Value(item, mode), 1);
    EXPECT_EQ(item->SetValue(mode, 0), S_OK);
    EXPECT_EQ(Asked(), (Requests{Read(), Write(Restricted(ExposureMode(), 4))}));
    EXPECT_EQ(Value(item, mode), 0);
}

TEST_F(UVCStrobeTest, AfterARefusedWriteTheNextReadGoesToTheDriver) {
    const Item item = MakeWith(FixedMode());
    Vendor(SELVANE_STROBE).set_result = driver_refusal;
    EXPECT_EQ(item->SetValue(duration, 500), driver_refusal);
    (void)Asked();
    EXPECT_EQ(Value(item, duration), 300);
    EXPECT_EQ(Value(item, duration), 300);
    EXPECT_EQ(Asked(), Requests{Read()});

    EXPECT_EQ(item->SetSwitch(enable, false), driver_refusal);
    Vendor(SELVANE_STROBE).get_result = driver_failure;
    bool on = true;
    EXPECT_EQ(item->GetSwitch(enable, on), driver_failure);
    EXPECT_TRUE(on);
    Vendor(SELVANE_STROBE).get_result = S_OK;
    Vendor(SELVANE_STROBE).set_result = S_OK;
    EXPECT_TRUE(Switch(item, enable));
    EXPECT_EQ(item->SetValue(duration, 600), S_OK);
    EXPECT_EQ(Value(item, duration), 600);
}

TEST_F(UVCStrobeTest, AfterARefusedModeTheItemHasThatOfTheDevice) {
    const Item item = MakeWith(FixedMode());
    for (const std::int32_t refused : {0, 2}) {
        Vendor(SELVANE_STROBE).set_result = driver_refusal;
        EXPECT_EQ(item->SetValue(mode, refused), driver_refusal);
        EXPECT_EQ(Value(item, mode), 1);
        EXPECT_TRUE(Available(item, duration));
        EXPECT_TRUE(Available(item, delay));
        (void)Asked();

        Vendor(SELVANE_STROBE).set_result = S_OK;
        Strobe expected = FixedMode();
        expected.delay = 50 + refused;
        EXPECT_EQ(item->SetValue(delay, expected.delay), S_OK);
        EXPECT_EQ(Asked(), Requests{Write(expected)}) << "later writes carry the device's mode";
        Vendor(SELVANE_STROBE).bytes = FixedMode();
    }
}

TEST_F(UVCStrobeTest, ARefusedWriteOfAnyKindTellsTheModeAnew) {
    const auto refuse = [&](const auto& write) {
        const Item item = MakeWith(FixedMode());
        EXPECT_EQ(Value(item, mode), 1);
        Vendor(SELVANE_STROBE).set_result = driver_refusal;
        EXPECT_EQ(write(item), driver_refusal);
        Vendor(SELVANE_STROBE).set_result = S_OK;
        Vendor(SELVANE_STROBE).bytes = ExposureMode();
        EXPECT_EQ(Value(item, mode), 2) << "the device was changed meanwhile";
        EXPECT_FALSE(Available(item, duration));
    };
    refuse([](const Item& item) { return item->SetSwitch(enable, false); });
    refuse([](const Item& item) { return item->SetSwitch(polarity, true); });
    refuse([](const Item& item) { return item->SetValue(duration, 500); });
    refuse([](const Item& item) { return item->SetValue(delay, 50); });
    refuse([](const Item& item) { return item->SetValue(mode, 0); });
}

TEST_F(UVCStrobeTest, NothingIsWrittenWithoutARecord) {
    const Item item = MakeWith(FixedMode());
    Vendor(SELVANE_STROBE).get_result = driver_failure;
    RangeInfo range{1, 2, 3, 4};
    std::int32_t value = 5;
    std::vector<SharedString> strings;
    EXPECT_EQ(item->SetSwitch(enable, false), driver_failure);
    EXPECT_EQ(item->SetValue(mode, 0), driver_failure);
    EXPECT_EQ(item->SetValue(delay, 0), driver_failure);
    EXPECT_EQ(item->GetRange(mode, range), driver_failure);
    EXPECT_EQ(item->GetRange(duration, range), driver_failure);
    EXPECT_EQ(item->GetValue(mode, value), driver_failure);
    EXPECT_EQ(item->GetMapStrings(mode, strings), driver_failure);
    EXPECT_EQ(Asked(), Requests(7, Read()));
    EXPECT_EQ(range, (RangeInfo{1, 2, 3, 4}));
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(strings.empty());
    Vendor(SELVANE_STROBE).get_result = S_OK;
    EXPECT_EQ(Value(item, mode), 1) << "the mode that could not be set left no trace";
}

}  // namespace
}  // namespace item_tests
