#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>

namespace simcam_test {
namespace {

using namespace simcam;

constexpr GUID vendor_set = {0x515E97D1, 0xC453, 0x4772, {0xA4, 0x89, 0xCC, 0x07, 0x0A, 0x5A, 0x24, 0x42}};
constexpr GUID color_set = {0x8CBCF1C6, 0x53C3, 0x4D79, {0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8}};

// Offsets in the wire records.
constexpr std::size_t at_value = 24;
constexpr std::size_t at_flags = 28;
constexpr std::size_t at_float_flags = 40;

template <class Value>
Value field(const bytes& record, std::size_t at) {
    Value value = {};
    std::memcpy(&value, record.data() + at, sizeof(value));
    return value;
}

template <class Value>
bytes with(bytes record, std::size_t at, Value value) {
    std::memcpy(record.data() + at, &value, sizeof(value));
    return record;
}

class VendorProperty : public testing::Test {
protected:
    static camera_options Options() {
        camera_options options;
        options.vendor = full_vendor_model();
        return options;
    }
    bytes Get(DWORD id, std::size_t size) {
        const answer got = get_property(*camera_, vendor_set, id, bytes(size), size);
        EXPECT_EQ(got.result, S_OK) << id;
        EXPECT_EQ(got.returned, size) << id;
        EXPECT_EQ(bytes(got.data.begin(), got.data.begin() + 24), bytes(24)) << id;
        return got.data;
    }
    std::int32_t Value(DWORD id) { return field<std::int32_t>(Get(id, 48), at_value); }
    HRESULT Set(DWORD id, const bytes& record) {
        return set_property(*camera_, vendor_set, id, record, record);
    }
    HRESULT SetValue(DWORD id, std::int32_t value, std::uint32_t flags = 2) {
        return Set(id, with(with(bytes(48), at_value, value), at_flags, flags));
    }
    HRESULT SetFloat(DWORD id, float value, std::uint32_t flags = 2) {
        return Set(id, with(with(bytes(56), at_value, value), at_float_flags, flags));
    }
    held_model Model() { return camera_->vendor(); }

    camera_ptr camera_ = make_camera(Options());
};

TEST_F(VendorProperty, FillsTheIntegerRecord) {
    Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE] = {
        11, 12, 13, -14, 15, 16, limit_policy::clamp, support_both};
    const bytes record = Get(106, 48);
    const std::int32_t expected[] = {11, 12, 13, -14, 15, 16};
    for (std::size_t at = 0; at < 6; ++at) {
        EXPECT_EQ(field<std::int32_t>(record, at_value + 4 * at), expected[at]) << at;
    }
}

TEST_F(VendorProperty, FillsTheFloatRecord) {
    Model()->floats[SELVANE_EXPOSURE_FLOAT] = {1.5F,        0.5F, 9.5F, 2.5F, 1, 3, limit_policy::clamp,
                                               support_both};
    const bytes record = Get(200, 56);
    EXPECT_EQ(field<float>(record, 24), 1.5F);
    EXPECT_EQ(field<float>(record, 28), 0.5F);
    EXPECT_EQ(field<float>(record, 32), 9.5F);
    EXPECT_EQ(field<float>(record, 36), 2.5F);
    EXPECT_EQ(field<std::uint32_t>(record, 40), 1U);
    EXPECT_EQ(field<std::uint32_t>(record, 44), 3U);
}

TEST_F(VendorProperty, FillsTheInputOutputRecord) {
    Model()->gpio[SELVANE_GPIO] = {5, 6, 7, 8, support_both};
    const bytes record = Get(122, 40);
    for (std::size_t at = 0; at < 4; ++at) {
        EXPECT_EQ(field<std::int32_t>(record, 24 + 4 * at), static_cast<std::int32_t>(5 + at));
    }
}

TEST_F(VendorProperty, FillsTheStrobeRecord) {
    const held_model model = Model();
    strobe_property& strobe = model->strobe[SELVANE_STROBE];
    strobe = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, support_both};
    const bytes record = Get(125, 88);
    for (std::size_t at = 0; at < 10; ++at) {
        EXPECT_EQ(field<std::int32_t>(record, 24 + 4 * at), static_cast<std::int32_t>(1 + at)) << at;
    }
    EXPECT_EQ(field<std::int32_t>(record, 68), 11);
    EXPECT_EQ(field<std::int32_t>(record, 76), 12);
}

