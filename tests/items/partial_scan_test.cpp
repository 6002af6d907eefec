#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::MakePartialScan;

class PartialScanTest : public ItemTest {
protected:
    void OfferAll() {
        Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER).bytes = IntRecord(0);
        Vendor(SELVANE_PARTIAL_SCAN_X).bytes = IntRecord(16, 0, 0, 0, 640, 8);
        Vendor(SELVANE_PARTIAL_SCAN_Y).bytes = IntRecord(32, 0, 0, 0, 480, 4);
        Vendor(SELVANE_BINNING).bytes = IntRecord(1, 0, 0, 1, 4, 1);
    }
};

TEST_F(PartialScanTest, NeedsNothingButThePropertySet) {
    const Item item = Make(MakePartialScan);
    ASSERT_TRUE(item);
    for (const InterfaceKey key :
         std::initializer_list<InterfaceKey>{SELVANE_PARTIAL_SCAN_AUTO_CENTER, SELVANE_PARTIAL_SCAN_X,
                                             SELVANE_PARTIAL_SCAN_Y, SELVANE_BINNING, 0}) {
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
    for (const std::uint32_t key : {SELVANE_PARTIAL_SCAN_AUTO_CENTER, SELVANE_PARTIAL_SCAN_X,
                                    SELVANE_PARTIAL_SCAN_Y, SELVANE_BINNING}) {
        EXPECT_TRUE(item->SupportsInterface(key)) << key;
        EXPECT_EQ(Asked(), Requests{QueryVendor(key)});
    }
    EXPECT_FALSE(item->SupportsInterface(120));
    EXPECT_EQ(Asked(), Requests{QueryVendor(120)});
}

TEST_F(PartialScanTest, ThePropertyIsTheLow32BitsOfAKey) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    const InterfaceKey beyond = InterfaceKey{1} << 32 | SELVANE_PARTIAL_SCAN_Y;
    EXPECT_TRUE(item->SupportsInterface(beyond));
    EXPECT_EQ(Value(item, beyond), 32);
    EXPECT_EQ(item->SetValue(beyond, 6), S_OK);
    EXPECT_EQ(Asked(), (Requests{QueryVendor(SELVANE_PARTIAL_SCAN_Y), GetInt(SELVANE_PARTIAL_SCAN_Y),
                                 SetVendor(SELVANE_PARTIAL_SCAN_Y, IntRecord(6, 2))}));
}

TEST_F(PartialScanTest, EachKeyHasItsOperations) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    ExpectOnly(*item, SELVANE_PARTIAL_SCAN_AUTO_CENTER, op_switch | op_range);
    ExpectOnly(*item, SELVANE_PARTIAL_SCAN_X, op_range);
    ExpectOnly(*item, SELVANE_PARTIAL_SCAN_Y, op_range);
    ExpectOnly(*item, SELVANE_BINNING, op_range | op_map_strings);
    ExpectOnly(*item, 0, op_range);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(PartialScanTest, OffsetsGiveWayToCentering) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    for (const std::int32_t centered : {0, 1, 7}) {
        Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER).bytes = IntRecord(centered);
        EXPECT_EQ(Available(item, SELVANE_PARTIAL_SCAN_X), centered == 0);
        EXPECT_EQ(Available(item, SELVANE_PARTIAL_SCAN_Y), centered == 0);
        EXPECT_EQ(Asked(), Requests(2, GetInt(SELVANE_PARTIAL_SCAN_AUTO_CENTER)));
        EXPECT_TRUE(Available(item, SELVANE_PARTIAL_SCAN_AUTO_CENTER));
        EXPECT_TRUE(Available(item, SELVANE_BINNING));
        EXPECT_TRUE(Asked().empty());
    }
    // Not available is a matter of the controls: the item still writes.
    EXPECT_EQ(item->SetValue(SELVANE_PARTIAL_SCAN_X, 40), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_PARTIAL_SCAN_X, IntRecord(40, 2))});
}

TEST_F(PartialScanTest, AFailedReadOfCenteringCountsAsOff) {
    OfferAll();
    Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER).bytes = IntRecord(1);
    Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER).get_result = driver_failure;
    const Item item = Make(MakePartialScan);
    EXPECT_TRUE(Available(item, SELVANE_PARTIAL_SCAN_X));
    driver.RemoveProperty(VendorSet(), SELVANE_PARTIAL_SCAN_AUTO_CENTER);
    EXPECT_FALSE(item->SupportsInterface(SELVANE_PARTIAL_SCAN_AUTO_CENTER));
    EXPECT_TRUE(Available(item, SELVANE_PARTIAL_SCAN_X));
    EXPECT_TRUE(Available(item, SELVANE_PARTIAL_SCAN_Y));
}

