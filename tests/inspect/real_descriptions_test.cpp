// The descriptions of real cameras: every command comes to an end with output of the promised shape.

#include "tests/inspect/inspection.h"

#include "data_paths.h"
#include "inspection/description.h"
#include "tests/support/sweep.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using nlohmann::json;
using namespace nlohmann::literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class InspectedDescriptions : public testing::Test {
protected:
    void SetUp() override {
        for (const char* folder : {"/real", "/marked"}) {
            std::error_code absent;
            const auto path = std::filesystem::u8path(SELVANE_SHARED_DESCRIPTIONS + std::string(folder));
            for (const auto& file : std::filesystem::directory_iterator(path, absent)) {
                if (file.path().extension() == ".xml") files_.push_back(file.path().u8string());
            }
        }
        std::sort(files_.begin(), files_.end());
#ifdef SELVANE_SANITIZED
        // Without sanitizers all are read.
        const std::size_t step = test_support::by_sweep(7U, 4U, 1U);
        std::vector<std::string> some;
        for (std::size_t at = 0; at < files_.size(); at += step) some.push_back(files_[at]);
        files_.swap(some);
#endif
        if (files_.empty()) GTEST_SKIP() << "no real descriptions in " << SELVANE_SHARED_DESCRIPTIONS;
        files_.push_back(ProjectDescription("simulated_camera"));
    }
    [[nodiscard]] const std::vector<std::string>& Files() const { return files_; }

private:
    std::vector<std::string> files_;
};

std::vector<std::string> FeaturesOf(const std::string& file) {
    const auto opened = selvane_inspect::open_loaded(file);
    std::set<std::string> names;
    opened->document()->for_each_node([&](GenICam::INode* node) { names.emplace(node->get_name()); });
    return {names.begin(), names.end()};
}

// Answers of hundreds of megabytes: where they take long, each description has some of its features
// described, one of `each`.
std::vector<std::string> SomeFeaturesOf(const std::string& file, [[maybe_unused]] std::size_t each) {
    std::vector<std::string> features = FeaturesOf(file);
#if defined SELVANE_SANITIZED || defined _WIN32
    std::vector<std::string> some;
    for (std::size_t at = file.size() % each; at < features.size(); at += each) some.push_back(features[at]);
    if (!some.empty()) features.swap(some);
#endif
    return features;
}

Outcome CallFor(const char* command, const std::string& file, const std::vector<std::string>& features,
                const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {command, file};
    arguments.insert(arguments.end(), features.begin(), features.end());
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Call(arguments);
}

bool HasValue(const json& feature) {
    static const std::set<std::string> without = {"command", "category", "port"};
    return without.count(feature.at("kind")) == 0;
}

/// The shape of a feature's state, wherever it appears.
void ExpectState(const json& feature) {
    static const std::set<std::string> kinds = {"integer", "float",    "enumeration", "boolean", "string",
                                                "command", "category", "register",    "port"};
    static const std::set<std::string> accesses = {"RW", "RO", "WO", "NI", "NA", "?"};
    ASSERT_TRUE(feature.at("name").is_string());
    EXPECT_EQ(kinds.count(feature.at("kind")), 1U) << feature;
    EXPECT_EQ(accesses.count(feature.at("access")), 1U) << feature;
    EXPECT_EQ(feature.contains("value") || feature.contains("error"), HasValue(feature)) << feature;
    EXPECT_FALSE(feature.contains("value") && feature.contains("error")) << feature;
    EXPECT_EQ(feature.contains("error"), feature.value("/error/message"_json_pointer, "") != "");
    EXPECT_EQ(feature.contains("number"), feature["kind"] == "enumeration" && feature.contains("value"));
    for (const char* limit : {"min", "max", "inc"}) {
        EXPECT_TRUE(!feature.contains(limit) || feature[limit].is_number() || feature[limit].is_string());
    }
}

void ExpectTree(const json& node, std::set<std::string>& names) {
    ExpectState(node);
    EXPECT_TRUE(node.at("visibility").is_string());
    names.insert(node["name"].get<std::string>());
    EXPECT_EQ(node.contains("features"), node["kind"] == "category");
    if (!node.contains("features")) return;
    for (const json& below : node["features"]) ExpectTree(below, names);
}

TEST_F(InspectedDescriptions, AreListedInFull) {
    for (const std::string& file : Files()) {
        const Outcome outcome = Call({"list", file, "--all", "--json"});
        ASSERT_EQ(outcome.code, 0) << file << outcome.err;
        const json listed = outcome.Json();
        std::set<std::string> names;
        ExpectTree(listed.at("root"), names);
        for (const json& node : listed.at("outside")) {
            ExpectState(node);
            EXPECT_TRUE(names.insert(node["name"]).second) << node["name"] << " stands in the tree as well";
        }
        const std::vector<std::string> features = FeaturesOf(file);
        EXPECT_EQ(names, std::set<std::string>(features.begin(), features.end())) << file;
    }
}

