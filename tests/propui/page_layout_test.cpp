#include "tests/propui/page_fixture.h"

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::element_automatic;
using ZELAdapterHelper::element_one_push;
using ZELAdapterHelper::element_value;
using ZELAdapterHelper::element_white_balance_blue;
using ZELAdapterHelper::item_white_balance;

constexpr InterfaceType as_switch = InterfaceType::Switch;
constexpr InterfaceType as_range = InterfaceType::Range;
constexpr InterfaceType as_button = InterfaceType::Button;
constexpr InterfaceType as_abs = InterfaceType::AbsoluteValue;

// Keys 1 to 9 are there; tests take away what they want missing.
class PageRows : public PageTest {
protected:
    PageRows() {
        for (InterfaceKey key = 1; key <= 9; ++key) At(key).supported = true;
    }
    bool BuildItem(const std::vector<ElementRecord>& elements, const GUID& id = IdOf(1),
                   bool measure_only = false) {
        built_in_ = {Item(nullptr, 1, id, L"Item", elements)};
        return Build(measure_only);
    }
};

TEST_F(PageRows, PutsValueAutomaticAndOnePushOnTheHeadRow) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_range}}),
                           Element(element_automatic, L"Auto", {{2, as_switch}}),
                           Element(element_one_push, L"One Push", {{3, as_button}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "slider 135,18 140x23",
                                   "edit 280,18 60x22",
                                   "spin 340,18 10x22",
                                   "switch 360,18 49x23 #2 Auto",
                                   "button 414,18 73x23 #3 One Push",
                               }));
}

