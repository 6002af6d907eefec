#include "simcam/picture_painter.h"
#include "simcam/picture_scene.h"
#include "simcam/simulated_camera.h"

#include "items/standard_controls.h"
#include "items/vendor_properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>

namespace simcam_test {
namespace {

using namespace simcam;
using frame = std::vector<std::uint8_t>;

constexpr frame_format small_rgb = {pixel_format::rgb24, 320, 240};
constexpr frame_format small_yuv = {pixel_format::yuy2, 320, 240};

frame paint(const picture_state& state, const frame_format& format = small_rgb, std::uint64_t number = 0) {
    picture_painter painter;
    frame made(frame_size(format));
    painter.paint(state, format, number, made.data());
    return made;
}

frame paint(const simulated_camera& camera) { return paint(camera.picture()); }

double brightness(const frame& shown) {
    return std::accumulate(shown.begin(), shown.end(), 0.0) / static_cast<double>(shown.size());
}

// A point of an RGB frame, counted from the top left.
std::uint32_t point(const frame& shown, int x, int y) {
    const std::size_t at = static_cast<std::size_t>(small_rgb.height - 1 - y) * row_size(small_rgb) +
                           static_cast<std::size_t>(x) * 3;
    return static_cast<std::uint32_t>(shown[at + 2] << 16 | shown[at + 1] << 8 | shown[at]);
}

// Below the band at the top in which the mark moves.
constexpr int below_mark = 12;

int differing_points(const frame& one, const frame& other, int from = below_mark) {
    int count = 0;
    for (int y = from; y < small_rgb.height; ++y) {
        for (int x = 0; x < small_rgb.width; ++x) count += point(one, x, y) != point(other, x, y) ? 1 : 0;
    }
    return count;
}

class DescribedPicture : public testing::Test {
protected:
    template <class Value>
    void Set(const char* path, Value value) {
        ASSERT_EQ(camera->set_named(path, value), S_OK) << path;
    }
    // The picture of the whole sensor.
    void ShowAll() {
        Set("Width/Value", 2048);
        Set("Height/Value", 1536);
    }

