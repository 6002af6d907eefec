// The playground's controls stand where the inspector's pictures and the windows have them.

#include "tests/playground/playground_fixture.h"

#include "data_paths.h"
#include "inspection/description.h"

#include <filesystem>
#include <set>

namespace playground_test {
namespace {

constexpr const char* pages[] = {"exposure", "feature", "lens", "color"};

json RectsOf(const json& controls) {
    auto rects = json::array();
    for (const json& control : controls) {
        rects.push_back({control.at("kind"), control.at("left"), control.at("top"), control.at("width"),
                         control.at("height")});
    }
    return rects;
}

class PageLayoutTest : public PlaygroundTest {
protected:
    void ExpectTheInspectorsRects(const std::string& text, const std::string& access) {
        const json inspected = Ask(
            {{"do", "inspect"}, {"arguments", {"pages", "FILE", "--defaults", "--access", access}}}, text);
        ASSERT_TRUE(inspected.at("output").contains("pages")) << inspected.at("output");
        ASSERT_FALSE(Open(text, access.c_str()).contains("error"));
        for (std::size_t at = 0; at < std::size(pages); ++at) {
            const json& expected = inspected.at("output").at("pages").at(at);
            const json shown = Show(pages[at]);
            EXPECT_EQ(shown.at("offered"), expected.at("offered"));
            EXPECT_EQ(RectsOf(shown.value("layout", json::array())), RectsOf(expected.at("controls")));
            controls_ += expected.at("controls").size();
        }
    }
    std::size_t controls_ = 0;
};

TEST_F(PageLayoutTest, IsThatOfTheInspectorForOurDescriptions) {
    for (const char* name : {"first_page", "simulated_camera", "value_nodes"}) {
        for (const char* access : {"named", "registers"}) {
            SCOPED_TRACE(std::string(name) + " " + access);
            ExpectTheInspectorsRects(Bundled(name), access);
        }
    }
    EXPECT_GT(controls_, 100U);
}

TEST_F(PageLayoutTest, IsThatOfTheInspectorForRealDescriptions) {
    std::set<std::filesystem::path> files;
    for (const char* folder : {"/real", "/marked"}) {
        const std::filesystem::path path = SELVANE_SHARED_DESCRIPTIONS + std::string(folder);
        if (!std::filesystem::exists(path)) GTEST_SKIP() << path << " is not there";
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            if (entry.path().extension() == ".xml") files.insert(entry.path());
        }
    }
    for (const auto& file : files) {
        const std::string text = selvane_inspect::read_file(file.u8string());
        for (const char* access : {"named", "registers"}) {
            SCOPED_TRACE(file.filename().u8string() + " " + access);
            ExpectTheInspectorsRects(text, access);
        }
    }
    EXPECT_GT(controls_, 20U);
}

}  // namespace
}  // namespace playground_test
