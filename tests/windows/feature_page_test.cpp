#include "tests/support/not_empty.h"
#include "tests/windows/built_in_page_fixture.h"

#include <commctrl.h>

namespace page_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string TriggerFlags(const std::string& flags) {
    return "Set vendor 115 <- value=0 flags=" + flags + " caps=0x3000000 min=0 max=1 default=0, ok";
}

class FeaturePageTest : public BuiltInPageTest {
protected:
    [[nodiscard]] simcam::strobe_property Strobe() const {
        return camera_->vendor()->strobe.at(SELVANE_STROBE);
    }
    [[nodiscard]] simcam::gpio_property Pins() const { return camera_->vendor()->gpio.at(SELVANE_GPIO); }
};

TEST_F(FeaturePageTest, OffsetsGoInStepsOfFour) {
    OpenPage(feature_page);
    const HWND slider = Rows().Slider(L"Partial scan", L"X Offset");
    EXPECT_EQ(SendMessageW(slider, TBM_GETRANGEMAX, 0, 0), 256);
    Slide(L"Partial scan", L"X Offset", 3);
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_PARTIAL_SCAN_X, 12)));
    Type(L"Partial scan", L"Y Offset", L"7");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_PARTIAL_SCAN_Y, 7)))
        << "what is typed goes as it stands";
    EXPECT_EQ(Shown(L"Partial scan").at(3), L"  Y Offset (7)");
}

TEST_F(FeaturePageTest, OffsetsAreOpenOnACameraThatCannotCenter) {
    UseCameraWithout({SELVANE_PARTIAL_SCAN_AUTO_CENTER});
    OpenPage(feature_page);
    EXPECT_EQ(Shown(L"Partial scan"), (Lines{L"Partial scan", L"  X Offset (0)", L"  Y Offset (0)"}));
}

TEST_F(FeaturePageTest, BinningIsNeverShown) {
    UseCameraWithout({SELVANE_PARTIAL_SCAN_X, SELVANE_PARTIAL_SCAN_Y, SELVANE_PARTIAL_SCAN_AUTO_CENTER});
    const Lines shown = OpenPage(feature_page);
    EXPECT_EQ(shown.at(0), L"GPIO");
    for (const std::wstring& line : shown) EXPECT_THAT(line, testing::Not(testing::HasSubstr(L"Binning")));
}

TEST_F(FeaturePageTest, OutputReachesThePinsAtWrite) {
    OpenPage(feature_page);
    Slide(L"GPIO", L"GP Out", 3);
    EXPECT_THAT(Written(), IsEmpty());
    EXPECT_EQ(Pins().output, 0);
    EXPECT_EQ(Shown(L"GPIO").at(2), L"  GP Out (3) <Write>");
    Click(L"GPIO", L"Write");
    EXPECT_THAT(Written(), ElementsAre("Set vendor 122 <- in=0 out=3 in-max=0 out-max=0, ok"));
    EXPECT_EQ(Pins().output, 3);
}

TEST_F(FeaturePageTest, PinsShowWhatTheLastReadFound) {
    OpenPage(feature_page);
    camera_->vendor()->gpio.at(SELVANE_GPIO).input = 2;
    Click(L"Trigger", L"Enable");
    EXPECT_EQ(Shown(L"GPIO").at(1), L"  GP IN =(0) <Read>") << "a refresh reads no pin";
    camera_->vendor()->gpio.at(SELVANE_GPIO).output = 1;
    Slide(L"GPIO", L"GP Out", 3);
    Click(L"GPIO", L"Read");
    EXPECT_EQ(Shown(L"GPIO"), (Lines{L"GPIO", L"  GP IN =(2) <Read>", L"  GP Out (1) <Write>"}))
        << "what was not written is gone";
}

TEST_F(FeaturePageTest, ADirectionWithoutPinsHasNoRow) {
    OpenPage(feature_page);
    camera_->vendor()->gpio.at(SELVANE_GPIO).input_max = 0;
    OpenPage(feature_page);
    EXPECT_EQ(Shown(L"GPIO"), (Lines{L"GPIO", L"  GP Out (0) <Write>"}));
    camera_->vendor()->gpio.at(SELVANE_GPIO).output_max = 0;
    EXPECT_EQ(OpenPage(feature_page).at(4), L"Trigger [ ] Enable ~<Software Trigger>");
}

