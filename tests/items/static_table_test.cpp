#include "items/builtin_factories.h"
#include "tests/items/item_test.h"
#include "tests/support/not_empty.h"

namespace item_tests {
namespace {

using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::ElementsOf;
using ZELAdapterHelper::InterfaceEntry;
using ZELAdapterHelper::InterfacesOf;
using ZELAdapterHelper::InterfaceType;
using ZELAdapterHelper::ItemFactory;
using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::StaticItemTable;

constexpr auto sw = InterfaceType::Switch;
constexpr auto range = InterfaceType::Range;
constexpr auto button = InterfaceType::Button;
constexpr auto map_strings = InterfaceType::MapStrings;
constexpr auto abs_value = InterfaceType::AbsoluteValue;

struct ExpectedElement {
    const wchar_t* name;
    const wchar_t* id;
    std::vector<std::pair<InterfaceKey, InterfaceType>> interfaces;
    std::int32_t level = 0;
    const wchar_t* linked = L"{00000000-0000-0000-0000-000000000000}";
};

struct ExpectedItem {
    const wchar_t* name;
    const wchar_t* group;
    std::uint32_t priority;
    const wchar_t* id;
    ItemFactory factory;
    std::vector<ExpectedElement> elements;
};

const std::vector<ExpectedElement>& ExposureElements() {
    static const std::vector<ExpectedElement> elements = {
        {L"Value", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{0, range}, {1, abs_value}}},
        {L"Auto", L"{B57D3001-0AC6-4819-A609-272A33140ACA}", {{2, sw}}},
        {L"Auto Reference", L"{6519038C-1AD8-4E91-9021-66D64090CC85}", {{3, range}}},
        {L"Auto Max Value", L"{6519038F-1AD8-4E91-9021-66D64090CC85}", {{4, range}, {5, abs_value}}},
        {L"Auto", L"{65190390-1AD8-4E91-9021-66D64090CC85}", {{6, sw}}},
    };
    return elements;
}

std::vector<ExpectedItem> ExposureAndGain() {
    using namespace ZELAdapterHelper;
    return {
        {L"Exposure", L"Exposure", 5, L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}", MakeUVCExposure,
         ExposureElements()},
        {L"Exposure", L"Exposure", 3, L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}", MakeExposureItem,
         ExposureElements()},
        {L"Gain",
         nullptr,
         2,
         L"{284C0E0F-010B-45BF-8291-09D90A459B28}",
         MakeUVCGain,
         {
             {L"Value", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{0, range}, {1, abs_value}}},
             {L"Auto", L"{B57D3001-0AC6-4819-A609-272A33140ACA}", {{2, sw}}},
         }},
    };
}

std::vector<ExpectedItem> PartialScan() {
    using namespace ZELAdapterHelper;
    return {
        {L"Partial scan",
         L"Partial scan",
         1,
         L"{2CED6FD6-AB4D-4C74-904C-D682E53B9CC5}",
         MakePartialScan,
         {
             {L"Auto-center", L"{36EAA683-3321-44BE-9D73-E1FD4C3FDB87}", {{211, sw}}},
             {L"X Offset", L"{5E59F654-7B47-4458-B4C6-5D4F0D175FC1}", {{118, range}}},
             {L"Y Offset", L"{87FB6C02-98A8-46B0-B18D-6442D9775CD3}", {{119, range}}},
         }},
        {L"Binning factor",
         L"Partial scan",
         1,
         L"{4F95A06D-9C15-407B-96AB-CF3FED047BA4}",
         MakePartialScan,
         {{L"Value", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{212, map_strings}}, 3}}},
    };
}

std::vector<ExpectedItem> InputOutput() {
    using namespace ZELAdapterHelper;
    return {
        {L"GPIO",
         L"Special",
         4,
         L"{86D89D69-9880-4618-9BF6-DED5E8383449}",
         MakeUVCGPIO,
         {
             {L"GP IN", L"{7D006621-761D-4B88-9C5F-8B906857A500}", {{0, range}}},
             {L"Read",
              L"{7D006621-761D-4B88-9C5F-8B906857A503}",
              {{1, button}},
              0,
              L"{7D006621-761D-4B88-9C5F-8B906857A500}"},
             {L"GP Out", L"{7D006621-761D-4B88-9C5F-8B906857A501}", {{2, range}}},
             {L"Write",
              L"{7D006621-761D-4B88-9C5F-8B906857A502}",
              {{3, button}},
              0,
              L"{7D006621-761D-4B88-9C5F-8B906857A501}"},
         }},
        {L"Strobe",
         L"Special",
         1,
         L"{DC320EDE-DF2E-4A90-B926-71417C71C57C}",
         MakeUVCStrobe,
         {
             {L"Enable", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{0, sw}}},
             {L"Mode", L"{B41DB628-0975-43F8-A9D9-7E0380580ACD}", {{1, map_strings}}},
             {L"Polarity", L"{B41DB628-0975-43F8-A9D9-7E0380580ACA}", {{2, sw}}},
             {L"Duration", L"{B41DB628-0975-43F8-A9D9-7E0380580ACB}", {{3, range}}},
             {L"Delay", L"{B41DB628-0975-43F8-A9D9-7E0380580ACC}", {{4, range}}},
         }},
        {L"Trigger",
         L"Special",
         2,
         L"{90D57031-E43B-4366-AAEB-7A7A10B448B4}",
         MakeUVCTrigger,
         {
             {L"Enable", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{0, sw}}},
             {L"Software Trigger",
              L"{FDB4003C-552C-4FAA-B87B-42E888D54147}",
              {{3, button}},
              0,
              L"{B57D3000-0AC6-4819-A609-272A33140ACA}"},
             {L"Polarity", L"{6519038D-1AD8-4E91-9021-66D64090CC85}", {{1, sw}}},
             {L"Delay", L"{C337CFB8-EA08-4E69-A655-586937B6AFEC}", {{4, abs_value}}},
             {L"Operation", L"{859A76B9-E289-472B-AB05-C9B3F26DCAA0}", {{5, map_strings}}},
         }},
    };
}