TEST_F(InspectedDescriptions, AreListedOneFeatureALine) {
    for (const std::string& file : Files()) {
        const Outcome outcome = Call({"list", file});
        EXPECT_THAT(outcome.err, IsEmpty()) << file;
        const std::vector<std::string> lines = Lines(outcome.out);
        ASSERT_FALSE(lines.empty()) << file;
        EXPECT_EQ(lines.front(), "Root");
        for (const std::string& line : lines) {
            EXPECT_LT(line.size(), 300U) << file;
            EXPECT_EQ(line.find_first_of("\t\r"), std::string::npos) << file;
        }
    }
}

TEST_F(InspectedDescriptions, AreReadAsTheyAreListed) {
    for (const std::string& file : Files()) {
        const std::vector<std::string> features = SomeFeaturesOf(file, 8);
        const json read = CallFor("get", file, features, {"--json", "--trace"}).Json();
        ASSERT_EQ(read.at("features").size(), features.size()) << file;
        for (std::size_t at = 0; at < features.size(); ++at) {
            const json& feature = read["features"][at];
            EXPECT_EQ(feature["name"], features[at]);
            ExpectState(feature);
            for (const json& access : feature.at("trace")) {
                EXPECT_EQ(access.at("access"), "read");
                EXPECT_TRUE(access.at("address").is_string() && access.at("bytes").is_string());
            }
        }
    }
}

void ExpectSource(const json& source) {
    EXPECT_TRUE(source.at("name").is_string() && source.at("element").is_string());
    if (source.contains("register")) {
        EXPECT_TRUE(source["register"].at("address").is_string());
        EXPECT_TRUE(source["register"].at("bytes").is_string());
    }
    for (const json& formula : source.value("formulas", json::array()))
        EXPECT_TRUE(formula.at("text").is_string() && formula.at("refusal").is_string());
    for (const json& variable : source.value("variables", json::array())) {
        EXPECT_TRUE(variable.at("name").is_string() && variable.contains("value"));
        EXPECT_EQ(variable.contains("kind"), !variable["value"].is_null());
    }
    for (const json& behind : source.value("sources", json::array())) {
        EXPECT_TRUE(behind.at("role").is_string());
        ExpectSource(behind);
    }
}

void ExpectDescribed(const json& feature) {
    ExpectState(feature);
    EXPECT_TRUE(feature.at("element").is_string() && feature.at("class").is_string());
    EXPECT_GT(feature.at("line"), 0);
    EXPECT_GT(feature.at("column"), 0);
    for (const char* flag : {"implemented", "available", "locked"})
        EXPECT_TRUE(feature.at(flag).is_boolean() || feature[flag].is_null());
    for (const json& element : feature.at("elements"))
        EXPECT_TRUE(element.at("name").is_string() && element.at("text").is_string());
    EXPECT_EQ(feature.contains("entries"), feature["kind"] == "enumeration");
    ExpectSource(feature.at("sources"));
    for (const json& one : feature.at("named_by"))
        EXPECT_TRUE(one.at("name").is_string() && one.at("role").is_string());
    EXPECT_TRUE(feature.at("invalidates").is_array());
}

TEST_F(InspectedDescriptions, AreDescribedFeatureByFeature) {
    for (const std::string& file : Files()) {
        const std::vector<std::string> features = SomeFeaturesOf(file, 32);
        const Outcome outcome = CallFor("describe", file, features, {"--json"});
        ASSERT_EQ(outcome.code, 0) << file << outcome.err;
        const json described = outcome.Json();
        ASSERT_EQ(described.at("features").size(), features.size());
        for (const json& feature : described["features"]) ExpectDescribed(feature);
    }
}

TEST_F(InspectedDescriptions, DescriptionsOfFeaturesKeepTheirIndent) {
    for (const std::string& file : Files()) {
        const std::vector<std::string> features = SomeFeaturesOf(file, 32);
        std::size_t heads = 0;
        for (const std::string& line : Lines(CallFor("describe", file, features).out)) {
            if (!line.empty() && line.front() != ' ') ++heads;
            EXPECT_EQ(line.find_first_of("\t\r"), std::string::npos) << file << ": " << line;
        }
        EXPECT_EQ(heads, features.size()) << file;
    }
}

TEST_F(InspectedDescriptions, AreCountedAlikeByAllCommands) {
    for (const std::string& file : Files()) {
        const json info = Call({"info", file, "--json"}).Json();
        const json stats = Call({"dump", file, "stats", "--json"}).Json();
        const json nodes = Call({"dump", file, "nodes", "--json"}).Json();
        EXPECT_EQ(info.at("elements"), stats.at("elements")) << file;
        EXPECT_EQ(info.at("classes"), stats.at("classes")) << file;
        EXPECT_EQ(nodes.at("nodes").size(), info.at("nodes")) << file;
        std::size_t counted = 0;
        for (const json& one : info["classes"]) counted += one["count"].get<std::size_t>();
        EXPECT_EQ(counted, info["nodes"]) << file;
    }
}

TEST_F(InspectedDescriptions, SurviveRegistersFullOfOnes) {
    for (const std::string& file : Files()) {
        std::vector<std::string> options = {"--json"};
        for (int at = 0; at < 64; ++at) {
            options.push_back("--register");
            options.push_back(std::to_string(at * 256) + "=" + std::string(512, 'F'));
        }
        EXPECT_EQ(CallFor("list", file, {}, options).code, 0) << file;
    }
}

}  // namespace
