#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::MakeUVCTrigger;

constexpr std::uint32_t off = 1U << 2;
constexpr std::uint32_t polarity = 1U << 24;
constexpr std::uint32_t operation = 1U << 25;

class UVCTriggerTest : public ItemTest {
protected:
    void OfferAll(std::uint32_t flags = off, std::uint32_t capabilities = polarity | operation) {
        Vendor(SELVANE_TRIGGER).bytes = IntRecord(11, flags, capabilities, 12, 13, 14);
        Vendor(SELVANE_TRIGGER).Put(0, std::uint8_t{0xAB});
        Vendor(SELVANE_SOFTWARE_TRIGGER).bytes = IntRecord(0);
        Vendor(SELVANE_TRIGGER_DELAY).bytes = FloatRecord(12.5F, 3.1F, 1000000.0F, 0.5F);
    }
    // The record of the driver with other flags.
    Bytes WithFlags(std::uint32_t flags) {
        ScriptedProperty copy = Vendor(SELVANE_TRIGGER);
        return copy.Put(28, flags).bytes;
    }
};

TEST_F(UVCTriggerTest, NeedsNothingButThePropertySet) {
    ExpectNeedsNoProperty(MakeUVCTrigger, {0, 1, 2, 3, 4, 5});
}

TEST_F(UVCTriggerTest, SupportsWhatTheDriverHas) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const InterfaceKey key : {0U, 1U, 3U, 4U, 5U}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
    }
    EXPECT_EQ(Asked(),
              (Requests{QueryVendor(SELVANE_TRIGGER), QueryVendor(SELVANE_TRIGGER), GetInt(SELVANE_TRIGGER),
                        QueryVendor(SELVANE_SOFTWARE_TRIGGER), GetInt(SELVANE_SOFTWARE_TRIGGER),
                        QueryVendor(SELVANE_TRIGGER_DELAY), GetFloat(SELVANE_TRIGGER_DELAY),
                        QueryVendor(SELVANE_TRIGGER), GetInt(SELVANE_TRIGGER)}));
    EXPECT_FALSE(item->SupportsInterface(2));
    EXPECT_FALSE(item->SupportsInterface(6));
    EXPECT_FALSE(item->SupportsInterface(0x100000000));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCTriggerTest, PolarityAndOperationNeedTheirCapability) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::uint32_t capabilities : {0U, polarity, operation, ~(polarity | operation)}) {
        OfferAll(polarity | operation, capabilities);
        EXPECT_TRUE(item->SupportsInterface(0));
        EXPECT_EQ(item->SupportsInterface(1), (capabilities & polarity) != 0);
        EXPECT_EQ(item->SupportsInterface(5), (capabilities & operation) != 0);
    }
}

TEST_F(UVCTriggerTest, SupportNeedsReadablePropertiesExceptForEnable) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::uint32_t id : {SELVANE_TRIGGER, SELVANE_SOFTWARE_TRIGGER, SELVANE_TRIGGER_DELAY}) {
        Vendor(id).get_result = driver_failure;
    }
    EXPECT_TRUE(item->SupportsInterface(0));
    for (const InterfaceKey key : {1U, 3U, 4U, 5U}) {
        EXPECT_FALSE(item->SupportsInterface(key)) << key;
    }
    OfferAll();
    for (const std::uint32_t id : {SELVANE_TRIGGER, SELVANE_SOFTWARE_TRIGGER, SELVANE_TRIGGER_DELAY}) {
        Vendor(id).get_result = S_OK;
        Vendor(id).support = 0;
    }
    for (const InterfaceKey key : {0U, 1U, 3U, 4U, 5U}) {
        EXPECT_FALSE(item->SupportsInterface(key)) << key;
    }
}

