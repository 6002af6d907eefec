#include "tests/propui/page_fixture.h"

namespace ZELPropUI {
namespace {

constexpr InterfaceType as_switch = InterfaceType::Switch;
constexpr InterfaceType as_range = InterfaceType::Range;
constexpr InterfaceType as_button = InterfaceType::Button;
constexpr InterfaceType as_map = InterfaceType::MapStrings;
constexpr InterfaceType as_abs = InterfaceType::AbsoluteValue;
constexpr auto unknown_type = static_cast<InterfaceType>(5);

// The controls of one element at 100,50. Keys 1 to 5 are there.
class ElementControls : public PageTest {
protected:
    ElementControls() {
        for (InterfaceKey key = 1; key <= 5; ++key) At(key).supported = true;
    }

    bool Place(const std::vector<InterfaceEntry>& interfaces, const wchar_t* label = L"",
               const GUID& item_id = IdOf(1)) {
        const ElementRecord element = Element(IdOf(50), L"Name", interfaces);
        const ItemRecord record = Item(nullptr, 1, item_id, L"Item", {element});
        const auto item = platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(Script()));
        return PageLayout(PageSources{}, &canvas_)
            .CreateElementControls(record, element, *item, x_, 50, label);
    }

    ISliderController* ControllerOf(std::size_t placed) { return canvas_.placed.at(placed).controller.get(); }

    int x_ = 100;
};

TEST_F(ElementControls, ShowASwitch) {
    EXPECT_TRUE(Place({{1, as_switch}}, L"Label"));
    EXPECT_EQ(canvas_.Lines(), Lines{"switch 100,50 49x23 #1 Name"});
    EXPECT_EQ(x_, 154);
}

TEST_F(ElementControls, ShowAButton) {
    EXPECT_TRUE(Place({{1, as_button}}, L"Label"));
    EXPECT_EQ(canvas_.Lines(), Lines{"button 100,50 49x23 #1 Name"});
    EXPECT_EQ(x_, 154);
}

TEST_F(ElementControls, ShowARange) {
    EXPECT_TRUE(Place({{1, as_range}}, L"Label"));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 100,50 110x23 Label", "slider 215,50 140x23",
                                      "edit 360,50 60x22", "spin 420,50 10x22"}));
    EXPECT_EQ(x_, 440);
    EXPECT_EQ(Script().TakeLog(), Lines{"SupportsInterface 1"});
    EXPECT_NE(dynamic_cast<CRangeSliderController*>(ControllerOf(1)), nullptr);
}

TEST_F(ElementControls, ShareOneController) {
    for (const InterfaceType type : {as_range, as_abs}) {
        canvas_.placed.clear();
        EXPECT_TRUE(Place({{1, type}}));
        ASSERT_EQ(canvas_.placed.size(), 3U);
        EXPECT_EQ(ControllerOf(0), ControllerOf(1));
        EXPECT_EQ(ControllerOf(0), ControllerOf(2));
        ControllerOf(0)->AddRef();
        EXPECT_EQ(ControllerOf(0)->Release(), 3U);  // the canvas holds the only references
    }
}

TEST_F(ElementControls, ControlTheKeyThatWasChosen) {
    EXPECT_TRUE(Place({{3, as_range}}));
    EXPECT_TRUE(ControllerOf(0)->SetText(L"5"));
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 3", "SetValue 3"}));
}

TEST_F(ElementControls, ShowACombo) {
    EXPECT_TRUE(Place({{1, as_map}}, L"Label"));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 100,50 110x23 Label", "combo 215,50 225x150 #1"}));
    EXPECT_EQ(x_, 445);
}

TEST_F(ElementControls, WidenAComboForItsTexts) {
    At(1).strings = {L"short", std::wstring(40, L'x'), L"medium"};
    EXPECT_TRUE(Place({{1, as_map}}));
    EXPECT_EQ(canvas_.Lines(), Lines{"combo 100,50 240x150 #1"});
    EXPECT_EQ(x_, 345);
}

TEST_F(ElementControls, IgnoreTheTextsOfAFailure) {
    At(1).strings = {std::wstring(40, L'x')};
    Script().results["GetMapStrings"] = E_FAIL;
    EXPECT_TRUE(Place({{1, as_map}}));
    Script().throwing = {"GetMapStrings"};
    EXPECT_TRUE(Place({{1, as_map}}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"combo 100,50 225x150 #1", "combo 330,50 225x150 #1"}));
}