TEST_F(PageRows, KeepsTheOrderOfTheHeadRowWhateverTheRecordSays) {
    EXPECT_TRUE(BuildItem({Element(element_one_push, L"One Push", {{3, as_button}}),
                           Element(IdOf(50), L"Other", {{4, as_switch}}),
                           Element(element_automatic, L"Auto", {{2, as_switch}}),
                           Element(element_value, L"Value", {{1, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 55x23 #1 Value",
                                   "switch 195,18 49x23 #2 Auto",
                                   "button 249,18 73x23 #3 One Push",
                                   "switch 40,48 55x23 #4 Other",
                               }));
}

TEST_F(PageRows, ShowsOnlyTheFirstElementOfAHeadId) {
    EXPECT_TRUE(BuildItem({Element(element_automatic, L"Auto", {{1, as_switch}}),
                           Element(element_automatic, L"Again", {{2, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Item", "switch 135,18 49x23 #1 Auto"}));
}

TEST_F(PageRows, GivesAnItemItsRowWithoutHeadElements) {
    EXPECT_TRUE(BuildItem(
        {Element(IdOf(50), L"Delay", {{1, as_range}}), Element(IdOf(51), L"Length", {{2, as_range}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "label 40,48 110x23 Delay",
                                   "slider 155,48 140x23",
                                   "edit 300,48 60x22",
                                   "spin 360,48 10x22",
                                   "label 40,78 110x23 Length",
                                   "slider 155,78 140x23",
                                   "edit 300,78 60x22",
                                   "spin 360,78 10x22",
                               }));
}

TEST_F(PageRows, WidensALabelForALongName) {
    built_in_ = {
        Item(nullptr, 1, IdOf(1), L"Nineteen characters", {Element(element_value, L"", {{1, as_switch}})})};
    At(1, L"Nineteen characters");
    EXPECT_TRUE(Build());
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 114x23 Nineteen characters", "switch 139,18 25x23 #1"}));
}

TEST_F(PageRows, PutsItemsBelowEachOther) {
    built_in_ = {
        Item(nullptr, 1, IdOf(2), L"Second", {Element(element_automatic, L"Auto", {{1, as_switch}})}),
        Item(nullptr, 1, IdOf(1), L"First", {Element(IdOf(50), L"On", {{1, as_switch}})})};
    At(1, L"First");
    At(1, L"Second");
    EXPECT_TRUE(Build());
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 First",
                                   "switch 40,48 37x23 #1 On",
                                   "label 20,78 110x23 Second",
                                   "switch 135,78 49x23 #1 Auto",
                               }));
}

TEST_F(PageRows, GivesNoRoomToItemsThatShowNothing) {
    built_in_ = {Item(nullptr, 1, IdOf(1), L"Mute", {Element(IdOf(50), L"On", {{1, as_switch}})}),
                 Item(nullptr, 1, IdOf(2), L"Empty", {}),
                 Item(nullptr, 1, IdOf(3), L"Item", {Element(IdOf(50), L"On", {{1, as_switch}})})};
    At(1, L"Mute").supported = false;
    (void)Script(L"Empty");
    EXPECT_TRUE(Build());
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Item", "switch 40,48 37x23 #1 On"}));
}

TEST_F(PageRows, LeavesOutElementsWithoutASupportedInterface) {
    At(2).supported = false;
    EXPECT_TRUE(
        BuildItem({Element(IdOf(50), L"A", {{1, as_switch}}), Element(IdOf(51), L"B", {{2, as_switch}}),
                   Element(IdOf(52), L"C", {{3, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 40,78 31x23 #3 C",
                               }));
}

TEST_F(PageRows, HidesElementsFromLevelOneOn) {
    EXPECT_TRUE(BuildItem(
        {Element(IdOf(50), L"A", {{1, as_switch}}, 1), Element(IdOf(51), L"B", {{2, as_switch}}, 0),
         Element(IdOf(52), L"C", {{3, as_switch}}, 3), Element(IdOf(53), L"D", {{4, as_switch}}, -1),
         Element(element_automatic, L"Auto", {{5, as_switch}}, 1)}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #2 B",
                                   "switch 40,78 31x23 #4 D",
                               }));
}

TEST_F(PageRows, ShowNothingOfAnItemWithHiddenElementsOnly) {
    EXPECT_FALSE(BuildItem({Element(element_value, L"Value", {{1, as_range}}, 3)}));
    EXPECT_FALSE(BuildItem({Element(element_value, L"Value", {{1, as_range}}, 3)}, IdOf(1), true));
    EXPECT_TRUE(canvas_.placed.empty());
}

TEST_F(PageRows, PutsALinkedElementBehindTheOneBefore) {
    EXPECT_TRUE(BuildItem({Element(IdOf(50), L"GP IN", {{1, as_range}}),
                           Element(IdOf(51), L"Read", {{2, as_button}}, 0, IdOf(50)),
                           Element(IdOf(52), L"GP Out", {{3, as_range}}),
                           Element(IdOf(53), L"Write", {{4, as_button}}, 0, IdOf(77), IdOf(52))}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "label 40,48 110x23 GP IN",
                                   "slider 155,48 140x23",
                                   "edit 300,48 60x22",
                                   "spin 360,48 10x22",
                                   "button 380,48 49x23 #2 Read",
                                   "label 40,78 110x23 GP Out",
                                   "slider 155,78 140x23",
                                   "edit 300,78 60x22",
                                   "spin 360,78 10x22",
                                   "button 380,78 55x23 #4 Write",
                               }));
}

TEST_F(PageRows, LinksAChainOfElementsToOneRow) {
    EXPECT_TRUE(BuildItem(
        {Element(IdOf(50), L"A", {{1, as_switch}}), Element(IdOf(51), L"B", {{2, as_switch}}, 0, IdOf(50)),
         Element(IdOf(52), L"C", {{3, as_range}}, 0, IdOf(51)), Element(IdOf(53), L"D", {{4, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 76,48 31x23 #2 B",
                                   "label 112,48 110x23 C",
                                   "slider 227,48 140x23",
                                   "edit 372,48 60x22",
                                   "spin 432,48 10x22",
                                   "switch 40,78 31x23 #4 D",
                               }));
}

TEST_F(PageRows, LinksTheFirstElementToTheHeadRow) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Enable", {{1, as_switch}}),
                           Element(IdOf(51), L"Software Trigger", {{2, as_button}}, 0, element_value),
                           Element(IdOf(52), L"Polarity", {{3, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 61x23 #1 Enable",
                                   "button 201,18 121x23 #2 Software Trigger",
                                   "switch 40,48 73x23 #3 Polarity",
                               }));
}

TEST_F(PageRows, LinksTheFirstElementToTheHeadRowEvenWithoutAValue) {
    EXPECT_TRUE(BuildItem({Element(IdOf(51), L"Trigger", {{2, as_button}}, 0, element_value)}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Item", "button 135,18 67x23 #2 Trigger"}));
}

TEST_F(PageRows, LinksOnlyTheFirstElementToTheHeadRow) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Enable", {{1, as_switch}}),
                           Element(IdOf(52), L"Polarity", {{3, as_switch}}),
                           Element(IdOf(51), L"Trigger", {{2, as_button}}, 0, element_value)}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 61x23 #1 Enable",
                                   "switch 40,48 73x23 #3 Polarity",
                                   "button 40,78 67x23 #2 Trigger",
                               }));
}

TEST_F(PageRows, LinksOnlyToTheElementJustBefore) {
    EXPECT_TRUE(
        BuildItem({Element(IdOf(50), L"A", {{1, as_switch}}), Element(IdOf(51), L"B", {{2, as_switch}}),
                   Element(IdOf(52), L"C", {{3, as_switch}}, 0, IdOf(50))}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 40,78 31x23 #2 B",
                                   "switch 40,108 31x23 #3 C",
                               }));
}

TEST_F(PageRows, DoesNotLinkToAnElementThatIsLeftOut) {
    At(2).supported = false;
    EXPECT_TRUE(
        BuildItem({Element(IdOf(50), L"A", {{1, as_switch}}), Element(IdOf(51), L"B", {{2, as_switch}}),
                   Element(IdOf(52), L"C", {{3, as_switch}}, 0, IdOf(51)),
                   Element(IdOf(53), L"D", {{4, as_switch}}, 0, IdOf(52))}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 40,78 31x23 #3 C",
                                   "switch 76,78 31x23 #4 D",
                               }));
}

TEST_F(PageRows, SkipsHeadElementsBetweenLinkedOnes) {
    EXPECT_TRUE(BuildItem({Element(IdOf(50), L"A", {{1, as_switch}}),
                           Element(element_automatic, L"Auto", {{2, as_switch}}),
                           Element(IdOf(51), L"B", {{3, as_switch}}, 0, IdOf(50)),
                           Element(IdOf(52), L"C", {{4, as_switch}}, 0, element_automatic)}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 49x23 #2 Auto",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 76,48 31x23 #3 B",
                                   "switch 40,78 31x23 #4 C",
                               }));
}

TEST_F(PageRows, LinksNothingToAnElementWithTheZeroId) {
    EXPECT_TRUE(
        BuildItem({Element(GUID{}, L"A", {{1, as_switch}}), Element(IdOf(51), L"B", {{2, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 40,78 31x23 #2 B",
                               }));
}

TEST_F(PageRows, GiveNoRoomToAnElementWithoutLimits) {
    Script().results["GetAbsRange"] = E_FAIL;
    EXPECT_TRUE(
        BuildItem({Element(element_value, L"Value", {{1, as_abs}}),
                   Element(element_automatic, L"Auto", {{2, as_switch}}),
                   Element(IdOf(51), L"Limit", {{3, as_abs}}), Element(IdOf(52), L"On", {{4, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 49x23 #2 Auto",
                                   "switch 40,48 37x23 #4 On",
                               }));
}

TEST_F(PageRows, LinksToAnElementWithoutLimitsOnTheRowAbove) {
    Script().results["GetAbsRange"] = E_FAIL;
    EXPECT_TRUE(
        BuildItem({Element(IdOf(50), L"A", {{1, as_switch}}), Element(IdOf(51), L"Limit", {{3, as_abs}}),
                   Element(IdOf(52), L"On", {{4, as_switch}}, 0, IdOf(51)),
                   Element(IdOf(53), L"B", {{5, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 40,48 31x23 #1 A",
                                   "switch 40,48 37x23 #4 On",
                                   "switch 40,78 31x23 #5 B",
                               }));
}

TEST_F(PageRows, LeavesOutTheCommonValueOfAWhiteBalanceWithGains) {
    const std::vector<ElementRecord> elements = {
        Element(element_value, L"Value", {{1, as_range}}),
        Element(element_automatic, L"Auto", {{2, as_switch}}),
        Element(element_white_balance_blue, L"Blue", {{3, as_switch}})};
    EXPECT_TRUE(BuildItem(elements, item_white_balance));
    EXPECT_EQ(canvas_.Lines(), (Lines{
                                   "label 20,18 110x23 Item",
                                   "switch 135,18 49x23 #2 Auto",
                                   "switch 40,48 49x23 #3 Blue",
                               }));
}

TEST_F(PageRows, KeepsTheCommonValueOfAWhiteBalanceWithoutGains) {
    At(3).supported = false;
    const std::vector<ElementRecord> elements = {
        Element(element_value, L"Value", {{1, as_switch}}),
        Element(element_white_balance_blue, L"Blue", {{3, as_switch}})};
    EXPECT_TRUE(BuildItem(elements, item_white_balance));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Item", "switch 135,18 55x23 #1 Value"}));
}

TEST_F(PageRows, KeepsTheValueOfOtherItemsWithThatElement) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_switch}}),
                           Element(element_white_balance_blue, L"Blue", {{3, as_switch}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Item", "switch 135,18 55x23 #1 Value",
                                      "switch 40,48 49x23 #3 Blue"}));
}

struct DpiRow {
    int dots;
    Lines lines;
};

TEST_F(PageRows, ScalesToTheScreen) {
    const DpiRow rows[] = {
        {120,
         {"label 25,23 138x29 Item", "slider 169,23 175x29", "edit 350,23 75x28", "spin 425,23 13x28",
          "switch 450,23 49x29 #2 Auto", "label 50,61 138x29 Mode", "combo 194,61 281x188 #3"}},
        {144,
         {"label 30,27 165x35 Item", "slider 203,27 210x35", "edit 421,27 90x33", "spin 511,27 15x33",
          "switch 541,27 49x35 #2 Auto", "label 60,72 165x35 Mode", "combo 233,72 338x225 #3"}},
        {192,
         {"label 40,36 220x46 Item", "slider 270,36 280x46", "edit 560,36 120x44", "spin 680,36 20x44",
          "switch 720,36 49x46 #2 Auto", "label 80,96 220x46 Mode", "combo 310,96 450x300 #3"}},
    };
    for (const DpiRow& row : rows) {
        canvas_.placed.clear();
        canvas_.dots_per_inch_x = row.dots;
        canvas_.dots_per_inch_y = row.dots;
        EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_range}}),
                               Element(element_automatic, L"Auto", {{2, as_switch}}),
                               Element(IdOf(51), L"Mode", {{3, InterfaceType::MapStrings}})}));
        EXPECT_EQ(canvas_.Lines(), row.lines) << row.dots;
    }
}

TEST_F(PageRows, ScalesEachAxisForItself) {
    canvas_.dots_per_inch_x = 192;
    EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_range}}),
                           Element(element_one_push, L"Push", {{2, as_button}}),
                           Element(IdOf(51), L"Mode", {{3, InterfaceType::MapStrings}})}));
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 40,18 220x23 Item", "slider 270,18 280x23", "edit 560,18 120x22",
                                      "spin 680,18 20x22", "button 720,18 49x23 #2 Push",
                                      "label 80,48 220x23 Mode", "combo 310,48 450x150 #3"}));
}

