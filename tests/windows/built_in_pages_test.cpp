// What the four pages show of the built-in items, and what their check boxes do: one row each.

#include "tests/windows/built_in_page_fixture.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace page_test {
namespace {

using testing::ElementsAre;

/// A page of a camera with every fixed driver property but some.
struct ShownPage {
    const char* name;
    CLSID page;
    std::vector<DWORD> without;
    Lines lines;
};

const std::vector<ShownPage> shown_pages = {
    {"GainStandsAboveExposure",
     exposure_page,
     {},
     {
         L"Gain (0.000 dB) [ ] Auto",
         L"Exposure (1/30 sec) [ ] Auto",
         L"  Auto Reference (128)",
         L"  Auto Max Value (1.000 sec)",
         L"  [ ] Auto",
     }},
    // The float properties could serve an exposure, but only the first record is tried.
    {"TheItemBehindADecliningFactoryNeverComes",
     exposure_page,
     {SELVANE_EXPOSURE_TICKS},
     {L"Gain (0.000 dB) [ ] Auto"}},
    {"FeaturesStandInTheOrderOfTheirIds",
     feature_page,
     {},
     {
         L"Partial scan",
         L"  [ ] Auto-center",
         L"  X Offset (0)",
         L"  Y Offset (0)",
         L"GPIO",
         L"  GP IN =(0) <Read>",
         L"  GP Out (0) <Write>",
         L"Trigger [ ] Enable ~<Software Trigger>",
         L"  [ ] Polarity",
         L"  Delay (0.000 \u00B5s)",
         L"  Operation {Default}",
         L"Strobe [ ] Enable",
         L"  Mode ~{fixed duration}",
         L"  ~[x] Polarity",
         L"  Duration ~(1000)",
         L"  Delay ~(0)",
     }},
    // Whether one push is running is hidden.
    {"TheRegionStandsInTheOrderOfTheTable",
     lens_page,
     {},
     {
         L"Focus (420) <One Push>",
         L"  Auto Min Value (100)",
         L"  Auto Max Value (900)",
         L"  [ ] Enable Region of Interest",
         L"  Left ~(640)",
         L"  Right ~(1407)",
         L"  Top ~(384)",
         L"  Bottom ~(1151)",
     }},
    {"ADriverThatCannotTellTheRegionLeavesItClosed",
     lens_page,
     {SELVANE_FOCUS_REGION_ENABLE},
     {
         L"Focus (420) <One Push>",
         L"  Auto Min Value (100)",
         L"  Auto Max Value (900)",
         L"  Left ~(640)",
         L"  Right ~(1407)",
         L"  Top ~(384)",
         L"  Bottom ~(1151)",
     }},
    {"TheModeAndThePushStandInTheHeadRow",
     color_page,
     {},
     {
         L"WhiteBalance [ ] Auto <OnePush>",
         L"  White Balance Red (95)",
         L"  White Balance Green (64)",
         L"  White Balance Blue (120)",
         L"Color Enhancement [ ] Enable",
     }},
    {"ACameraWithoutGreenKeepsTheRest",
     color_page,
     {SELVANE_WHITE_BALANCE_GREEN},
     {
         L"WhiteBalance [ ] Auto <OnePush>",
         L"  White Balance Red (95)",
         L"  White Balance Blue (120)",
         L"Color Enhancement [ ] Enable",
     }},
};

class ShownPageTest : public BuiltInPageTest, public testing::WithParamInterface<ShownPage> {};
INSTANTIATE_TEST_SUITE_P(All, ShownPageTest, testing::ValuesIn(shown_pages),
                         [](const auto& shown) { return std::string(shown.param.name); });

TEST_P(ShownPageTest, HasTheseRowsOneBelowTheOther) {
    UseCameraWithout(GetParam().without);
    EXPECT_EQ(OpenPage(GetParam().page), GetParam().lines);
    const std::vector<int> tops = Rows().Tops();
    ASSERT_EQ(tops.size(), GetParam().lines.size());
    for (std::size_t row = 0; row < tops.size(); ++row) EXPECT_EQ(tops[row], 18 + 30 * static_cast<int>(row));
}

/// A line of a page, before and after.
using ChangedLine = std::pair<const wchar_t*, const wchar_t*>;

/// A check box that stands unchecked. No line changes but those that are told.
struct PageSwitch {
    const char* name;
    CLSID page;
    const wchar_t* item;
    const wchar_t* caption;
    int which;  // of several with that caption
    std::string written_on;
    std::string written_off;
    std::vector<ChangedLine> on;
    std::vector<ChangedLine> left_behind;  // when it is off again
};

std::string ColorEnhancement(int value) {
    return "Set color-enhancement 0 <- value=" + std::to_string(value) +
           " flags=0x0 caps=0x0 min=0 max=0 default=0, ok";
}

const std::vector<PageSwitch> page_switches = {
    {"AutomaticExposureTakesItsValueAlone",
     exposure_page,
     L"Exposure",
     L"Auto",
     0,
     "CameraControl Set 4 <- value=333 flags=0x1, ok",
     "CameraControl Set 4 <- value=333 flags=0x2, ok",
     {{L"Exposure (1/30 sec) [ ] Auto", L"Exposure ~(1/30 sec) [x] Auto"}},
     {}},
    {"TheSecondAutoIsThatOfTheLimit",
     exposure_page,
     L"Exposure",
     L"Auto",
     1,
     VendorWrite(SELVANE_AUTO_MAX_AUTOMATIC, 1),
     VendorWrite(SELVANE_AUTO_MAX_AUTOMATIC, 0),
     {{L"  Auto Max Value (1.000 sec)", L"  Auto Max Value ~(1.000 sec)"}, {L"  [ ] Auto", L"  [x] Auto"}},
     {}},
    {"AutomaticGainTakesItsValue",
     exposure_page,
     L"Gain",
     L"Auto",
     0,
     "VideoProcAmp Set 9 <- value=0 flags=0x1, ok",
     "VideoProcAmp Set 9 <- value=0 flags=0x2, ok",
     {{L"Gain (0.000 dB) [ ] Auto", L"Gain ~(0.000 dB) [x] Auto"}},
     {}},
    {"CenteringTakesTheOffsets",
     feature_page,
     L"Partial scan",
     L"Auto-center",
     0,
     VendorWrite(SELVANE_PARTIAL_SCAN_AUTO_CENTER, 1),
     VendorWrite(SELVANE_PARTIAL_SCAN_AUTO_CENTER, 0),
     {{L"  [ ] Auto-center", L"  [x] Auto-center"},
      {L"  X Offset (0)", L"  X Offset ~(512)"},
      {L"  Y Offset (0)", L"  Y Offset ~(384)"}},
     {{L"  X Offset (0)", L"  X Offset (512)"}, {L"  Y Offset (0)", L"  Y Offset (384)"}}},
    {"AutomaticWhiteBalanceTakesTheGainsAndThePush",
     color_page,
     L"WhiteBalance",
     L"Auto",
     0,
     "VideoProcAmp Set 7 <- value=0 flags=0x1, ok",
     "VideoProcAmp Set 7 <- value=0 flags=0x2, ok",
     {{L"WhiteBalance [ ] Auto <OnePush>", L"WhiteBalance [x] Auto ~<OnePush>"},
      {L"  White Balance Red (95)", L"  White Balance Red ~(95)"},
      {L"  White Balance Green (64)", L"  White Balance Green ~(64)"},
      {L"  White Balance Blue (120)", L"  White Balance Blue ~(120)"}},
     {}},
    {"ColorEnhancementIsASwitchOnASetOfItsOwn",
     color_page,
     L"Color Enhancement",
     L"Enable",
     0,
     ColorEnhancement(1),
     ColorEnhancement(0),
     {{L"Color Enhancement [ ] Enable", L"Color Enhancement [x] Enable"}},
     {}},
};

Lines Changed(Lines lines, const std::vector<ChangedLine>& changes) {
    for (const auto& [before, after] : changes) {
        const auto line = std::find(lines.begin(), lines.end(), before);
        EXPECT_NE(line, lines.end()) << testing::PrintToString(std::wstring(before));
        if (line != lines.end()) *line = after;
    }
    return lines;
}

class PageSwitchTest : public BuiltInPageTest, public testing::WithParamInterface<PageSwitch> {};
INSTANTIATE_TEST_SUITE_P(All, PageSwitchTest, testing::ValuesIn(page_switches),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_P(PageSwitchTest, WritesAndGreysWhatItGoverns) {
    const PageSwitch& one = GetParam();
    const Lines before = OpenPage(one.page);
    Click(one.item, one.caption, one.which);
    EXPECT_THAT(Written(), ElementsAre(one.written_on));
    EXPECT_EQ(Shown(), Changed(before, one.on));
    Click(one.item, one.caption, one.which);
    EXPECT_THAT(Written(), ElementsAre(one.written_off));
    EXPECT_EQ(Shown(), Changed(before, one.left_behind));
}

}  // namespace
}  // namespace page_test
