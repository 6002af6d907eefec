// Findings in descriptions of real cameras, and in our own. What is written here has been looked up in the
// files.

#include "data_paths.h"
#include "tests/inspect/inspection.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

using testing::IsEmpty;

using counts = std::map<std::string, std::size_t>;

// How often each rule found something.
counts CountsOf(const nlohmann::json& file) {
    counts found;
    for (const nlohmann::json& finding : file["findings"])
        found[finding["rule"].get<std::string>()] += finding["count"].get<std::size_t>();
    return found;
}

counts Lint(const std::string& file, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {"lint", "--json", file};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return CountsOf(Call(arguments).Json()["files"][0]);
}

// What depends on values is left out: the registers hold zeros, and no camera's do. Nobody has marked them.
std::vector<std::string> StatedAlone() { return {"--ignore", "read-message,division-by-zero,no-marks"}; }

TEST(LintOfOurDescriptions, FindsNothingToRegret) {
    for (const char* name : {"first_page", "value_nodes"})
        EXPECT_THAT(Lint(ProjectDescription(name)), IsEmpty()) << name;
    EXPECT_EQ(Lint(ProjectDescription("identity")), (counts{{"no-marks", 1}}));
    EXPECT_EQ(Call({"lint", ProjectDescription("simulated_camera")}).code, 0);
}

class LintOfRealDescriptions : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(Folder()))
            GTEST_SKIP() << Folder() << " with real descriptions is not there";
    }
    static std::filesystem::path Folder() { return SELVANE_SHARED_DESCRIPTIONS; }
    static std::string File(const std::string& name) { return (Folder() / (name + ".xml")).u8string(); }
};

TEST_F(LintOfRealDescriptions, IsTrue) {
    const std::map<std::string, counts> expected = {
        {"real/adimec-q12a180cxp", {{"integer-division", 2}, {"unread-element", 4}}},
        {"real/alliedvision-gt1930",
         {{"integer-division", 7}, {"unread-element", 46}, {"cachable-not-read", 15}}},
        {"real/basler-a2a2600_20gmbas", {{"unread-element", 157}, {"float-without-min", 15}}},
        {"real/euresys-coaxlink_tlinterface", {{"unread-element", 40}, {"load-message", 2}}},
        {"real/flir-bfs_u3_161s7m",
         {{"unread-element", 58}, {"cachable-not-read", 1}, {"load-message", 8}, {"round-one-argument", 4}}},
        {"real/flir-sc6700", {{"cachable-not-read", 25}}},
        {"real/hamamatsu-c16240_20up", {{"unread-element", 1}}},
        {"real/pointgrey-blackfly_50s5c-leading-line",
         {{"unread-element", 173}, {"cachable-not-read", 19}, {"guarded-division", 4}}},
        {"real/pointgrey-gs3_u3_51s5c",
         {{"unread-element", 140}, {"cachable-not-read", 14}, {"guarded-division", 4}}},
        {"real/vieworks-vnp604", {{"unread-element", 3}, {"float-without-min", 2}, {"cachable-not-read", 7}}},
    };
    for (const auto& [name, found] : expected) EXPECT_EQ(Lint(File(name), StatedAlone()), found) << name;
}

TEST_F(LintOfRealDescriptions, PointsAtTheElement) {
    const nlohmann::json json =
        Call({"lint", "--json", "--only", "round-one-argument", File("real/flir-bfs_u3_161s7m")}).Json();
    const nlohmann::json& first = json["files"][0]["findings"].at(0);
    EXPECT_EQ(first["message"], "FormulaTo of EvCompFloat_Val: ROUND(FROM*SCALE) has one argument");
    EXPECT_EQ(first["line"], 25);
    EXPECT_EQ(first["column"], 550252);
}

TEST_F(LintOfRealDescriptions, SurvivesAllOfThem) {
    std::vector<std::string> arguments = {"lint"};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder())) {
        if (entry.path().extension() == ".xml") arguments.push_back(entry.path().u8string());
    }
    ASSERT_GT(arguments.size(), 1U);
#ifdef SELVANE_SANITIZED
    // Some of them: without sanitizers all are read.
    arguments.resize(1 + arguments.size() / 3);
#endif
    const Outcome outcome = Call(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, "");
}

}  // namespace
}  // namespace inspect_test
