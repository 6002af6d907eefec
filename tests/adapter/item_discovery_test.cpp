#include "adapter/item_discovery.h"

#include "adapter/hr_exception.h"
#include "adapter/propdata_named.h"
#include "adapter/propdata_portbased.h"
#include "platform/text.h"
#include "tests/adapter/allocation_watch.h"
#include "tests/adapter/scripted_camera.h"
#include "tests/support/not_empty.h"
#include "wire/device_set.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace adapter_test {
namespace {

using namespace genicam_adapter;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceType;

GUID ItemId(std::uint8_t number) { return {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, number}}; }

std::string ItemMark(std::uint8_t number) {
    const std::wstring text = platform::format_guid(ItemId(number));
    return "<Extension><ZELItemGUID>" + platform::narrow(text) + "</ZELItemGUID></Extension>";
}

std::string Category(const std::string& name, const std::vector<std::string>& features,
                     const std::string& more = "") {
    std::string text = "<Category Name=\"" + name + "\">" + more;
    for (const std::string& feature : features) text += "<pFeature>" + feature + "</pFeature>";
    return text + "</Category>";
}

std::string MarkedInteger(const std::string& name, std::uint8_t number = 1, const std::string& more = "") {
    return "<Integer Name=\"" + name + "\">" + ElementMark(number) + more + "<Value>1</Value></Integer>";
}

std::vector<std::wstring> NamesOf(const std::vector<ItemRecord>& table) {
    std::vector<std::wstring> names;
    for (const ItemRecord& record : table) names.emplace_back(record.name);
    return names;
}

std::vector<std::wstring> ElementNamesOf(const ItemRecord& record) {
    std::vector<std::wstring> names;
    for (std::uint32_t at = 0; at < record.element_count; ++at) names.emplace_back(record.elements[at].name);
    return names;
}

// An adapter over register access, where nothing but the description decides.
class Discovery : public testing::Test {
protected:
    ScriptedCamera camera_{AccessPath::Registers, {}};
    GenICamAdapterDevice adapter_{&camera_.filter};

    const std::vector<ItemRecord>& TableOf(const std::vector<std::string>& nodes) {
        for (const std::string& each : nodes) camera_.descriptions.push_back(Description(each));
        return adapter_.get_item_table();
    }
    const std::vector<ItemRecord>& TableOf(const std::string& nodes) { return TableOf(std::vector{nodes}); }
    GenICam::INode* Node(std::string_view name) { return adapter_.get_documents().front()->find_node(name); }
};

TEST_F(Discovery, FillsTheWholeRecord) {
    const auto& table =
        TableOf(Category("Root", {"Group"}) +
                Category("Group", {"Item"}, "<DisplayName>Farbe \xC3\xA4</DisplayName>") +
                Category("Item", {"A", "B"}, ItemMark(7) + "<DisplayName>Item \xC3\xB6</DisplayName>") +
                MarkedInteger("A", 3, "<DisplayName>Element \xC3\xBC</DisplayName>") + MarkedInteger("B", 4));
    ASSERT_EQ(table.size(), 1U);
    const ItemRecord& record = table.front();
    EXPECT_STREQ(record.group, L"Farbe \u00E4");
    EXPECT_EQ(record.priority, 10U);
    EXPECT_EQ(record.id, ItemId(7));
    EXPECT_STREQ(record.name, L"Item \u00F6");
    EXPECT_EQ(record.factory, &make_genicam_propdata_portbased);
    ASSERT_EQ(record.element_count, 2U);
    const ElementRecord& element = record.elements[0];
    EXPECT_STREQ(element.name, L"Element \u00FC");
    EXPECT_EQ(element.id, ElementId(3));
    EXPECT_EQ(element.interface_count, 1U);
    EXPECT_EQ(element.inline_interface.key, key_of(Node("A")));
    EXPECT_EQ(element.inline_interface.type, InterfaceType::Range);
    ASSERT_NE(element.interfaces, nullptr);
    EXPECT_EQ(element.interfaces[0].key, key_of(Node("A")));
    EXPECT_EQ(element.interfaces[0].type, InterfaceType::Range);
    EXPECT_EQ(element.level, 0);
    EXPECT_EQ(element.linked[0], platform::null_guid);
    EXPECT_EQ(element.linked[1], platform::null_guid);
    EXPECT_STREQ(record.elements[1].name, L"B");
    EXPECT_EQ(record.elements[1].id, ElementId(4));
    EXPECT_EQ(record.inline_element.name, element.name);
    EXPECT_EQ(record.inline_element.inline_interface.key, key_of(Node("A")));
}

