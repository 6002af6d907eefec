// selvane_inspect info

#include "tests/inspect/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::HasSubstr;

class InfoCommandTest : public InspectTest {};

TEST_F(InfoCommandTest, TellsTheHeader) {
    const Outcome outcome = Call({"info", ProjectDescription("simulated_camera")});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    for (const char* line :
         {"vendor        Selvane\n", "model         SIM1203C\n", "version       1.0.0\n",
          "schema        1.1.0\n", "standard      None\n", "messages      0 while loading\n"}) {
        EXPECT_THAT(outcome.out, HasSubstr(line));
    }
    EXPECT_THAT(WithoutNumbers(outcome.out), HasSubstr("load time     0.0 ms\n"));
}

TEST_F(InfoCommandTest, CountsElementsAndClasses) {
    const std::string path = WriteElements(
        "<Integer Name=\"A\"><Value>1</Value></Integer><Integer Name=\"B\"><Value>1</Value></Integer>"
        "<Integer Name=\"C\"><pValue>A</pValue></Integer><Integer Name=\"D\"/>");
    const Outcome outcome = Call({"info", path});
    EXPECT_THAT(outcome.out, HasSubstr("nodes         4\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\nelements                                count\n"
                                       "    Integer                                 3\n"
                                       "    Port                                    1\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\n    integer_floating_value_type             2            "));
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("float_pValue_type")));
    EXPECT_THAT(outcome.out, HasSubstr("schema        -\n"));
}

TEST_F(InfoCommandTest, GivesJson) {
    const std::string path = WriteElements("<Integer Name=\"A\"><Value>x</Value></Integer>");
    const nlohmann::json json = Call({"info", path, "--json"}).Json();
    EXPECT_EQ(json["command"], "info");
    EXPECT_EQ(json["file"], path);
    EXPECT_EQ(json["vendor"], "V");
    EXPECT_EQ(json["model"], "M");
    EXPECT_EQ(json["version"], "0.0.0");
    EXPECT_EQ(json["nodes"], 2);
    EXPECT_EQ(json["elements"], (nlohmann::json{{"Integer", 1}, {"Port", 1}}));
    EXPECT_EQ(json["classes"].size(), 32U);
    EXPECT_EQ(json["load_messages"], 1);
    EXPECT_GT(json["memory"]["nodes"], 0);
    EXPECT_EQ(json["memory"]["text"], json["bytes"]);
    EXPECT_TRUE(json["load_microseconds"].is_number_integer());
    for (const auto& one : json["classes"]) {
        EXPECT_TRUE(one["name"].is_string() && one["count"].is_number() && one["size"].is_number() &&
                    one["destructor"].is_boolean());
    }
}

}  // namespace