TEST_F(VendorProperty, TellsWhatItSupports) {
    DWORD support = 0;
    for (const DWORD id :
         {101U, 102U, 106U, 107U, 109U, 115U, 118U, 119U, 122U, 124U, 125U, 200U, 201U, 202U, 206U,
          211U, 212U, 213U, 238U, 239U, 240U, 241U, 244U, 245U, 246U, 247U, 248U, 249U, 250U, 251U}) {
        support = 0;
        EXPECT_EQ(camera_->property_set()->QuerySupported(vendor_set, id, &support), S_OK) << id;
        EXPECT_EQ(support, 3U) << id;
        Model()->remove(id);
        EXPECT_EQ(camera_->property_set()->QuerySupported(vendor_set, id, &support), property_unknown) << id;
        EXPECT_EQ(get_property(*camera_, vendor_set, id, bytes(88), 88).result, property_unknown) << id;
        EXPECT_EQ(set_property(*camera_, vendor_set, id, bytes(88), bytes(88)), property_unknown) << id;
    }
    EXPECT_EQ(camera_->property_set()->QuerySupported(color_set, 0, &support), S_OK);
    EXPECT_EQ(camera_->property_set()->QuerySupported(color_set, 1, &support), property_unknown);
    Model()->color_enhancement.clear();
    EXPECT_EQ(camera_->property_set()->QuerySupported(color_set, 0, &support), property_unknown);
}

TEST_F(VendorProperty, MayBeReadableOrWritableAlone) {
    Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].support = support_get;
    Model()->integers[SELVANE_WHITE_BALANCE_BLUE].support = support_set;
    DWORD support = 0;
    EXPECT_EQ(camera_->property_set()->QuerySupported(vendor_set, SELVANE_AUTO_EXPOSURE_REFERENCE, &support),
              S_OK);
    EXPECT_EQ(support, 1U);
    EXPECT_EQ(SetValue(106, 1), property_unknown);
    EXPECT_EQ(get_property(*camera_, vendor_set, 101, bytes(48), 48).result, property_unknown);
    EXPECT_EQ(SetValue(101, 1), S_OK);
}

TEST_F(VendorProperty, WantsItsWholeRecord) {
    EXPECT_EQ(get_property(*camera_, vendor_set, 106, bytes(48), 47).result, buffer_too_small);
    EXPECT_EQ(get_property(*camera_, vendor_set, 200, bytes(48), 48).result, buffer_too_small);
    EXPECT_EQ(get_property(*camera_, vendor_set, 125, bytes(56), 56).result, buffer_too_small);
    EXPECT_EQ(set_property(*camera_, vendor_set, 106, bytes(47), bytes(47)), buffer_too_small);
    EXPECT_EQ(set_property(*camera_, vendor_set, 122, bytes(39), bytes(39)), buffer_too_small);
}

TEST_F(VendorProperty, GoesByItsPolicyOutsideTheLimits) {
    EXPECT_EQ(SetValue(106, 300), S_OK);
    EXPECT_EQ(Value(106), 255);
    EXPECT_EQ(SetValue(106, -1), S_OK);
    EXPECT_EQ(Value(106), 0);
    Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].policy = limit_policy::refuse;
    EXPECT_EQ(SetValue(106, 256), E_INVALIDARG);
    EXPECT_EQ(Value(106), 0);
    Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].policy = limit_policy::accept;
    EXPECT_EQ(SetValue(106, 256), S_OK);
    EXPECT_EQ(Value(106), 256);
    EXPECT_EQ(SetFloat(238, 2e6F), S_OK);
    EXPECT_EQ(field<float>(Get(238, 56), at_value), 1e6F);
}