    camera_ptr camera = make_camera("described");
};

TEST_F(DescribedPicture, FollowsTheExposure) {
    EXPECT_NEAR(camera->picture().light, 1, 1e-6);
    const double usual = brightness(paint(*camera));
    Set("ExposureTime/Value", 0.02);
    EXPECT_NEAR(camera->picture().light, 2, 1e-6);
    EXPECT_GT(brightness(paint(*camera)), usual * 1.5);
    Set("ExposureTime/Value", 0.001);
    EXPECT_LT(brightness(paint(*camera)), usual * 0.6);
}

TEST_F(DescribedPicture, FollowsTheReferenceWhileTheExposureIsAutomatic) {
    Set("ExposureTime/Value", 0.04);
    Set("ExposureAuto/Value", 1);
    EXPECT_NEAR(camera->picture().light, 1, 1e-6);
    std::int64_t reference = 0;
    ASSERT_EQ(camera->get_named("ExposureAutoReference/Default", reference), S_OK);
    Set("ExposureAutoReference/Value", reference / 2);
    EXPECT_NEAR(camera->picture().light, 0.5, 0.01);
}

TEST_F(DescribedPicture, FollowsGainGammaAndBlackLevel) {
    const double usual = brightness(paint(*camera));
    Set("Gain/Value", 6.0);
    EXPECT_NEAR(camera->picture().gain, 1.995, 0.01);
    EXPECT_GT(brightness(paint(*camera)), usual * 1.5);
    Set("Gain/Value", 0.0);
    Set("Gamma/Value", 2.0);
    EXPECT_GT(brightness(paint(*camera)), usual * 1.3);
    Set("Gamma/Value", 1.0);
    Set("BlackLevel/Value", 100);
    const frame lifted = paint(*camera);
    EXPECT_EQ(*std::min_element(lifted.begin(), lifted.end()), 100);
}

TEST_F(DescribedPicture, IsTurnedByEachFlip) {
    ShowAll();
    const frame straight = paint(*camera);
    Set("ReverseX/Value", 1);
    const frame mirrored = paint(*camera);
    Set("ReverseX/Value", 0);
    Set("ReverseY/Value", 1);
    const frame upside_down = paint(*camera);
    EXPECT_GT(differing_points(straight, mirrored), 1000);
    for (int y = below_mark; y < small_rgb.height - below_mark; ++y) {
        for (int x = 0; x < small_rgb.width; ++x) {
            ASSERT_EQ(point(mirrored, x, y), point(straight, small_rgb.width - 1 - x, y));
            ASSERT_EQ(point(upside_down, x, y), point(straight, x, small_rgb.height - 1 - y));
        }
    }
}

TEST_F(DescribedPicture, ShowsTheTestPatternsWhateverTheLight) {
    std::vector<frame> shown = {paint(*camera)};
    for (const char* entry : {"GreyRamp", "ColorBars", "Checkerboard"}) {
        ASSERT_EQ(camera->set_named("TestPattern/SelectedEntry", std::string_view(entry)), S_OK);
        Set("ExposureTime/Value", 0.01);
        const frame pattern = paint(*camera);
        for (const frame& other : shown) EXPECT_GT(differing_points(pattern, other), 10000) << entry;
        Set("ExposureTime/Value", 1.0);
        EXPECT_EQ(paint(*camera), pattern) << entry;
        shown.push_back(pattern);
    }
}

TEST_F(DescribedPicture, ShowsThePartThatIsScanned) {
    ShowAll();
    const frame all = paint(*camera);
    Set("Width/Value", 1024);
    Set("Height/Value", 768);
    Set("OffsetX/Value", 1024);
    Set("OffsetY/Value", 768);
    const sensor_area area = camera->picture().area;
    EXPECT_EQ(area.left, 0.5);
    EXPECT_EQ(area.top, 0.5);
    EXPECT_EQ(area.width, 0.5);
    EXPECT_EQ(area.height, 0.5);
    const frame part = paint(*camera);
    for (const int y : {40, 100, 200}) {
        for (const int x : {20, 160, 300}) EXPECT_EQ(point(part, x, y), point(all, 160 + x / 2, 120 + y / 2));
    }
}

TEST_F(DescribedPicture, ComesAsOftenAsTheFrameRateSays) {
    frame_rate_range rate = camera->picture().frame_rate;
    EXPECT_EQ(rate.now, 30);
    EXPECT_EQ(rate.min, 1);
    EXPECT_EQ(rate.max, 60);
    EXPECT_EQ(camera->set_frame_rate(12.5), S_OK);
    EXPECT_EQ(camera->picture().frame_rate.now, 12.5);
    Set("ExposureTime/Value", 0.05);
    Set("FrameRateAuto/Value", 1);
    EXPECT_NEAR(camera->picture().frame_rate.now, 20, 1e-3);
    Set("ExposureTime/Value", 4.0);
    EXPECT_EQ(camera->picture().frame_rate.now, 1) << "not below what the camera can do";
}

// Width and offset change in one call of the driver; no picture shows one without the other.
TEST_F(DescribedPicture, IsOfOneMoment) {
    Set("AutoCenter/Value", 1);
    std::atomic<bool> done = false;
    std::thread pages([&] {
        for (int round = 0; round < 2000; ++round) {
            static_cast<void>(camera->set_named("Width/Value", round % 2 == 0 ? 2048 : 1024));
        }
        done = true;
    });
    int seen = 0;
    while (!done || seen == 0) {
        const sensor_area area = camera->picture().area;
        EXPECT_EQ(area.left, (1 - area.width) / 2);
        ++seen;
    }
    pages.join();
}

class BuiltInPicture : public testing::Test {
protected:
    camera_ptr camera = make_camera("builtin");
};

TEST_F(BuiltInPicture, FollowsTheDriversProperties) {
    const picture_state usual = camera->picture();
    EXPECT_NEAR(usual.light, 1, 1e-6);
    EXPECT_NEAR(usual.gain, 1, 1e-6);
    EXPECT_EQ(camera->camera_control()->Set(wire::camera_control_exposure, 666, 2), S_OK);
    EXPECT_NEAR(camera->picture().light, 2, 0.01);
    EXPECT_EQ(camera->video_proc_amp()->Set(wire::video_proc_amp_gain, 200, 2), S_OK);
    EXPECT_NEAR(camera->picture().gain, 10, 0.01);
    camera->vendor()->integers[SELVANE_PARTIAL_SCAN_X].value = 512;
    EXPECT_EQ(camera->picture().area.left, 0.25);
    EXPECT_EQ(camera->picture().area.width, 0.5);
}

TEST_F(BuiltInPicture, HasTheUsualFrameRate) {
    EXPECT_EQ(camera->picture().frame_rate.now, 30);
    EXPECT_EQ(camera->picture().frame_rate.min, 30);
    EXPECT_EQ(camera->picture().frame_rate.max, 30);
    EXPECT_EQ(camera->set_frame_rate(10), static_cast<HRESULT>(0x80070490));
}

// What the pages show for gain on the full camera is the driver's, while the exposure is the description's.
TEST(FullPicture, TakesEachFeatureFromWhereThePagesChangeIt) {
    const camera_ptr camera = make_camera("full");
    camera->vendor()->integers[SELVANE_GAIN].value = 2000;
    camera->vendor()->integers[SELVANE_EXPOSURE_MICROSECONDS].value = 1;
    EXPECT_NEAR(camera->picture().gain, 10, 0.01);
    EXPECT_NEAR(camera->picture().light, 1, 1e-6);
    EXPECT_EQ(camera->set_named("ExposureTime/Value", 0.03), S_OK);
    EXPECT_NEAR(camera->picture().light, 3, 1e-6);
}

TEST(EveryPicture, IsUsualForACameraWithoutFeatures) {
    const picture_state state = make_camera("empty")->picture();
    EXPECT_EQ(state.light, 1);
    EXPECT_EQ(state.gain, 1);
    EXPECT_EQ(state.area.width, 1);
    EXPECT_GT(brightness(paint(state)), 20);
}

// A description of any sense: no number leads out of the picture.
TEST(EveryPicture, StaysWithinItsBoundsForOddNumbers) {
    camera_options odd;
    odd.descriptions.emplace_back(R"(<RegisterDescription>
      <Float Name="ExposureTime"><Value>1e300</Value><Min>-5</Min></Float>
      <Float Name="Gain"><Value>1e9</Value></Float>
      <Float Name="Gamma"><Value>-3</Value><Min>-9</Min></Float>
      <Integer Name="BlackLevel"><Value>-700</Value></Integer>
      <Integer Name="SensorWidth"><Value>0</Value></Integer><Integer Name="Width"><Value>-7</Value></Integer>
      <Integer Name="SensorHeight"><Value>4</Value></Integer><Integer Name="Height"><Value>900</Value></Integer>
      <Integer Name="OffsetY"><Value>-9223372036854775807</Value></Integer>
      <Integer Name="AcquisitionFrameRate"><Value>0</Value></Integer></RegisterDescription>)");
    const camera_ptr camera = make_camera(odd);
    const picture_state state = camera->picture();
    EXPECT_EQ(state.area.left, 0);
    EXPECT_EQ(state.area.top, 0);
    EXPECT_EQ(state.area.height, 1);
    EXPECT_EQ(state.frame_rate.now, 30);
    EXPECT_EQ(state.black_level, 0);
    EXPECT_FALSE(paint(state).empty());
}

TEST(EveryPicture, HasItsStepsOfGreyAndPatchesOfColorInOrder) {
    const std::vector<std::uint32_t> scene = draw_scene(test_pattern::off);
    const auto row = [&](int y, int parts) {
        std::vector<std::uint32_t> points;
        for (int part = 0; part < parts; ++part) {
            for (const int x : {32 + (448 * part + parts - 1) / parts, 32 + (448 * (part + 1) - 1) / parts})
                points.push_back(scene[static_cast<std::size_t>(y * scene_width + x)]);
        }
        return points;
    };
    EXPECT_THAT(row(330, 8), testing::ElementsAre(0, 0, 0x121212, 0x121212, 0x242424, 0x242424, 0x363636,
                                                  0x363636, 0x494949, 0x494949, 0x5B5B5B, 0x5B5B5B, 0x6D6D6D,
                                                  0x6D6D6D, 0x808080, 0x808080));
    EXPECT_THAT(row(50, 6), testing::ElementsAre(0x702020, 0x702020, 0x206028, 0x206028, 0x203070, 0x203070,
                                                 0x686018, 0x686018, 0x602060, 0x602060, 0x186060, 0x186060));
}

TEST(EveryPicture, HasAMarkThatMovesFromFrameToFrame) {
    const picture_state state;
    const frame first = paint(state, small_rgb, 1);
    const frame second = paint(state, small_rgb, 2);
    EXPECT_GT(differing_points(first, second, 0), 0);
    EXPECT_EQ(differing_points(first, second), 0) << "and nothing else";
    EXPECT_EQ(paint(state, small_rgb, 1ULL << 63).size(), frame_size(small_rgb));
}

TEST(EveryPicture, HasItsColorBarsInTheirColors) {
    picture_state state;
    state.pattern = test_pattern::color_bars;
    const frame bars = paint(state);
    // Red, green and blue, each on or off.
    std::vector<std::uint32_t> colors;
    for (int bar = 0; bar < 8; ++bar)
        colors.push_back(point(bars, small_rgb.width * (2 * bar + 1) / 16, small_rgb.height / 2) & 0x808080);
    EXPECT_THAT(colors, testing::ElementsAre(0x808080, 0x808000, 0x008080, 0x008000, 0x800080, 0x800000,
                                             0x000080, 0));
}

TEST(EveryPicture, IsTheSameInBothFormats) {
    picture_state state;
    state.light = 1.5;
    const frame rgb = paint(state, small_rgb, 7);
    const frame yuv = paint(state, small_yuv, 7);
    ASSERT_EQ(yuv.size(), 320U * 240 * 2);
    for (int y = 0; y < small_yuv.height; y += 5) {
        for (int x = 0; x < small_yuv.width; x += 3) {
            const std::uint32_t color = point(rgb, x, y);
            const double luma = 16 + (65.738 * (color >> 16 & 0xFF) + 129.057 * (color >> 8 & 0xFF) +
                                      25.064 * (color & 0xFF)) /
                                         256;
            const std::size_t at =
                static_cast<std::size_t>(y) * row_size(small_yuv) + static_cast<std::size_t>(x) * 2;
            const bool mark = color == 0xEBEBEB;
            EXPECT_NEAR(yuv[at], mark ? 235 : luma, 1.5) << x << "," << y;
        }
    }
}

TEST(EveryPicture, FillsItsFrameAndNoMore) {
    constexpr std::uint8_t untouched = 0xA5;
    for (const pixel_format pixels : {pixel_format::rgb24, pixel_format::yuy2}) {
        for (const int width : {320, 640, 1280}) {
            const frame_format format = {pixels, width, width * 3 / 4};
            frame made(frame_size(format) + 64, untouched);
            picture_painter painter;
            painter.paint(picture_state(), format, 3, made.data());
            EXPECT_THAT(frame(made.end() - 64, made.end()), testing::Each(untouched));
            EXPECT_NE(made[frame_size(format) - 1], untouched);
        }
    }
}

// What a stream keeps of the frame before must not be seen in the next one.
TEST(PicturePainter, PaintsEachFrameAsIfItWereTheFirst) {
    picture_painter painter;
    picture_state state;
    const auto repaint = [&](const frame_format& format) {
        frame made(frame_size(format));
        painter.paint(state, format, 0, made.data());
        EXPECT_EQ(made, paint(state, format));
    };
    for (int time = 0; time < 2; ++time) {
        state = {};
        repaint(small_rgb);
        state.light = 2;
        repaint(small_rgb);
        state.gamma = 2;
        repaint(small_rgb);
        state.black_level = 40;
        repaint(small_rgb);
        state.pattern = test_pattern::grey_ramp;
        repaint(small_rgb);
        repaint(small_yuv);
        repaint(small_yuv);
    }
}

picture_state picture_of(const vendor_model& vendor) {
    camera_options options;
    options.vendor = vendor;
    return make_camera(options)->picture();
}

TEST(VendorPicture, HasTheLightOfItsExposureInComparisonWithTheDefault) {
    vendor_model vendor;
    EXPECT_EQ(picture_of(vendor).light, 1) << "without an exposure";
    integer_property& ticks = vendor.integers[SELVANE_EXPOSURE_TICKS];
    ticks.value = 30;
    EXPECT_EQ(picture_of(vendor).light, 1) << "without a default to compare with";
    ticks.default_value = 10;
    EXPECT_EQ(picture_of(vendor).light, 3);
    integer_property& microseconds = vendor.integers[SELVANE_EXPOSURE_MICROSECONDS];
    microseconds.value = 50;
    microseconds.default_value = 100;
    EXPECT_EQ(picture_of(vendor).light, 0.5) << "the finer one counts";
}

TEST(VendorPicture, HasTheLightOfTheReferenceWhileTheExposureIsAutomatic) {
    vendor_model vendor;
    integer_property& exposure = vendor.integers[SELVANE_EXPOSURE_MICROSECONDS];
    exposure.value = 500;
    exposure.default_value = 100;
    exposure.flags = wire::automatic;
    EXPECT_EQ(picture_of(vendor).light, 1) << "without a reference";
    integer_property& reference = vendor.integers[SELVANE_AUTO_EXPOSURE_REFERENCE];
    reference.value = 60;
    EXPECT_EQ(picture_of(vendor).light, 1) << "without a default of it";
    reference.default_value = 120;
    EXPECT_EQ(picture_of(vendor).light, 0.5);
}

picture_state picture_of(const std::string& elements) {
    camera_options options;
    options.descriptions = {"<D>" + elements + "</D>"};
    return make_camera(options)->picture();
}

TEST(DescriptionPicture, ComparesAnExposureWithoutADefaultWithTheMiddleOfItsRange) {
    const auto light = [](const std::string& limits) {
        return picture_of("<Float Name='ExposureTime'><Value>8</Value>" + limits + "</Float>").light;
    };
    EXPECT_EQ(light("<Min>1</Min><Max>16</Max>"), 2) << "of its logarithm";
    EXPECT_EQ(light("<Min>0</Min><Max>32</Max>"), 0.5);
    EXPECT_EQ(light("<Min>-9</Min><Max>0</Max><ImposedAccessMode>RO</ImposedAccessMode>"), 1) << "no middle";
}

TEST(DescriptionPicture, TakesWhatIsNoNumberForWhatIsNotThere) {
    const std::string broken = "<pValue>nowhere</pValue>";
    EXPECT_EQ(picture_of("<Float Name='ExposureTime'>" + broken + "</Float>").light, 1);
    EXPECT_EQ(picture_of("<String Name='Gain'><Value>3</Value></String>").gain, 1);
    EXPECT_EQ(picture_of("<SwissKnife Name='Gain'><Formula>1.0/0.0</Formula></SwissKnife>").gain, 1);
    const sensor_area whole = picture_of("<Integer Name='SensorWidth'><Value>100</Value></Integer>").area;
    EXPECT_EQ(whole.width, 1);
    EXPECT_EQ(picture_of("<Integer Name='Width'><Value>100</Value></Integer>").area.width, 1);
    const auto area = [](const char* sensor, const char* size) {
        return picture_of(std::string("<Integer Name='SensorWidth'><Value>") + sensor +
                          "</Value></Integer><Integer Name='Width'><Value>" + size + "</Value></Integer>")
            .area;
    };
    EXPECT_EQ(area("0", "50").width, 1);
    EXPECT_EQ(area("100", "0").width, 1);
    EXPECT_EQ(area("100", "25").width, 0.25);
}

TEST(DescriptionPicture, ComesAtTheHighestRateWhileThatIsAutomaticAndNoExposureIsInItsWay) {
    const std::string rate =
        "<Float Name='FrameRate'><Value>10</Value><Min>1</Min><Max>50</Max></Float>"
        "<Boolean Name='FrameRateAuto'><Value>true</Value></Boolean>";
    EXPECT_EQ(picture_of(rate).frame_rate.now, 50);
    EXPECT_EQ(picture_of(rate + "<Float Name='ExposureTime'><Value>0.5</Value></Float>").frame_rate.now, 2);
}

}  // namespace
}  // namespace simcam_test
