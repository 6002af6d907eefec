#include "apps/host/trace_filter.h"

#include "adapter/named_access.h"
#include "items/vendor_properties.h"
#include "simcam/fault.h"
#include "simcam/simulated_camera.h"
#include "wire/device_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace {

using namespace genicam_adapter;
using selvane_host::make_trace_filter;
using testing::ElementsAre;

class TraceFilter : public testing::Test {
protected:
    explicit TraceFilter(const char* name = "full") : camera(simcam::make_camera(name)) { Trace(); }

    void Trace() {
        filter = make_trace_filter(*camera, [this](std::string_view line) { lines.emplace_back(line); });
        properties = platform::query<IKsPropertySet>(filter.get());
        camera->clear_transcript();
    }

    // The lines since the last time, without the times behind them.
    std::vector<std::string> TakeLines() {
        std::vector<std::string> taken;
        for (const std::string& line : lines) {
            EXPECT_TRUE(std::regex_match(line, std::regex(".*, \\d+ us"))) << line;
            taken.push_back(line.substr(0, line.rfind(", ")));
        }
        lines.clear();
        return taken;
    }

    void FetchDescription() {
        std::uint32_t size = 0;
        DWORD returned = 0;
        wire::description_request request{1, 0};
        ASSERT_EQ(
            properties->Get(wire::device_set, 1, &request, sizeof request, &size, sizeof size, &returned),
            S_OK);
        std::string text(size, '\0');
        ASSERT_EQ(
            properties->Get(wire::device_set, 2, &request, sizeof request, text.data(), size, &returned),
            S_OK);
        EXPECT_EQ(text, camera->options().descriptions[0]);
        TakeLines();
        camera->clear_transcript();
    }

    simcam::camera_ptr camera;
    std::vector<std::string> lines;
    platform::com_ptr<IUnknown> filter;
    platform::com_ptr<IKsPropertySet> properties;
};

TEST_F(TraceFilter, SaysWhatTheDriverItselfWroteDown) {
    FetchDescription();
    DWORD support = 0;
    double real = 0;
    std::int64_t number = 0;
    char entry[SELVANE_SELECTED_ENTRY_SIZE] = {};
    EXPECT_EQ(properties->QuerySupported(wire::device_set, 4, &support), S_OK);
    EXPECT_EQ(properties->QuerySupported(wire::device_set, 9, &support), static_cast<HRESULT>(0x80070490));
    EXPECT_EQ(get_named_value(properties.get(), {"Sharpness", "/Value"}, number), S_OK);
    EXPECT_EQ(set_named_value(properties.get(), {"Sharpness", "/Value"}, 5), S_OK);
    EXPECT_EQ(get_named_value(properties.get(), {"Gain", "/Max"}, real), S_OK);
    EXPECT_EQ(real, 48);
    EXPECT_EQ(get_named_property(properties.get(), {"TestPattern", "/SelectedEntry"}, entry, sizeof entry),
              S_OK);
    EXPECT_EQ(set_named_property(properties.get(), {"TestPattern", "/SelectedEntry"}, "GreyRamp", 8), S_OK);
    EXPECT_NE(get_named_value(properties.get(), {"Nowhere", "/Value"}, number), S_OK);
    std::uint64_t address = 0x1048;
    std::uint16_t bytes = 0;
    DWORD returned = 0;
    EXPECT_EQ(properties->Get(wire::device_set, 3, &address, sizeof address, &bytes, sizeof bytes, &returned),
              S_OK);
    EXPECT_EQ(properties->Set(wire::device_set, 3, &address, sizeof address, &bytes, sizeof bytes), S_OK);
    EXPECT_EQ(TakeLines(), camera->transcript());
    EXPECT_EQ(camera->transcript().size(), 10U);
}

TEST_F(TraceFilter, TellsOfFloatsOnceTheDescriptionHasPassed) {
    double real = 0;
    EXPECT_EQ(get_named_value(properties.get(), {"Gain", "/Max"}, real), S_OK);
    EXPECT_THAT(TakeLines(), ElementsAre("Get device 4 Gain/Max -> 4631952216750555136, ok"));
    FetchDescription();
    EXPECT_EQ(get_named_value(properties.get(), {"Gain", "/Max"}, real), S_OK);
    EXPECT_THAT(TakeLines(), ElementsAre("Get device 4 Gain/Max -> 48, ok"));
}

