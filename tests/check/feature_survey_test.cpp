// What the registers of a feature and its numbers are told to be wrong with.

#include "tests/check/checked_camera.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include <gmock/gmock.h>

namespace check_test {
namespace {

using namespace selvane_check;
using namespace simcam;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t fan_register = 0x404;
constexpr std::uint64_t fan_limit = 0x408;
constexpr std::uint64_t steps_limit = 0x40C;
constexpr std::uint64_t steps_register = 0x410;

constexpr const char* fan_description = R"(<RegisterDescription ModelName="Fan" VendorName="Test">
<Category Name="Root"><pFeature>Group</pFeature></Category>
<Category Name="Group"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>
<Category Name="Item"><Extension><ZELItemGUID>{6D0C1A52-9B3E-4F18-8C77-51E2A94B1000}</ZELItemGUID></Extension>
<pFeature>FanSpeed</pFeature><pFeature>Steps</pFeature></Category>
<Float Name="FanSpeed"><Extension><ZELElementGUID>{6D0C1A52-9B3E-4F18-8C77-51E2A94B2001}</ZELElementGUID></Extension>
<pValue>FanReg</pValue><Min>0</Min><pMax>FanMaxReg</pMax></Float>
<Integer Name="Steps"><Extension><ZELElementGUID>{6D0C1A52-9B3E-4F18-8C77-51E2A94B2002}</ZELElementGUID></Extension>
<pIsLocked>Yes</pIsLocked><pValue>StepsReg</pValue><Min>0</Min><pMax>StepsMaxReg</pMax></Integer>
<FloatReg Name="FanReg"><Address>0x400</Address><Address>4</Address><Length>4</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>BigEndian</Endianess></FloatReg>
<IntReg Name="FanMaxReg"><Address>0x408</Address><Length>4</Length><AccessMode>RO</AccessMode>
<pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>
<IntReg Name="StepsMaxReg"><Address>0x40C</Address><Length>4</Length><AccessMode>RO</AccessMode>
<pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>
<Integer Name="Yes"><Value>1</Value></Integer>
<Integer Name="Base"><Value>0x410</Value></Integer>
<IntReg Name="StepsReg"><pAddress>Base</pAddress><Length>4</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>
<Port Name="Device"/></RegisterDescription>
)";

class SurveyFeatures : public CheckDriver {
protected:
    static camera_options Fan(bool names) {
        camera_options options = SoundCamera();
        options.descriptions = {fan_description};
        options.memory = "0x404: 42 48 00 00\n0x408: 00 00 00 64\n0x40C: 00 00 00 64\n0x410: 00 00 00 07\n";
        options.named_access = names;
        return options;
    }

    std::vector<std::string> Told(fault added, bool names) {
        const camera_ptr camera = make_camera(Fan(names));
        camera->add_fault(std::move(added));
        std::vector<std::string> told;
        for (const driver_finding& one : Check(camera).findings)
            told.push_back(std::string(one.rule->name) + ": " + one.message);
        return told;
    }

