// What both classes of the item Exposure do alike.

#include "tests/items/exposure_fixture.h"

#include <type_traits>

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;

struct OverIntegers {
    static constexpr ZELAdapterHelper::ItemFactory make = ZELAdapterHelper::MakeUVCExposure;
};
struct OverFloats {
    static constexpr ZELAdapterHelper::ItemFactory make = ZELAdapterHelper::MakeExposureItem;
};

template <class Over>
class ExposureTest : public ExposureFixture {
protected:
    void Offer() {
        if (std::is_same_v<Over, OverFloats>) {
            OfferFloat();
        } else {
            OfferTicks();
        }
    }
    Item MakeIt() { return Make(Over::make); }
};

struct OverName {
    template <class Over>
    static std::string GetName(int) {
        return std::is_same_v<Over, OverFloats> ? "Floats" : "Integers";
    }
};
using Overs = testing::Types<OverIntegers, OverFloats>;
TYPED_TEST_SUITE(ExposureTest, Overs, OverName);

TYPED_TEST(ExposureTest, EachKeyHasItsOperations) {
    this->Offer();
    this->OfferCamera(3);
    const Item item = this->MakeIt();
    (void)this->Asked();
    ExpectOnly(*item, 0, op_range | op_abs_unit);
    ExpectOnly(*item, 1, op_abs | op_abs_unit);
    ExpectOnly(*item, 2, op_switch | op_abs_unit);
    ExpectOnly(*item, 3, op_range | op_abs_unit);
    ExpectOnly(*item, 4, op_range | op_abs_unit);
    ExpectOnly(*item, 5, op_abs | op_abs_unit);
    ExpectOnly(*item, 6, op_switch | op_abs_unit);
    ExpectOnly(*item, 7, op_abs_unit);
    ExpectOnly(*item, 0x100000000, op_abs_unit);
    EXPECT_TRUE(this->Asked().empty());
}

TYPED_TEST(ExposureTest, RawValueOverTheCameraControl) {
    this->Offer();
    this->OfferCamera(3, 1);
    const Item item = this->MakeIt();
    EXPECT_EQ(this->Range(item, 0), (RangeInfo{-13, 0, -6, 1}));
    EXPECT_EQ(this->Value(item, 0), -5);
    EXPECT_EQ(this->Asked(),
              (Requests{Control(Kind::camera_range, exposure), Control(Kind::camera_get, exposure)}));
    for (const std::int32_t flags : {1, 2, 0x12}) {
        this->Camera().flags = flags;
        EXPECT_EQ(item->SetValue(0, -3), S_OK);
        EXPECT_EQ(this->Asked(), (Requests{Control(Kind::camera_get, exposure),
                                           Control(Kind::camera_set, exposure, -3, flags)}));
    }
}

TYPED_TEST(ExposureTest, AutoReferenceIsAProperty) {
    this->Offer();
    const Item item = this->MakeIt();
    EXPECT_EQ(this->Range(item, 3), (RangeInfo{0, 255, 100, 1}));
    EXPECT_EQ(this->Value(item, 3), 128);
    EXPECT_EQ(item->SetValue(3, 90), S_OK);
    EXPECT_EQ(this->Asked(),
              (Requests{GetInt(SELVANE_AUTO_EXPOSURE_REFERENCE), GetInt(SELVANE_AUTO_EXPOSURE_REFERENCE),
                        SetVendor(SELVANE_AUTO_EXPOSURE_REFERENCE, IntRecord(90, 2))}));
}

TYPED_TEST(ExposureTest, SecondAutoSwitchIsAProperty) {
    this->Offer();
    const Item item = this->MakeIt();
    for (const std::int32_t value : {0, 1, -1, 4}) {
        this->Vendor(SELVANE_AUTO_MAX_AUTOMATIC).bytes = IntRecord(value);
        EXPECT_EQ(this->Switch(item, 6), value != 0);
    }
    EXPECT_EQ(this->Asked(), Requests(4, GetInt(SELVANE_AUTO_MAX_AUTOMATIC)));
    EXPECT_EQ(item->SetSwitch(6, true), S_OK);
    EXPECT_EQ(item->SetSwitch(6, false), S_OK);
    EXPECT_EQ(this->Asked(), (Requests{SetVendor(SELVANE_AUTO_MAX_AUTOMATIC, IntRecord(1, 2)),
                                       SetVendor(SELVANE_AUTO_MAX_AUTOMATIC, IntRecord(0, 2))}));
    this->driver.RemoveProperty(VendorSet(), SELVANE_AUTO_MAX_AUTOMATIC);
    EXPECT_FALSE(this->MakeIt()->SupportsInterface(6));
}

TYPED_TEST(ExposureTest, UnitIsSecondsAndTheScaleOfTheTimesLogarithmic) {
    this->Offer();
    const Item item = this->MakeIt();
    for (const InterfaceKey key : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        SharedString unit;
        std::int32_t scale = 77;
        EXPECT_EQ(item->GetAbsUnit(key, unit, scale), S_OK);
        EXPECT_EQ(unit.View(), L"sec");
        EXPECT_EQ(scale, key == 1 || key == 5 ? 1 : 77) << key;
    }
    EXPECT_TRUE(this->Asked().empty());
}

}  // namespace
}  // namespace item_tests
