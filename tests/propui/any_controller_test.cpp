// What is the same with the controllers of integers, of physical values and of exposure times.

#include "tests/propui/controller_fixture.h"

#include <type_traits>

namespace ZELPropUI {
namespace {

template <class Controller>
class AnyController : public ControllerTest<Controller> {
protected:
    AnyController() {
        this->At().range = {0, 10, 0, 1};
        this->At().abs_range = {0, 10, 0};
    }
};

struct ControllerName {
    template <class Controller>
    static std::string GetName(int) {
        if (std::is_same_v<Controller, CRangeSliderController>) return "Range";
        return std::is_same_v<Controller, CAbsValSliderController> ? "PhysicalValue" : "ExposureTime";
    }
};
using Controllers =
    testing::Types<CRangeSliderController, CAbsValSliderController, CAbsValExposureSliderController>;
TYPED_TEST_SUITE(AnyController, Controllers, ControllerName);

TYPED_TEST(AnyController, TellsWhatTheItemTells) {
    EXPECT_TRUE(this->controller_->IsAvailable());
    EXPECT_FALSE(this->controller_->IsReadOnly());
    this->At().available = false;
    this->At().read_only = true;
    EXPECT_FALSE(this->controller_->IsAvailable());
    EXPECT_TRUE(this->controller_->IsReadOnly());
}

TYPED_TEST(AnyController, IsNeitherWhereTheItemFailsToTell) {
    this->At().read_only = true;
    this->script_.results["IsAvailable"] = E_FAIL;
    this->script_.results["IsReadOnly"] = E_FAIL;
    EXPECT_FALSE(this->controller_->IsAvailable());
    EXPECT_FALSE(this->controller_->IsReadOnly());
}

TYPED_TEST(AnyController, HandsOnARefusedWrite) {
    this->script_.results["SetValue"] = E_INVALIDARG;
    this->script_.results["SetAbsValue"] = E_INVALIDARG;
    EXPECT_FALSE(this->controller_->SetText(L"5"));
    EXPECT_FALSE(this->controller_->SetPosition(5));
    this->script_.results.clear();
    EXPECT_TRUE(this->controller_->SetText(L"5"));
    EXPECT_TRUE(this->controller_->SetPosition(5));
}

TYPED_TEST(AnyController, TurnsExceptionsIntoFailures) {
    this->script_.throwing = {"GetRange",    "GetValue",    "SetValue",    "GetAbsRange", "GetAbsUnit",
                              "GetAbsValue", "SetAbsValue", "IsAvailable", "IsReadOnly"};
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::wstring text;
    const bool asks_for_positions = std::is_same_v<TypeParam, CRangeSliderController>;
    EXPECT_EQ(this->controller_->GetPositionRange(low, high), !asks_for_positions);
    EXPECT_FALSE(this->controller_->GetPosition(low));
    EXPECT_FALSE(this->controller_->SetPosition(0));
    EXPECT_FALSE(this->controller_->GetText(text));
    EXPECT_FALSE(this->controller_->SetText(L"5"));
    EXPECT_FALSE(this->controller_->IsAvailable());
    EXPECT_FALSE(this->controller_->IsReadOnly());
}

TYPED_TEST(AnyController, CountsReferences) {
    EXPECT_EQ(this->controller_->AddRef(), 2U);
    EXPECT_EQ(this->controller_->AddRef(), 3U);
    EXPECT_EQ(this->controller_->Release(), 2U);
    EXPECT_EQ(this->controller_->Release(), 1U);
    EXPECT_EQ(this->script_.living_items, 1);
    EXPECT_EQ(this->controller_.detach()->Release(), 0U);
    EXPECT_EQ(this->script_.living_items, 0);
}

}  // namespace
}  // namespace ZELPropUI
