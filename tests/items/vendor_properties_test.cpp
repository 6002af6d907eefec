#include "items/vendor_properties.h"

#include "tests/items/item_test.h"

#include <cmath>
#include <limits>

namespace item_tests {
namespace {

using namespace ZELAdapterHelper;

class VendorPropertiesTest : public ItemTest {};

TEST_F(VendorPropertiesTest, SupportNeedsSuccessAndOneOfTheTwoBits) {
    for (const std::uint32_t support : {0U, 1U, 2U, 3U, 4U, 5U, 0xFFFFFFFCU}) {
        Vendor(SELVANE_EXPOSURE_TICKS).support = support;
        EXPECT_EQ(PropertySupported(driver, SELVANE_EXPOSURE_TICKS), (support & 3) != 0) << support;
    }
    Vendor(SELVANE_EXPOSURE_TICKS).support = 3;
    Vendor(SELVANE_EXPOSURE_TICKS).support_result = driver_failure;
    EXPECT_FALSE(PropertySupported(driver, SELVANE_EXPOSURE_TICKS));
    EXPECT_FALSE(PropertySupported(driver, 110));
    EXPECT_EQ(Asked().back(), QueryVendor(110));
}

TEST_F(VendorPropertiesTest, GetPropertyHandsOverAZeroRecordAsInstanceAndData) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = IntRecord(-5, 6, 7, -8, 9, 10);
    wire::integer_record record;
    std::fill_n(reinterpret_cast<std::uint8_t*>(&record), sizeof(record), std::uint8_t{0xCC});
    EXPECT_EQ(GetProperty(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, record), S_OK);
    EXPECT_EQ(Asked(), Requests{GetInt(SELVANE_AUTO_EXPOSURE_REFERENCE)});
    EXPECT_EQ(record.value, -5);
    EXPECT_EQ(record.flags, 6U);
    EXPECT_EQ(record.capabilities, 7U);
    EXPECT_EQ(record.min, -8);
    EXPECT_EQ(record.max, 9);
    EXPECT_EQ(record.default_value, 10);
}

TEST_F(VendorPropertiesTest, GetFloatPropertyHandsOverAZeroRecordAsInstanceAndData) {
    Vendor(SELVANE_EXPOSURE_FLOAT).bytes = FloatRecord(0.5F, 0.25F, 4.0F, 1.0F, 3, 5);
    wire::float_record record;
    std::fill_n(reinterpret_cast<std::uint8_t*>(&record), sizeof(record), std::uint8_t{0xCC});
    EXPECT_EQ(GetFloatProperty(driver, SELVANE_EXPOSURE_FLOAT, record), S_OK);
    EXPECT_EQ(Asked(), Requests{GetFloat(SELVANE_EXPOSURE_FLOAT)});
    EXPECT_EQ(record.value, 0.5F);
    EXPECT_EQ(record.min, 0.25F);
    EXPECT_EQ(record.max, 4.0F);
    EXPECT_EQ(record.default_value, 1.0F);
    EXPECT_EQ(record.flags, 3U);
    EXPECT_EQ(record.capabilities, 5U);
}

TEST_F(VendorPropertiesTest, AShortAnswerReadsAsZeroBehind) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = Block(28).Put(24, std::int32_t{77});
    RangeInfo range{1, 2, 3, 4};
    std::int32_t value = 0;
    EXPECT_EQ(GetPropertyRange(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, range), S_OK);
    EXPECT_EQ(range, (RangeInfo{0, 0, 0, 1}));
    EXPECT_EQ(GetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, value), S_OK);
    EXPECT_EQ(value, 77);
}

TEST_F(VendorPropertiesTest, RangeHasStepOne) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = IntRecord(-5, 0, 0x7FFFFFFF, -100, 200, 50);
    RangeInfo range;
    EXPECT_EQ(GetPropertyRange(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, range), S_OK);
    EXPECT_EQ(range, (RangeInfo{-100, 200, 50, 1}));
}

TEST_F(VendorPropertiesTest, WritesAreZeroButForValueAndManualFlag) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE);
    EXPECT_EQ(SetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, -3), S_OK);
    EXPECT_EQ(SetPropertySwitch(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, true), S_OK);
    EXPECT_EQ(SetPropertySwitch(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, false), S_OK);
    EXPECT_EQ(Asked(), (Requests{SetVendor(SELVANE_AUTO_EXPOSURE_REFERENCE, IntRecord(-3, 2)),
                                 SetVendor(SELVANE_AUTO_EXPOSURE_REFERENCE, IntRecord(1, 2)),
                                 SetVendor(SELVANE_AUTO_EXPOSURE_REFERENCE, IntRecord(0, 2))}));
    Vendor(SELVANE_EXPOSURE_FLOAT);
    EXPECT_EQ(SetFloatValue(driver, SELVANE_EXPOSURE_FLOAT, 0.125F), S_OK);
    EXPECT_EQ(Asked(), Requests{SetVendor(SELVANE_EXPOSURE_FLOAT, FloatRecord(0.125F, 0, 0, 0, 2))});
}

