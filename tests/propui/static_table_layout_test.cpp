#include "items/vendor_properties.h"
#include "tests/propui/page_fixture.h"
#include "tests/support/scripted_property_set.h"

#include <stdexcept>

namespace ZELPropUI {
namespace {

using test_support::ScriptedFilter;

constexpr GUID color_set = {0x8CBCF1C6, 0x53C3, 0x4D79, {0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8}};
constexpr std::int32_t exposure_control = 4;
constexpr std::int32_t focus_control = 6;
constexpr std::int32_t white_balance_control = 7;
constexpr std::int32_t gain_control = 9;

const std::vector<std::wstring> exposure_page = {L"Exposure", L"Image", L"WDR"};
const std::vector<std::wstring> feature_page = {L"Special", L"Partial Scan", L"Partial scan"};
const std::vector<std::wstring> lens_page = {L"Lens"};
const std::vector<std::wstring> color_page = {L"Color"};

// The built-in items on a camera that has everything, until a test takes something away.
class StaticTablePages : public testing::Test {
protected:
    StaticTablePages() {
        for (const std::uint32_t id : {101U, 102U, 106U, 107U, 118U, 119U, 124U, 202U, 206U, 211U, 212U, 213U,
                                       244U, 245U, 247U, 248U, 249U, 250U, 251U}) {
            PutRange(id, 0, 255);
        }
        PutRange(109, 1, 40000);  // ticks of 1/10000 s
        PutRange(201, 1, 40000);
        PutRange(241, 0, 4800);  // 1/100 dB
        Vendor(SELVANE_GPIO).Put<std::uint32_t>(32, 15).Put<std::uint32_t>(36, 15);
        Vendor(SELVANE_STROBE).Put<std::uint32_t>(44, 100).Put<std::uint32_t>(84, 0);
        Vendor(SELVANE_TRIGGER).Put<std::uint32_t>(32, 0x3000000).Put<std::uint32_t>(44, 0);
        Vendor(SELVANE_TRIGGER_DELAY).Put<float>(28, 0).Put<float>(32, 1000000).Put<std::uint64_t>(48, 0);
        driver_.Property(color_set, 0).Put<std::uint32_t>(44, 0);
        for (const std::int32_t control : {exposure_control, focus_control})
            PutControl(driver_.CameraControl(), control);
        for (const std::int32_t control : {white_balance_control, gain_control})
            PutControl(driver_.VideoProcAmp(), control);
    }

    test_support::ScriptedProperty& Vendor(std::uint32_t id) {
        return driver_.Property(wire::vendor_set, id);
    }
    void Remove(std::uint32_t id) { driver_.RemoveProperty(wire::vendor_set, id); }
    void PutRange(std::uint32_t id, std::int32_t min, std::int32_t max) {
        Vendor(id).Put(36, min).Put(40, max).Put(44, min);
    }
    static void PutControl(test_support::ScriptedControls& controls, std::int32_t control) {
        test_support::ScriptedControl& scripted = controls[control];
        scripted.max = 100;
        scripted.step = 1;
        scripted.capabilities = 3;
    }

    bool Build(const std::vector<std::wstring>& groups, bool measure_only = false) {
        canvas_.placed.clear();
        PageSources sources;
        sources.filter = &driver_;
        sources.groups = &groups;
        sources.built_in = ZELAdapterHelper::StaticItemTable();
        return PageLayout(sources, measure_only ? nullptr : &canvas_).BuildPage(measure_only);
    }

    // The lines of a page, the three of a slider with an edit of the usual width as one.
    Lines LinesOf(const std::vector<std::wstring>& groups) {
        EXPECT_TRUE(Build(groups, true));
        EXPECT_TRUE(Build(groups));
        Lines lines;
        for (const std::string& line : canvas_.Lines()) {
            const bool of_slider = line.rfind("edit ", 0) == 0 || line.rfind("spin ", 0) == 0;
            if (of_slider) {
                lines.back() += ", " + line;
            } else {
                lines.push_back(line);
            }
        }
        return lines;
    }

    bool Shows(const std::vector<std::wstring>& groups, const std::wstring& text) {
        EXPECT_TRUE(Build(groups));
        for (const auto& placed : canvas_.placed) {
            if (placed.text == text) return true;
        }
        return false;
    }