std::vector<ExpectedItem> ColorAndLens() {
    using namespace ZELAdapterHelper;
    return {
        {L"Color Enhancement",
         L"Color",
         1,
         L"{3A3A8F77-6440-46CC-940A-8752B02E6C29}",
         MakeUVCColorEnhancement,
         {{L"Enable", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{0, sw}}}}},
        {L"WhiteBalance",
         L"Color",
         4,
         L"{284C0E0D-010B-45BF-8291-09D90A459B28}",
         MakeUVCWhiteBalance,
         {
             {L"Auto", L"{B57D3001-0AC6-4819-A609-272A33140ACA}", {{2, sw}}},
             {L"OnePush", L"{B57D3002-0AC6-4819-A609-272A33140ACA}", {{3, button}}},
             {L"White Balance Red", L"{6519038B-1AD8-4E91-9021-66D64090CC85}", {{0, range}}},
             {L"White Balance Green", L"{8407E480-175A-498C-8171-08BD987CC1AC}", {{4, range}}},
             {L"White Balance Blue", L"{6519038A-1AD8-4E91-9021-66D64090CC85}", {{1, range}}},
         }},
        {L"Focus",
         L"Lens",
         2,
         L"{90D57030-E43B-4366-AAEB-7A7A10B448B4}",
         MakeFocusItem,
         {
             {L"One Push", L"{B57D3002-0AC6-4819-A609-272A33140ACA}", {{0, button}}},
             {L"Value", L"{B57D3000-0AC6-4819-A609-272A33140ACA}", {{1, range}}},
             {L"One Push Running", L"{07D2DD39-3F10-4E0F-8EE5-3EED067A53C6}", {{2, sw}}, 3},
             {L"Auto Min Value", L"{65190391-1AD8-4E91-9021-66D64090CC85}", {{3, range}}},
             {L"Auto Max Value", L"{6519038F-1AD8-4E91-9021-66D64090CC85}", {{4, range}}},
             {L"Enable Region of Interest", L"{8CA6642E-D3E5-4ED8-95A1-B13D7131B465}", {{5, sw}}},
             {L"Left", L"{8CA6642F-D3E5-4ED8-95A1-B13D7131B465}", {{6, range}}},
             {L"Right", L"{8CA66431-D3E5-4ED8-95A1-B13D7131B465}", {{9, range}}},
             {L"Top", L"{8CA66430-D3E5-4ED8-95A1-B13D7131B465}", {{7, range}}},
             {L"Bottom", L"{8CA66432-D3E5-4ED8-95A1-B13D7131B465}", {{8, range}}},
         }},
    };
}

std::vector<ExpectedItem> ExpectedTable() {
    std::vector<ExpectedItem> table;
    for (const auto& part : {ExposureAndGain(), PartialScan(), InputOutput(), ColorAndLens()}) {
        table.insert(table.end(), part.begin(), part.end());
    }
    return table;
}

void ExpectElement(const ElementRecord& element, const ExpectedElement& expected) {
    SCOPED_TRACE(std::string("element ") + testing::PrintToString(expected.name));
    EXPECT_STREQ(element.name, expected.name);
    EXPECT_TRUE(element.id == Guid(expected.id));
    EXPECT_EQ(element.level, expected.level);
    EXPECT_TRUE(element.linked[0] == Guid(expected.linked));
    EXPECT_TRUE(element.linked[1] == platform::null_guid);

    ASSERT_EQ(element.interface_count, expected.interfaces.size());
    EXPECT_EQ(element.interfaces != nullptr, expected.interfaces.size() > 1);
    std::vector<std::pair<InterfaceKey, InterfaceType>> interfaces;
    for (const InterfaceEntry& entry : InterfacesOf(element)) {
        interfaces.emplace_back(entry.key, entry.type);
    }
    EXPECT_EQ(interfaces, expected.interfaces);
}