TEST_F(VendorProperty, ShowsOneExposureInAllItsWays) {
    EXPECT_EQ(SetValue(109, 100), S_OK);
    EXPECT_EQ(Value(239), 10000);
    EXPECT_EQ(field<float>(Get(200, 56), at_value), 0.01F);
    EXPECT_EQ(Model()->camera_control[4].value, 100);
    EXPECT_EQ(SetValue(239, 25), S_OK);
    EXPECT_EQ(Value(109), 1);
    EXPECT_EQ(SetFloat(200, 2.0F), S_OK);
    EXPECT_EQ(Value(239), 2000000);
    EXPECT_EQ(Value(109), 20000);
    EXPECT_EQ(camera_->camera_control()->Set(4, 30000, 2), S_OK);
    EXPECT_EQ(Value(239), 3000000);
}

TEST_F(VendorProperty, ShowsOneLimitAndOneGainInAllTheirWays) {
    EXPECT_EQ(SetValue(240, 500000), S_OK);
    EXPECT_EQ(Value(201), 5000);
    EXPECT_EQ(field<float>(Get(246, 56), at_value), 0.5F);
    EXPECT_EQ(SetValue(241, 1234), S_OK);
    EXPECT_EQ(Model()->video_proc_amp[9].value, 123);
    EXPECT_EQ(camera_->video_proc_amp()->Set(9, 200, 2), S_OK);
    EXPECT_EQ(Value(241), 2000);
}

TEST_F(VendorProperty, LetsTheAutomaticModeHaveTheSay) {
    EXPECT_EQ(camera_->camera_control()->Set(4, 0, 1), S_OK);
    EXPECT_EQ(field<std::uint32_t>(Get(239, 48), at_flags), 1U);
    EXPECT_EQ(field<std::uint32_t>(Get(200, 56), at_float_flags), 1U);
    EXPECT_EQ(SetValue(239, 50), E_ACCESSDENIED);
    EXPECT_EQ(SetValue(109, 50), E_ACCESSDENIED);
    EXPECT_EQ(SetFloat(200, 1.0F, 2), S_OK);
    EXPECT_EQ(Model()->camera_control[4].flags, 2U);
    EXPECT_EQ(SetValue(239, 50), S_OK);

    EXPECT_EQ(SetValue(202, 1), S_OK);
    EXPECT_EQ(SetValue(201, 50), E_ACCESSDENIED);
    EXPECT_EQ(SetValue(240, 50), E_ACCESSDENIED);
    EXPECT_EQ(SetFloat(246, 1.0F), E_ACCESSDENIED);
    EXPECT_EQ(SetValue(106, 50), S_OK);

    EXPECT_EQ(camera_->video_proc_amp()->Set(7, 0, 1), S_OK);
    for (const DWORD id : {SELVANE_WHITE_BALANCE_BLUE, SELVANE_WHITE_BALANCE_RED, SELVANE_WHITE_BALANCE_GREEN,
                           SELVANE_WHITE_BALANCE_ONE_PUSH})
        EXPECT_EQ(SetValue(id, 1), E_ACCESSDENIED) << id;
    EXPECT_EQ(camera_->video_proc_amp()->Set(7, 0, 2), S_OK);
    EXPECT_EQ(SetValue(101, 1), S_OK);
}

TEST_F(VendorProperty, TakesTheAutomaticFlagOfTheFloatExposure) {
    EXPECT_EQ(SetFloat(200, 123.0F, 1), S_OK);
    EXPECT_EQ(Model()->camera_control[4].flags, 1U);
    EXPECT_NE(Model()->floats[SELVANE_EXPOSURE_FLOAT].value, 123.0F);
    EXPECT_EQ(SetFloat(238, 1.0F, 1), E_INVALIDARG);
}

TEST_F(VendorProperty, CentersThePartialScan) {
    EXPECT_EQ(SetValue(118, 40), S_OK);
    EXPECT_EQ(SetValue(211, 1), S_OK);
    EXPECT_EQ(Value(118), 512);
    EXPECT_EQ(Value(119), 384);
    EXPECT_EQ(SetValue(118, 40), E_ACCESSDENIED);
    EXPECT_EQ(SetValue(211, 0), S_OK);
    EXPECT_EQ(Value(118), 512);
    EXPECT_EQ(SetValue(118, 40), S_OK);
}

