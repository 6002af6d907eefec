// The name that was meant.

#include "apps/inspect/similar_name.h"

#include <gtest/gtest.h>

namespace {

using selvane_inspect::find_similar;

TEST(SimilarName, FindsSlips) {
    EXPECT_EQ(find_similar("Endianness", {"Sign", "Endianess", "Length"}), "Endianess");
    EXPECT_EQ(find_similar("DispalyName", {"DisplayName", "Name"}), "DisplayName");
    EXPECT_EQ(find_similar("visibility", {"Visibility"}), "Visibility");
    EXPECT_EQ(find_similar("pMni", {"pMax", "pMin", "pInc"}), "pMin");
    EXPECT_EQ(find_similar("Valu", {"Value"}), "Value");
}

TEST(SimilarName, TakesTheNearest) {
    EXPECT_EQ(find_similar("GainRaw", {"GainMax", "GainRow", "Gain"}), "GainRow");
    EXPECT_EQ(find_similar("AB", {"AC", "AD"}), "AC");
}

TEST(SimilarName, FindsNothingAmongStrangers) {
    EXPECT_EQ(find_similar("Temperature", {"Gain", "Exposure"}), "");
    EXPECT_EQ(find_similar("X", {}), "");
    EXPECT_EQ(find_similar("Max", {"Inc"}), "");
}

}  // namespace