    template <class Number>
    static fault Answers(const std::string& path, Number number) {
        bytes data(sizeof(number));
        std::memcpy(data.data(), &number, sizeof(number));
        return answer_bytes(path_calls(path), data);
    }
};

TEST_F(SurveyFeatures, ASoundFanHasNoFindings) {
    EXPECT_THAT(Broken(Fan(true)), IsEmpty());
    EXPECT_THAT(Broken(Fan(false)), IsEmpty());
}

TEST_F(SurveyFeatures, ARefusedRegisterOfAValue) {
    for (const bool names : {false, true}) {
        EXPECT_THAT(Told(fail_when(register_calls(fan_register), E_INVALIDARG), names),
                    ElementsAre("register-refused: the register at 0x00000404 (FanReg, for FanSpeed) is "
                                "refused with 0x80070057"))
            << names;
    }
}

TEST_F(SurveyFeatures, ARefusedRegisterOfALimit) {
    EXPECT_THAT(
        Told(fail_when(register_calls(fan_limit), E_FAIL), false),
        ElementsAre("register-refused: the register at 0x00000408 (FanMaxReg, for FanSpeed) is refused "
                    "with 0x80004005"));
    // Of a float the element is gone, of an integer the control stays.
    const auto controls = [&](std::uint64_t address) {
        const camera_ptr camera = make_camera(Fan(false));
        camera->add_fault(fail_when(register_calls(address), E_FAIL));
        return Check(camera).controls;
    };
    const std::size_t all = controls(0x1000);
    EXPECT_EQ(controls(fan_limit), all - 1);
    EXPECT_EQ(controls(steps_limit), all);
}

TEST_F(SurveyFeatures, TheEditOfAnIntegerWorksWithoutItsLimits) {
    options_.write = true;
    const auto written = [&](bool names, const call_filter& limit) {
        const camera_ptr camera = make_camera(Fan(names));
        camera->add_fault(fail_when(limit, E_FAIL));
        EXPECT_THAT(Broken(camera), ElementsAre(names ? "named-refused" : "register-refused"));
        const auto calls = camera->calls();
        return std::any_of(calls.begin(), calls.end(), [](const driver_call& call) {
            const bool steps = call.path == "Steps/Value" || call.address == steps_register;
            return steps && call.kind == call_kind::set && call.result == S_OK;
        });
    };
    EXPECT_TRUE(written(true, path_calls("Steps/Max")));
    EXPECT_TRUE(written(false, register_calls(steps_limit)));
}

TEST_F(SurveyFeatures, ARegisterWithAComputedAddressHasNoName) {
    EXPECT_THAT(Told(fail_when(register_calls(steps_register), E_FAIL), false),
                ElementsAre("register-refused: the register at 0x00000410 (for Steps) is refused with "
                            "0x80004005"));
}

TEST_F(SurveyFeatures, ARegisterAnsweredShort) {
    for (const bool names : {false, true}) {
        EXPECT_THAT(
            Told(claim_size(register_calls(fan_register), 2), names),
            ElementsAre("register-short: the register at 0x00000404 (FanReg, for FanSpeed) is answered "
                        "with 2 of 4 bytes"))
            << names;
        EXPECT_THAT(Told(claim_size(register_calls(fan_register), 4), names), IsEmpty()) << names;
    }
}

TEST_F(SurveyFeatures, AnIntegerInPlaceOfADouble) {
    EXPECT_THAT(
        Told(Answers("FanSpeed/Value", std::int64_t{50}), true),
        ElementsAre("value-range: FanSpeed over names: the value 2.47e-322 is next to nothing: is it a "
                    "double?"));
    EXPECT_THAT(Told(Answers("FanSpeed/Value", 0.0), true), IsEmpty());
}

TEST_F(SurveyFeatures, AFloatOutsideItsLimits) {
    EXPECT_THAT(Told(Answers("FanSpeed/Value", 100.5), true),
                ElementsAre("value-range: FanSpeed over names: the value 100.5 is outside 0 to 100: is it a "
                            "double?"));
    EXPECT_THAT(Told(Answers("FanSpeed/Value", -0.5), true),
                ElementsAre("value-range: FanSpeed over names: the value -0.5 is outside 0 to 100: is it a "
                            "double?"));
    EXPECT_THAT(Told(Answers("FanSpeed/Value", 100.00001), true), IsEmpty());
    // 200 in place of 50.
    EXPECT_THAT(Told(answer_bytes(register_calls(fan_register), {0x43, 0x48, 0, 0}), false),
                ElementsAre("value-range: FanSpeed over registers: the value 200 is outside 0 to 100"));
}

TEST_F(SurveyFeatures, AnIntegerOutsideItsLimits) {
    EXPECT_THAT(Told(Answers("Steps/Value", std::int64_t{101}), true),
                ElementsAre("value-range: Steps over names: the value 101 is outside 0 to 100"));
    EXPECT_THAT(Told(Answers("Steps/Value", std::int64_t{-1}), true),
                ElementsAre("value-range: Steps over names: the value -1 is outside 0 to 100"));
    EXPECT_THAT(Told(Answers("Steps/Value", std::int64_t{100}), true), IsEmpty());
    EXPECT_THAT(Told(answer_bytes(register_calls(steps_register), {0, 0, 0, 0xC8}), false),
                ElementsAre("value-range: Steps over registers: the value 200 is outside 0 to 100"));
}

TEST_F(SurveyFeatures, AStepOfZero) {
    EXPECT_THAT(Told(Answers("Steps/Inc", std::int64_t{0}), true),
                ElementsAre("value-range: Steps over names: Inc is 0"));
    EXPECT_THAT(Told(Answers("Steps/Inc", std::int64_t{1}), true), IsEmpty());
}

TEST_F(SurveyFeatures, ANumberThatIsNone) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(Told(Answers("FanSpeed/Value", none), true),
                ElementsAre("value-range: FanSpeed over names: the value is not a number"));
    EXPECT_THAT(Told(Answers("FanSpeed/Min", none), true),
                ElementsAre("value-range: FanSpeed over names: Min is not a number"));
    EXPECT_THAT(Told(Answers("FanSpeed/Max", none), true),
                ElementsAre("value-range: FanSpeed over names: Max is not a number"));
    EXPECT_THAT(Told(answer_bytes(register_calls(fan_register), {0x7F, 0xC0, 0, 0}), false),
                ElementsAre("value-range: FanSpeed over registers: the value is not a number"));
}

TEST_F(SurveyFeatures, CrossedLimits) {
    EXPECT_THAT(Told(Answers("FanSpeed/Max", -1.0), true),
                ElementsAre("value-range: FanSpeed over names: Max -1 is below Min 0"));
    EXPECT_THAT(Told(Answers("Steps/Min", std::int64_t{101}), true),
                ElementsAre("value-range: Steps over names: Max 100 is below Min 101"));
    EXPECT_THAT(Told(Answers("Steps/Max", std::int64_t{7}), true), IsEmpty());
    EXPECT_THAT(Told(answer_bytes(register_calls(steps_limit), {0xFF, 0xFF, 0xFF, 0xFF}), false), IsEmpty());
}

TEST_F(SurveyFeatures, RegistersBesideNamesAreOnlyRead) {
    options_.write = true;
    const camera_ptr camera = make_camera(Fan(true));
    EXPECT_TRUE(Check(camera).registers_asked);
    bool read = false;
    for (const driver_call& call : camera->calls()) {
        if (call.id != 3 || !call.path.empty()) continue;
        EXPECT_NE(call.kind, call_kind::set);
        read = read || call.address == fan_register;
    }
    EXPECT_TRUE(read);
}

}  // namespace
}  // namespace check_test
