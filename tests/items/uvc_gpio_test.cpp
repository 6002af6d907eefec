#include "tests/items/item_test.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::MakeUVCGPIO;

Bytes gpio_record(std::int32_t input, std::int32_t output, std::int32_t max_input, std::int32_t max_output) {
    return Block(40).Put(24, input).Put(28, output).Put(32, max_input).Put(36, max_output);
}

class UVCGPIOTest : public ItemTest {
protected:
    void Offer(std::int32_t input, std::int32_t output, std::int32_t max_input = 3,
               std::int32_t max_output = 7) {
        Vendor(SELVANE_GPIO).bytes = gpio_record(input, output, max_input, max_output);
    }
    static DriverRequest Read() { return Get(VendorSet(), SELVANE_GPIO, 40); }
    static DriverRequest Write(std::int32_t output) {
        return SetVendor(SELVANE_GPIO, gpio_record(0, output, 0, 0));
    }
};

TEST_F(UVCGPIOTest, NeedsItsProperty) {
    EXPECT_FALSE(Make(MakeUVCGPIO));
    Offer(0, 0);
    EXPECT_TRUE(Make(MakeUVCGPIO));
    driver.has_property_set = false;
    EXPECT_FALSE(Make(MakeUVCGPIO));
}

TEST_F(UVCGPIOTest, SupportsTheDirectionsThatHavePins) {
    Offer(0, 0);
    const Item item = Make(MakeUVCGPIO);
    for (const std::int32_t inputs : {0, 3, -1}) {
        for (const std::int32_t outputs : {0, 7}) {
            Offer(0, 0, inputs, outputs);
            EXPECT_EQ(item->SupportsInterface(0), inputs != 0);
            EXPECT_EQ(item->SupportsInterface(1), inputs != 0);
            EXPECT_EQ(item->SupportsInterface(2), outputs != 0);
            EXPECT_EQ(item->SupportsInterface(3), outputs != 0);
            EXPECT_EQ(Asked(), Requests(4, Read()));
            EXPECT_FALSE(item->SupportsInterface(4));
            EXPECT_FALSE(item->SupportsInterface(0x100000000));
            (void)Asked();
        }
    }
    Vendor(SELVANE_GPIO).get_result = driver_failure;
    for (const InterfaceKey key : {0U, 1U, 2U, 3U}) {
        EXPECT_FALSE(item->SupportsInterface(key));
    }
}

TEST_F(UVCGPIOTest, EachKeyHasItsOperations) {
    Offer(0, 0);
    const Item item = Make(MakeUVCGPIO);
    ExpectOnly(*item, 0, op_get_range | op_get_value);
    ExpectOnly(*item, 1, op_push);
    ExpectOnly(*item, 2, op_range);
    ExpectOnly(*item, 3, op_push);
    ExpectOnly(*item, 4, op_none);
    ExpectOnly(*item, 0x100000000, op_none);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGPIOTest, OnlyTheInputIsReadOnlyAndAllIsAvailable) {
    Offer(0, 0);
    const Item item = Make(MakeUVCGPIO);
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U}) {
        bool read_only = key != 0;
        EXPECT_EQ(item->IsReadOnly(key, read_only), S_OK);
        EXPECT_EQ(read_only, key == 0) << key;
        EXPECT_TRUE(Available(item, key));
    }
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGPIOTest, RangesAreThoseOfTheDirections) {
    Offer(1, 2);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(Range(item, 0), (RangeInfo{0, 3, 0, 1}));
    EXPECT_EQ(Range(item, 2), (RangeInfo{0, 7, 0, 1}));
    EXPECT_EQ(Asked(), Requests(2, Read()));
    Vendor(SELVANE_GPIO).get_result = driver_failure;
    RangeInfo range{1, 2, 3, 4};
    EXPECT_EQ(item->GetRange(0, range), driver_failure);
    EXPECT_EQ(range, (RangeInfo{1, 2, 3, 4}));
}

TEST_F(UVCGPIOTest, ValuesAreThoseOfTheLastRead) {
    Offer(2, 5);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(Value(item, 0), 0);
    EXPECT_EQ(Value(item, 2), 0);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(item->Push(1), S_OK);
    EXPECT_EQ(Asked(), Requests{Read()});
    Offer(3, 6);
    EXPECT_EQ(Value(item, 0), 2);
    EXPECT_EQ(Value(item, 2), 5);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(UVCGPIOTest, OutputReachesThePinsAtWrite) {
    Offer(2, 5);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(item->SetValue(2, 4), S_OK);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(Value(item, 2), 4);
    EXPECT_EQ(item->Push(3), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(4)});
}

TEST_F(UVCGPIOTest, ReadOverwritesAnOutputThatWasNotWritten) {
    Offer(2, 5);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(item->SetValue(2, 4), S_OK);
    EXPECT_EQ(item->Push(1), S_OK);
    EXPECT_EQ(Value(item, 2), 5);
    (void)Asked();
    EXPECT_EQ(item->Push(3), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(5)});
}

TEST_F(UVCGPIOTest, KeptValuesOutliveFailures) {
    Offer(2, 5);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(item->Push(1), S_OK);
    EXPECT_EQ(item->SetValue(2, 4), S_OK);
    Offer(3, 6);
    Vendor(SELVANE_GPIO).get_result = driver_failure;
    Vendor(SELVANE_GPIO).set_result = driver_refusal;
    EXPECT_EQ(item->Push(1), driver_failure);
    EXPECT_EQ(item->Push(3), driver_refusal);
    EXPECT_EQ(Value(item, 0), 2);
    EXPECT_EQ(Value(item, 2), 4);
    Vendor(SELVANE_GPIO).set_result = S_OK;
    (void)Asked();
    EXPECT_EQ(item->Push(3), S_OK);
    EXPECT_EQ(Asked(), Requests{Write(4)});
}

TEST_F(UVCGPIOTest, RefreshForgetsNothing) {
    Offer(2, 5);
    const Item item = Make(MakeUVCGPIO);
    EXPECT_EQ(item->Push(1), S_OK);
    EXPECT_EQ(item->Refresh(0), S_OK);
    EXPECT_EQ(Value(item, 0), 2);
    EXPECT_EQ(Value(item, 2), 5);
}

}  // namespace
}  // namespace item_tests
