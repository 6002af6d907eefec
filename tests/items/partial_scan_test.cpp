#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::MakePartialScan;

class PartialScanTest : public ItemTest {
protected:
    void OfferAll() {
        Vendor(211).bytes = IntRecord(0);
        Vendor(118).bytes = IntRecord(16, 0, 0, 0, 640, 8);
        Vendor(119).bytes = IntRecord(32, 0, 0, 0, 480, 4);
        Vendor(212).bytes = IntRecord(1, 0, 0, 1, 4, 1);
    }
};

TEST_F(PartialScanTest, NeedsNothingButThePropertySet) {
    const Item item = Make(MakePartialScan);
    ASSERT_TRUE(item);
    for (const InterfaceKey key : {211U, 118U, 119U, 212U, 0U}) {
        EXPECT_FALSE(item->SupportsInterface(key)) << key;
    }
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakePartialScan));
}

TEST_F(PartialScanTest, FactoryTestsNoProperty) {
    OfferAll();
    ZELAdapterHelper::CZELItemDataBase* made = nullptr;
    MakePartialScan(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    const Item item = Item::attach(made);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(PartialScanTest, SupportsTheKeysThatTheDriverHasAsProperties) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    for (const std::uint32_t key : {211U, 118U, 119U, 212U}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
        EXPECT_EQ(Asked(), Requests{QueryVendor(key)});
    }
    EXPECT_FALSE(item->SupportsInterface(120));
    EXPECT_EQ(Asked(), Requests{QueryVendor(120)});
}

TEST_F(PartialScanTest, EachKeyHasItsOperations) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    ExpectOnly(*item, 211, op_switch | op_range);
    ExpectOnly(*item, 118, op_range);
    ExpectOnly(*item, 119, op_range);
    ExpectOnly(*item, 212, op_range | op_map_strings);
    ExpectOnly(*item, 0, op_range);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(PartialScanTest, OffsetsGiveWayToCentering) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    for (const std::int32_t centered : {0, 1, 7}) {
        Vendor(211).bytes = IntRecord(centered);
        EXPECT_EQ(Available(item, 118), centered == 0);
        EXPECT_EQ(Available(item, 119), centered == 0);
        EXPECT_EQ(Asked(), Requests(2, GetInt(211)));
        EXPECT_TRUE(Available(item, 211));
        EXPECT_TRUE(Available(item, 212));
        EXPECT_TRUE(Asked().empty());
    }
    // Not available is a matter of the controls: the item still writes.
    EXPECT_EQ(item->SetValue(118, 40), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(118, IntRecord(40, 2))});
}

TEST_F(PartialScanTest, AFailedReadOfCenteringCountsAsOff) {
    OfferAll();
    Vendor(211).bytes = IntRecord(1);
    Vendor(211).get_result = driver_failure;
    const Item item = Make(MakePartialScan);
    EXPECT_TRUE(Available(item, 118));
    driver.RemoveProperty(VendorSet(), 211);
    EXPECT_FALSE(item->SupportsInterface(211));
    EXPECT_TRUE(Available(item, 118));
    EXPECT_TRUE(Available(item, 119));
}

TEST_F(PartialScanTest, CenteringIsASwitch) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    for (const std::int32_t value : {0, 1, -1}) {
        Vendor(211).bytes = IntRecord(value);
        EXPECT_EQ(Switch(item, 211), value != 0);
    }
    EXPECT_EQ(Asked(), Requests(3, GetInt(211)));
    EXPECT_EQ(item->SetSwitch(211, true), S_OK);
    EXPECT_EQ(item->SetSwitch(211, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(211, IntRecord(1, 2)), SetVendor(211, IntRecord(0, 2))}));
}

TEST_F(PartialScanTest, OffsetsGoInStepsOfFour) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    EXPECT_EQ(Range(item, 118), (RangeInfo{0, 640, 8, 4}));
    EXPECT_EQ(Range(item, 119), (RangeInfo{0, 480, 4, 4}));
    EXPECT_EQ(Range(item, 212), (RangeInfo{1, 4, 1, 1}));
    EXPECT_EQ(Range(item, 211), (RangeInfo{0, 0, 0, 1}));
    EXPECT_EQ(Asked(), (Requests{GetInt(118), GetInt(119), GetInt(212), GetInt(211)}));
    EXPECT_EQ(Value(item, 118), 16);
    EXPECT_EQ(Value(item, 119), 32);
    EXPECT_EQ(item->SetValue(119, 6), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(118), GetInt(119), SetVendor(119, IntRecord(6, 2))}));
}

TEST_F(PartialScanTest, BinningMapsOnlyTheFactorFour) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    const std::pair<std::int32_t, std::int32_t> reads[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 3}, {5, 5}};
    for (const auto& [device, shown] : reads) {
        Vendor(212).bytes = IntRecord(device);
        EXPECT_EQ(Value(item, 212), shown) << device;
    }
    (void)Asked();
    const std::pair<std::int32_t, std::int32_t> writes[] = {{0, 0}, {1, 1}, {2, 2}, {3, 4}, {4, 4}};
    for (const auto& [shown, device] : writes) {
        EXPECT_EQ(item->SetValue(212, shown), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(212, IntRecord(device, 2))}) << shown;
    }
    // Offsets are not mapped.
    Vendor(118).bytes = IntRecord(4);
    EXPECT_EQ(Value(item, 118), 4);
    (void)Asked();
    EXPECT_EQ(item->SetValue(118, 3), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(118, IntRecord(3, 2))});
}

TEST_F(PartialScanTest, BinningTexts) {
    const Item item = Make(MakePartialScan);
    std::vector<SharedString> strings{SharedString(L"before")};
    EXPECT_EQ(item->GetMapStrings(212, strings), S_OK);
    EXPECT_EQ(TextsOf(strings), (std::vector<std::wstring>{L"before", L"1", L"2", L"4"}));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(PartialScanTest, FailuresAreHandedOn) {
    const Item item = Make(MakePartialScan);
    RangeInfo range{1, 2, 3, 4};
    std::int32_t value = 5;
    bool on = true;
    EXPECT_EQ(item->GetRange(118, range), test_support::property_unknown);
    EXPECT_EQ(item->GetValue(212, value), test_support::property_unknown);
    EXPECT_EQ(item->GetSwitch(211, on), test_support::property_unknown);
    EXPECT_EQ(item->SetSwitch(211, on), test_support::property_unknown);
    EXPECT_EQ(item->SetValue(118, 4), test_support::property_unknown);
    EXPECT_EQ(range, (RangeInfo{1, 2, 3, 4}));
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(on);
}

}  // namespace
}  // namespace item_tests