TEST_F(UVCTriggerTest, EachKeyHasItsOperations) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    constexpr unsigned always = op_push | op_abs_unit;
    ExpectOnly(*item, 0, op_switch | always);
    ExpectOnly(*item, 1, op_switch | always);
    ExpectOnly(*item, 2, always);
    ExpectOnly(*item, 3, always);
    ExpectOnly(*item, 4, op_abs | always);
    ExpectOnly(*item, 5, op_range | op_map_strings | always);
    ExpectOnly(*item, 6, always);
    ExpectOnly(*item, 0x100000000, always);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCTriggerTest, SoftwareTriggerIsAvailableWhileTheTriggerIsOn) {
    OfferAll(off);
    const Item item = Make(MakeUVCTrigger);
    EXPECT_FALSE(Available(item, 3));
    EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_TRIGGER)});
    OfferAll(0);
    EXPECT_TRUE(Available(item, 3));
    (void)Asked();
    for (const InterfaceKey key : {0U, 1U, 2U, 4U, 5U, 6U}) {
        EXPECT_TRUE(Available(item, key)) << key;
    }
    EXPECT_TRUE(Asked().empty());
    Vendor(SELVANE_TRIGGER).get_result = driver_failure;
    bool available = false;
    EXPECT_EQ(item->IsAvailable(3, available), driver_failure);
    EXPECT_FALSE(available);
}

TEST_F(UVCTriggerTest, SwitchesAreBitsOfTheFlags) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::uint32_t flags : {0U, off, polarity, off | polarity, ~off, ~polarity, 3U}) {
        OfferAll(flags);
        EXPECT_EQ(Switch(item, 0), (flags & off) == 0) << flags;
        EXPECT_EQ(Switch(item, 1), (flags & polarity) != 0) << flags;
        EXPECT_EQ(Asked(), Requests(2, GetInt(SELVANE_TRIGGER)));
    }
}

TEST_F(UVCTriggerTest, EnableRewritesTheThreeLowBits) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::uint32_t flags : {0U, 7U, 2U | polarity, 0xFFFFFFFFU, off | operation}) {
        for (const bool on : {true, false}) {
            OfferAll(flags);
            const Bytes expected = WithFlags((flags & ~7U) | (on ? 0 : off));
            EXPECT_EQ(item->SetSwitch(0, on), S_OK);
            EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_TRIGGER), SetVendor(SELVANE_TRIGGER, expected)}))
                << flags << on;
        }
    }
}

TEST_F(UVCTriggerTest, PolarityKeepsEverythingElse) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::uint32_t flags : {0U, 7U, polarity, 0xFFFFFFFFU}) {
        for (const bool on : {true, false}) {
            OfferAll(flags);
            const Bytes expected = WithFlags(on ? flags | polarity : flags & ~polarity);
            EXPECT_EQ(item->SetSwitch(1, on), S_OK);
            EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_TRIGGER), SetVendor(SELVANE_TRIGGER, expected)}))
                << flags << on;
        }
    }
}

TEST_F(UVCTriggerTest, OperationIsABitOfTheFlags) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    EXPECT_EQ(Range(item, 5), (RangeInfo{0, 1, 0, 1}));
    EXPECT_TRUE(Asked().empty());
    for (const std::uint32_t flags : {0U, 7U, operation, 0xFFFFFFFFU}) {
        OfferAll(flags);
        EXPECT_EQ(Value(item, 5), (flags & operation) != 0 ? 1 : 0);
        EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_TRIGGER)});
        for (const std::int32_t value : {1, 0}) {
            OfferAll(flags);
            const Bytes expected = WithFlags(value == 1 ? flags | operation : flags & ~operation);
            EXPECT_EQ(item->SetValue(5, value), S_OK);
            EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_TRIGGER), SetVendor(SELVANE_TRIGGER, expected)}))
                << flags << value;
        }
    }
}

TEST_F(UVCTriggerTest, UnknownOperationIsRefusedAndNotWritten) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const std::int32_t value : {2, -1, INT32_MAX}) {
        EXPECT_EQ(item->SetValue(5, value), E_INVALIDARG);
        EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_TRIGGER)});
    }
}