TEST_F(Discovery, PointsAtTheElementsEvenOfAnItemWithOne) {
    const auto& table =
        TableOf(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(table[0].element_count, 1U);
    ASSERT_NE(table[0].elements, nullptr);
    EXPECT_STREQ(table[0].elements[0].name, L"A");
    EXPECT_STREQ(table[0].inline_element.name, L"A");
    EXPECT_EQ(ZELAdapterHelper::ElementsOf(table[0]).count, 1U);
}

struct KindCase {
    const char* element;
    const char* content;
    std::optional<InterfaceType> type;
};

const KindCase kind_cases[] = {
    {"Boolean", "<Value>true</Value>", InterfaceType::Switch},
    {"Integer", "<Value>1</Value>", InterfaceType::Range},
    {"Command", "<Value>1</Value><CommandValue>1</CommandValue>", InterfaceType::Button},
    {"Enumeration", "<EnumEntry Name=\"E\"><Value>1</Value></EnumEntry><Value>1</Value>",
     InterfaceType::MapStrings},
    {"Float", "<Value>1</Value>", InterfaceType::AbsoluteValue},
    {"String", "<Value>text</Value>", std::nullopt},
    {"Category", "", std::nullopt},
    {"Port", "", std::nullopt},
    {"Register", "<Address>0</Address><Length>4</Length><pPort>Device</pPort>", std::nullopt},
};

TEST_F(Discovery, ShowsEachKindAsItsInterface) {
    std::string nodes = Category("Root", {"Item"});
    std::vector<std::string> features;
    std::vector<std::pair<std::wstring, InterfaceType>> expected;
    for (const KindCase& kind : kind_cases) {
        const std::string name = std::string("The") + kind.element;
        features.push_back(name);
        nodes += std::string("<") + kind.element + " Name=\"" + name + "\">" + ElementMark() + kind.content +
                 "</" + kind.element + ">";
        if (kind.type) expected.emplace_back(platform::widen(name), *kind.type);
    }
    const auto& table = TableOf(nodes + Category("Item", features, ItemMark(1)));
    for (const std::string& feature : features) EXPECT_NE(Node(feature), nullptr) << feature;
    ASSERT_EQ(table.size(), 1U);
    std::vector<std::pair<std::wstring, InterfaceType>> found;
    for (const ElementRecord& element : ZELAdapterHelper::ElementsOf(table[0])) {
        found.emplace_back(element.name, element.inline_interface.type);
    }
    EXPECT_EQ(found, expected);
}

TEST_F(Discovery, NamesTheGroupAfterTheCategoryThatListsTheItem) {
    const auto& table =
        TableOf(Category("Root", {"Direct", "Unmarked"}, "<DisplayName>The root</DisplayName>") +
                Category("Direct", {"A"}, ItemMark(1)) +
                Category("Unmarked", {"Inner"}, "<DisplayName>Between</DisplayName>") +
                Category("Inner", {"A"}, ItemMark(2)) + MarkedInteger("A"));
    ASSERT_EQ(NamesOf(table), (std::vector<std::wstring>{L"Direct", L"Inner"}));
    EXPECT_STREQ(table[0].group, L"The root");
    EXPECT_STREQ(table[1].group, L"Between");
}

TEST_F(Discovery, WalksDepthFirstInDocumentOrder) {
    const auto& table =
        TableOf(Category("Root", {"G1", "I4", "G2"}) + Category("G1", {"I1", "G3", "I3"}) +
                Category("G2", {"I5"}) + Category("G3", {"I2"}) + Category("I1", {"A"}, ItemMark(1)) +
                Category("I2", {"A"}, ItemMark(2)) + Category("I3", {"A"}, ItemMark(3)) +
                Category("I4", {"A"}, ItemMark(4)) + Category("I5", {"A"}, ItemMark(5)) + MarkedInteger("A"));
    EXPECT_EQ(NamesOf(table), (std::vector<std::wstring>{L"I1", L"I2", L"I3", L"I4", L"I5"}));
}

TEST_F(Discovery, LooksAtCategoriesOnlyAndNotInsideItems) {
    const auto& table = TableOf(
        Category("Root", {"Loose", "Item"}) + Category("Item", {"A", "Inner"}, ItemMark(1)) +
        Category("Inner", {"B"}, ItemMark(2)) + MarkedInteger("A") + MarkedInteger("B") +
        "<Integer Name=\"Loose\"><Extension><ZELItemGUID>{00000000-0000-0000-0000-000000000009}</ZELItemGUID>"
        "<ZELElementGUID>{00000000-0000-0000-0000-000000000009}</ZELElementGUID></Extension>"
        "<Value>1</Value></Integer>");
    ASSERT_EQ(NamesOf(table), std::vector<std::wstring>{L"Item"});
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"A"});
}

