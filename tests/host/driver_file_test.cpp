// A driver out of a DLL: the sample, opened in this process and by the program.

#include "apps/host/driver_file.h"

#include "apps/host/frame.h"
#include "apps/host/host_error.h"
#include "apps/host/page_layout_text.h"
#include "apps/host/page_offer.h"
#include "apps/host/page_server.h"
#include "tests/host/host_process.h"
#include "wire/device_set.h"
#include "wire/vendor_set.h"

#include <cstring>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace selvane_host;
using namespace host_test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::filesystem::path SampleDriver() { return HostProgram().parent_path() / "sample_driver.dll"; }
std::string SampleName() { return SampleDriver().u8string(); }

std::string DriverRefusal(const std::filesystem::path& file) {
    try {
        static_cast<void>(open_driver(file));
    } catch (const host_error& refusal) {
        EXPECT_EQ(refusal.code(), 2);
        return refusal.what();
    }
    return "no refusal";
}

TEST(DriverFile, WhatIsNoDriverIsRefused) {
    EXPECT_THAT(DriverRefusal("missing.dll"), HasSubstr("cannot use the driver missing.dll: "));
    EXPECT_THAT(DriverRefusal(HostProgram().parent_path() / "selvane_page.dll"),
                HasSubstr("it has no SelvaneCreateDriver"));
    const ProcessEnd end = RunHost({"--driver", "missing.dll"});
    EXPECT_EQ(end.code, 2U);
    EXPECT_THAT(end.errors, HasSubstr("cannot use the driver missing.dll: "));
}

TEST(DriverFile, EachObjectIsTheCallersAlone) {
    const auto one = open_driver(SampleDriver());
    const auto other = open_driver(SampleDriver());
    EXPECT_NE(one.get(), other.get());
    EXPECT_EQ(one->AddRef(), 2U);
    EXPECT_EQ(one->Release(), 1U);
}

class SampleDriverPages : public testing::Test {
protected:
    com_apartment apartment;
    page_server server{page_server_path()};
    platform::com_ptr<IUnknown> driver = open_driver(SampleDriver());
    platform::com_ptr<IKsPropertySet> properties = platform::query<IKsPropertySet>(driver.get());
};

TEST_F(SampleDriverPages, ShowTheDescribedItemAndTheBuiltInOnes) {
    const auto pages = willing_pages(ask_pages(*driver));
    ASSERT_EQ(pages.size(), 2U);
    std::string layout;
    show_frame("Sample", *driver, pages, [&](const frame_window& frame) {
        layout += describe_layout(frame);
        const int shown = frame.shown_page();
        if (shown + 1 < frame.page_count()) return frame.show_page(shown + 1);
        frame.close();
    });
    EXPECT_THAT(layout, AllOf(HasSubstr("Exposure"), HasSubstr("Gain"), HasSubstr("Lamp"), HasSubstr("On")));
    EXPECT_THAT(layout, AllOf(HasSubstr("1/100 sec"), HasSubstr("0.000 dB"), HasSubstr("50")));
}

std::int64_t GetNamed(IKsPropertySet& properties, std::string_view path) {
    std::vector<char> request(selvane_named_request_size(static_cast<std::uint32_t>(path.size())));
    selvane_write_named_request(request.data(), path.data(), static_cast<std::uint32_t>(path.size()));
    std::int64_t value = -1;
    DWORD returned = 0;
    EXPECT_EQ(properties.Get(wire::device_set, SELVANE_NAMED_ACCESS, request.data(),
                             static_cast<DWORD>(request.size()), &value, sizeof(value), &returned),
              S_OK);
    EXPECT_EQ(returned, sizeof(value));
    return value;
}

TEST_F(SampleDriverPages, BothAccessPathsLeadToTheSameRegisters) {
    std::uint64_t address = 0;
    std::uint32_t brightness = 77;
    EXPECT_EQ(properties->Set(wire::device_set, SELVANE_REGISTER_ACCESS, &address, sizeof(address),
                              &brightness, sizeof(brightness)),
              S_OK);
    EXPECT_EQ(GetNamed(*properties, "Brightness/Value"), 77);
    brightness = 50;
    EXPECT_EQ(properties->Set(wire::device_set, SELVANE_REGISTER_ACCESS, &address, sizeof(address),
                              &brightness, sizeof(brightness)),
              S_OK);
    EXPECT_EQ(GetNamed(*properties, "Brightness/Value"), 50);
    address = 5;  // the last four bytes begin at 4
    EXPECT_EQ(properties->Set(wire::device_set, SELVANE_REGISTER_ACCESS, &address, sizeof(address),
                              &brightness, sizeof(brightness)),
              E_INVALIDARG);
}

TEST_F(SampleDriverPages, AVendorPropertyKeepsItsLimits) {
    wire::integer_record record = {};
    record.value = 300;
    record.flags = wire::manual;
    EXPECT_EQ(
        properties->Set(wire::vendor_set, SELVANE_GAIN, &record, sizeof(record), &record, sizeof(record)),
        S_OK);
    DWORD returned = 0;
    EXPECT_EQ(properties->Get(wire::vendor_set, SELVANE_GAIN, &record, sizeof(record), &record,
                              sizeof(record), &returned),
              S_OK);
    EXPECT_EQ(record.value, 300);
    EXPECT_EQ(record.max, 2400);
    record.value = 0;
    EXPECT_EQ(
        properties->Set(wire::vendor_set, SELVANE_GAIN, &record, sizeof(record), &record, sizeof(record)),
        S_OK);
}

TEST(DriverProgram, ProbesTheSample) {
    const ProcessEnd end = RunHost({"--driver", SampleName(), "--probe"});
    EXPECT_EQ(end.code, 0U) << end.errors;
    EXPECT_EQ(end.output,
              "page \"Selvane Exposure Controls\": shown\n"
              "page \"Selvane Feature Controls\": shown\n"
              "page \"Selvane Lens Controls\": nothing to show\n"
              "page \"Selvane Color Controls\": nothing to show\n");
}

TEST(DriverProgram, ChecksTheSample) {
    const ProcessEnd end = RunHost({"--driver", SampleName(), "--check-driver"});
    EXPECT_EQ(end.code, 0U) << end.output << end.errors;
    EXPECT_THAT(end.output, testing::StartsWith("sample_driver.dll: access by names (and registers), "));
    EXPECT_TRUE(EndsWith(end.output, "sample_driver.dll: 0 errors, 0 warnings, 0 notes\n")) << end.output;
    EXPECT_EQ(RunHost({"--driver", SampleName(), "--check-driver", "--write"}).code, 0U);
}

TEST(DriverProgram, TracesACheck) {
    const ProcessEnd read = RunHost({"--driver", SampleName(), "--check-driver", "--trace"});
    EXPECT_THAT(read.output, HasSubstr("Get device 4 Brightness/Value -> 50, ok, "));
    EXPECT_THAT(read.output, Not(HasSubstr("Set device ")));
    const ProcessEnd written = RunHost({"--driver", SampleName(), "--check-driver", "--trace", "--write"});
    EXPECT_THAT(written.output, HasSubstr("Set device 4 Brightness/Value <- 50, ok, "));
}

TEST(DriverProgram, TellsFindingsByItsExitCode) {
    const ProcessEnd end = RunHost({"--camera", "foreign", "--check-driver", "--json"});
    EXPECT_EQ(end.code, 1U);
    const auto json = nlohmann::json::parse(end.output);
    EXPECT_EQ(json["command"], "check-driver");
    ASSERT_FALSE(json["findings"].empty());
    EXPECT_EQ(json["findings"][0]["rule"], "gate-kind");
}

}  // namespace