void ExpectItem(const ItemRecord& item, const ExpectedItem& expected) {
    SCOPED_TRACE(std::string("item ") + testing::PrintToString(expected.name));
    EXPECT_STREQ(item.name, expected.name);
    EXPECT_STREQ(item.group, expected.group);
    EXPECT_EQ(item.priority, expected.priority);
    EXPECT_TRUE(item.id == Guid(expected.id));
    EXPECT_EQ(item.factory, expected.factory);

    ASSERT_EQ(item.element_count, expected.elements.size());
    EXPECT_EQ(item.elements != nullptr, expected.elements.size() > 1);
    const auto elements = ElementsOf(item);
    ASSERT_EQ(elements.count, expected.elements.size());
    for (std::size_t at = 0; at < elements.count; ++at) {
        ExpectElement(elements.first[at], expected.elements[at]);
    }
}

TEST(StaticTableTest, HoldsTheElevenItemsInOrder) {
    const auto expected = ExpectedTable();
    const auto table = StaticItemTable();
    ASSERT_EQ(table.count, 11U);
    ASSERT_EQ(expected.size(), 11U);
    for (std::size_t at = 0; at < table.count; ++at) {
        ExpectItem(table.first[at], expected[at]);
    }
}

TEST(StaticTableTest, ElementIdsAreUniqueWithinAnItem) {
    for (const ItemRecord& item : NotEmpty(StaticItemTable())) {
        for (const ElementRecord& one : ElementsOf(item)) {
            for (const ElementRecord& other : ElementsOf(item)) {
                EXPECT_TRUE(&one == &other || one.id != other.id);
            }
        }
    }
}

TEST(StaticTableTest, OnlyBinningAndOnePushRunningAreHidden) {
    std::vector<std::wstring> hidden;
    for (const ItemRecord& item : NotEmpty(StaticItemTable())) {
        for (const ElementRecord& element : ElementsOf(item)) {
            if (element.level >= 1) {
                hidden.push_back(std::wstring(item.name) + L"/" + element.name);
            }
        }
    }
    EXPECT_EQ(hidden, (std::vector<std::wstring>{L"Binning factor/Value", L"Focus/One Push Running"}));
}

TEST(StaticTableTest, ExposureBehindTheFirstOneHasTheLowerPriority) {
    const ItemRecord& first = StaticItemTable().first[0];
    const ItemRecord& second = StaticItemTable().first[1];
    EXPECT_TRUE(first.id == second.id);
    EXPECT_STREQ(first.group, second.group);
    EXPECT_GT(first.priority, second.priority);
    EXPECT_TRUE(first.id == ZELAdapterHelper::item_exposure);
}

TEST(RecordViewTest, ElementsAreFoundWhereTheCountSays) {
    const ElementRecord outside[2] = {};
    ItemRecord record = {};
    record.elements = outside;
    EXPECT_EQ(ElementsOf(record).count, 0U);

    record.element_count = 1;
    EXPECT_EQ(ElementsOf(record).first, &record.inline_element);
    EXPECT_EQ(ElementsOf(record).count, 1U);

    record.element_count = 2;
    EXPECT_EQ(ElementsOf(record).first, outside);
    EXPECT_EQ(ElementsOf(record).count, 2U);
}

TEST(RecordViewTest, InterfacesAreFoundWhereTheCountSays) {
    const InterfaceEntry outside[3] = {{1, sw}, {2, range}, {3, button}};
    ElementRecord element = {};
    element.interfaces = outside;
    for (const std::uint32_t count : {0U, 1U}) {
        element.interface_count = count;
        EXPECT_EQ(InterfacesOf(element).first, &element.inline_interface);
        EXPECT_EQ(InterfacesOf(element).count, 1U);
    }
    element.interface_count = 3;
    EXPECT_EQ(InterfacesOf(element).first, outside);
    EXPECT_EQ(InterfacesOf(element).count, 3U);
}

TEST(IdTest, IdsOfTheContract) {
    using namespace ZELAdapterHelper;
    EXPECT_TRUE(element_value == Guid(L"{B57D3000-0AC6-4819-A609-272A33140ACA}"));
    EXPECT_TRUE(element_automatic == Guid(L"{B57D3001-0AC6-4819-A609-272A33140ACA}"));
    EXPECT_TRUE(element_one_push == Guid(L"{B57D3002-0AC6-4819-A609-272A33140ACA}"));
    EXPECT_TRUE(element_white_balance_blue == Guid(L"{6519038A-1AD8-4E91-9021-66D64090CC85}"));
    EXPECT_TRUE(item_exposure == Guid(L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}"));
    EXPECT_TRUE(item_white_balance == Guid(L"{284C0E0D-010B-45BF-8291-09D90A459B28}"));
    EXPECT_EQ(static_cast<std::uint32_t>(InterfaceType::Switch), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(InterfaceType::Range), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(InterfaceType::Button), 2U);
    EXPECT_EQ(static_cast<std::uint32_t>(InterfaceType::MapStrings), 3U);
    EXPECT_EQ(static_cast<std::uint32_t>(InterfaceType::AbsoluteValue), 4U);
}

}  // namespace
}  // namespace item_tests