TEST_F(Discovery, LeavesUnmarkedFeaturesAndEmptyItemsOut) {
    const auto& table = TableOf(Category("Root", {"None", "Some"}) + Category("None", {"B"}, ItemMark(1)) +
                                Category("Some", {"B", "A"}, ItemMark(2)) + MarkedInteger("A") +
                                "<Integer Name=\"B\"><Value>1</Value></Integer>");
    ASSERT_EQ(NamesOf(table), std::vector<std::wstring>{L"Some"});
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"A"});
}

TEST_F(Discovery, KeepsItemsWithOneIdApart) {
    const std::string nodes = Category("Root", {"First", "Second"}) + Category("First", {"A"}, ItemMark(1)) +
                              Category("Second", {"A"}, ItemMark(1)) + MarkedInteger("A");
    const auto& table = TableOf({nodes, nodes});
    EXPECT_EQ(NamesOf(table), (std::vector<std::wstring>{L"First", L"Second", L"First", L"Second"}));
}

TEST_F(Discovery, ListsAnItemOncePerCategoryThatListsIt) {
    const auto& table =
        TableOf(Category("Root", {"G1", "G2"}) + Category("G1", {"Shared"}) + Category("G2", {"Shared"}) +
                Category("Shared", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    EXPECT_EQ(table.size(), 2U);
}

TEST_F(Discovery, NeedsARootThatIsACategory) {
    const std::string item = Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A");
    const auto& table = TableOf({item, "<Integer Name=\"Root\"><Value>1</Value></Integer>" + item,
                                 Category("Root", {"Item"}) + item});
    EXPECT_EQ(table.size(), 1U);
    EXPECT_EQ(adapter_.get_documents().size(), 3U);
}

TEST_F(Discovery, TakesAnUnreadableItemIdForNone) {
    const std::string texts[] = {
        "00000000-0000-0000-0000-000000000001", "", "{00000000-0000-0000-0000-00000000000}",
        " {00000000-0000-0000-0000-000000000001}", "{00000000-0000-0000-0000-000000000000}"};
    for (const std::string& text : texts) {
        ScriptedCamera camera(
            AccessPath::Registers,
            {Description(Category("Root", {"Outer"}) +
                         Category("Outer", {"Inner"},
                                  "<Extension><ZELItemGUID>" + text + "</ZELItemGUID></Extension>") +
                         Category("Inner", {"A"}, ItemMark(2)) + MarkedInteger("A"))});
        GenICamAdapterDevice adapter(&camera.filter);
        EXPECT_EQ(NamesOf(adapter.get_item_table()), std::vector<std::wstring>{L"Inner"}) << text;
    }
}

TEST_F(Discovery, TakesAnUnreadableElementIdForNone) {
    const std::string unbraced =
        "<Integer Name=\"B\"><Extension><ZELElementGUID>00000000-0000-0000-0000-000000000001"
        "</ZELElementGUID></Extension><Value>1</Value></Integer>";
    const auto& table = TableOf(Category("Root", {"Item"}) + Category("Item", {"A", "B"}, ItemMark(1)) +
                                MarkedInteger("A") + unbraced);
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"A"});
}

