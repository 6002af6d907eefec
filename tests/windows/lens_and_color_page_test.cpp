#include "tests/windows/built_in_page_fixture.h"

#include <commctrl.h>

namespace page_test {
namespace {

using testing::ElementsAre;

simcam::camera_options BuiltIn() { return *simcam::ready_made("builtin"); }

using LensPageTest = BuiltInPageTest;

TEST_F(LensPageTest, TickingTheRegionOpensItsEdges) {
    OpenPage(lens_page);
    Click(L"Focus", L"Enable Region of Interest");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_FOCUS_REGION_ENABLE, 1)));
    EXPECT_EQ(Shown(), (Lines{
                           L"Focus (420) <One Push>",
                           L"  Auto Min Value (100)",
                           L"  Auto Max Value (900)",
                           L"  [x] Enable Region of Interest",
                           L"  Left (640)",
                           L"  Right (1407)",
                           L"  Top (384)",
                           L"  Bottom (1151)",
                       }));
    const std::pair<const wchar_t*, selvane_vendor_property> edges[] = {
        {L"Left", SELVANE_FOCUS_REGION_LEFT},
        {L"Right", SELVANE_FOCUS_REGION_RIGHT},
        {L"Top", SELVANE_FOCUS_REGION_TOP},
        {L"Bottom", SELVANE_FOCUS_REGION_BOTTOM}};
    for (const auto& [edge, id] : edges) {
        Type(L"Focus", edge, L"1000");
        EXPECT_THAT(Written(), ElementsAre(VendorWrite(id, 1000)));
    }
    Click(L"Focus", L"Enable Region of Interest");
    EXPECT_EQ(Shown().at(4), L"  Left ~(1000)");
}

TEST_F(LensPageTest, TheValueIsWrittenAsManualAndOnePushMovesIt) {
    OpenPage(lens_page);
    Slide(L"Focus", L"Focus", 700);
    EXPECT_THAT(Written(), ElementsAre("CameraControl Set 6 <- value=700 flags=0x2, ok"));
    EXPECT_EQ(Shown().at(0), L"Focus (700) <One Push>");
    Click(L"Focus", L"One Push");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_FOCUS_ONE_PUSH, 1)));
    EXPECT_EQ(Shown().at(0), L"Focus (500) <One Push>");
    Type(L"Focus", L"Auto Min Value", L"300");
    Type(L"Focus", L"Auto Max Value", L"500");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_FOCUS_AUTO_MIN, 300),
                                       VendorWrite(SELVANE_FOCUS_AUTO_MAX, 500)));
    Click(L"Focus", L"One Push");
    EXPECT_EQ(Shown().at(0), L"Focus (400) <One Push>");
}

TEST_F(LensPageTest, FocusNeedsTheCameraControlAndOnePush) {
    simcam::camera_options options = BuiltIn();
    options.camera_control = false;
    UseCamera(std::move(options));
    EXPECT_EQ(Give(*server_.MakePage(lens_page)), E_NOINTERFACE);

    options = BuiltIn();
    options.vendor.remove(SELVANE_FOCUS_ONE_PUSH);
    UseCamera(std::move(options));
    EXPECT_EQ(Give(*server_.MakePage(lens_page)), E_NOINTERFACE);

    options = BuiltIn();
    options.vendor.camera_control.erase(6);
    UseCamera(std::move(options));
    EXPECT_EQ(OpenPage(lens_page).at(0), L"Focus <One Push>");
}

using ColorPageTest = BuiltInPageTest;

TEST_F(ColorPageTest, GainsAreProperties) {
    OpenPage(color_page);
    const std::pair<const wchar_t*, selvane_vendor_property> gains[] = {
        {L"White Balance Red", SELVANE_WHITE_BALANCE_RED},
        {L"White Balance Green", SELVANE_WHITE_BALANCE_GREEN},
        {L"White Balance Blue", SELVANE_WHITE_BALANCE_BLUE}};
    for (const auto& [gain, id] : gains) {
        Slide(L"WhiteBalance", gain, 200);
        EXPECT_THAT(Written(), ElementsAre(VendorWrite(id, 200)));
    }
    Click(L"WhiteBalance", L"OnePush");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_WHITE_BALANCE_ONE_PUSH, 1)));
    EXPECT_EQ(Shown(L"WhiteBalance"), (Lines{
                                          L"WhiteBalance [ ] Auto <OnePush>",
                                          L"  White Balance Red (95)",
                                          L"  White Balance Green (64)",
                                          L"  White Balance Blue (120)",
                                      }))
        << "the refresh after the push shows what the camera found";
}

TEST_F(ColorPageTest, WithoutAnAutomaticModeTheGainsAreAlwaysOpen) {
    simcam::camera_options options = BuiltIn();
    options.vendor.video_proc_amp.at(7).capabilities = 2;
    options.vendor.video_proc_amp.at(7).flags = 1;
    UseCamera(std::move(options));
    EXPECT_EQ(OpenPage(color_page).at(0), L"WhiteBalance <OnePush>");
    EXPECT_EQ(Shown().at(1), L"  White Balance Red (95)");
}

TEST_F(ColorPageTest, WithoutTheProcAmpThereIsNoWhiteBalance) {
    simcam::camera_options options = BuiltIn();
    options.video_proc_amp = false;
    UseCamera(std::move(options));
    EXPECT_EQ(OpenPage(color_page), Lines{L"Color Enhancement [ ] Enable"});
    options = BuiltIn();
    options.video_proc_amp = false;
    options.color_enhancement_set = false;
    Close();
    UseCamera(std::move(options));
    EXPECT_EQ(Give(*server_.MakePage(color_page)), E_NOINTERFACE);
}

}  // namespace
}  // namespace page_test
