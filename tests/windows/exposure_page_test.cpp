#include "tests/windows/built_in_page_fixture.h"

#include <commctrl.h>

namespace page_test {
namespace {

using testing::ElementsAre;

using ExposurePageTest = BuiltInPageTest;

TEST_F(ExposurePageTest, GainGoesInHundredthsOfADecibel) {
    OpenPage(exposure_page);
    Slide(L"Gain", L"Gain", 50);
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_GAIN, 2400)));
    Type(L"Gain", L"Gain", L"12.345");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_GAIN, 1234)));
    EXPECT_EQ(Shown(L"Gain"), Lines{L"Gain (12.340 dB) [ ] Auto"});
}

TEST_F(ExposurePageTest, ExposureGoesInMicrosecondsWhereTheDriverHasThem) {
    OpenPage(exposure_page);
    Type(L"Exposure", L"Exposure", L"1/100");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_EXPOSURE_MICROSECONDS, 10000)));
    EXPECT_EQ(Shown(L"Exposure").at(0), L"Exposure (1/100 sec) [ ] Auto");
    Type(L"Exposure", L"Auto Max Value", L"0,5");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_AUTO_MAX_MICROSECONDS, 500000)));
    Slide(L"Exposure", L"Exposure", 100);
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_EXPOSURE_MICROSECONDS, 4000000)));
    Slide(L"Exposure", L"Auto Reference", 200);
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_AUTO_EXPOSURE_REFERENCE, 200)));
    EXPECT_EQ(Shown(L"Exposure"), (Lines{
                                      L"Exposure (4.000 sec) [ ] Auto",
                                      L"  Auto Reference (200)",
                                      L"  Auto Max Value (0.500 sec)",
                                      L"  [ ] Auto",
                                  }));
}

TEST_F(ExposurePageTest, ExposureGoesInTicksOtherwise) {
    UseCameraWithout(
        {SELVANE_EXPOSURE_MICROSECONDS, SELVANE_AUTO_MAX_MICROSECONDS, SELVANE_AUTO_MAX_AUTOMATIC});
    EXPECT_EQ(OpenPage(exposure_page), (Lines{
                                           L"Gain (0.000 dB) [ ] Auto",
                                           L"Exposure (1/30 sec) [ ] Auto",
                                           L"  Auto Reference (128)",
                                           L"  Auto Max Value (1.000 sec)",
                                       }));
    Type(L"Exposure", L"Exposure", L"1/100");
    Type(L"Exposure", L"Auto Max Value", L"0.00019");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_EXPOSURE_TICKS, 100),
                                       VendorWrite(SELVANE_AUTO_MAX_TICKS, 1)));
    EXPECT_EQ(Shown(L"Exposure").at(0), L"Exposure (1/100 sec) [ ] Auto");
}

TEST_F(ExposurePageTest, WithoutTheStandardInterfacesTheModesAreMissing) {
    simcam::camera_options options = *simcam::ready_made("builtin");
    options.camera_control = false;
    options.video_proc_amp = false;
    UseCamera(std::move(options));
    EXPECT_EQ(OpenPage(exposure_page), (Lines{
                                           L"Gain (0.000 dB)",
                                           L"Exposure (1/30 sec)",
                                           L"  Auto Reference (128)",
                                           L"  Auto Max Value (1.000 sec)",
                                           L"  [ ] Auto",
                                       }));
}

TEST_F(ExposurePageTest, APageWhoseFactoriesDeclineRefusesTheCamera) {
    UseCameraWithout({SELVANE_EXPOSURE_TICKS, SELVANE_GAIN});
    EXPECT_EQ(Give(*server_.MakePage(exposure_page)), E_NOINTERFACE);
}

TEST_F(ExposurePageTest, AFailedReadOfTheModeGreysTheValueUntilItCanBeRead) {
    OpenPage(exposure_page);
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::camera_get), E_FAIL));
    Click(L"Gain", L"Auto");
    EXPECT_EQ(Shown(), (Lines{
                           L"Gain ~(0.000 dB) [x] Auto",
                           L"Exposure ~(1/30 sec) [ ] Auto",
                           L"  Auto Reference (128)",
                           L"  Auto Max Value (1.000 sec)",
                           L"  [ ] Auto",
                       }));
    camera_->clear_faults();
    Click(L"Gain", L"Auto");
    EXPECT_EQ(Shown().at(1), L"Exposure (1/30 sec) [ ] Auto");
}

TEST_F(ExposurePageTest, ARefusedWriteShowsWhatTheCameraHolds) {
    OpenPage(exposure_page);
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    Slide(L"Gain", L"Gain", 50);
    EXPECT_EQ(Shown().at(0), L"Gain (0.000 dB) [ ] Auto");
    EXPECT_EQ(SendMessageW(Rows().Slider(L"Gain", L"Gain"), TBM_GETPOS, 0, 0), 0);
}

}  // namespace
}  // namespace page_test