TEST_F(FeaturePageTest, SoftwareTriggersComeWhileTheTriggerIsOn) {
    OpenPage(feature_page);
    Click(L"Trigger", L"Enable");
    EXPECT_THAT(Written(), ElementsAre(TriggerFlags("0x0")));
    EXPECT_EQ(Shown(L"Trigger").at(0), L"Trigger [x] Enable <Software Trigger>");
    Click(L"Trigger", L"Software Trigger");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_SOFTWARE_TRIGGER, "0", "0x8")));
    EXPECT_EQ(camera_->vendor()->software_triggers, 1u);
    Click(L"Trigger", L"Enable");
    EXPECT_EQ(Shown(L"Trigger").at(0), L"Trigger [ ] Enable ~<Software Trigger>");
}

TEST_F(FeaturePageTest, TriggerOptionsAreFlagsAndADelay) {
    OpenPage(feature_page);
    Click(L"Trigger", L"Polarity");
    EXPECT_THAT(Written(), ElementsAre(TriggerFlags("0x1000004")));
    EXPECT_EQ(EntriesOf(L"Trigger", L"Operation"), (Lines{L"Default", L"Global Reset Release"}));
    Pick(L"Trigger", L"Operation", 1);
    EXPECT_THAT(Written(), ElementsAre(TriggerFlags("0x3000004")));
    Type(L"Trigger", L"Delay", L"12.5");
    EXPECT_THAT(Written(), ElementsAre(VendorWrite(SELVANE_TRIGGER_DELAY, "12.5", "0x2")));
    EXPECT_EQ(Shown(L"Trigger"), (Lines{
                                     L"Trigger [ ] Enable ~<Software Trigger>",
                                     L"  [x] Polarity",
                                     L"  Delay (12.500 \u00B5s)",
                                     L"  Operation {Global Reset Release}",
                                 }));
}

TEST_F(FeaturePageTest, ATriggerShowsWhatItCanDo) {
    UseCameraWithout({SELVANE_SOFTWARE_TRIGGER, SELVANE_TRIGGER_DELAY});
    camera_->vendor()->integers.at(SELVANE_TRIGGER).capabilities = 0;
    OpenPage(feature_page);
    EXPECT_EQ(Shown(L"Trigger"), Lines{L"Trigger [ ] Enable"});
    camera_->vendor()->integers.erase(SELVANE_TRIGGER);
    for (const std::wstring& line : test_support::NotEmpty(OpenPage(feature_page)))
        EXPECT_NE(line, L"Trigger");
}

TEST_F(FeaturePageTest, TheStrobeOpensByItsModeOnceItIsOn) {
    OpenPage(feature_page);
    Click(L"Strobe", L"Enable");
    EXPECT_EQ(Shown(L"Strobe"), (Lines{
                                    L"Strobe [x] Enable",
                                    L"  Mode {fixed duration}",
                                    L"  [x] Polarity",
                                    L"  Duration (1000)",
                                    L"  Delay (0)",
                                }));
    EXPECT_EQ(EntriesOf(L"Strobe", L"Mode"), (Lines{L"constant", L"fixed duration", L"exposure"}));
    Pick(L"Strobe", L"Mode", 2);
    EXPECT_EQ(Shown(L"Strobe"), (Lines{
                                    L"Strobe [x] Enable",
                                    L"  Mode {exposure}",
                                    L"  [x] Polarity",
                                    L"  Duration ~(1000)",
                                    L"  Delay (0)",
                                }));
    EXPECT_EQ(Strobe().follow_exposure, 1);
    Pick(L"Strobe", L"Mode", 0);
    EXPECT_EQ(Shown(L"Strobe"), (Lines{
                                    L"Strobe [x] Enable",
                                    L"  Mode {constant}",
                                    L"  [x] Polarity",
                                    L"  Duration ~(0)",
                                    L"  Delay ~(0)",
                                }));
    EXPECT_EQ(Strobe().duration, 0);
    EXPECT_EQ(Strobe().follow_exposure, 0);
}

TEST_F(FeaturePageTest, StrobeTimesAreWrittenInTheWholeRecord) {
    OpenPage(feature_page);
    Click(L"Strobe", L"Enable");
    Settle();
    Type(L"Strobe", L"Delay", L"70");
    EXPECT_THAT(Written(),
                ElementsAre("Set vendor 125 <- enable=1 delay=70 [0..100000 default 0] duration=1000 "
                            "[0..100000 default 1000] polarity=1 follow-exposure=0 restrictions=0x0, "
                            "ok"));
    const HWND slider = Rows().Slider(L"Strobe", L"Duration");
    EXPECT_EQ(SendMessageW(slider, TBM_GETRANGEMAX, 0, 0), 9999) << "from 10 to 100000 in steps of 10";
    Slide(L"Strobe", L"Duration", 49);
    EXPECT_EQ(Strobe().duration, 500);
    Click(L"Strobe", L"Polarity");
    EXPECT_EQ(Strobe().polarity, 0);
    EXPECT_EQ(Shown(L"Strobe"), (Lines{
                                    L"Strobe [x] Enable",
                                    L"  Mode {fixed duration}",
                                    L"  [ ] Polarity",
                                    L"  Duration (500)",
                                    L"  Delay (70)",
                                }));
}