TEST_F(VendorProperty, DrivesTheOutputsAndReadsThePins) {
    Model()->gpio[SELVANE_GPIO].input = 2;
    EXPECT_EQ(field<std::int32_t>(Get(122, 40), 24), 2);
    EXPECT_EQ(Set(122, with(with(bytes(40), 24, 1), 28, 3)), S_OK);
    EXPECT_EQ(Model()->gpio[SELVANE_GPIO].input, 2);
    EXPECT_EQ(Model()->gpio[SELVANE_GPIO].output, 3);
    EXPECT_EQ(Set(122, with(bytes(40), 28, 4)), E_INVALIDARG);
    EXPECT_EQ(Set(122, with(bytes(40), 28, -1)), E_INVALIDARG);
    EXPECT_EQ(Model()->gpio[SELVANE_GPIO].output, 3);
}

TEST_F(VendorProperty, KeepsTheStrobeInItsLimits) {
    bytes record = with(with(with(bytes(88), 24, 1), 28, 200000), 44, 5);
    Model()->strobe[SELVANE_STROBE].duration_min = 10;
    record = with(record, 68, 1);
    EXPECT_EQ(Set(125, record), S_OK);
    const held_model model = Model();
    const strobe_property& strobe = model->strobe[SELVANE_STROBE];
    EXPECT_EQ(strobe.enable, 1);
    EXPECT_EQ(strobe.delay, 100000);
    EXPECT_EQ(strobe.duration, 10);
    EXPECT_EQ(strobe.polarity, 0);
    EXPECT_EQ(strobe.follow_exposure, 1);
    EXPECT_EQ(strobe.delay_max, 100000);
    EXPECT_EQ(Set(125, bytes(88)), S_OK);
    EXPECT_EQ(strobe.duration, 0);
}

TEST_F(VendorProperty, KeepsTheStrobeInItsRestrictions) {
    const held_model model = Model();
    strobe_property& strobe = model->strobe[SELVANE_STROBE];
    strobe.restrictions = wire::strobe_no_polarity | wire::strobe_no_delay;
    EXPECT_EQ(Set(125, with(with(bytes(88), 28, 50), 60, 0)), S_OK);
    EXPECT_EQ(strobe.polarity, 1);
    EXPECT_EQ(strobe.delay, 0);
    EXPECT_EQ(strobe.restrictions, wire::strobe_no_polarity | wire::strobe_no_delay);
}

TEST_F(VendorProperty, KeepsAStrobeThatCanOnlyFollowTheExposure) {
    const held_model model = Model();
    strobe_property& strobe = model->strobe[SELVANE_STROBE];
    strobe.restrictions = wire::strobe_no_duration;
    strobe.follow_exposure = 1;
    EXPECT_EQ(Set(125, with(with(bytes(88), 28, 50), 44, 70)), S_OK);
    EXPECT_EQ(strobe.follow_exposure, 1);
    EXPECT_EQ(strobe.duration, 1000);
    EXPECT_EQ(strobe.delay, 50);
}

TEST_F(VendorProperty, TakesTheTriggerBitsThatItHas) {
    EXPECT_EQ(field<std::uint32_t>(Get(115, 48), at_flags), 4U);
    EXPECT_EQ(SetValue(115, 0, wire::trigger_polarity | wire::trigger_operation | 0x80000000U), S_OK);
    EXPECT_EQ(Model()->integers[SELVANE_TRIGGER].flags, wire::trigger_polarity | wire::trigger_operation);
    Model()->integers[SELVANE_TRIGGER].capabilities = wire::trigger_operation;
    EXPECT_EQ(SetValue(115, 0, wire::trigger_polarity | wire::trigger_off), S_OK);
    EXPECT_EQ(Model()->integers[SELVANE_TRIGGER].flags, wire::trigger_off);
}

TEST_F(VendorProperty, CountsSoftwareTriggersWhileTheTriggerIsOn) {
    EXPECT_EQ(SetValue(213, 0, 8), static_cast<HRESULT>(0x80070015));
    EXPECT_EQ(SetValue(115, 0, 0), S_OK);
    EXPECT_EQ(SetValue(213, 0, 2), E_INVALIDARG);
    EXPECT_EQ(SetValue(213, 0, 8), S_OK);
    EXPECT_EQ(Model()->software_triggers, 1U);
}

