#include "adapter/genicam_adapter_device.h"

#include "tests/adapter/scripted_camera.h"
#include "wire/device_set.h"

#include <gtest/gtest.h>

namespace adapter_test {
namespace {

using genicam_adapter::hr_exception;
using genicam_adapter::is_adapter_device;
using wire::device_set;
using wire::gate_set;

DriverRequest GateGet() {
    DriverRequest request;
    request.kind = DriverRequest::Kind::get;
    request.set = wire::gate_set;
    request.instance = Bytes(144);
    request.data = Bytes(144);
    request.shared_memory = true;
    return request;
}

class Gate : public testing::Test {
protected:
    ScriptedFilter filter_;
    test_support::ScriptedProperty& gate_ = Serve();

    test_support::ScriptedProperty& Serve() {
        auto& gate = filter_.Property(wire::gate_set, 0);
        gate.Put<std::uint32_t>(0, 5).bytes.resize(144);
        return gate;
    }
};

TEST_F(Gate, AsksWithOneBlockForInstanceAndData) {
    EXPECT_TRUE(is_adapter_device(&filter_));
    EXPECT_EQ(filter_.TakeRequests(), (std::vector{Supported(wire::gate_set, 0), GateGet()}));
}

TEST_F(Gate, ReadsNothingButTheKind) {
    gate_.bytes.assign(144, 0xFF);
    gate_.Put<std::uint32_t>(0, 5);
    EXPECT_TRUE(is_adapter_device(&filter_));
}

TEST_F(Gate, StaysClosedForOtherKinds) {
    for (const std::uint32_t kind : {0U, 4U, 6U, 0x05000000U, 0xFFFFFFFFU}) {
        gate_.Put<std::uint32_t>(0, kind);
        EXPECT_FALSE(is_adapter_device(&filter_)) << kind;
    }
}

TEST_F(Gate, NeedsBitZeroOfTheSupportWord) {
    gate_.support = 2;
    EXPECT_FALSE(is_adapter_device(&filter_));
    EXPECT_EQ(filter_.TakeRequests(), std::vector{Supported(wire::gate_set, 0)});
    gate_.support = 1;
    EXPECT_TRUE(is_adapter_device(&filter_));
}

TEST_F(Gate, IsNotAskedFurtherWhenUnsupported) {
    gate_.support_result = E_FAIL;
    EXPECT_FALSE(is_adapter_device(&filter_));
    EXPECT_EQ(filter_.TakeRequests(), std::vector{Supported(wire::gate_set, 0)});
}

TEST_F(Gate, StaysClosedWhenTheQueryFails) {
    gate_.get = [](GetArguments& call) {
        call.data[0] = 5;
        call.returned = call.size;
        return E_FAIL;
    };
    EXPECT_FALSE(is_adapter_device(&filter_));
}

TEST_F(Gate, NeedsTheWholeBlockBack) {
    for (const auto& [returned, open] : {std::pair{0U, false}, {143U, false}, {144U, true}, {200U, true}}) {
        gate_.get = [size = returned](GetArguments& call) {
            call.data[0] = 5;
            call.returned = size;
            return S_OK;
        };
        EXPECT_EQ(is_adapter_device(&filter_), open) << returned;
    }
}

TEST(GateWithoutFilter, StaysClosed) { EXPECT_FALSE(is_adapter_device(nullptr)); }

TEST(AdapterConstruction, AsksForNamedAccessThenForRegisters) {
    ScriptedCamera camera(AccessPath::Both, {});
    const GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_EQ(camera.filter.TakeRequests(),
              (std::vector{Supported(wire::device_set, 4), Supported(wire::device_set, 3)}));
    EXPECT_TRUE(adapter.has_named_access());
    EXPECT_TRUE(adapter.has_register_access());
    EXPECT_TRUE(adapter.get_documents().empty());
}

TEST(AdapterConstruction, TellsTheAccessPathsApart) {
    ScriptedCamera named(AccessPath::Named, {});
    const GenICamAdapterDevice by_name(&named.filter);
    EXPECT_TRUE(by_name.has_named_access());
    EXPECT_FALSE(by_name.has_register_access());

    ScriptedCamera registers(AccessPath::Registers, {});
    const GenICamAdapterDevice by_register(&registers.filter);
    EXPECT_FALSE(by_register.has_named_access());
    EXPECT_TRUE(by_register.has_register_access());
}

TEST(AdapterConstruction, TakesAnySupportBitButNoFailure) {
    ScriptedCamera camera(AccessPath::Both, {});
    camera.filter.Property(wire::device_set, 4).support = 0;
    camera.filter.Property(wire::device_set, 3).support = 0x80000000;
    const GenICamAdapterDevice odd_bit(&camera.filter);
    EXPECT_FALSE(odd_bit.has_named_access());
    EXPECT_TRUE(odd_bit.has_register_access());

    camera.filter.Property(wire::device_set, 4).support = 3;
    camera.filter.Property(wire::device_set, 3).support_result = E_FAIL;
    const GenICamAdapterDevice failing(&camera.filter);
    EXPECT_TRUE(failing.has_named_access());
    EXPECT_FALSE(failing.has_register_access());
}

TEST(AdapterConstruction, ThrowsWithoutAnyAccess) {
    ScriptedFilter filter;
    try {
        const GenICamAdapterDevice adapter(&filter);
        FAIL() << "nothing was thrown";
    } catch (const hr_exception& failure) {
        EXPECT_STREQ(failure.what(), "Failed to access GenICam data");
        EXPECT_EQ(failure.hr(), static_cast<HRESULT>(0x80004005));
    }
    EXPECT_EQ(filter.OutstandingReferences(), 0);
    EXPECT_EQ(filter.Calls().size(), 2U);
}

TEST(AdapterConstruction, HoldsOneReference) {
    ScriptedCamera camera(AccessPath::Both, {});
    {
        const GenICamAdapterDevice adapter(&camera.filter);
        EXPECT_EQ(camera.filter.OutstandingReferences(), 1);
    }
    EXPECT_EQ(camera.filter.OutstandingReferences(), 0);
}

TEST(HrException, CopiesMessageAndCode) {
    const hr_exception original("some words");
    const hr_exception copy = original;  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_STREQ(copy.what(), "some words");
    EXPECT_EQ(copy.hr(), static_cast<HRESULT>(0x80004005));
}

const std::error_code success = GenICam::make_error_code(GenICam::success);

class RegisterAccess : public testing::Test {
protected:
    ScriptedCamera camera_{AccessPath::Registers, {}};
    GenICamAdapterDevice adapter_{&camera_.filter};

