#include "propui/item_choice.h"

#include "tests/propui/page_fixture.h"

namespace ZELPropUI {
namespace {

class ItemChoice : public PageTest {
protected:
    // An item that shows one switch, unless it has no script.
    ItemRecord Record(const wchar_t* group, std::uint32_t priority, const GUID& id, const wchar_t* name) {
        return Item(group, priority, id, name, {Element(IdOf(99), L"On", {{1, InterfaceType::Switch}})});
    }
    void MakeItemsExist(const std::vector<std::wstring>& names) {
        for (const std::wstring& name : names) At(1, name).supported = true;
    }
};

TEST_F(ItemChoice, OrdersRowsByIdNotByTable) {
    built_in_ = {
        Record(nullptr, 5, ZELAdapterHelper::item_exposure, L"Exposure"),
        Record(nullptr, 2, {0x284C0E0F, 0x010B, 0x45BF, {0x82, 0x91, 0x09, 0xD9, 0x0A, 0x45, 0x9B, 0x28}},
               L"Gain"),
        Record(nullptr, 2, ZELAdapterHelper::item_white_balance, L"WhiteBalance"),
    };
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"WhiteBalance", L"Gain", L"Exposure"}));
}

TEST_F(ItemChoice, ComparesIdsFieldByFieldWithoutSign) {
    built_in_ = {
        Record(nullptr, 1, {0xFFFFFFFF, 0, 0, {}}, L"9"),
        Record(nullptr, 1, {0x00000100, 0, 0, {}}, L"8"),
        Record(nullptr, 1, {0x000000FF, 0xFFFF, 0, {}}, L"7"),
        Record(nullptr, 1, {0x000000FF, 0x0100, 0, {}}, L"6"),
        Record(nullptr, 1, {0x000000FF, 0x00FF, 0x8000, {}}, L"5"),
        Record(nullptr, 1, {0x000000FF, 0x00FF, 0x0100, {}}, L"4"),
        Record(nullptr, 1, {0x000000FF, 0x00FF, 0x00FF, {0x80, 0}}, L"3"),
        Record(nullptr, 1, {0x000000FF, 0x00FF, 0x00FF, {1, 0, 0, 0, 0, 0, 0, 0xFF}}, L"2"),
        Record(nullptr, 1, {0x000000FF, 0x00FF, 0x00FF, {1, 0, 0, 0, 0, 0, 0, 1}}, L"1"),
    };
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9"}));
}

TEST_F(ItemChoice, TakesTheLargestPriorityOfAnId) {
    built_in_ = {
        Record(nullptr, 3, IdOf(1), L"low"),    Record(nullptr, 5, IdOf(1), L"high"),
        Record(nullptr, 4, IdOf(1), L"middle"), Record(nullptr, 0xFFFFFFFF, IdOf(2), L"unsigned"),
        Record(nullptr, 1, IdOf(2), L"small"),
    };
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"high", L"unsigned"}));
}

TEST_F(ItemChoice, TakesTheEarlierOfEqualPriorities) {
    built_in_ = {Record(nullptr, 5, IdOf(1), L"first"), Record(nullptr, 5, IdOf(1), L"second")};
    described_ = {Record(nullptr, 5, IdOf(1), L"third")};
    (void)Build();
    EXPECT_EQ(made_, std::vector<std::wstring>{L"first"});
}

TEST_F(ItemChoice, LetsADescribedItemReplaceABuiltInOne) {
    built_in_ = {Record(nullptr, 5, IdOf(1), L"built-in"), Record(nullptr, 11, IdOf(2), L"stronger")};
    described_ = {Record(nullptr, 10, IdOf(1), L"described"), Record(nullptr, 10, IdOf(2), L"weaker")};
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"described", L"stronger"}));
}

TEST_F(ItemChoice, TriesNoSecondRecord) {
    built_in_ = {Record(nullptr, 5, IdOf(1), L"declines"), Record(nullptr, 3, IdOf(1), L"would do")};
    MakeItemsExist({L"would do"});
    EXPECT_FALSE(Build());
    EXPECT_EQ(made_, std::vector<std::wstring>{L"declines"});
    EXPECT_TRUE(canvas_.placed.empty());
}