TEST_F(VendorProperty, BalancesWhiteAtOnePush) {
    EXPECT_EQ(SetValue(101, 1), S_OK);
    EXPECT_EQ(SetValue(107, 1), S_OK);
    EXPECT_EQ(Value(101), Model()->integers[SELVANE_WHITE_BALANCE_BLUE].default_value);
    EXPECT_EQ(Value(107), 0);
}

TEST_F(VendorProperty, RunsTheFocusForTwoReads) {
    EXPECT_EQ(Value(124), 0);
    EXPECT_EQ(SetValue(124, 1), S_OK);
    EXPECT_EQ(Value(124), 1);
    EXPECT_EQ(Value(124), 1);
    EXPECT_EQ(Value(124), 0);
    EXPECT_EQ(Model()->camera_control[6].value, 500);
}

TEST_F(VendorProperty, KeepsLowerLimitsBelowUpperOnes) {
    EXPECT_EQ(SetValue(244, 1000), S_OK);
    EXPECT_EQ(Value(244), 900);
    EXPECT_EQ(SetValue(250, 0), S_OK);
    EXPECT_EQ(Value(250), 640);
    EXPECT_EQ(SetValue(249, 2), S_OK);
    EXPECT_EQ(Value(249), 384);
}

TEST_F(VendorProperty, SwitchesTheColorEnhancement) {
    const bytes on = with(bytes(48), at_value, 1);
    EXPECT_EQ(set_property(*camera_, color_set, 0, on, on), S_OK);
    EXPECT_EQ(field<std::int32_t>(get_property(*camera_, color_set, 0, bytes(48), 48).data, at_value), 1);
    EXPECT_EQ(set_property(*camera_, color_set, 1, on, on), property_unknown);
    EXPECT_EQ(Model()->integers.count(0), 0U);
}

TEST_F(VendorProperty, AnswersForItsSetsAsLongAsItHasThem) {
    const std::pair<bool camera_options::*, GUID> sets[] = {
        {&camera_options::vendor_set, vendor_set}, {&camera_options::color_enhancement_set, color_set}};
    for (const auto& [offered, missing] : sets) {
        camera_options options = Options();
        options.vendor.integers[0] = {};
        options.*offered = false;
        const camera_ptr camera = make_camera(options);
        for (const GUID& set : {vendor_set, color_set}) {
            const HRESULT expected = set == missing ? set_unknown : S_OK;
            DWORD support = 0;
            EXPECT_EQ(camera->property_set()->QuerySupported(set, 0, &support), expected);
            EXPECT_EQ(get_property(*camera, set, 0, bytes(48), 48).result, expected);
            EXPECT_EQ(set_property(*camera, set, 0, bytes(48), bytes(48)), expected);
        }
    }
}

// A call on another thread waits while the model is held; a race shows as such under a thread sanitizer.
TEST_F(VendorProperty, NothingChangesInAModelThatIsHeld) {
    constexpr int rounds = 200;
    constexpr int last = 180;
    constexpr int middle = 90;
    Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].max = last;
    std::future<HRESULT> call;
    {
        const held_model model = Model();
        model->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].value = middle;
        std::promise<void> started;
        std::future<void> start = started.get_future();
        call = std::async(std::launch::async, [&] {
            started.set_value();
            return SetValue(106, last);
        });
        start.wait();
        for (int round = 0; round < rounds; ++round) {
            ASSERT_EQ(model->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].value, middle);
            EXPECT_EQ(Value(106), middle) << "the holder may call himself";
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }
    EXPECT_EQ(call.get(), S_OK);
    EXPECT_EQ(Model()->integers[SELVANE_AUTO_EXPOSURE_REFERENCE].value, last);
}

TEST_F(VendorProperty, WantsABuffer) {
    bytes instance(56);
    DWORD returned = 0;
    IKsPropertySet& driver = *camera_->property_set();
    EXPECT_EQ(driver.Get(vendor_set, SELVANE_GAIN, instance.data(), 48, nullptr, 48, &returned), E_POINTER);
    EXPECT_EQ(driver.Set(vendor_set, SELVANE_GAIN, instance.data(), 48, nullptr, 48), E_POINTER);
}

