// How links find their nodes while a description loads.

#include "genicam/document/name_index.h"

#include "genicam/core/text_words.h"
#include "tests/support/test_document.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using GenICam::name_index;

TEST(NameIndex, FindsEveryName) {
    std::vector<std::string> names;
    for (int at = 0; at < 5000; ++at) names.push_back("Node" + std::to_string(at));
    name_index index(names.size());
    for (std::uint32_t at = 0; at < names.size(); ++at) ASSERT_TRUE(index.add(names[at], at));
    for (std::uint32_t at = 0; at < names.size(); ++at) {
        EXPECT_EQ(index.find(names[at], [&](std::uint32_t position) { return names[position] == names[at]; }),
                  at);
    }
    EXPECT_EQ(index.find("Nowhere", [](std::uint32_t) { return false; }), name_index::not_found);
}

// As descriptions have them: long, and different at their ends.
TEST(NameIndex, TakesNamesThatAreMuchAlike) {
    name_index index(20000);
    std::uint32_t position = 0;
    for (const char* name : {"Reg", "SequencerSetActive", "ChunkParserControlValue", "LUTValueAllEntries_"}) {
        for (int at = 0; at < 5000; ++at)
            ASSERT_TRUE(index.add(name + std::to_string(at), position++)) << name << at;
    }
}

TEST(NameIndex, OfNoNamesFindsNone) {
    const name_index index(0);
    EXPECT_EQ(index.find("Any", [](std::uint32_t) { return true; }), name_index::not_found);
}

TEST(NameIndex, RefusesNamesThatCrowdItsSlots) {
    name_index index(1000);
    std::uint32_t taken = 0;
    while (taken < 1000 && index.add("Same", taken)) ++taken;
    EXPECT_GT(taken, 8U);
    EXPECT_LT(taken, 1000U);
}

// The same nodes as by name afterwards, the first of equal ones too.
TEST(NameIndex, GivesLinksTheNodesThatNamesHaveLater) {
    std::string description;
    for (int at = 0; at < 300; ++at) {
        const std::string number = std::to_string(at);
        description += "<Integer Name='Twin'><Value>" + number + "</Value></Integer>";
        description += "<Integer Name='Link" + number + "'><pValue>Twin</pValue></Integer>";
    }
    test_support::TestDocument doc(description);
    const std::int64_t expected = doc.Integer("Twin").get_val(0).value();
    for (int at = 0; at < 300; ++at)
        EXPECT_EQ(doc.Integer("Link" + std::to_string(at)).get_val(0).value(), expected);
}

TEST(SameText, LooksAtEveryByte) {
    for (const std::size_t size : {1U, 7U, 8U, 9U, 16U, 17U, 40U}) {
        const std::string text(size, 'a');
        EXPECT_TRUE(GenICam::is_same_text(text, std::string(size, 'a'))) << size;
        EXPECT_FALSE(GenICam::is_same_text(text, text + 'a')) << size;
        for (std::size_t at = 0; at < size; ++at) {
            std::string other = text;
            other[at] = 'b';
            EXPECT_FALSE(GenICam::is_same_text(text, other)) << size << " " << at;
        }
    }
}

}  // namespace
