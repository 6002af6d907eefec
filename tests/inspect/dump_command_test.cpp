// selvane_inspect dump

#include "tests/inspect/inspection.h"

#include "inspection/description.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;

class DumpCommandTest : public InspectTest {};

TEST_F(DumpCommandTest, PrintsTheEnginesOwnListings) {
    const std::string path = ProjectDescription("simulated_camera");
    const auto opened = selvane_inspect::description::open(path);
    EXPECT_EQ(Call({"dump", path, "stats"}).out, opened->document()->dump(0));
    EXPECT_EQ(Call({"dump", path, "nodes"}).out, opened->document()->dump(1));
}

TEST_F(DumpCommandTest, GivesThemAsJson) {
    const std::string path = WriteElements(
        "<Integer Name=\"A\"><Value>1</Value></Integer><Integer Name=\"B\"><pValue>A</pValue></Integer>");
    const nlohmann::json nodes = Call({"dump", path, "nodes", "--json"}).Json();
    EXPECT_EQ(nodes["command"], "dump");
    EXPECT_EQ(nodes["what"], "nodes");
    EXPECT_EQ(nodes["nodes"],
              nlohmann::json::parse(R"([{"name":"A","dependents":1},{"name":"B","dependents":0},
                                                        {"name":"Device","dependents":-1}])"));
    const nlohmann::json stats = Call({"dump", path, "stats", "--json"}).Json();
    EXPECT_EQ(stats["elements"], (nlohmann::json{{"Integer", 2}, {"Port", 1}}));
    EXPECT_EQ(stats["classes"].size(), 32U);
}

}  // namespace