TEST_F(ElementControls, ShowAnAbsoluteValue) {
    At(1).abs_range = {0, 10, 0};
    At(1).unit = L"dB";
    EXPECT_TRUE(Place({{1, as_abs}}, L"Label"));
    // "10.00 dB" is 48 wide, 58 with its margin: less than an edit.
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 100,50 110x23 Label", "slider 215,50 140x23",
                                      "edit 360,50 60x22", "spin 420,50 10x22"}));
    EXPECT_EQ(x_, 440);
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 1", "GetAbsRange 1", "GetAbsUnit 1"}));
    EXPECT_NE(dynamic_cast<CAbsValSliderController*>(ControllerOf(1)), nullptr);
}

struct WidthRow {
    double min;
    double max;
    const wchar_t* unit;
    int edit;
};

TEST_F(ElementControls, TakeRoomForTheWidestValueFromTheSlider) {
    const WidthRow rows[] = {
        {-1000, 5, L"ms", 76},                       // "-1000.00 ms"
        {5, 10000, L"ms", 76},                       // "10000.00 ms"
        {-100, 99, L"sec", 76},                      // "-100.00 sec"
        {0, 1, L"sec", 60},                          // "0.00 sec" and its margin are 58
        {0, 10, L"sec", 64},                         // "10.00 sec"
        {-9, 9, L"s", 60},                           // "-9.00 s"
        {9, 9, L"abcdefghijklmnopqrstuvwxyz", 124},  // cut to 19 characters
        {0, 1, L"", 60},                             // "0.00 "
        {10, -9.9, L"half", 70},                     // "-9.90 half"
        {9.99, -9.99, L"\u00B5m/s", 70},             // "-9.99 um/s"
    };
    for (const WidthRow& row : rows) {
        canvas_.placed.clear();
        x_ = 100;
        At(1).abs_range = {row.min, row.max, 0};
        At(1).unit = row.unit;
        EXPECT_TRUE(Place({{1, as_abs}}));
        ASSERT_EQ(canvas_.placed.size(), 3U);
        EXPECT_EQ(canvas_.placed[1].rect.width, row.edit) << row.unit;
        EXPECT_EQ(canvas_.placed[0].rect.width, 200 - row.edit) << row.unit;
        EXPECT_EQ(x_, 325) << row.unit;
    }
}

TEST_F(ElementControls, MeasureTheMiddleToo) {
    At(1).abs_range = {-0.5, 0.26, 0};
    At(1).unit = L"sec";
    canvas_.widths = {{L"-0.12 sec", 80}};
    EXPECT_TRUE(Place({{1, as_abs}}));
    EXPECT_EQ(canvas_.placed[1].rect.width, 90);
    EXPECT_EQ(canvas_.measured, (std::vector<std::wstring>{L"-0.50 sec", L"0.26 sec", L"-0.12 sec"}));
}

TEST_F(ElementControls, LetTheSliderShrinkBelowNothing) {
    At(1).abs_range = {0, 1, 0};
    At(1).unit = std::wstring(30, L'x');
    canvas_.character_width = 20;
    EXPECT_TRUE(Place({{1, as_abs}}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"slider 100,50 -190x23", "edit -85,50 390x22", "spin 305,50 10x22"}));
    EXPECT_EQ(x_, 325);
}

TEST_F(ElementControls, ScaleTheMarginOfAText) {
    canvas_.dots_per_inch_x = 192;
    At(1).abs_range = {0, 1000, 0};
    At(1).unit = L"second";
    canvas_.character_width = 12;
    EXPECT_TRUE(Place({{1, as_abs}}));
    // "1000.00 second" is 168 wide, the margin 20, an edit 120.
    EXPECT_EQ(canvas_.Lines(), (Lines{"slider 100,50 212x23", "edit 322,50 188x22", "spin 510,50 20x22"}));
}

TEST_F(ElementControls, CompareTheTextWithTheScaledEdit) {
    canvas_.dots_per_inch_x = 120;
    At(1).abs_range = {0, 10, 0};
    At(1).unit = L"sec";
    EXPECT_TRUE(Place({{1, as_abs}}));  // 54 and 13 are more than 60 and less than 75
    EXPECT_EQ(canvas_.placed[1].rect.width, 75);
    EXPECT_EQ(canvas_.placed[0].rect.width, 175);
}