TEST_F(PageRows, MeasuringAsksForSupportAndNothingElse) {
    At(1).supported = false;
    const std::vector<ElementRecord> elements = {
        Element(element_value, L"Value", {{1, as_range}, {2, as_abs}, {3, as_switch}}),
        Element(IdOf(51), L"Mode", {{4, InterfaceType::MapStrings}}),
        Element(IdOf(52), L"Hidden", {{5, as_range}}, 3)};
    EXPECT_TRUE(BuildItem(elements, IdOf(1), true));
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 1", "SupportsInterface 2", "SupportsInterface 4",
                                         "SupportsInterface 5"}));
    EXPECT_EQ(Script().living_items, 0);
    EXPECT_TRUE(canvas_.placed.empty());
    EXPECT_TRUE(canvas_.measured.empty());
}

TEST_F(PageRows, MeasuringGoesThroughAllItems) {
    built_in_ = {Item(nullptr, 1, IdOf(1), L"Item", {Element(element_value, L"Value", {{1, as_range}})}),
                 Item(nullptr, 1, IdOf(2), L"Other", {Element(element_value, L"Value", {{1, as_range}})})};
    At(1, L"Other");
    EXPECT_TRUE(Build(true));
    EXPECT_EQ(Script(L"Other").TakeLog(), Lines{"SupportsInterface 1"});
}