TEST_F(VendorPropertiesTest, WholeRecordsGoOutAsTheyAre) {
    Vendor(SELVANE_TRIGGER);
    Vendor(SELVANE_EXPOSURE_FLOAT);
    wire::integer_record record = {};
    record.header[0] = 0xAB;
    record.value = 1;
    record.flags = 2;
    record.capabilities = 3;
    record.min = 4;
    record.max = 5;
    record.default_value = 6;
    EXPECT_EQ(SetProperty(driver, SELVANE_TRIGGER, record), S_OK);
    wire::float_record float_record = {};
    float_record.value = 1.0F;
    float_record.capabilities = 9;
    float_record.unused[7] = 0xCD;
    EXPECT_EQ(SetFloatProperty(driver, SELVANE_EXPOSURE_FLOAT, float_record), S_OK);

    Block integer(48);
    integer.Put(0, std::uint8_t{0xAB});
    for (std::int32_t field = 1; field <= 6; ++field) {
        integer.Put(static_cast<std::size_t>(20 + 4 * field), field);
    }
    const Block floating = Block(56).Put(24, 1.0F).Put(44, 9U).Put(55, std::uint8_t{0xCD});
    EXPECT_EQ(Asked(),
              (Requests{SetVendor(SELVANE_TRIGGER, integer), SetVendor(SELVANE_EXPOSURE_FLOAT, floating)}));
}

TEST_F(VendorPropertiesTest, FailuresAreHandedOnAndLeaveOutValuesAlone) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).get_result = driver_failure;
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).set_result = driver_refusal;
    RangeInfo range{1, 2, 3, 4};
    AbsRangeInfo abs_range{1, 2, 3};
    std::int32_t value = 5;
    double abs_value = 6;
    bool on = true;
    EXPECT_EQ(GetPropertyRange(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, range), driver_failure);
    EXPECT_EQ(GetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, value), driver_failure);
    EXPECT_EQ(GetPropertySwitch(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, on), driver_failure);
    EXPECT_EQ(GetScaledRange(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 10.0, abs_range), driver_failure);
    EXPECT_EQ(GetScaledValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 10.0, abs_value), driver_failure);
    EXPECT_EQ(GetFloatRange(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, abs_range), driver_failure);
    EXPECT_EQ(GetFloatValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, abs_value), driver_failure);
    EXPECT_EQ(SetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 1), driver_refusal);
    EXPECT_EQ(SetScaledValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 10.0, 1.0), driver_refusal);
    EXPECT_EQ(SetFloatValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 1.0F), driver_refusal);
    EXPECT_EQ(range, (RangeInfo{1, 2, 3, 4}));
    EXPECT_EQ(abs_range, (AbsRangeInfo{1, 2, 3}));
    EXPECT_EQ(value, 5);
    EXPECT_EQ(abs_value, 6);
    EXPECT_TRUE(on);
}

TEST_F(VendorPropertiesTest, OtherSuccessesAreHandedOn) {
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).bytes = IntRecord(7);
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).get_result = S_FALSE;
    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE).set_result = S_FALSE;
    std::int32_t value = 0;
    EXPECT_EQ(GetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, value), S_FALSE);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(SetPropertyValue(driver, SELVANE_AUTO_EXPOSURE_REFERENCE, 1), S_FALSE);
}

TEST_F(VendorPropertiesTest, ADriverThatWritesIntoItsInputHarmsNoRecord) {
    class Scribbler final : public IKsPropertySet {
    public:
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
        ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
        ULONG STDMETHODCALLTYPE Release() override { return 1; }
        HRESULT STDMETHODCALLTYPE Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID data, DWORD size) override {
            std::fill_n(static_cast<std::uint8_t*>(data), size, std::uint8_t{0xEE});
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE Get(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD, DWORD*) override {
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID, DWORD, DWORD*) override { return S_OK; }
    } scribbler;
    wire::integer_record record = {};
    record.value = 42;
    EXPECT_EQ(SetProperty(scribbler, SELVANE_AUTO_EXPOSURE_REFERENCE, record), S_OK);
    EXPECT_EQ(record.value, 42);
}

TEST(TruncationTest, CutsTowardZero) {
    EXPECT_EQ(TruncateToInt32(1.9), 1);
    EXPECT_EQ(TruncateToInt32(-1.9), -1);
    EXPECT_EQ(TruncateToInt32(0.99999), 0);
    EXPECT_EQ(TruncateToInt32(-0.5), 0);
    EXPECT_EQ(TruncateToInt32(0.29 * 100.0), 28);
}

TEST(TruncationTest, WhatDoesNotFitGivesTheSmallestInteger) {
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(TruncateToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(TruncateToInt32(2147483647.999), 2147483647);
    EXPECT_EQ(TruncateToInt32(2147483648.0), smallest);
    EXPECT_EQ(TruncateToInt32(-2147483648.0), smallest);
    EXPECT_EQ(TruncateToInt32(-2147483648.999), smallest);
    EXPECT_EQ(TruncateToInt32(-2147483649.0), smallest);
    EXPECT_EQ(TruncateToInt32(1e300), smallest);
    EXPECT_EQ(TruncateToInt32(std::numeric_limits<double>::infinity()), smallest);
    EXPECT_EQ(TruncateToInt32(-std::numeric_limits<double>::infinity()), smallest);
    EXPECT_EQ(TruncateToInt32(std::nan("")), smallest);
}

}  // namespace
}  // namespace item_tests
