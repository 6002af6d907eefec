#include "tests/items/item_test.h"
#include "tests/support/not_empty.h"

#include <stdexcept>

namespace item_tests {
namespace {

using ZELAdapterHelper::CZELItemDataBase;
using ZELAdapterHelper::ElementsOf;
using ZELAdapterHelper::InterfacesOf;
using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::StaticItemTable;

constexpr std::uint32_t vendor_ids[] = {SELVANE_WHITE_BALANCE_BLUE,
                                        SELVANE_WHITE_BALANCE_RED,
                                        SELVANE_AUTO_EXPOSURE_REFERENCE,
                                        SELVANE_WHITE_BALANCE_ONE_PUSH,
                                        SELVANE_EXPOSURE_TICKS,
                                        SELVANE_TRIGGER,
                                        SELVANE_PARTIAL_SCAN_X,
                                        SELVANE_PARTIAL_SCAN_Y,
                                        SELVANE_GPIO,
                                        SELVANE_FOCUS_ONE_PUSH,
                                        SELVANE_STROBE,
                                        SELVANE_EXPOSURE_FLOAT,
                                        SELVANE_AUTO_MAX_TICKS,
                                        SELVANE_AUTO_MAX_AUTOMATIC,
                                        SELVANE_WHITE_BALANCE_GREEN,
                                        SELVANE_PARTIAL_SCAN_AUTO_CENTER,
                                        SELVANE_BINNING,
                                        SELVANE_SOFTWARE_TRIGGER,
                                        SELVANE_TRIGGER_DELAY,
                                        SELVANE_EXPOSURE_MICROSECONDS,
                                        SELVANE_AUTO_MAX_MICROSECONDS,
                                        SELVANE_GAIN,
                                        SELVANE_FOCUS_AUTO_MIN,
                                        SELVANE_FOCUS_AUTO_MAX,
                                        SELVANE_AUTO_MAX_FLOAT,
                                        SELVANE_FOCUS_REGION_TOP,
                                        SELVANE_FOCUS_REGION_LEFT,
                                        SELVANE_FOCUS_REGION_BOTTOM,
                                        SELVANE_FOCUS_REGION_RIGHT,
                                        SELVANE_FOCUS_REGION_ENABLE};

// Every item of the table over a driver that has everything, and one driver call after the other that goes
// wrong.
class ItemFaultTest : public ItemTest {
protected:
    // Runs start from the same device, so that each makes the same calls.
    void OfferAll() {
        for (const std::uint32_t id : vendor_ids) {
            Vendor(id).bytes = Bytes(88, 1);
        }
        driver.Property(Guid(L"{8CBCF1C6-53C3-4D79-8EDB-C0646575DAC8}"), 0).bytes = Bytes(48, 1);
        driver.CameraControl()[4] = {0, 10, 1, 5, 3, 5, 1};
        driver.CameraControl()[6] = {0, 10, 1, 5, 3, 5, 1};
        driver.VideoProcAmp()[7] = {0, 10, 1, 5, 3, 5, 1};
        driver.VideoProcAmp()[9] = {0, 10, 1, 5, 3, 5, 1};
    }

    // What a page and its user do with an item, and more: every operation of every key.
    void UseItem(const ItemRecord& record) {
        OfferAll();
        CZELItemDataBase* made = nullptr;
        record.factory(&made, &driver, record);
        const Item item = Item::attach(made);
        if (!item) {
            return;
        }
        for (const auto& element : ElementsOf(record)) {
            for (const auto& entry : InterfacesOf(element)) {
                UseKey(*item, entry.key);
            }
        }
        UseKey(*item, 99);
    }

    static void UseKey(CZELItemDataBase& item, InterfaceKey key) {
        (void)item.SupportsInterface(key);
        bool on = false;
        (void)item.IsAvailable(key, on);
        (void)item.IsReadOnly(key, on);
        ReadKey(item, key);
        item.SetSwitch(key, true);
        item.SetValue(key, 1);
        item.SetAbsValue(key, 0.5);
        item.Push(key);
        ReadKey(item, key);
        item.Refresh(key);
        ReadKey(item, key);
    }

