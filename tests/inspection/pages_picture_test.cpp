// The preview of a page against the layout: the same controls at the same rects, in data and in pictures.

#include "adapter/genicam_adapter_device.h"
#include "data_paths.h"
#include "inspection/description.h"
#include "inspection/pages/dialog_canvas.h"
#include "inspection/pages/page_preview.h"
#include "platform/text.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"
#include "tests/support/description_files.h"
#include "tests/support/recorder_canvas.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

using selvane_inspect::access_path;
using selvane_inspect::drawn_control;
using selvane_inspect::drawn_page;
using selvane_inspect::page_svg;
using selvane_inspect::page_word;
using test_support::ProjectDescription;
using test_support::RecorderCanvas;
using testing::HasSubstr;

std::string Line(const std::string& kind, int left, int top, int width, int height, const std::string& text) {
    return kind + " " + std::to_string(left) + "," + std::to_string(top) + " " + std::to_string(width) + "x" +
           std::to_string(height) + (text.empty() ? "" : " " + text);
}

// The words of the recorder for the kinds of the preview. Texts that the layout does not know are left out.
std::string WordOf(const std::string& kind) {
    static const std::map<std::string, std::string> words = {
        {"spin button", "spin"}, {"spin-button", "spin"}, {"check box", "switch"}, {"check-box", "switch"}};
    const auto found = words.find(kind);
    return found != words.end() ? found->second : kind;
}

bool HasLayoutText(const std::string& word) {
    return word == "label" || word == "switch" || word == "button";
}

std::vector<std::string> LinesOf(const drawn_page& page) {
    std::vector<std::string> lines;
    for (const drawn_control& control : page.controls) {
        const std::string word = WordOf(std::string(control_word(control.kind)));
        lines.push_back(Line(word, control.rect.left, control.rect.top, control.rect.width,
                             control.rect.height, HasLayoutText(word) ? control.text : ""));
    }
    return lines;
}

// What a reader of the picture finds: the first rectangle of each group is the rect of a control.
std::vector<std::string> LinesOfPicture(const std::string& svg) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_buffer(svg.data(), svg.size())) << svg;
    std::vector<std::string> lines;
    for (const pugi::xml_node group : document.child("svg").children("g")) {
        const pugi::xml_node rect = group.child("rect");
        EXPECT_STREQ(rect.attribute("class").value(), "place");
        const std::string word = WordOf(group.attribute("class").value());
        lines.push_back(Line(word, rect.attribute("x").as_int(), rect.attribute("y").as_int(),
                             rect.attribute("width").as_int(), rect.attribute("height").as_int(),
                             HasLayoutText(word) ? group.child("svg").child_value("text") : ""));
    }
    return lines;
}

std::vector<std::string> LinesOfJson(const nlohmann::json& page) {
    std::vector<std::string> lines;
    for (const nlohmann::json& control : page["controls"]) {
        const std::string word = WordOf(control["kind"].get<std::string>());
        lines.push_back(Line(word, control["left"], control["top"], control["width"], control["height"],
                             HasLayoutText(word) ? control["text"].get<std::string>() : ""));
    }
    return lines;
}

/// The pages as the tests of the layout see them, over a camera of our own.
class RecordedPages {
public:
    RecordedPages(const std::string& file, access_path access)
        : camera_(MakeCamera(file, access)), adapter_(camera_->property_set()) {}

    std::vector<std::string> Lines(ZELPropUI::PageName name) {
        RecorderCanvas first;
        if (!Build(name, first)) return {};
        RecorderCanvas second;
        for (const std::wstring& text : first.measured)
            second.widths[text] = selvane_inspect::dialog_text_width(text);
        EXPECT_TRUE(Build(name, second));
        std::vector<std::string> lines;
        for (const RecorderCanvas::Placed& one : second.placed)
            lines.push_back(Line(one.kind, one.rect.left, one.rect.top, one.rect.width, one.rect.height,
                                 platform::narrow(one.text)));
        return lines;
    }

private:
    static simcam::camera_ptr MakeCamera(const std::string& file, access_path access) {
        simcam::camera_options options;
        options.descriptions.push_back(selvane_inspect::read_file(file));
        options.named_access = access == access_path::named;
        options.camera_control = false;
        options.video_proc_amp = false;
        return simcam::make_camera(std::move(options));
    }

    bool Build(ZELPropUI::PageName name, RecorderCanvas& canvas) {
        const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(name);
        const auto& described = adapter_.get_item_table();
        ZELPropUI::PageSources sources;
        sources.filter = camera_->property_set();
        sources.groups = &groups;
        sources.built_in = ZELAdapterHelper::StaticItemTable();
        sources.described = {described.data(), described.size()};
        return ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
    }