TEST_F(VendorProperty, WantsAWholeRecordOfEachKind) {
    for (const DWORD id :
         {DWORD{SELVANE_GAIN}, DWORD{SELVANE_EXPOSURE_FLOAT}, DWORD{SELVANE_GPIO}, DWORD{SELVANE_STROBE}})
        EXPECT_EQ(Set(id, bytes(39)), buffer_too_small) << id;
}

TEST_F(VendorProperty, RefusesALimitOfTheFloatExposureAsItsPolicySays) {
    Model()->floats[SELVANE_EXPOSURE_FLOAT].policy = limit_policy::refuse;
    const float max = Model()->floats[SELVANE_EXPOSURE_FLOAT].max;
    const float before = Model()->floats[SELVANE_EXPOSURE_FLOAT].value;
    EXPECT_EQ(SetFloat(SELVANE_EXPOSURE_FLOAT, max * 2), E_INVALIDARG);
    EXPECT_EQ(Model()->floats[SELVANE_EXPOSURE_FLOAT].value, before);
}

// What acts on several properties acts on those that the camera has.
TEST_F(VendorProperty, DoesWithoutThePartnersThatItLacks) {
    Model()->remove(SELVANE_TRIGGER);
    bytes fire = with(bytes(48), at_flags, std::uint32_t{wire::software_trigger_fire});
    EXPECT_TRUE(FAILED(Set(SELVANE_SOFTWARE_TRIGGER, fire)));
    EXPECT_EQ(Model()->software_triggers, 0U);

    Model()->remove(SELVANE_PARTIAL_SCAN_X);
    EXPECT_EQ(SetValue(SELVANE_PARTIAL_SCAN_AUTO_CENTER, 1), S_OK);
    EXPECT_NE(Model()->integers[SELVANE_PARTIAL_SCAN_Y].value, 0);

    Model()->remove(SELVANE_FOCUS_AUTO_MAX);
    const std::int32_t max = Model()->integers[SELVANE_FOCUS_AUTO_MIN].max;
    EXPECT_EQ(SetValue(SELVANE_FOCUS_AUTO_MIN, max), S_OK);
    EXPECT_EQ(Value(SELVANE_FOCUS_AUTO_MIN), max) << "nothing to stay below";

    Model()->camera_control.erase(wire::camera_control_focus);
    EXPECT_EQ(SetValue(SELVANE_FOCUS_ONE_PUSH, 1), S_OK);
    EXPECT_EQ(Value(SELVANE_FOCUS_ONE_PUSH), 1) << "it runs all the same";
}

TEST_F(VendorProperty, DoesNothingWhenAOnePushIsSwitchedOff) {
    const std::int32_t red = Model()->integers[SELVANE_WHITE_BALANCE_RED].min;
    Model()->integers[SELVANE_WHITE_BALANCE_RED].value = red;
    Model()->video_proc_amp[wire::video_proc_amp_white_balance].flags = wire::manual;
    EXPECT_EQ(SetValue(SELVANE_WHITE_BALANCE_ONE_PUSH, 0), S_OK);
    EXPECT_EQ(Value(SELVANE_WHITE_BALANCE_RED), red);
    EXPECT_EQ(SetValue(SELVANE_FOCUS_ONE_PUSH, 0), S_OK);
    EXPECT_EQ(Value(SELVANE_FOCUS_ONE_PUSH), 0);
}

TEST_F(VendorProperty, OfTheGateSetIsOne) {
    DWORD support = 7;
    IKsPropertySet& driver = *camera_->property_set();
    EXPECT_EQ(driver.QuerySupported(wire::gate_set, SELVANE_GATE_PROPERTY + 1, &support), property_unknown);
}

TEST(CallDelay, IsTakenByEachCall) {
    camera_options options;
    options.call_delay = std::chrono::milliseconds(2);
    const camera_ptr camera = make_camera(options);
    const auto start = std::chrono::steady_clock::now();
    DWORD support = 0;
    EXPECT_EQ(camera->property_set()->QuerySupported(wire::gate_set, SELVANE_GATE_PROPERTY, &support), S_OK);
    EXPECT_GE(std::chrono::steady_clock::now() - start, options.call_delay);
}

}  // namespace
}  // namespace simcam_test