TEST_F(FeaturePageTest, ARestrictedStrobeOffersOneMode) {
    simcam::camera_options options = *simcam::ready_made("builtin");
    simcam::strobe_property& strobe = options.vendor.strobe.at(SELVANE_STROBE);
    strobe.restrictions = wire::strobe_no_duration | wire::strobe_no_delay | wire::strobe_no_polarity;
    strobe.follow_exposure = 1;
    strobe.enable = 1;
    UseCamera(std::move(options));
    OpenPage(feature_page);
    EXPECT_EQ(Shown(L"Strobe"), (Lines{L"Strobe [x] Enable", L"  Mode {exposure}"}));
    EXPECT_EQ(EntriesOf(L"Strobe", L"Mode"), Lines{L"exposure"});
}

TEST_F(FeaturePageTest, TheOldestCameraShowsWhatItsDriverHas) {
    UseCamera(*simcam::ready_made("oldest"));
    EXPECT_EQ(OpenPage(feature_page), (Lines{
                                          L"Partial scan",
                                          L"  X Offset (0)",
                                          L"  Y Offset (0)",
                                          L"GPIO",
                                          L"  GP IN =(0) <Read>",
                                          L"  GP Out (0) <Write>",
                                          L"Trigger [ ] Enable",
                                          L"Strobe [ ] Enable",
                                          L"  Mode ~{exposure}",
                                          L"  ~[x] Polarity",
                                      }));
    Click(L"Strobe", L"Enable");
    Pick(L"Strobe", L"Mode", 0);
    EXPECT_EQ(Shown(L"Strobe"), (Lines{L"Strobe [x] Enable", L"  Mode {exposure}", L"  [x] Polarity"}));
}

TEST_F(FeaturePageTest, ARefusedStrobeWriteShowsWhatTheCameraHolds) {
    OpenPage(feature_page);
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    Click(L"Strobe", L"Enable");
    EXPECT_EQ(Shown(L"Strobe").at(0), L"Strobe [ ] Enable");
    EXPECT_EQ(Shown(L"Strobe").at(1), L"  Mode ~{fixed duration}");
}

TEST_F(FeaturePageTest, ARefusedStrobeModeLeavesTheOneThatTheCameraHas) {
    OpenPage(feature_page);
    Click(L"Strobe", L"Enable");
    const Lines before = Shown(L"Strobe");
    EXPECT_EQ(before.at(1), L"  Mode {fixed duration}");
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    Pick(L"Strobe", L"Mode", 2);
    EXPECT_EQ(Shown(L"Strobe"), before);
    camera_->clear_faults();
    Click(L"Strobe", L"Polarity");
    EXPECT_EQ(Strobe().follow_exposure, 0);
}

TEST_F(FeaturePageTest, AStrobeThatCannotBeReadGreysOutWhole) {
    OpenPage(feature_page);
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    camera_->add_fault(simcam::fail_when(
        simcam::property_calls(simcam::call_kind::get,
                               {0x515E97D1, 0xC453, 0x4772, {0xA4, 0x89, 0xCC, 0x07, 0x0A, 0x5A, 0x24, 0x42}},
                               125),
        E_FAIL));
    Click(L"Strobe", L"Enable");
    EXPECT_EQ(Shown(L"Strobe"), (Lines{
                                    L"Strobe ~[ ] Enable",
                                    L"  Mode ~{fixed duration}",
                                    L"  ~[ ] Polarity",
                                    L"  Duration ~()",
                                    L"  Delay ~()",
                                }));
    EXPECT_EQ(Shown(L"Trigger").at(1), L"  [ ] Polarity") << "the other rows go on";
    camera_->clear_faults();
    Click(L"Trigger", L"Polarity");
    EXPECT_EQ(Shown(L"Strobe").at(3), L"  Duration ~(1000)");
    EXPECT_EQ(Shown(L"Strobe").at(0), L"Strobe [ ] Enable");
}

}  // namespace
}  // namespace page_test