TEST_F(Discovery, LooksAtNothingButMarksAndImplementation) {
    const std::string fate =
        "<Visibility>Invisible</Visibility><IsDeprecated>Yes</IsDeprecated>"
        "<ImposedAccessMode>WO</ImposedAccessMode>";
    const auto& table = TableOf(
        Category("Root", {"Item"}) + Category("Item", {"A", "Debug", "Unavailable"}, ItemMark(1)) +
        MarkedInteger("A", 1, fate) +
        "<Integer Name=\"Debug\"><Extension><ZELIsDebugProperty>1</ZELIsDebugProperty><ZELElementGUID>"
        "{00000000-0000-0000-0000-000000000009}</ZELElementGUID></Extension><Value>1</Value></Integer>" +
        MarkedInteger("Unavailable", 2, "<pIsAvailable>No</pIsAvailable>") +
        "<Integer Name=\"No\"><Value>0</Value></Integer>");
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), (std::vector<std::wstring>{L"A", L"Debug", L"Unavailable"}));
}

const std::string implementation_nodes =
    Category("Root", {"Item"}) + Category("Item", {"Yes", "No", "Unknown"}, ItemMark(1)) +
    MarkedInteger("Yes") + MarkedInteger("No", 2, "<pIsImplemented>Zero</pIsImplemented>") +
    MarkedInteger("Unknown", 3, "<pIsImplemented>Broken</pIsImplemented>") +
    "<Integer Name=\"Zero\"><Value>0</Value></Integer>"
    "<Integer Name=\"Broken\"><Value>0</Value><pIsAvailable>Zero</pIsAvailable></Integer>";

TEST_F(Discovery, AsksTheNodeInRegisterAccess) {
    const auto& table = TableOf(implementation_nodes);
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), (std::vector<std::wstring>{L"Yes", L"Unknown"}));
    for (const DriverRequest& request : test_support::NotEmpty(camera_.filter.TakeRequests())) {
        const bool asks_for_support = request.kind == DriverRequest::Kind::query_supported;
        EXPECT_TRUE(asks_for_support || request.id != 4U);
    }
}

TEST(NamedDiscovery, AsksTheDriver) {
    ScriptedCamera camera(AccessPath::Named, {Description(implementation_nodes)});
    camera.Answer("Yes/IsImplemented", std::uint64_t{0});
    camera.Answer("No/IsImplemented", std::uint64_t{0x100000000});
    GenICamAdapterDevice adapter(&camera.filter);
    const auto& table = adapter.get_item_table();
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"No"}) << "the third path is refused";
    EXPECT_EQ(table[0].factory, &make_genicam_propdata_named);
    auto requests = camera.filter.TakeRequests();
    requests.erase(requests.begin(), requests.end() - 3);
    EXPECT_EQ(requests, (std::vector{NamedGet("Yes/IsImplemented"), NamedGet("No/IsImplemented"),
                                     NamedGet("Unknown/IsImplemented")}));
}