TEST_F(TraceFilter, VendorRecordsAreSpelledOut) {
    wire::integer_record record{};
    DWORD returned = 0;
    const HRESULT hr = properties->Get(wire::vendor_set, SELVANE_TRIGGER, &record, sizeof record, &record,
                                       sizeof record, &returned);
    EXPECT_EQ(hr, S_OK);
    EXPECT_EQ(returned, sizeof record);
    EXPECT_EQ(TakeLines(), camera->transcript());
}

TEST_F(TraceFilter, ControlInterfacesAreTraced) {
    const auto control = platform::query<IAMCameraControl>(filter.get());
    const auto amp = platform::query<IAMVideoProcAmp>(filter.get());
    ASSERT_TRUE(control);
    ASSERT_TRUE(amp);
    LONG min = 0, max = 0, step = 0, start = 0, flags = 0, value = 0;
    constexpr LONG focus = 6;
    constexpr LONG no_property = 77;
    EXPECT_EQ(control->GetRange(focus, &min, &max, &step, &start, &flags), S_OK);
    EXPECT_EQ(control->Get(focus, &value, &flags), S_OK);
    EXPECT_EQ(control->Set(focus, min, flags), S_OK);
    EXPECT_NE(amp->GetRange(no_property, &min, &max, &step, &start, &flags), S_OK);
    EXPECT_NE(amp->Get(no_property, &value, &flags), S_OK);
    EXPECT_NE(amp->Set(no_property, 3, 2), S_OK);
    EXPECT_EQ(TakeLines(), camera->transcript());
    EXPECT_EQ(camera->transcript().size(), 6U);
}

TEST_F(TraceFilter, WhatTheDriverThrowsPassesThrough) {
    camera->add_fault(simcam::throw_at(1));
    DWORD support = 0;
    EXPECT_THROW(static_cast<void>(properties->QuerySupported(wire::device_set, 4, &support)),
                 std::runtime_error);
    EXPECT_THAT(TakeLines(), ElementsAre("QuerySupported device 4 -> 0x0, threw"));
}

TEST_F(TraceFilter, FailuresAndOddSizesPassUnchanged) {
    camera->add_fault(simcam::claim_size(simcam::calls_of(simcam::call_kind::get), 3));
    std::int64_t number = 7;
    DWORD returned = 0;
    std::uint64_t address = 0x1048;
    EXPECT_EQ(properties->Get(wire::device_set, 3, &address, sizeof address, &number, 2, &returned), S_OK);
    EXPECT_EQ(returned, 3U);
    camera->clear_faults();
    camera->add_fault(simcam::fail_nth(1, E_ACCESSDENIED));
    EXPECT_EQ(set_named_value(properties.get(), {"Sharpness", "/Value"}, 5), E_ACCESSDENIED);
    EXPECT_EQ(TakeLines(), camera->transcript());
}

TEST_F(TraceFilter, OnlyWhatTheDriverHasIsOffered) {
    simcam::camera_options options;
    options.camera_control = false;
    camera = simcam::make_camera(options);
    Trace();
    EXPECT_TRUE(properties);
    EXPECT_FALSE(platform::query<IAMCameraControl>(filter.get()));
    EXPECT_TRUE(platform::query<IAMVideoProcAmp>(filter.get()));
    options.property_set = false;
    camera = simcam::make_camera(options);
    Trace();
    EXPECT_FALSE(properties);
}

TEST_F(TraceFilter, IsOneObjectWithItsInterfaces) {
    platform::com_ptr<IUnknown> identity;
    ASSERT_EQ(properties->QueryInterface(IID_IUnknown, identity.put_void()), S_OK);
    EXPECT_EQ(identity.get(), filter.get());
    EXPECT_EQ(filter->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    void* other = &other;
    EXPECT_EQ(filter->QueryInterface(IID_IClassFactory, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
}

TEST_F(TraceFilter, LetsTheDriverGoAtTheEnd) {
    properties.reset();
    EXPECT_GT(camera->references(), 1);
    filter.reset();
    EXPECT_EQ(camera->references(), 1);
}

}  // namespace
