#include "genicam/nodes/enumeration_nodes.h"

#include "tests/support/node_test.h"

#include <cmath>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace node_test {
namespace {

constexpr const char* entries =
    "<EnumEntry Name='One'><Value>1</Value></EnumEntry><EnumEntry Name='Two'><Value>2</Value></EnumEntry>"
    "<EnumEntry Name='Deux'><Value>2</Value></EnumEntry>"
    "<EnumEntry Name='Seven'><Value>7</Value><NumericValue>0.5</NumericValue></EnumEntry>";

// Both classes, over a stored value and over a linked one.
std::vector<std::string> both_kinds(const std::string& children) {
    return {"<Enumeration Name='e'><Value>1</Value>" + children +
                "</Enumeration><Integer Name='v'><Value>1</Value></Integer>",
            "<Enumeration Name='e'><pValue>v</pValue>" + children +
                "</Enumeration><Integer Name='v'><Value>1</Value></Integer>"};
}

TEST(Enumeration, SelectsByValueAndTheFirstOfEqualValuesWins) {
    for (const std::string& text : both_kinds(entries)) {
        TestDocument doc(text);
        IEnumeration& node = doc.Enumeration("e");
        EXPECT_EQ(node.get_selected_entry(0).value()->get_name(), "One");
        EXPECT_FALSE(node.set_selected_entry(node.find_entry("Deux"), 0));
        EXPECT_EQ(node.get_selected_entry(0).value()->get_name(), "Two");
        EXPECT_EQ(node.find_entry(2)->get_name(), "Two");
        EXPECT_EQ(node.find_entry(2)->get_index(), 1U);
    }
}

TEST(Enumeration, EntriesInDocumentOrder) {
    for (const std::string& text : both_kinds(entries)) {
        TestDocument doc(text);
        IEnumeration& node = doc.Enumeration("e");
        std::vector<std::string> names;
        for (IEnumEntry* entry : node.get_entries()) {
            EXPECT_EQ(entry->get_index(), names.size());
            names.emplace_back(entry->get_name());
        }
        EXPECT_THAT(names, ElementsAre("One", "Two", "Deux", "Seven"));
        ASSERT_EQ(node.get_entry_span().size(), 4U);
        EXPECT_EQ(&node.get_entry_span()[3], node.get_entries()[3]);
        EXPECT_EQ(doc->find_node("One"), nullptr) << "entries are no nodes of the document";
    }
}

// Few entries are searched, many are found in an order that is made of them.
TEST(Enumeration, FindsTheFirstOfEqualEntriesHoweverManyThereAre) {
    for (const int entries : {1, 2, 5, 32, 33, 34, 100}) {
        std::string text;
        for (int at = 0; at < entries; ++at) {
            // Neither values nor names come in order, and each but one comes twice where there is room.
            const int key = at * 37 % ((entries + 1) / 2);
            text += "<EnumEntry Name='n" + std::to_string(key) + "'><Value>" + std::to_string(key - 20) +
                    "</Value></EnumEntry>";
        }
        TestDocument doc("<Enumeration Name='e'>" + text + "<Value>0</Value></Enumeration>");
        IEnumeration& node = doc.Enumeration("e");
        const std::vector<IEnumEntry*> all = node.get_entries();
        ASSERT_EQ(all.size(), static_cast<std::size_t>(entries));
        std::set<std::string> names;
        std::set<std::int64_t> values;
        for (IEnumEntry* entry : all) {
            const bool is_first_name = names.insert(std::string(entry->get_name())).second;
            EXPECT_EQ(node.find_entry(entry->get_name()) == entry, is_first_name) << entries;
            const bool is_first_value = values.insert(entry->get_value()).second;
            EXPECT_EQ(node.find_entry(entry->get_value()) == entry, is_first_value) << entries;
        }
        for (const char* name : {"", "n", "n00", "zz", "N0"})
            EXPECT_EQ(node.find_entry(name), nullptr) << entries;
        for (const std::int64_t value : {std::int64_t{-21}, std::int64_t{1000}, INT64_MIN, INT64_MAX})
            EXPECT_EQ(node.find_entry(value), nullptr) << entries;
    }
}

TEST(Enumeration, FindsEntriesExactly) {
    TestDocument doc(both_kinds(entries).front());
    IEnumeration& node = doc.Enumeration("e");
    EXPECT_EQ(node.find_entry("two"), nullptr);
    EXPECT_EQ(node.find_entry("Tw"), nullptr);
    EXPECT_EQ(node.find_entry("Twoo"), nullptr);
    EXPECT_EQ(node.find_entry(""), nullptr);
    EXPECT_EQ(node.find_entry(0), nullptr);
    EXPECT_EQ(node.find_entry(7)->get_name(), "Seven");
}

TEST(Enumeration, FindsTheNearestEntry) {
    TestDocument doc(
        "<Enumeration Name='e'><Value>1</Value><EnumEntry Name='a'><Value>1</Value></EnumEntry><EnumEntry "
        "Name='b'>"
        "<Value>2</Value></EnumEntry><EnumEntry Name='c'><Value>3</Value></EnumEntry></Enumeration>");
    IEnumeration& node = doc.Enumeration("e");
    EXPECT_EQ(node.find_nearest_entry(2.5)->get_name(), "b") << "a tie keeps the earlier one";
    EXPECT_EQ(node.find_nearest_entry(2.51)->get_name(), "c");
    EXPECT_EQ(node.find_nearest_entry(-100)->get_name(), "a");
    EXPECT_EQ(node.find_nearest_entry(std::nan("")), nullptr);
    EXPECT_EQ(node.find_nearest_entry(HUGE_VAL), nullptr) << "no distance is below the greatest number";
    TestDocument numeric(both_kinds(entries).front());
    EXPECT_EQ(numeric.Enumeration("e").find_nearest_entry(0.4)->get_name(), "Seven");
}

TEST(Enumeration, AValueWithoutAnEntryFailsUntilOneIsSelected) {
    const char* const classes[] = {"enumeration_Value_type", "enumeration_pValue_type"};
    const std::string texts[] = {
        std::string("<Enumeration Name='e'><Value>9</Value>") + entries + "</Enumeration>",
        std::string("<Enumeration Name='e'><pValue>v</pValue>") + entries +
            "</Enumeration><Integer Name='v'><Value>9</Value></Integer>"};
    for (std::size_t kind = 0; kind < 2; ++kind) {
        TestDocument doc(texts[kind]);
        IEnumeration& node = doc.Enumeration("e");
        EXPECT_EQ(node.get_selected_entry(0).error(), code(index_out_of_range));
        EXPECT_THAT(
            doc.log.Take(),
            ElementsAre(
                std::string("GenICam::") + classes[kind] +
                "::get_selected_entry, Enumeration (\"e\"). Failed to find EnumEntry corresponding to "
                "current value=9.\n"));
        EXPECT_FALSE(node.set_selected_entry(node.find_entry("Two"), 0));
        EXPECT_EQ(node.get_selected_entry(0).value()->get_name(), "Two");
    }
}

TEST(Enumeration, NullAndForeignEntries) {
    for (const std::string& text : both_kinds(entries)) {
        TestDocument doc(
            text +
            "<Enumeration Name='other'><Value>1</Value><EnumEntry Name='x'><Value>7</Value>"
            "<pIsAvailable>no</pIsAvailable></EnumEntry></Enumeration><Integer Name='no'><Value>0"
            "</Value></Integer>");
        IEnumeration& node = doc.Enumeration("e");
        EXPECT_EQ(node.set_selected_entry(nullptr, 0), code(index_out_of_range));
        IEnumEntry* foreign = doc.Enumeration("other").find_entry("x");
        EXPECT_FALSE(foreign->is_available());
        EXPECT_FALSE(node.set_selected_entry(foreign, 0)) << "only its value counts";
        EXPECT_EQ(node.get_selected_entry(0).value()->get_name(), "Seven");
    }
}

TEST(Enumeration, AWriteOfTheSameEntryIsSilent) {
    TestDocument doc(both_kinds(entries).front());
    IEnumeration& node = doc.Enumeration("e");
    ChangeCounter changes(doc.Node("e"));
    EXPECT_FALSE(node.set_selected_entry(node.find_entry("One"), 0));
    EXPECT_EQ(changes.Count(), 0);
    EXPECT_FALSE(node.set_selected_entry(node.find_entry("Two"), 0));
    EXPECT_FALSE(node.set_selected_entry(node.find_entry("Deux"), 0)) << "has the same value";
    EXPECT_EQ(changes.Count(), 1);
}

TEST(Enumeration, Access) {
    for (const std::string& text : both_kinds(std::string(entries) + "<pIsAvailable>no</pIsAvailable>")) {
        TestDocument doc(text + "<Integer Name='no'><Value>0</Value></Integer>");
        IEnumeration& node = doc.Enumeration("e");
        EXPECT_EQ(node.get_selected_entry(0).error(), code(node_not_available));
        EXPECT_EQ(node.set_selected_entry(nullptr, 0), code(node_not_available));
    }
}

TEST(Enumeration, HasNoAccessModeOfItsTarget) {
    TestDocument doc(
        "<Enumeration Name='e'><EnumEntry "
        "Name='A'><Value>1</Value></EnumEntry><pValue>ro</pValue></Enumeration>"
        "<Integer Name='ro'><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>");
    IEnumeration& node = doc.Enumeration("e");
    EXPECT_EQ(node.get_access_mode(), AccessMode::RW);
    EXPECT_EQ(node.set_selected_entry(node.find_entry("A"), 0), code(access_denied));
}

TEST(Enumeration, BadTextsAndLinks) {
    TestDocument doc(
        "<Enumeration Name='a'><Value>x</Value><EnumEntry Name='e'><Value>y</Value></EnumEntry></Enumeration>"
        "<Enumeration Name='b'><pValue>gone</pValue></Enumeration>");
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::enum_entry_type::enum_entry_type, EnumEntry (\"e\"). Failed to parse \"Value\" "
                    "xml node.\n",
                    "GenICam::enumeration_Value_type::_resolve_references, Enumeration (\"a\"). Failed to "
                    "parse \"Value\" xml element.\n",
                    "GenICam::enumeration_pValue_type::_resolve_references, Enumeration (\"b\"). Failed to "
                    "parse/resolve \"pValue\" xml element.\n"));
    EXPECT_EQ(doc.Enumeration("a").get_selected_entry(0).value()->get_value(), 0);
    EXPECT_EQ(doc.Enumeration("b").get_selected_entry(0).error(), code(not_implemented));
    EXPECT_THAT(doc.Enumeration("b").get_entries(), IsEmpty());
}