TEST_F(PageRows, LayingOutAsksForSupportTwice) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_range}, {2, as_abs}}),
                           Element(element_automatic, L"Auto", {{3, as_switch}}),
                           Element(IdOf(51), L"Mode", {{4, InterfaceType::MapStrings}}),
                           Element(IdOf(52), L"Delay", {{5, as_range}})}));
    EXPECT_EQ(Script().TakeLog(), (Lines{"SupportsInterface 1", "SupportsInterface 3", "SupportsInterface 4",
                                         "SupportsInterface 5", "SupportsInterface 1", "SupportsInterface 2",
                                         "GetAbsRange 2", "GetAbsUnit 2", "SupportsInterface 3",
                                         "SupportsInterface 4", "GetMapStrings 4", "SupportsInterface 5"}));
}

TEST_F(PageRows, KeepsNoItemOfItsOwn) {
    EXPECT_TRUE(BuildItem({Element(element_value, L"Value", {{1, as_range}}),
                           Element(element_automatic, L"Auto", {{2, as_switch}})}));
    EXPECT_EQ(Script().living_items, 1);
    canvas_.placed.clear();
    EXPECT_EQ(Script().living_items, 0);
}

TEST_F(PageRows, MakesItemsAnewInEachRun) {
    const std::vector<ElementRecord> elements = {Element(element_value, L"Value", {{1, as_range}})};
    EXPECT_TRUE(BuildItem(elements, IdOf(1), true));
    EXPECT_TRUE(BuildItem(elements));
    EXPECT_EQ(made_.size(), 2U);
}