TEST_F(ItemChoice, GoesOnToARecordOfAShownGroup) {
    groups_ = {L"Color"};
    built_in_ = {Record(L"Lens", 5, IdOf(1), L"elsewhere"), Record(L"Color", 3, IdOf(1), L"here")};
    MakeItemsExist({L"here"});
    EXPECT_TRUE(Build());
    EXPECT_EQ(made_, std::vector<std::wstring>{L"here"});
}

TEST_F(ItemChoice, ComparesGroupsExactly) {
    groups_ = {L"Special", L"Partial Scan", L"Partial scan"};
    built_in_ = {
        Record(L"Partial Scan", 1, IdOf(1), L"1"),
        Record(L"Partial scan", 1, IdOf(2), L"2"),
        Record(L"partial scan", 1, IdOf(3), L"3"),
        Record(L"Special", 1, IdOf(4), L"4"),
        Record(L"Special ", 1, IdOf(5), L"5"),
        Record(L"Specia", 1, IdOf(6), L"6"),
        Record(L"", 1, IdOf(7), L"7"),
        Record(nullptr, 1, IdOf(8), L"8"),
    };
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"1", L"2", L"4"}));
}

TEST_F(ItemChoice, CountsNoGroupAsExposure) {
    groups_ = {L"Exposure", L"Image", L"WDR"};
    built_in_ = {Record(nullptr, 1, IdOf(1), L"none"), Record(L"WDR", 1, IdOf(2), L"WDR"),
                 Record(L"Color", 1, IdOf(3), L"Color")};
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"none", L"WDR"}));
}

TEST_F(ItemChoice, LetsEveryGroupThroughWithoutGroupNames) {
    built_in_ = {Record(L"Lens", 5, IdOf(1), L"first"), Record(L"Color", 3, IdOf(1), L"second"),
                 Record(L"unheard of", 3, IdOf(2), L"other")};
    (void)Build();
    EXPECT_EQ(made_, (std::vector<std::wstring>{L"first", L"other"}));

    PageSources sources;
    sources.built_in = {built_in_.data(), built_in_.size()};
    EXPECT_EQ(ChooseItems(sources).size(), 2U);
}

TEST_F(ItemChoice, IgnoresRecordsWithoutAName) {
    built_in_ = {Record(nullptr, 9, IdOf(1), nullptr), Record(nullptr, 1, IdOf(1), L"named"),
                 Record(nullptr, 1, IdOf(2), nullptr)};
    described_ = {Record(nullptr, 10, IdOf(3), nullptr)};
    (void)Build();
    EXPECT_EQ(made_, std::vector<std::wstring>{L"named"});
}

TEST_F(ItemChoice, HandsFilterAndRecordToTheFactory) {
    filter_ = reinterpret_cast<IUnknown*>(&canvas_);  // not called
    built_in_ = {Record(nullptr, 1, IdOf(1), L"built-in")};
    described_ = {Record(nullptr, 1, IdOf(2), L"described")};
    (void)Build(true);
    EXPECT_EQ(made_from_, (std::vector<IUnknown*>{filter_, filter_}));
    EXPECT_EQ(made_for_, (std::vector<const ItemRecord*>{&built_in_[0], &described_[0]}));
}

TEST_F(ItemChoice, GoesOnPastAFactoryThatThrows) {
    built_in_ = {Record(nullptr, 1, IdOf(1), L"throws"), Record(nullptr, 1, IdOf(2), L"makes and throws"),
                 Record(nullptr, 1, IdOf(3), L"works")};
    MakeItemsExist({L"throws", L"makes and throws", L"works"});
    throw_before_making_ = {L"throws"};
    throw_after_making_ = {L"makes and throws"};
    EXPECT_TRUE(Build());
    EXPECT_EQ(made_.size(), 3U);
    EXPECT_EQ(Script(L"makes and throws").living_items, 0);
    EXPECT_TRUE(Script(L"makes and throws").log.empty());
    EXPECT_EQ(canvas_.Lines(), (Lines{"label 20,18 110x23 works", "switch 40,48 37x23 #1 On"}));
}

TEST_F(ItemChoice, ShowsNothingOnAPageWithoutRecords) {
    EXPECT_FALSE(Build());
    EXPECT_FALSE(Build(true));
}

}  // namespace
}  // namespace ZELPropUI