    // A getter that fails leaves its out value alone.
    static void ReadKey(CZELItemDataBase& item, InterfaceKey key) {
        const RangeInfo no_range{-91, -92, -93, -94};
        const AbsRangeInfo no_abs_range{-91, -92, -93};
        RangeInfo range = no_range;
        AbsRangeInfo abs_range = no_abs_range;
        std::int32_t value = -95;
        double abs_value = -96;
        std::vector<SharedString> strings;
        for (const bool before : {false, true}) {
            bool on = before;
            EXPECT_TRUE(SUCCEEDED(item.GetSwitch(key, on)) || on == before);
        }
        EXPECT_TRUE(SUCCEEDED(item.GetRange(key, range)) || range == no_range);
        EXPECT_TRUE(SUCCEEDED(item.GetValue(key, value)) || value == -95);
        EXPECT_TRUE(SUCCEEDED(item.GetAbsRange(key, abs_range)) || abs_range == no_abs_range);
        EXPECT_TRUE(SUCCEEDED(item.GetAbsValue(key, abs_value)) || abs_value == -96);
        EXPECT_TRUE(SUCCEEDED(item.GetMapStrings(key, strings)) || strings.empty());
    }

    std::size_t CallsOf(const ItemRecord& record) {
        const std::size_t before = driver.Calls().size();
        UseItem(record);
        return driver.Calls().size() - before;
    }
};

TEST_F(ItemFaultTest, AnyCallMayFail) {
    for (const ItemRecord& record : NotEmpty(StaticItemTable())) {
        const std::size_t calls = CallsOf(record);
        ASSERT_GT(calls, 10U);
        for (std::size_t n = 1; n <= calls; ++n) {
            driver.FailCall(n, driver_failure);
            UseItem(record);
            ASSERT_EQ(driver.OutstandingReferences(), 0) << n;
        }
        driver.FailCall(0, S_OK);
    }
}

TEST_F(ItemFaultTest, AnyCallMayThrow) {
    for (const ItemRecord& record : NotEmpty(StaticItemTable())) {
        const std::size_t calls = CallsOf(record);
        const std::int32_t live_objects = ZELAdapterHelper::CUnknown::LiveObjects();
        for (std::size_t n = 1; n <= calls; ++n) {
            std::size_t left = n;
            driver.before_call = [&left](const DriverRequest&) {
                if (--left == 0) {
                    throw std::runtime_error("driver");
                }
            };
            EXPECT_THROW(UseItem(record), std::runtime_error) << n;
            driver.before_call = nullptr;
            ASSERT_EQ(driver.OutstandingReferences(), 0) << n;
            ASSERT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), live_objects) << n;
        }
    }
}

TEST_F(ItemFaultTest, AnyReadMayClaimMoreThanItWrote) {
    for (const std::uint32_t id : vendor_ids) {
        Vendor(id).get = [](test_support::GetArguments& arguments) {
            arguments.returned = 0xFFFFFFFFU;
            return S_OK;
        };
    }
    for (const ItemRecord& record : NotEmpty(StaticItemTable())) {
        UseItem(record);
    }
    const Item gain = Make(ZELAdapterHelper::MakeUVCGain);
    EXPECT_EQ(AbsValue(gain, 1), 0.0);
    const Item gpio = Make(ZELAdapterHelper::MakeUVCGPIO);
    EXPECT_EQ(Range(gpio, 2), (RangeInfo{0, 0, 0, 1}));
}

TEST_F(ItemFaultTest, FactoriesDeclineAFilterWithNothing) {
    ScriptedFilter empty;
    empty.has_property_set = false;
    for (const ItemRecord& record : NotEmpty(StaticItemTable())) {
        for (IUnknown* filter : {static_cast<IUnknown*>(&empty), static_cast<IUnknown*>(nullptr)}) {
            int something = 0;
            auto* made = reinterpret_cast<CZELItemDataBase*>(&something);
            record.factory(&made, filter, record);
            EXPECT_EQ(made, nullptr);
        }
    }
}

}  // namespace
}  // namespace item_tests