TEST_F(PageRows, CountsAnExceptionAsNotSupported) {
    Script().throwing = {"SupportsInterface"};
    built_in_ = {Item(nullptr, 1, IdOf(1), L"Item", {Element(element_value, L"Value", {{1, as_range}})}),
                 Item(nullptr, 1, IdOf(2), L"Other", {Element(element_value, L"Value", {{1, as_switch}})})};
    At(1, L"Other");
    EXPECT_TRUE(Build(true));
    EXPECT_TRUE(Build());
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 Other", "switch 135,18 55x23 #1 Value"}));
}

// A driver that runs messages may end the page while it is built.
TEST_F(PageRows, EndsWithItsPage) {
    const std::vector<ElementRecord> elements = {Element(IdOf(51), L"A", {{1, as_switch}}),
                                                 Element(IdOf(52), L"B", {{2, as_switch}})};
    At(1);
    At(2);
    canvas_.is_gone = [this] { return !canvas_.placed.empty() && canvas_.placed.back().text == L"A"; };
    built_in_ = {Item(L"Exposure", 0, IdOf(1), L"Item", elements),
                 Item(L"Exposure", 0, IdOf(2), L"Item", elements)};
    EXPECT_TRUE(Build());
    EXPECT_EQ(made_, std::vector<std::wstring>{L"Item"});
    EXPECT_EQ(canvas_.placed.size(), 2U) << "the item's label and its first element";
}

TEST_F(PageRows, TakesARecordWithoutAFactoryForNoItem) {
    built_in_ = {Item(L"Exposure", 0, IdOf(1), L"Item", {Element(IdOf(51), L"A", {{1, as_switch}})})};
    built_in_.front().factory = nullptr;
    EXPECT_FALSE(Build());
    EXPECT_TRUE(canvas_.placed.empty());
}

TEST_F(PageRows, LetsAnExceptionOfTheCanvasThroughAndHoldsNothing) {
    for (const std::string kind : {"label", "slider", "edit", "spin", "switch", "combo", "button"}) {
        canvas_.placed.clear();
        canvas_.before_add = [&](const std::string& added) {
            if (added == kind) throw std::runtime_error(added);
        };
        const std::vector<ElementRecord> elements = {
            Element(element_value, L"Value", {{1, as_range}}),
            Element(element_automatic, L"Auto", {{2, as_switch}}),
            Element(element_one_push, L"Push", {{3, as_button}}),
            Element(IdOf(51), L"Mode", {{4, InterfaceType::MapStrings}})};
        EXPECT_THROW((void)BuildItem(elements), std::runtime_error) << kind;
        canvas_.placed.clear();
        EXPECT_EQ(Script().living_items, 0) << kind;
    }
}

}  // namespace
}  // namespace ZELPropUI
