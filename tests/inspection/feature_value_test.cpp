// Values as text and as JSON.

#include "inspection/feature_value.h"

#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace selvane_inspect;
using GenICam::Representation;

TEST(FeatureValue, WritesEachKind) {
    EXPECT_EQ(value_text(feature_value()), "");
    EXPECT_EQ(value_text(std::int64_t{-12}), "-12");
    EXPECT_EQ(value_text(0.1), "0.1");
    EXPECT_EQ(value_text(5.0), "5");
    EXPECT_EQ(value_text(true), "true");
    EXPECT_EQ(value_text(false), "false");
    EXPECT_EQ(value_text(std::string("a\"b\\c\x01")), "\"a\\\"b\\\\c\\x01\"");
    EXPECT_EQ(value_text(entry_value{"Fast", 3}), "Fast (3)");
    EXPECT_EQ(value_text(simcam::bytes{0, 0xAB}), "00 AB");
}

TEST(FeatureValue, CutsBlocksOnRequest) {
    const simcam::bytes block = {1, 2, 3};
    EXPECT_EQ(value_text(block, Representation::PureNumber, 3), "01 02 03");
    EXPECT_EQ(value_text(block, Representation::PureNumber, 2), "01 02 ... (3 bytes)");
}

TEST(FeatureValue, PutsTextsOnOneLine) {
    EXPECT_EQ(on_one_line("a  b"), "a  b");
    EXPECT_EQ(on_one_line(" \n a \t\r\n  b\n"), "a b");
    EXPECT_EQ(on_one_line("  a "), "a");
    EXPECT_EQ(on_one_line("a\x1B[1m\x7F"), "a\\x1B[1m\\x7F");
    EXPECT_EQ(on_one_line("\xC2\xB5s"), "\xC2\xB5s");
    EXPECT_EQ(on_one_line("\n"), "");
}

TEST(FeatureValue, WritesIntegersAsTheyAreRepresented) {
    EXPECT_EQ(value_text(std::int64_t{255}, Representation::HexNumber), "0xFF");
    EXPECT_EQ(value_text(std::int64_t{-1}, Representation::HexNumber), "0xFFFFFFFFFFFFFFFF");
    EXPECT_EQ(value_text(std::int64_t{0xC0A80001}, Representation::IPV4Address), "192.168.0.1");
    EXPECT_EQ(value_text(std::int64_t{0x00112233AABB}, Representation::MACAddress), "00:11:22:33:AA:BB");
    for (const Representation other : {Representation::Linear, Representation::Logarithmic,
                                       Representation::Boolean, Representation::PureNumber}) {
        EXPECT_EQ(value_text(std::int64_t{16}, other), "16");
    }
}

TEST(FeatureValue, WritesJson) {
    EXPECT_TRUE(value_json(feature_value()).is_null());
    EXPECT_EQ(value_json(std::int64_t{5}), 5);
    EXPECT_TRUE(value_json(5.0).is_number_float());
    EXPECT_EQ(value_json(true), true);
    EXPECT_EQ(value_json(std::string("a")), "a");
    EXPECT_EQ(value_json(entry_value{"Fast", 3}), "Fast");
    EXPECT_EQ(value_json(simcam::bytes{1, 2}), "01 02");
    EXPECT_EQ(value_json(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(value_json(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(FeatureValue, NamesKindsAndWords) {
    EXPECT_EQ(kind_word(GenICam::node_type::integer), "integer");
    EXPECT_EQ(kind_word(GenICam::node_type::register_block), "register");
    EXPECT_EQ(kind_word(GenICam::node_type::enum_entry), "entry");
    EXPECT_EQ(visibility_word(GenICam::Visibility::Guru), "Guru");
    EXPECT_EQ(access_word(GenICam::AccessMode::WO), "WO");
}

}  // namespace