TEST_F(UVCTriggerTest, UnknownOperationFailsAsTheDriverDoes) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    Vendor(SELVANE_TRIGGER).get_result = E_ACCESSDENIED;
    EXPECT_EQ(item->SetValue(5, 2), E_ACCESSDENIED);
    EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_TRIGGER)});
}

TEST_F(UVCTriggerTest, OperationTexts) {
    const Item item = Make(MakeUVCTrigger);
    std::vector<SharedString> strings{SharedString(L"before")};
    EXPECT_EQ(item->GetMapStrings(5, strings), S_OK);
    EXPECT_EQ(TextsOf(strings), (std::vector<std::wstring>{L"before", L"Default", L"Global Reset Release"}));
}

TEST_F(UVCTriggerTest, PushFiresWhateverItsKey) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    for (const InterfaceKey key : {3U, 0U, 99U}) {
        EXPECT_EQ(item->Push(key), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_SOFTWARE_TRIGGER, IntRecord(0, 8))});
    }
    Vendor(SELVANE_SOFTWARE_TRIGGER).set_result = driver_refusal;
    EXPECT_EQ(item->Push(3), driver_refusal);
}

TEST_F(UVCTriggerTest, DelayIsAFloatProperty) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    EXPECT_EQ(AbsRange(item, 4), (AbsRangeInfo{static_cast<double>(3.1F), 1000000.0, 0.5}));
    EXPECT_EQ(AbsValue(item, 4), 12.5);
    EXPECT_EQ(item->SetAbsValue(4, 0.1), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetFloat(SELVANE_TRIGGER_DELAY), GetFloat(SELVANE_TRIGGER_DELAY),
                                 SetVendor(SELVANE_TRIGGER_DELAY, FloatRecord(0.1F, 0, 0, 0, 2))}));
}

TEST_F(UVCTriggerTest, UnitIsMicrosecondsOnALinearScaleForEveryKey) {
    const Item item = Make(MakeUVCTrigger);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U, 5U, 77U}) {
        SharedString unit;
        std::int32_t scale = 77;
        EXPECT_EQ(item->GetAbsUnit(key, unit, scale), S_OK);
        EXPECT_EQ(unit.View(), L"\u00B5s");
        EXPECT_EQ(scale, 0);
    }
}

TEST_F(UVCTriggerTest, NothingIsWrittenWhenTheRecordCannotBeRead) {
    OfferAll();
    const Item item = Make(MakeUVCTrigger);
    Vendor(SELVANE_TRIGGER).get_result = driver_failure;
    Vendor(SELVANE_TRIGGER_DELAY).get_result = driver_failure;
    bool on = true;
    std::int32_t value = 5;
    AbsRangeInfo range{1, 2, 3};
    double delay = 6;
    EXPECT_EQ(item->SetSwitch(0, true), driver_failure);
    EXPECT_EQ(item->SetSwitch(1, true), driver_failure);
    EXPECT_EQ(item->SetValue(5, 1), driver_failure);
    EXPECT_EQ(item->GetSwitch(0, on), driver_failure);
    EXPECT_EQ(item->GetSwitch(1, on), driver_failure);
    EXPECT_EQ(item->GetValue(5, value), driver_failure);
    EXPECT_EQ(Asked(), Requests(6, GetInt(SELVANE_TRIGGER)));
    EXPECT_EQ(item->GetAbsRange(4, range), driver_failure);
    EXPECT_EQ(item->GetAbsValue(4, delay), driver_failure);
    EXPECT_TRUE(on);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(range, (AbsRangeInfo{1, 2, 3}));
    EXPECT_EQ(delay, 6);
    Vendor(SELVANE_TRIGGER).get_result = S_OK;
    Vendor(SELVANE_TRIGGER).set_result = driver_refusal;
    EXPECT_EQ(item->SetSwitch(0, true), driver_refusal);
}

}  // namespace
}  // namespace item_tests