TEST_F(PartialScanTest, CenteringIsASwitch) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    for (const std::int32_t value : {0, 1, -1}) {
        Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER).bytes = IntRecord(value);
        EXPECT_EQ(Switch(item, SELVANE_PARTIAL_SCAN_AUTO_CENTER), value != 0);
    }
    EXPECT_EQ(Asked(), Requests(3, GetInt(SELVANE_PARTIAL_SCAN_AUTO_CENTER)));
    EXPECT_EQ(item->SetSwitch(SELVANE_PARTIAL_SCAN_AUTO_CENTER, true), S_OK);
    EXPECT_EQ(item->SetSwitch(SELVANE_PARTIAL_SCAN_AUTO_CENTER, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER, IntRecord(1, 2)),
                                 SetVendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER, IntRecord(0, 2))}));
}

TEST_F(PartialScanTest, OffsetsGoInStepsOfFour) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    EXPECT_EQ(Range(item, SELVANE_PARTIAL_SCAN_X), (RangeInfo{0, 640, 8, 4}));
    EXPECT_EQ(Range(item, SELVANE_PARTIAL_SCAN_Y), (RangeInfo{0, 480, 4, 4}));
    EXPECT_EQ(Range(item, SELVANE_BINNING), (RangeInfo{1, 4, 1, 1}));
    EXPECT_EQ(Range(item, SELVANE_PARTIAL_SCAN_AUTO_CENTER), (RangeInfo{0, 0, 0, 1}));
    EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_PARTIAL_SCAN_X), GetInt(SELVANE_PARTIAL_SCAN_Y),
                                 GetInt(SELVANE_BINNING), GetInt(SELVANE_PARTIAL_SCAN_AUTO_CENTER)}));
    EXPECT_EQ(Value(item, SELVANE_PARTIAL_SCAN_X), 16);
    EXPECT_EQ(Value(item, SELVANE_PARTIAL_SCAN_Y), 32);
    EXPECT_EQ(item->SetValue(SELVANE_PARTIAL_SCAN_Y, 6), S_OK);
    EXPECT_EQ(Asked(), (Requests{GetInt(SELVANE_PARTIAL_SCAN_X), GetInt(SELVANE_PARTIAL_SCAN_Y),
                                 SetVendor(SELVANE_PARTIAL_SCAN_Y, IntRecord(6, 2))}));
}

TEST_F(PartialScanTest, BinningMapsOnlyTheFactorFour) {
    OfferAll();
    const Item item = Make(MakePartialScan);
    const std::pair<std::int32_t, std::int32_t> reads[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 3}, {5, 5}};
    for (const auto& [device, shown] : reads) {
        Vendor(SELVANE_BINNING).bytes = IntRecord(device);
        EXPECT_EQ(Value(item, SELVANE_BINNING), shown) << device;
    }
    (void)Asked();
    const std::pair<std::int32_t, std::int32_t> writes[] = {{0, 0}, {1, 1}, {2, 2}, {3, 4}, {4, 4}};
    for (const auto& [shown, device] : writes) {
        EXPECT_EQ(item->SetValue(SELVANE_BINNING, shown), S_OK);
        EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_BINNING, IntRecord(device, 2))}) << shown;
    }
    // Offsets are not mapped.
    Vendor(SELVANE_PARTIAL_SCAN_X).bytes = IntRecord(4);
    EXPECT_EQ(Value(item, SELVANE_PARTIAL_SCAN_X), 4);
    (void)Asked();
    EXPECT_EQ(item->SetValue(SELVANE_PARTIAL_SCAN_X, 3), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_PARTIAL_SCAN_X, IntRecord(3, 2))});
}

TEST_F(PartialScanTest, BinningTexts) {
    const Item item = Make(MakePartialScan);
    std::vector<SharedString> strings{SharedString(L"before")};
    EXPECT_EQ(item->GetMapStrings(SELVANE_BINNING, strings), S_OK);
    EXPECT_EQ(TextsOf(strings), (std::vector<std::wstring>{L"before", L"1", L"2", L"4"}));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(PartialScanTest, FailuresAreHandedOn) {
    const Item item = Make(MakePartialScan);
    ExpectFailures(*item, {{op_get_range, SELVANE_PARTIAL_SCAN_X, test_support::property_unknown},
                           {op_get_value, SELVANE_BINNING, test_support::property_unknown},
                           {op_get_switch, SELVANE_PARTIAL_SCAN_AUTO_CENTER, test_support::property_unknown},
                           {op_set_switch, SELVANE_PARTIAL_SCAN_AUTO_CENTER, test_support::property_unknown},
                           {op_set_value, SELVANE_PARTIAL_SCAN_X, test_support::property_unknown}});
}

}  // namespace
}  // namespace item_tests