TEST(NamedDiscovery, AsksOnlyForMarkedFeaturesWhateverTheirKind) {
    ScriptedCamera camera(
        AccessPath::Named,
        {Description(Category("Root", {"Item"}) + Category("Item", {"Text", "Unmarked", "A"}, ItemMark(1)) +
                     "<String Name=\"Text\">" + ElementMark() +
                     "<Value>text</Value></String>"
                     "<Integer Name=\"Unmarked\"><Value>1</Value></Integer>" +
                     MarkedInteger("A"))});
    camera.other_paths = [](std::string_view, Bytes& answer) {
        answer = BytesOf(std::uint64_t{1});
        return true;
    };
    GenICamAdapterDevice adapter(&camera.filter);
    const auto& table = adapter.get_item_table();
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"A"});
    auto requests = camera.filter.TakeRequests();
    requests.erase(requests.begin(), requests.end() - 2);
    EXPECT_EQ(requests, (std::vector{NamedGet("Text/IsImplemented"), NamedGet("A/IsImplemented")}));
}

TEST(NamedDiscovery, IsPreferredWhenTheDriverServesBoth) {
    const std::string nodes = Category("Root", {"First", "Second"}) + Category("First", {"A"}, ItemMark(1)) +
                              Category("Second", {"A"}, ItemMark(2)) + MarkedInteger("A");
    ScriptedCamera camera(AccessPath::Both, {Description(nodes), Description(nodes)});
    camera.Answer("A/IsImplemented", std::uint64_t{1});
    GenICamAdapterDevice adapter(&camera.filter);
    const auto& table = adapter.get_item_table();
    EXPECT_EQ(table.size(), 4U);
    for (const ItemRecord& record : table) EXPECT_EQ(record.factory, &make_genicam_propdata_named);
}