    void SetUp() override { (void)camera_.filter.TakeRequests(); }
};

TEST_F(RegisterAccess, ReadsWithOneCall) {
    camera_.PutMemory(0x1122334455667788, {1, 2, 3, 4, 5, 6});
    Bytes buffer = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(adapter_.read(0x1122334455667788, buffer.data(), 6, 0), success);
    EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4, 5, 6}));
    const auto requests = camera_.filter.TakeRequests();
    EXPECT_EQ(requests, std::vector{RegisterGet(0x1122334455667788, {9, 9, 9, 9, 9, 9})});
    EXPECT_EQ(requests.front().instance, (Bytes{0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11}));
}

TEST_F(RegisterAccess, WritesWithOneCall) {
    const Bytes data = {7, 8, 9};
    EXPECT_EQ(adapter_.write(0x40, data.data(), 3, 0), success);
    EXPECT_EQ(camera_.filter.TakeRequests(), std::vector{RegisterSet(0x40, {7, 8, 9})});
}

TEST_F(RegisterAccess, SendsTheLowHalfOfTheLength) {
    std::uint32_t buffer = 0;
    EXPECT_FALSE(adapter_.read(0, &buffer, 0x1'0000'0004, 0));
    EXPECT_FALSE(adapter_.write(0, &buffer, 0x1'0000'0004, 0));
    EXPECT_EQ(camera_.filter.TakeRequests(),
              (std::vector{RegisterGet(0, Bytes(4)), RegisterSet(0, Bytes(4))}));
}

TEST_F(RegisterAccess, LeavesLengthAndFlagsUnchecked) {
    std::uint32_t buffer = 0;
    EXPECT_FALSE(adapter_.read(3, &buffer, 0, 0xFFFFFFFF));
    EXPECT_FALSE(adapter_.write(3, &buffer, 0, 0xFFFFFFFF));
    EXPECT_EQ(camera_.filter.TakeRequests(), (std::vector{RegisterGet(3, {}), RegisterSet(3, {})}));
}

TEST_F(RegisterAccess, TakesAShortReadForASuccess) {
    for (const std::uint32_t returned : {0U, 1U, 5U, 0xFFFFFFFFU}) {
        camera_.lie = [=](std::uint32_t) { return returned; };
        std::uint32_t buffer = 0;
        EXPECT_EQ(adapter_.read(0, &buffer, sizeof(buffer), 0), success) << returned;
    }
}

struct DriverResult {
    HRESULT hr;
    GenICam::error_number code;
};

constexpr DriverResult driver_results[] = {
    {S_OK, GenICam::success},
    {S_FALSE, GenICam::invalid_parameter},
    {E_NOTIMPL, GenICam::not_implemented},
    {E_ACCESSDENIED, GenICam::access_denied},
    {E_INVALIDARG, GenICam::invalid_parameter},
    {buffer_is_small, GenICam::buffer_too_small},
    {device_is_lost, GenICam::device_lost},
    {E_FAIL, GenICam::invalid_parameter},
    {test_support::property_unknown, GenICam::invalid_parameter},
};

TEST_F(RegisterAccess, GivesTheCodeOfTheDriversResult) {
    for (const DriverResult& result : driver_results) {
        camera_.register_result = result.hr;
        std::uint32_t buffer = 0;
        EXPECT_EQ(adapter_.read(0, &buffer, 4, 0), GenICam::make_error_code(result.code)) << result.hr;
        EXPECT_EQ(adapter_.write(0, &buffer, 4, 0), GenICam::make_error_code(result.code)) << result.hr;
    }
    camera_.register_result = S_OK;
    std::uint32_t buffer = 0;
    EXPECT_FALSE(adapter_.read(0, &buffer, 4, 0)) << "works again after failures";
}

}  // namespace
}  // namespace adapter_test
