// Each finding by a simulated driver that earns it, and by one that just does not.

#include "apps/check/driver_check.h"

#include "tests/check/checked_camera.h"
#include "wire/device_set.h"
#include "wire/vendor_set.h"

#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

namespace check_test {
namespace {

using namespace selvane_check;
using namespace simcam;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(CheckDriver, ASoundDriverHasNoFindings) {
    EXPECT_THAT(Broken(SoundDriver()), IsEmpty());
    EXPECT_THAT(Broken(ByRegisters()), IsEmpty());
    const driver_report report = Check(SoundDriver());
    EXPECT_TRUE(report.named_access);
    EXPECT_TRUE(report.register_access);
    EXPECT_EQ(report.descriptions, 1U);
    EXPECT_GT(report.controls, 3U);
    EXPECT_GT(report.calls, 20U);
}

TEST_F(CheckDriver, TheReadyMadeCamerasHaveNoneEither) {
    for (const char* name : {"full", "described", "simple"}) {
        const camera_ptr camera = make_camera(name);
        ASSERT_TRUE(camera) << name;
        EXPECT_THAT(Broken(camera), IsEmpty()) << name;
    }
}

TEST_F(CheckDriver, ReadsOnlyUnlessItMayWrite) {
    const auto sets = [](const camera_ptr& camera) {
        const auto calls = camera->calls();
        return std::count_if(calls.begin(), calls.end(), [](const driver_call& call) {
            return call.kind == call_kind::set || call.kind == call_kind::camera_set ||
                   call.kind == call_kind::amp_set;
        });
    };
    const camera_ptr read = SoundDriver();
    EXPECT_THAT(Broken(read), IsEmpty());
    EXPECT_EQ(sets(read), 0);
    options_.write = true;
    const camera_ptr written = SoundDriver();
    EXPECT_THAT(Broken(written), IsEmpty());
    EXPECT_EQ(sets(written), 3);
}

TEST_F(CheckDriver, WritingBackLeavesTheCameraAsItWas) {
    options_.write = true;
    for (camera_options options : {SoundCamera(), ByRegisters()}) {
        options.memory = "0x0: 00 00 00 2A\n0x4: 00 00 00 01\n0x8: 00 00 00 01\n";
        const camera_ptr camera = make_camera(options);
        EXPECT_THAT(Broken(camera), IsEmpty());
        std::int64_t value = 0;
        EXPECT_EQ(camera->get_named("Brightness/Value", value), S_OK);
        EXPECT_EQ(value, 42);
        EXPECT_EQ(camera->get_named("LampOn/Value", value), S_OK);
        EXPECT_EQ(value, 1);
        EXPECT_EQ(camera->get_named("Mode/Value", value), S_OK);
        EXPECT_EQ(value, 1);
    }
}

TEST_F(CheckDriver, NoPropertySet) {
    camera_options options = SoundCamera();
    options.property_set = false;
    EXPECT_THAT(Broken(options), ElementsAre("no-property-set"));
    options.property_set = true;
    options.video_proc_amp = false;  // pages do without
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, GateRefused) {
    camera_options options = SoundCamera();
    options.gate_set = false;
    EXPECT_THAT(Broken(options), ElementsAre("gate-refused"));
    fault no_get;
    no_get.when = property_calls(call_kind::query_supported, wire::gate_set, 0);
    no_get.support = DWORD{2};
    EXPECT_THAT(BrokenBy(no_get), ElementsAre("gate-refused"));
    no_get.support = DWORD{3};
    EXPECT_THAT(BrokenBy(no_get), IsEmpty());
    EXPECT_THAT(BrokenBy(fail_when(property_calls(call_kind::get, wire::gate_set, 0), E_FAIL)),
                ElementsAre("gate-refused"));
}

TEST_F(CheckDriver, GateWithAnotherKind) {
    camera_options options = SoundCamera();
    options.device_kind = 4;
    EXPECT_THAT(Broken(options), ElementsAre("gate-kind"));
    EXPECT_EQ(MessageOf(make_camera(options)), "the gate tells the device kind 4");
    options.device_kind = 5;
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, GateWithTooFewBytes) {
    const auto gate = property_calls(call_kind::get, wire::gate_set, 0);
    EXPECT_THAT(BrokenBy(claim_size(gate, 143)), ElementsAre("gate-short"));
    EXPECT_THAT(BrokenBy(claim_size(gate, 144)), IsEmpty());
    EXPECT_THAT(BrokenBy(claim_size(gate, 145)), IsEmpty());
}

TEST_F(CheckDriver, NoAccessPath) {
    camera_options options = ByRegisters();
    options.register_access = false;
    EXPECT_THAT(Broken(options), ElementsAre("no-access"));
    options.named_access = true;
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, NoDescription) {
    EXPECT_THAT(BrokenBy(fail_when(device_gets(1), E_FAIL)), ElementsAre("no-description"));
    camera_options options = SoundCamera();
    options.description_field = 0;  // refuses the first request alone
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, DescriptionSizeOfAnotherLength) {
    EXPECT_THAT(BrokenBy(claim_size(device_gets(1), 2)), ElementsAre("description-size"));
    EXPECT_THAT(BrokenBy(claim_size(device_gets(1), 4)), IsEmpty());
    // More than 64 MiB, and 64 MiB of which the driver has the beginning.
    EXPECT_THAT(BrokenBy(answer_bytes(device_gets(1), {1, 0, 0, 4})), ElementsAre("description-size"));
    EXPECT_THAT(BrokenBy(answer_bytes(device_gets(1), {0, 0, 0, 4})), Not(Contains("description-size")));
    EXPECT_EQ(MessageBy(claim_size(device_gets(1), 1)), "the size of description 0 is answered with 1 byte");
}

TEST_F(CheckDriver, DescriptionRefused) {
    EXPECT_THAT(BrokenBy(fail_when(device_gets(2), E_FAIL)), ElementsAre("description-refused"));
    fault second = fail_when(device_gets(2), E_FAIL);
    second.first = 3;  // the pages fetch once more
    EXPECT_THAT(BrokenBy(second), IsEmpty());
}

TEST_F(CheckDriver, DescriptionOfAnotherLength) {
    const auto size = static_cast<DWORD>(LampDescription().size());
    EXPECT_THAT(BrokenBy(claim_size(device_gets(2), size - 1)), ElementsAre("description-length"));
    EXPECT_THAT(BrokenBy(claim_size(device_gets(2), size)), IsEmpty());
    EXPECT_THAT(BrokenBy(claim_size(device_gets(2), size + 1)), ElementsAre("description-length"));
}

TEST_F(CheckDriver, DescriptionCut) {
    camera_options options = SoundCamera();
    std::string& text = options.descriptions.front();
    text.resize(text.find("</RegisterDescription"));
    EXPECT_THAT(Broken(options), ElementsAre("description-cut"));
    text = LampDescription() + std::string(100, '\0');
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, DescriptionMalformed) {
    camera_options options = SoundCamera();
    std::string& text = options.descriptions.front();
    text.replace(text.find("\"Device\"/"), 9, "Device/");
    EXPECT_THAT(Broken(options), ElementsAre("description-malformed"));
    EXPECT_THAT(MessageOf(make_camera(options)), testing::HasSubstr("description 0:"));
    // What the parser of the pages puts up with.
    text = LampDescription() + "and a line behind it\n";
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, DescriptionsWithoutEnd) {
    camera_options options = SoundCamera();
    options.descriptions.assign(most_descriptions, LampDescription());
    EXPECT_THAT(Broken(options), ElementsAre("description-endless"));
    options.descriptions.pop_back();
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, DescriptionWithoutItsPort) {
    camera_options options = ByRegisters();
    std::string& text = options.descriptions.front();
    text.replace(text.find("<Port Name=\"Device\""), 19, "<Port Name=\"Camera\"");
    EXPECT_THAT(Broken(options), ElementsAre("description-port"));
    text = LampDescription();
    text.insert(text.find("<Port "), "<Port Name=\"Camera\"/>");  // beside the one that counts
    EXPECT_THAT(Broken(options), IsEmpty());
    // Nodes that hold their values themselves need none.
    options.descriptions = {std::string(bundled_description("value_nodes"))};
    EXPECT_THAT(Broken(options), Not(Contains("description-port")));
}

TEST_F(CheckDriver, DescriptionWithoutMarks) {
    camera_options options = SoundCamera();
    std::string& text = options.descriptions.front();
    text.replace(text.find("ZELItemGUID>{"), 13, "ZELItemGUID>-");
    EXPECT_THAT(Broken(options), ElementsAre("description-marks"));
    text = LampDescription();
    text.replace(text.find("{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}"), 9, "{3f6a2b10");
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, DescriptionThatNoPageSurvives) {
    camera_options options = ByRegisters();
    std::string& text = options.descriptions.front();
    const std::string reg = "<pValue>BrightnessReg</pValue>";
    text.replace(text.find(reg), reg.size(), "<pValue>Brightness</pValue>");
    EXPECT_THAT(Broken(options), ElementsAre("description-deadly"));
    // A circle that no page comes near.
    text = LampDescription();
    text.insert(text.find("<Port "), "<Integer Name=\"Round\"><pValue>Round</pValue></Integer>");
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, ADeadlyDescriptionIsToldOverNamesTooAndThePagesAreAsked) {
    camera_options options = SoundCamera();
    std::string& text = options.descriptions.front();
    const std::string reg = "<pValue>BrightnessReg</pValue>";
    text.replace(text.find(reg), reg.size(), "<pValue>Brightness</pValue>");
    const camera_ptr camera = make_camera(options);
    for (const char* suffix : {"/Value", "/Min", "/Max", "/Inc", "/Default", "/IsLocked", "/IsImplemented"}) {
        camera->add_fault(fail_when(path_calls(std::string("Brightness") + suffix), S_OK));
    }
    const driver_report report = Check(camera);
    EXPECT_THAT(BrokenRules(report), Contains("description-deadly"));
    EXPECT_GT(report.controls, 3U);
}

TEST_F(CheckDriver, AnExceptionOutOfTheDriver) {
    fault thrown;
    thrown.when = path_calls("Brightness/Value");
    thrown.action = [] { throw std::runtime_error("out of the driver"); };
    const camera_ptr camera = SoundDriver();
    camera->add_fault(thrown);
    const driver_report report = Check(camera);
    ASSERT_FALSE(report.findings.empty());
    EXPECT_EQ(report.findings[0].rule->name, "driver-throws");
    EXPECT_EQ(report.findings[0].message,
              "an exception leaves Get device 4 Brightness/Value: out of the driver");
    // What stays inside the driver is a refusal like any other.
    EXPECT_THAT(BrokenBy(fail_when(path_calls("Brightness/Inc"), E_UNEXPECTED)), IsEmpty());
}

TEST_F(CheckDriver, TheOtherInterfacesAreWatchedAsWell) {
    const call_filter asks_control = calls_of(call_kind::camera_range);
    fault thrown;
    thrown.when = asks_control;
    thrown.action = [] { throw std::runtime_error("out of the control"); };
    EXPECT_EQ(MessageBy(thrown), "an exception leaves CameraControl GetRange 4: out of the control");
    fault slow;
    slow.when = asks_control;
    slow.action = [this] { now_ += longest_call + 1; };
    EXPECT_EQ(MessageBy(slow), "CameraControl GetRange 4 takes longer than 20 ms");
    slow.action = [this] { now_ += longest_call; };
    EXPECT_THAT(BrokenBy(slow), IsEmpty());
}

TEST_F(CheckDriver, ANameAnsweredWithAnotherSuccess) {
    EXPECT_THAT(BrokenBy(fail_when(path_calls("Brightness/Value"), S_FALSE)), ElementsAre("named-result"));
    const call_filter writes = [](const driver_call& call) { return call.kind == call_kind::set; };
    options_.write = true;  // a write has no answer that a page would show
    EXPECT_THAT(BrokenBy(fail_when(writes, S_FALSE)), IsEmpty());
}

TEST_F(CheckDriver, ANameAnsweredWithoutBytes) {
    EXPECT_THAT(BrokenBy(claim_size(path_calls("Brightness/Max"), 0)), ElementsAre("named-no-bytes"));
    EXPECT_THAT(BrokenBy(claim_size(path_calls("Brightness/Max"), 7)), ElementsAre("named-no-bytes"));
    EXPECT_THAT(BrokenBy(claim_size(path_calls("Brightness/Max"), 8)), IsEmpty());
    EXPECT_THAT(BrokenBy(claim_size(path_calls("Mode/SelectedEntry"), 0)), Contains("named-no-bytes"));
}

TEST_F(CheckDriver, ATextWithoutAnEnd) {
    const auto entry = path_calls("Mode/SelectedEntry");
    EXPECT_THAT(BrokenBy(answer_bytes(entry, bytes(256, 'x'))), ElementsAre("named-no-end"));
    bytes ended(256, 'x');
    const std::string name = "Blink";
    std::copy(name.begin(), name.end(), ended.begin());
    ended[name.size()] = 0;
    EXPECT_THAT(BrokenBy(answer_bytes(entry, ended)), IsEmpty());
}

TEST_F(CheckDriver, APathRefused) {
    for (const char* suffix : {"/Min", "/Max", "/IsLocked", "/IsImplemented", "/Value"}) {
        EXPECT_THAT(BrokenBy(fail_when(path_calls(std::string("Brightness") + suffix), E_NOTIMPL)),
                    ElementsAre("named-refused"))
            << suffix;
    }
    EXPECT_THAT(BrokenBy(fail_when(path_calls("Mode/Blink/IsImplemented"), E_NOTIMPL)),
                ElementsAre("named-refused"));
    for (const char* suffix : {"/Inc", "/Default"}) {
        EXPECT_THAT(BrokenBy(fail_when(path_calls(std::string("Brightness") + suffix), E_NOTIMPL)), IsEmpty())
            << suffix;
    }
}

TEST_F(CheckDriver, AnAnswerThatNamesNoEntry) {
    const auto entry = path_calls("Mode/SelectedEntry");
    const camera_ptr camera = SoundDriver();
    camera->add_fault(answer_bytes(entry, {'b', 'l', 'i', 'n', 'k', 0}));
    EXPECT_THAT(Broken(camera), ElementsAre("entry-unknown"));
    EXPECT_EQ(MessageOf(camera), "the selected entry of Mode is \"blink\", which is none of its entries");
    EXPECT_THAT(BrokenBy(answer_bytes(entry, {'B', 'l', 'i', 'n', 'k', 0})), IsEmpty());
}

TEST_F(CheckDriver, ARegisterThatHoldsNoEntry) {
    camera_options options = ByRegisters();
    options.memory = "0x8: 00 00 00 09\n";
    EXPECT_THAT(Broken(options), ElementsAre("entry-unknown"));
    EXPECT_EQ(MessageOf(make_camera(options)),
              "the value of Mode over registers is that of none of its entries");
    options.memory = "0x8: 00 00 00 01\n";
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, ARegisterAnsweredWithAnotherSuccess) {
    EXPECT_THAT(BrokenBy(fail_when(device_gets(3), S_FALSE), ByRegisters()), ElementsAre("register-result"));
    EXPECT_THAT(BrokenBy(fail_when(device_gets(3), S_FALSE)), ElementsAre("register-result"));
    fault answered = fail_when(device_gets(3), S_OK);
    answered.returned = DWORD{4};
    EXPECT_THAT(BrokenBy(answered, ByRegisters()), IsEmpty());
}

TEST_F(CheckDriver, AVendorRecordAnsweredShort) {
    const auto vendor = [](DWORD id) { return property_calls(call_kind::get, wire::vendor_set, id); };
    const std::pair<DWORD, DWORD> records[] = {{241, 48}, {238, 56}, {122, 40}, {125, 88}};
    for (const auto& [id, size] : records) {
        EXPECT_THAT(BrokenBy(claim_size(vendor(id), size - 1)), ElementsAre("vendor-short")) << id;
        EXPECT_THAT(BrokenBy(claim_size(vendor(id), size)), IsEmpty()) << id;
    }
    EXPECT_THAT(BrokenBy(claim_size(property_calls(call_kind::get, wire::color_enhancement_set, 0), 4)),
                ElementsAre("vendor-short"));
    EXPECT_THAT(BrokenBy(claim_size(property_calls(call_kind::get, wire::color_enhancement_set, 0), 48)),
                IsEmpty());
}

TEST_F(CheckDriver, MicrosecondsWithoutTicks) {
    camera_options options = SoundCamera();
    options.vendor.remove(SELVANE_EXPOSURE_TICKS);
    EXPECT_THAT(Broken(options), ElementsAre("exposure-ticks"));
    options.vendor.remove(SELVANE_EXPOSURE_MICROSECONDS);
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, FocusWithoutItsInterface) {
    camera_options options = SoundCamera();
    options.camera_control = false;
    EXPECT_THAT(Broken(options), ElementsAre("focus-control"));
    for (const DWORD id : {SELVANE_FOCUS_ONE_PUSH, SELVANE_FOCUS_AUTO_MIN, SELVANE_FOCUS_AUTO_MAX,
                           SELVANE_FOCUS_REGION_TOP, SELVANE_FOCUS_REGION_LEFT, SELVANE_FOCUS_REGION_BOTTOM,
                           SELVANE_FOCUS_REGION_RIGHT, SELVANE_FOCUS_REGION_ENABLE})
        options.vendor.remove(id);
    EXPECT_THAT(Broken(options), IsEmpty());
}

TEST_F(CheckDriver, AWriteRefused) {
    const call_filter writes = [](const driver_call& call) {
        return call.kind == call_kind::set && call.path == "Brightness/Value";
    };
    EXPECT_THAT(BrokenBy(fail_when(writes, E_ACCESSDENIED)), IsEmpty());
    options_.write = true;
    EXPECT_THAT(BrokenBy(fail_when(writes, E_ACCESSDENIED)), ElementsAre("write-refused"));
    // What the driver says may not be changed is not written.
    camera_options locked = SoundCamera();
    std::string& text = locked.descriptions.front();
    text.replace(text.find("\"Yes\"><Value>1"), 14, "\"Yes\"><Value>0");
    EXPECT_THAT(BrokenBy(fail_when(writes, E_ACCESSDENIED), locked), IsEmpty());
}

TEST_F(CheckDriver, ACallThatTakesLong) {
    const auto after = [&](std::uint64_t microseconds) {
        fault slow;
        slow.when = path_calls("Brightness/Max");
        slow.action = [this, microseconds] { now_ += microseconds; };
        return slow;
    };
    EXPECT_THAT(BrokenBy(after(longest_call)), IsEmpty());
    EXPECT_THAT(BrokenBy(after(longest_call + 1)), ElementsAre("slow-call"));
}

}  // namespace
}  // namespace check_test