TEST_F(Discovery, IsDoneOnce) {
    const auto& first =
        TableOf(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    (void)camera_.filter.TakeRequests();
    const auto& second = adapter_.get_item_table();
    EXPECT_EQ(&first, &second);
    EXPECT_TRUE(camera_.filter.TakeRequests().empty());
    EXPECT_EQ(adapter_.get_documents().size(), 1U);
}

TEST_F(Discovery, IsRepeatedWhileThereAreNoItems) {
    EXPECT_TRUE(TableOf(MarkedInteger("A")).empty());
    EXPECT_TRUE(adapter_.get_item_table().empty());
    EXPECT_EQ(adapter_.get_documents().size(), 2U);
    camera_.descriptions.push_back(
        Description(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A")));
    EXPECT_EQ(adapter_.get_item_table().size(), 1U);
    EXPECT_EQ(adapter_.get_documents().size(), 4U);
}

TEST_F(Discovery, LeavesNoTableAtAMalformedDescription) {
    camera_.descriptions = {
        Description(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A")),
        "<broken"};
    EXPECT_THROW((void)adapter_.get_item_table(), hr_exception);
    EXPECT_EQ(adapter_.get_documents().size(), 1U);
    (void)camera_.filter.TakeRequests();
    EXPECT_THROW((void)adapter_.get_item_table(), hr_exception);
    EXPECT_EQ(adapter_.get_documents().size(), 2U);
    EXPECT_EQ(camera_.filter.TakeRequests().front(), SizeGet(1, 0));
    camera_.descriptions.pop_back();
    EXPECT_EQ(adapter_.get_item_table().size(), 3U) << "one row for each document that came to be";
}

TEST_F(Discovery, WalksAChainOfAnyDepth) {
    constexpr int depth = 100'000;
    std::string nodes = Category("Root", {"C0"});
    for (int at = 0; at < depth; ++at) {
        nodes += Category("C" + std::to_string(at), {at + 1 < depth ? "C" + std::to_string(at + 1) : "Item"});
    }
    const auto& table = TableOf(nodes + Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    ASSERT_EQ(table.size(), 1U);
    EXPECT_STREQ(table[0].group, L"C99999");
}

TEST_F(Discovery, EndsForCategoriesThatListEachOther) {
    const auto& table = TableOf(Category("Root", {"B", "Root"}) + Category("B", {"C", "I1"}) +
                                Category("C", {"B", "C", "Root", "I2"}) + Category("I1", {"A"}, ItemMark(1)) +
                                Category("I2", {"A"}, ItemMark(2)) + MarkedInteger("A"));
    EXPECT_EQ(NamesOf(table), (std::vector<std::wstring>{L"I2", L"I1"}));
}

TEST_F(Discovery, EndsForCategoriesWithMoreWaysThroughThemThanAnybodyCanWalk) {
    std::vector<std::string> names;
    for (char name = 'A'; name <= 'T'; ++name) names.emplace_back(1, name);
    std::string nodes = Category("Root", {"Item", "A"});
    for (const std::string& name : names) nodes += Category(name, names);
    const auto& table =
        TableOf(nodes + Category("Item", {"Feature"}, ItemMark(1)) + MarkedInteger("Feature"));
    EXPECT_EQ(NamesOf(table), std::vector<std::wstring>{L"Item"});
}

std::vector<std::string> Times(std::size_t count, const std::string& name) { return {count, name}; }

// Two categories that list one another again and again: every way through them is another listing.
TEST_F(Discovery, EndsForTwoCategoriesThatListOneAnotherAThousandTimes) {
    const std::string id =
        "<Extension><ZELItemGUID>" + std::string(60'000, 'x') + "</ZELItemGUID></Extension>";
    std::vector<std::string> listed = Times(1'000, "Other");
    listed.insert(listed.begin(), "Item");
    const auto& table = TableOf(Category("Root", listed) + Category("Other", Times(2'000, "Root"), id) +
                                Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    EXPECT_EQ(NamesOf(table), std::vector<std::wstring>{L"Item"});
}

// Widened, the text of the id would take twice its length, and each time that the category is listed.
TEST_F(Discovery, AnUnreadableIdTakesNoMemoryHoweverOftenItIsListed) {
    constexpr std::size_t length = 100'000;
    const std::string id =
        "<Extension><ZELItemGUID>" + std::string(length, 'x') + "</ZELItemGUID></Extension>";
    (void)TableOf(Category("Root", Times(1'000, "Other")) + Category("Other", {}, id));
    const std::uint64_t before = AllocatedBytes();
    EXPECT_TRUE(collect_items(Node("Root")).empty());
    EXPECT_LT(AllocatedBytes() - before, length);
}

TEST_F(Discovery, LooksAtNoMoreEntriesThanItsBound) {
    // 1,000 ways to a category with 1,001 entries, the last of which is an item.
    std::vector<std::string> entries = Times(1'000, "Empty");
    entries.emplace_back("Item");
    const auto& table =
        TableOf(Category("Root", Times(1'000, "Group")) + Category("Group", entries) + Category("Empty", {}) +
                Category("Item", {"A"}, ItemMark(1)) + MarkedInteger("A"));
    EXPECT_EQ(table.size(), most_entries / 1'002);
}

TEST_F(Discovery, FindsNoMoreItemsThanItsBound) {
    const std::string long_name = "<DisplayName>" + std::string(20'000, 'n') + "</DisplayName>";
    const auto& table =
        TableOf(Category("Root", Times(400, "Group")) + Category("Group", Times(400, "Item"), long_name) +
                Category("Item", {"A"}, ItemMark(1) + long_name) + MarkedInteger("A", 1, long_name));
    ASSERT_EQ(table.size(), most_finds);
    // One name serves all that bear it, or these items alone would take gigabytes.
    EXPECT_EQ(table.front().name, table.back().name);
    EXPECT_EQ(table.front().group, table.back().group);
    EXPECT_EQ(table.front().elements[0].name, table.back().elements[0].name);
}

TEST_F(Discovery, FindsNoMoreElementsThanItsBound) {
    const auto& table = TableOf(Category("Root", Times(400, "Item")) +
                                Category("Item", Times(400, "A"), ItemMark(1)) + MarkedInteger("A"));
    std::size_t elements = 0;
    for (const ItemRecord& record : table) elements += record.element_count;
    EXPECT_EQ(elements, most_finds);
    EXPECT_EQ(table.size(), 250U) << "items without elements leave no trace";
}

TEST(NamedDiscovery, AsksTheDriverNoMoreOftenThanTheBoundOfFinds) {
    ScriptedCamera camera(AccessPath::Named,
                          {Description(Category("Root", Times(400, "Item")) +
                                       Category("Item", Times(400, "A"), ItemMark(1)) + MarkedInteger("A"))});
    std::size_t asked = 0;
    camera.other_paths = [&](std::string_view, Bytes&) {
        ++asked;
        return false;
    };
    GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_TRUE(adapter.get_item_table().empty());
    EXPECT_EQ(asked, most_finds);
}

TEST(CollectElements, StopsWithoutAWordAtAnException) {
    ScriptedCamera camera(
        AccessPath::Named,
        {Description(Category("Root", {"Item"}) + Category("Item", {"A", "B", "C"}, ItemMark(1)) +
                     MarkedInteger("A") + MarkedInteger("B") + MarkedInteger("C"))});
    camera.other_paths = [](std::string_view path, Bytes& answer) {
        if (path == "B/IsImplemented") throw hr_exception("a driver that throws");
        answer = BytesOf(std::uint64_t{1});
        return true;
    };
    GenICamAdapterDevice adapter(&camera.filter);
    const auto& table = adapter.get_item_table();
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(ElementNamesOf(table[0]), std::vector<std::wstring>{L"A"});
}

TEST(CollectElements, LetsOtherExceptionsThrough) {
    ScriptedCamera camera(AccessPath::Named,
                          {Description(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(1)) +
                                       MarkedInteger("A"))});
    camera.other_paths = [](std::string_view, Bytes&) -> bool { throw 7; };
    GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_THROW((void)adapter.get_item_table(), int);
    camera.other_paths = nullptr;
    camera.Answer("A/IsImplemented", std::uint64_t{1});
    EXPECT_EQ(adapter.get_item_table().size(), 2U) << "no half of a table stayed";
}

TEST_F(Discovery, FunctionsWorkAlone) {
    camera_.descriptions = {Description(Category("Root", {"Item"}) + Category("Item", {"A"}, ItemMark(5)) +
                                        MarkedInteger("A", 6))};
    adapter_.fetch_descriptions();
    const auto candidates = collect_items(Node("Root"));
    ASSERT_EQ(candidates.size(), 1U);
    EXPECT_EQ(candidates[0].item_id, ItemId(5));
    EXPECT_EQ(candidates[0].category, Node("Item"));
    EXPECT_EQ(*candidates[0].group_name, L"Root");
    const auto elements = collect_elements(candidates[0], nullptr, false);
    ASSERT_EQ(elements.size(), 1U);
    EXPECT_EQ(*elements[0].name, L"A");
    EXPECT_EQ(elements[0].element_id, ElementId(6));
    EXPECT_EQ(elements[0].level, 0);
    ASSERT_EQ(elements[0].bindings.size(), 1U);
    EXPECT_EQ(elements[0].bindings[0].key, key_of(Node("A")));
    EXPECT_TRUE(collect_elements(candidates[0], &camera_.filter, true).empty());
    const item_candidate of_a_feature = {ItemId(5), Node("A"), candidates[0].group_name};
    EXPECT_TRUE(collect_elements(of_a_feature, nullptr, false).empty()) << "it lists nothing";
    EXPECT_EQ(read_extension_guid(Node("A"), "ZELElementGUID"), ElementId(6));
    EXPECT_EQ(read_extension_guid(Node("A"), "ZELItemGUID"), platform::null_guid);
}

}  // namespace
}  // namespace adapter_test