    simcam::camera_ptr camera_;
    genicam_adapter::GenICamAdapterDevice adapter_;
};

void ExpectSamePages(const std::string& file, access_path access) {
    const std::vector<drawn_page> pages = preview_pages(*selvane_inspect::description::open(file), access);
    ASSERT_EQ(pages.size(), 4U);
    RecordedPages recorded(file, access);
    std::size_t controls = 0;
    for (const drawn_page& page : pages) {
        SCOPED_TRACE(std::string(page_word(page.name)));
        const std::vector<std::string> expected = recorded.Lines(page.name);
        EXPECT_EQ(page.offered, !expected.empty());
        EXPECT_EQ(LinesOf(page), expected);
        EXPECT_EQ(LinesOfPicture(page_svg(page)), expected);
        EXPECT_EQ(LinesOfJson(page_json(page)), expected);
        controls += expected.size();
    }
    EXPECT_GT(controls, 3U);
}

TEST(PagePictures, HaveTheRectsOfTheLayout) {
    for (const char* name : {"first_page", "simulated_camera"}) {
        SCOPED_TRACE(name);
        ExpectSamePages(ProjectDescription(name), access_path::registers);
        ExpectSamePages(ProjectDescription(name), access_path::named);
    }
}

TEST(PagePictures, OfMarkedRealCamerasHaveTheRectsOfTheLayout) {
    const std::filesystem::path folder = std::filesystem::path(SELVANE_SHARED_DESCRIPTIONS) / "marked";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << folder << " with marked descriptions is not there";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".xml") continue;
        SCOPED_TRACE(entry.path().u8string());
        ExpectSamePages(entry.path().u8string(), access_path::registers);
        ExpectSamePages(entry.path().u8string(), access_path::named);
    }
}

drawn_control Control(selvane_inspect::control_kind kind, const std::string& text) {
    drawn_control control;
    control.kind = kind;
    control.rect = {20, 18, 110, 23};
    control.text = text;
    control.feature = "Feature";
    return control;
}

std::string Picture(const drawn_control& control) {
    return page_svg({ZELPropUI::PageName::Feature, true, {control}});
}

TEST(PagePictures, AreAsLargeAsAPageOrAsWhatStandsOnIt) {
    EXPECT_THAT(page_svg({ZELPropUI::PageName::Lens, true, {}}),
                HasSubstr(R"(width="428" height="457" viewBox="0 0 428 457")"));
    drawn_control far_away = Control(selvane_inspect::control_kind::edit, "");
    far_away.rect = {400, 600, 60, 22};
    EXPECT_THAT(Picture(far_away), HasSubstr(R"(width="460" height="622" viewBox="0 0 460 622")"));
    EXPECT_THAT(Picture(far_away), HasSubstr(R"(<rect class="page" width="428" height="457")"));
    far_away.kind = selvane_inspect::control_kind::combo;  // its list drops down over everything
    far_away.rect = {20, 430, 225, 150};
    EXPECT_THAT(Picture(far_away), HasSubstr(R"(width="428" height="457")"));
}

TEST(PagePictures, KeepTextsWholeWhateverIsInThem) {
    const std::string svg =
        Picture(Control(selvane_inspect::control_kind::label, "<a> & \"b\"\x01\xC2\xB5s"));
    EXPECT_THAT(svg, HasSubstr(">&lt;a&gt; &amp; \"b\"\xC2\xB5s</text>"));
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(svg.c_str()));
}

TEST(PagePictures, GiveTextsTheWidthThatTheLayoutMeasured) {
    const int width = selvane_inspect::dialog_text_width(L"Gain Auto");
    EXPECT_THAT(Picture(Control(selvane_inspect::control_kind::label, "Gain Auto")),
                HasSubstr("textLength=\"" + std::to_string(width) + "\" lengthAdjust=\"spacingAndGlyphs\""));
}

TEST(PagePictures, PutTheThumbWhereThePositionIs) {
    drawn_control slider = Control(selvane_inspect::control_kind::slider, "");
    slider.rect = {100, 18, 140, 23};
    slider.lowest_position = 0;
    slider.highest_position = 100;
    const auto thumb = [&](std::optional<int> position) {
        slider.position = position;
        pugi::xml_document document;
        const std::string svg = Picture(slider);
        EXPECT_TRUE(document.load_string(svg.c_str()));
        return std::string(document.child("svg").child("g").last_child().attribute("x").value());
    };
    EXPECT_EQ(thumb(0), "103.5");
    EXPECT_EQ(thumb(50), "165.5");
    EXPECT_EQ(thumb(100), "227.5");
    EXPECT_EQ(thumb(-7), "103.5");
    EXPECT_EQ(thumb(1000), "227.5");
    EXPECT_EQ(thumb(std::nullopt), "103.5");
}