    ScriptedFilter driver_;
    test_support::RecorderCanvas canvas_;
};

TEST_F(StaticTablePages, ExposurePage) {
    EXPECT_EQ(LinesOf(exposure_page), (Lines{
                                          "label 20,18 110x23 Gain",
                                          "slider 135,18 140x23, edit 280,18 60x22, spin 340,18 10x22",
                                          "switch 360,18 49x23 #2 Auto",
                                          "label 20,48 110x23 Exposure",
                                          "slider 135,48 140x23, edit 280,48 60x22, spin 340,48 10x22",
                                          "switch 360,48 49x23 #2 Auto",
                                          "label 40,78 110x23 Auto Reference",
                                          "slider 155,78 140x23, edit 300,78 60x22, spin 360,78 10x22",
                                          "label 40,108 110x23 Auto Max Value",
                                          "slider 155,108 140x23, edit 300,108 60x22, spin 360,108 10x22",
                                          "switch 40,138 49x23 #6 Auto",
                                      }));
}

TEST_F(StaticTablePages, FeaturePage) {
    EXPECT_EQ(LinesOf(feature_page), (Lines{
                                         "label 20,18 110x23 Partial scan",
                                         "switch 40,48 91x23 #211 Auto-center",
                                         "label 40,78 110x23 X Offset",
                                         "slider 155,78 140x23, edit 300,78 60x22, spin 360,78 10x22",
                                         "label 40,108 110x23 Y Offset",
                                         "slider 155,108 140x23, edit 300,108 60x22, spin 360,108 10x22",
                                         "label 20,138 110x23 GPIO",
                                         "label 40,168 110x23 GP IN",
                                         "slider 155,168 140x23, edit 300,168 60x22, spin 360,168 10x22",
                                         "button 380,168 49x23 #1 Read",
                                         "label 40,198 110x23 GP Out",
                                         "slider 155,198 140x23, edit 300,198 60x22, spin 360,198 10x22",
                                         "button 380,198 55x23 #3 Write",
                                         "label 20,228 110x23 Trigger",
                                         "switch 135,228 61x23 #0 Enable",
                                         "button 201,228 121x23 #3 Software Trigger",
                                         "switch 40,258 73x23 #1 Polarity",
                                         "label 40,288 110x23 Delay",
                                         // "1000000.00 us" takes 88, 28 of them from the slider.
                                         "slider 155,288 112x23, edit 272,288 88x22, spin 360,288 10x22",
                                         "label 40,318 110x23 Operation",
                                         "combo 155,318 225x150 #5",
                                         "label 20,348 110x23 Strobe",
                                         "switch 135,348 61x23 #0 Enable",
                                         "label 40,378 110x23 Mode",
                                         "combo 155,378 225x150 #1",
                                         "switch 40,408 73x23 #2 Polarity",
                                         "label 40,438 110x23 Duration",
                                         "slider 155,438 140x23, edit 300,438 60x22, spin 360,438 10x22",
                                         "label 40,468 110x23 Delay",
                                         "slider 155,468 140x23, edit 300,468 60x22, spin 360,468 10x22",
                                     }));
}

TEST_F(StaticTablePages, LensPage) {
    EXPECT_EQ(LinesOf(lens_page), (Lines{
                                      "label 20,18 110x23 Focus",
                                      "slider 135,18 140x23, edit 280,18 60x22, spin 340,18 10x22",
                                      "button 360,18 73x23 #0 One Push",
                                      "label 40,48 110x23 Auto Min Value",
                                      "slider 155,48 140x23, edit 300,48 60x22, spin 360,48 10x22",
                                      "label 40,78 110x23 Auto Max Value",
                                      "slider 155,78 140x23, edit 300,78 60x22, spin 360,78 10x22",
                                      "switch 40,108 175x23 #5 Enable Region of Interest",
                                      "label 40,138 110x23 Left",
                                      "slider 155,138 140x23, edit 300,138 60x22, spin 360,138 10x22",
                                      "label 40,168 110x23 Right",
                                      "slider 155,168 140x23, edit 300,168 60x22, spin 360,168 10x22",
                                      "label 40,198 110x23 Top",
                                      "slider 155,198 140x23, edit 300,198 60x22, spin 360,198 10x22",
                                      "label 40,228 110x23 Bottom",
                                      "slider 155,228 140x23, edit 300,228 60x22, spin 360,228 10x22",
                                  }));
}

TEST_F(StaticTablePages, ColorPage) {
    EXPECT_EQ(LinesOf(color_page), (Lines{
                                       "label 20,18 110x23 WhiteBalance",
                                       "switch 135,18 49x23 #2 Auto",
                                       "button 189,18 67x23 #3 OnePush",
                                       "label 40,48 110x23 White Balance Red",
                                       "slider 155,48 140x23, edit 300,48 60x22, spin 360,48 10x22",
                                       "label 40,78 114x23 White Balance Green",
                                       "slider 159,78 140x23, edit 304,78 60x22, spin 364,78 10x22",
                                       "label 40,108 110x23 White Balance Blue",
                                       "slider 155,108 140x23, edit 300,108 60x22, spin 360,108 10x22",
                                       "label 20,138 110x23 Color Enhancement",
                                       "switch 135,138 61x23 #0 Enable",
                                   }));
}

TEST_F(StaticTablePages, ExposureIsSetInSecondsAndSnaps) {
    ASSERT_TRUE(Build(exposure_page));
    ISliderController& gain = *canvas_.placed.at(1).controller;
    ISliderController& exposure = *canvas_.placed.at(6).controller;
    EXPECT_EQ(dynamic_cast<CAbsValExposureSliderController*>(&gain), nullptr);
    EXPECT_NE(dynamic_cast<CAbsValExposureSliderController*>(&exposure), nullptr);

    EXPECT_TRUE(exposure.SetPosition(22));  // 1/1000 s is the nearest of the usual times
    std::wstring text;
    EXPECT_TRUE(exposure.GetText(text));
    EXPECT_EQ(text, L"1/1000 sec");
    EXPECT_TRUE(gain.SetText(L"12.34 dB"));
    EXPECT_TRUE(gain.GetText(text));
    EXPECT_EQ(text, L"12.340 ");
}

TEST_F(StaticTablePages, TheSecondExposureNeverStandsInForTheFirst) {
    Remove(109);
    Vendor(SELVANE_EXPOSURE_FLOAT).Put<std::uint64_t>(48, 0);
    EXPECT_FALSE(Shows(exposure_page, L"Exposure"));
    EXPECT_TRUE(Shows(exposure_page, L"Gain"));
}

TEST_F(StaticTablePages, ElementsThatTheCameraLacksAreLeftOut) {
    Remove(206);
    EXPECT_FALSE(Shows(color_page, L"White Balance Green"));
    EXPECT_TRUE(Shows(color_page, L"White Balance Blue"));

    Remove(211);
    EXPECT_FALSE(Shows(feature_page, L"Auto-center"));
    EXPECT_TRUE(Shows(feature_page, L"X Offset"));

    Vendor(SELVANE_STROBE).Put<std::uint32_t>(76, 7);
    EXPECT_FALSE(Shows(feature_page, L"Duration"));
    EXPECT_TRUE(Shows(feature_page, L"Mode"));
}

TEST_F(StaticTablePages, NothingIsShownOfAnEmptyCamera) {
    ScriptedFilter empty;
    PageSources sources;
    sources.filter = &empty;
    sources.built_in = ZELAdapterHelper::StaticItemTable();
    EXPECT_FALSE(PageLayout(sources, nullptr).BuildPage(true));
    EXPECT_FALSE(PageLayout(sources, &canvas_).BuildPage(false));
    EXPECT_TRUE(canvas_.placed.empty());
}

TEST_F(StaticTablePages, EveryFailureOfTheDriverIsSurvived) {
    const std::vector<std::wstring> all_pages;
    (void)Build(all_pages);
    const std::size_t calls = driver_.Calls().size();
    ASSERT_GT(calls, 50U);
    for (std::size_t n = 1; n <= calls; ++n) {
        driver_.FailCall(n, E_FAIL);
        EXPECT_TRUE(Build(all_pages)) << n;
        driver_.FailCall(0, S_OK);
    }
}

TEST_F(StaticTablePages, EveryExceptionOfTheDriverIsSurvived) {
    const std::vector<std::wstring> all_pages;
    (void)Build(all_pages);
    const std::size_t calls = driver_.Calls().size();
    for (std::size_t n = 1; n <= calls; ++n) {
        std::size_t left = n;
        driver_.before_call = [&](const test_support::DriverRequest&) {
            if (--left == 0) throw std::runtime_error("driver");
        };
        EXPECT_TRUE(Build(all_pages)) << n;
        canvas_.placed.clear();
        EXPECT_EQ(driver_.OutstandingReferences(), 0) << n;
        driver_.before_call = nullptr;
    }
}

}  // namespace
}  // namespace ZELPropUI