TEST(Enumeration, WithoutEntries) {
    TestDocument doc("<Enumeration Name='e'><Value>0</Value></Enumeration>");
    IEnumeration& node = doc.Enumeration("e");
    EXPECT_THAT(node.get_entries(), IsEmpty());
    EXPECT_EQ(node.get_selected_entry(0).error(), code(index_out_of_range));
    EXPECT_EQ(node.find_nearest_entry(0), nullptr);
}

TEST(Enumeration, OverALinkThatHasNoValue) {
    TestDocument doc(std::string("<Enumeration Name='e'><pValue>s</pValue>") + entries +
                     "</Enumeration><String Name='s'/>");
    IEnumeration& node = doc.Enumeration("e");
    EXPECT_EQ(node.get_selected_entry(0).error(), code(not_implemented));
    EXPECT_EQ(node.set_selected_entry(node.find_entry("One"), 0), code(not_implemented));
}

TEST(Enumeration, SelectedNodes) {
    TestDocument doc(
        "<Enumeration Name='e'><Value>0</Value><pSelected>i</pSelected></Enumeration><Integer "
        "Name='i'><Value>1"
        "</Value></Integer>");
    EXPECT_THAT(doc.Enumeration("e").get_selected(), ElementsAre(&doc.Node("i")));
}