// What is drawn of a control in its place, but for texts.
std::vector<std::string> ShapesOf(const drawn_control& control) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(Picture(control).c_str()));
    std::vector<std::string> shapes;
    for (const pugi::xml_node shape : document.child("svg").child("g").children()) {
        const std::string kind = shape.name();
        if (kind == "path") shapes.emplace_back(shape.attribute("d").value());
        if (kind != "rect" || shape.attribute("class")) continue;
        shapes.push_back(std::string("box ") + shape.attribute("x").value() + "," +
                         shape.attribute("y").value() + " " + shape.attribute("width").value() + "x" +
                         shape.attribute("height").value());
    }
    return shapes;
}

TEST(PagePictures, DrawEachKindOfControlInItsPlace) {
    using selvane_inspect::control_kind;
    using testing::ElementsAre;
    const auto shapes = [](control_kind kind) { return ShapesOf(Control(kind, "text")); };
    EXPECT_THAT(shapes(control_kind::label), testing::IsEmpty());
    EXPECT_THAT(shapes(control_kind::slider), ElementsAre("box 28.5,27.5 93x3", "box 23.5,20.5 9x17"));
    EXPECT_THAT(shapes(control_kind::edit), ElementsAre("box 20.5,18.5 109x22"));
    EXPECT_THAT(shapes(control_kind::spin_button), ElementsAre("box 20.5,18.5 109x10", "box 20.5,29.5 109x11",
                                                               "M72 25l3 -3l3 3z", "M72 33l3 3l3 -3z"));
    EXPECT_THAT(shapes(control_kind::combo), ElementsAre("box 20.5,18.5 109x20", "M116 26l4 4l4 -4z"));
    EXPECT_THAT(shapes(control_kind::check_box), ElementsAre("box 20.5,23.5 12x12"));
    EXPECT_THAT(shapes(control_kind::button), ElementsAre("box 20.5,18.5 109x22"));
    drawn_control ticked = Control(control_kind::check_box, "");
    ticked.checked = true;
    EXPECT_THAT(ShapesOf(ticked), ElementsAre("box 20.5,23.5 12x12", "M23 29l3 3l5 -6"));
}

TEST(PagePictures, DrawWhatIsGreyInGrey) {
    drawn_control box = Control(selvane_inspect::control_kind::check_box, "Auto");
    EXPECT_THAT(Picture(box), HasSubstr("fill=\"#000000\">Auto</text>"));
    box.enabled = false;
    EXPECT_THAT(Picture(box), HasSubstr("fill=\"#8c8c8c\">Auto</text>"));
}

TEST(PagePictures, TickWhatIsChecked) {
    drawn_control box = Control(selvane_inspect::control_kind::check_box, "Auto");
    EXPECT_THAT(Picture(box), testing::Not(HasSubstr("<path")));
    box.checked = true;
    EXPECT_THAT(Picture(box), HasSubstr("<path"));
}

TEST(DialogFont, MeasuresTexts) {
    EXPECT_EQ(selvane_inspect::dialog_text_width(L""), 0);
    EXPECT_EQ(selvane_inspect::dialog_text_width(L"  "), 6);
    EXPECT_EQ(selvane_inspect::dialog_text_width(L"Wi"),
              selvane_inspect::dialog_text_width(L"W") + selvane_inspect::dialog_text_width(L"i"));
    EXPECT_GT(selvane_inspect::dialog_text_width(L"W"), selvane_inspect::dialog_text_width(L"i"));
    EXPECT_EQ(selvane_inspect::dialog_text_width(L"\x4E2D"), 11);
    EXPECT_EQ(selvane_inspect::dialog_text_width(L"\x3B1"), 6);
    EXPECT_EQ(selvane_inspect::dialog_text_width(L"\n"), 0);
}

// One that is a pixel wider or stands elsewhere would not be noticed on a picture.
TEST(DialogFont, HasTheWidthsThatWereMeasured) {
    const auto sum_from = [](wchar_t first) {
        int sum = 0;
        for (int at = 0; at < 96; ++at)
            sum += (at + 1) *
                   selvane_inspect::dialog_text_width(std::wstring(1, static_cast<wchar_t>(first + at)));
        return sum;
    };
    EXPECT_EQ(sum_from(L' '), 28300);
    EXPECT_EQ(sum_from(L'\xA0'), 30061);
}

}  // namespace