TEST_F(ElementControls, AreNoneWithoutLimits) {
    Script().results["GetAbsRange"] = E_FAIL;
    EXPECT_FALSE(Place({{1, as_abs}}, L"Label"));
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 1", "GetAbsRange 1"}));
    Script().throwing = {"GetAbsRange"};
    EXPECT_FALSE(Place({{1, as_abs}}, L"Label"));
    EXPECT_TRUE(canvas_.placed.empty());
    EXPECT_EQ(x_, 100);
}

TEST_F(ElementControls, DoWithoutAUnit) {
    At(1).abs_range = {0, 10, 0};
    At(1).unit = L"a unit of some length";
    Script().results["GetAbsUnit"] = E_FAIL;
    EXPECT_TRUE(Place({{1, as_abs}}));
    Script().throwing = {"GetAbsUnit"};
    EXPECT_TRUE(Place({{1, as_abs}}));
    ASSERT_EQ(canvas_.placed.size(), 6U);
    EXPECT_EQ(canvas_.placed[1].rect.width, 60);
    EXPECT_EQ(canvas_.placed[4].rect.width, 60);
}

TEST_F(ElementControls, KnowExposureByItemAndUnit) {
    struct {
        GUID item;
        const wchar_t* unit;
        bool exposure;
    } const rows[] = {
        {ZELAdapterHelper::item_exposure, L"sec", true},  {ZELAdapterHelper::item_exposure, L"ms", false},
        {ZELAdapterHelper::item_exposure, L"Sec", false}, {ZELAdapterHelper::item_exposure, L"sec ", false},
        {ZELAdapterHelper::item_exposure, L"", false},    {IdOf(1), L"sec", false},
    };
    for (const auto& row : rows) {
        canvas_.placed.clear();
        At(1).unit = row.unit;
        EXPECT_TRUE(Place({{1, as_abs}}, L"", row.item));
        const bool exposure = dynamic_cast<CAbsValExposureSliderController*>(ControllerOf(0)) != nullptr;
        EXPECT_EQ(exposure, row.exposure) << row.unit;
    }
}

TEST_F(ElementControls, ShowTheRichestSupportedInterface) {
    const std::vector<InterfaceEntry> all = {
        {1, as_switch}, {2, as_range}, {3, as_button}, {4, as_map}, {5, as_abs}};
    const char* const first_lines[] = {"switch 100,50 49x23 #1 Name", "slider 100,50 140x23",
                                       "button 100,50 49x23 #3 Name", "combo 100,50 225x150 #4",
                                       "slider 100,50 140x23"};
    for (InterfaceKey richest = 5; richest >= 1; --richest) {
        canvas_.placed.clear();
        x_ = 100;
        EXPECT_TRUE(Place(all));
        EXPECT_EQ(canvas_.Lines().front(), first_lines[richest - 1]);
        At(richest).supported = false;
    }
    EXPECT_FALSE(Place(all));
}

TEST_F(ElementControls, DoNotAskForWhatIsNotRicher) {
    EXPECT_TRUE(Place({{3, as_button}, {1, as_switch}, {2, as_button}, {4, as_map}, {5, as_range}}));
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 3", "SupportsInterface 4", "GetMapStrings 4"}));
}

TEST_F(ElementControls, TakeTheFirstOfEqualInterfaces) {
    EXPECT_TRUE(Place({{2, as_button}, {1, as_button}}));
    EXPECT_EQ(canvas_.Lines(), Lines{"button 100,50 49x23 #2 Name"});
}

TEST_F(ElementControls, AskForUnknownTypesAndTakeNone) {
    EXPECT_TRUE(Place({{1, as_switch}, {2, unknown_type}, {3, as_button}}));
    EXPECT_EQ(canvas_.Lines(), Lines{"button 100,50 49x23 #3 Name"});
    EXPECT_EQ(Script().TakeLog(),
              (Lines{"SupportsInterface 1", "SupportsInterface 2", "SupportsInterface 3"}));
    EXPECT_FALSE(Place({{2, unknown_type}}));
}

TEST_F(ElementControls, WidenALabelForItsText) {
    EXPECT_TRUE(Place({{1, as_map}}, L"Nineteen characters"));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 100,50 114x23 Nineteen characters", "combo 219,50 225x150 #1"}));
}

}  // namespace
}  // namespace ZELPropUI