TEST(EnumEntry, TellsWhatItsElementSays) {
    TestDocument doc(
        "<Enumeration Name='e'><Value>0</Value><EnumEntry Name='a'><Value>-0x10</Value><NumericValue>1.5e1"
        "</NumericValue><IsSelfClearing>Yes</IsSelfClearing><DisplayName>Entry A</DisplayName></EnumEntry>"
        "<EnumEntry "
        "Name='b'><Value>1</Value><NumericValue>x</NumericValue><IsSelfClearing>yes</IsSelfClearing>"
        "</EnumEntry></Enumeration>");
    const std::vector<IEnumEntry*> all = doc.Enumeration("e").get_entries();
    EXPECT_EQ(all[0]->get_value(), -16);
    EXPECT_EQ(all[0]->get_numeric_value(), 15.0);
    EXPECT_TRUE(all[0]->is_self_clearing());
    EXPECT_EQ(all[0]->get_display_name(), "Entry A");
    EXPECT_EQ(all[1]->get_numeric_value(), std::nullopt);
    EXPECT_FALSE(all[1]->is_self_clearing());
    EXPECT_EQ(all[1]->get_display_name(), "b");
    EXPECT_EQ(all[0]->get_eval()->get_dependent_count(), -1);
}

TEST(EnumEntry, HasItsOwnCommonLinks) {
    TestDocument doc(
        "<Enumeration Name='e'><Value>0</Value><EnumEntry Name='a'><Value>1</Value><pIsImplemented>no"
        "</pIsImplemented></EnumEntry></Enumeration><Integer Name='no'><Value>0</Value></Integer>");
    EXPECT_FALSE(doc.Enumeration("e").find_entry("a")->is_implemented());
    EXPECT_TRUE(doc.Node("e").is_implemented());
}

}  // namespace
}  // namespace node_test
