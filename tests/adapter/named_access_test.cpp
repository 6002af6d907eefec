#include "adapter/named_access.h"

#include "tests/adapter/allocation_watch.h"
#include "tests/adapter/scripted_camera.h"

#include <gtest/gtest.h>

namespace adapter_test {
namespace {

using namespace genicam_adapter;

class NamedAccess : public testing::Test {
protected:
    ScriptedCamera camera_{AccessPath::Named, {}};
    IKsPropertySet* const filter_ = &camera_.filter;
};

TEST_F(NamedAccess, SendsThePathBetweenZeros) {
    std::uint64_t value = 0x0102030405060708;
    (void)get_named_value(filter_, {"Gain", wire::path_suffix::value}, value);
    const auto requests = camera_.filter.TakeRequests();
    ASSERT_EQ(requests, std::vector{NamedGet("Gain/Value", BytesOf(std::uint64_t{0x0102030405060708}))});
    const Bytes& instance = requests.front().instance;
    ASSERT_EQ(instance.size(), 10U + 72U);
    EXPECT_EQ(Bytes(instance.begin(), instance.begin() + 8), Bytes(8));
    EXPECT_EQ(Bytes(instance.begin() + 8, instance.begin() + 18), BytesOfText("Gain/Value"));
    EXPECT_EQ(Bytes(instance.begin() + 18, instance.end()), Bytes(64));
}

TEST_F(NamedAccess, PutsAPathTogetherFromItsParts) {
    (void)get_named_bool(filter_, {"Mode", "/", "Off", wire::path_suffix::is_implemented});
    EXPECT_EQ(camera_.filter.TakeRequests(), std::vector{NamedGet("Mode/Off/IsImplemented")});
}

TEST_F(NamedAccess, KeepsTheBytesOfThePath) {
    (void)get_named_bool(filter_, {"Stra\xC3\x9F"
                                   "e",
                                   "/Value"});
    EXPECT_EQ(camera_.filter.TakeRequests(), std::vector{NamedGet("Stra\xC3\x9F"
                                                                  "e/Value")});
}

TEST_F(NamedAccess, SendsAnEmptyPathToo) {
    std::uint64_t value = 0;
    EXPECT_EQ(get_named_value(filter_, {}, value), test_support::property_unknown);
    EXPECT_EQ(set_named_value(filter_, {}, 1), S_OK);
    const auto requests = camera_.filter.TakeRequests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].instance, Bytes(72));
    EXPECT_EQ(requests[1].instance, Bytes(72));
}

TEST_F(NamedAccess, ReadsNumbersOfEightBytes) {
    camera_.Answer("A/Value", std::int64_t{-5});
    camera_.Answer("B/Value", 2.5);
    std::int64_t integer = 0;
    EXPECT_EQ(get_named_value(filter_, {"A/Value"}, integer), S_OK);
    EXPECT_EQ(integer, -5);
    double real = 0;
    EXPECT_EQ(get_named_value(filter_, {"B/Value"}, real), S_OK);
    EXPECT_EQ(real, 2.5);
}

TEST_F(NamedAccess, DoesNotLookAtTheReturnedSize) {
    camera_.Answer("A/Value", std::int64_t{7});
    for (const std::uint32_t returned : {0U, 4U, 9U, 0xFFFFFFFFU}) {
        camera_.lie = [=](std::uint32_t) { return returned; };
        std::int64_t value = 0;
        EXPECT_EQ(get_named_value(filter_, {"A/Value"}, value), S_OK);
        EXPECT_EQ(value, 7);
    }
}

TEST_F(NamedAccess, KeepsWhatTheDriverDoesNotWrite) {
    camera_.named["A/Value"] = {0xAA};
    std::uint64_t value = 0x0102030405060708;
    EXPECT_EQ(get_named_value(filter_, {"A/Value"}, value), S_OK);
    EXPECT_EQ(value, 0x01020304050607AAU);
}

TEST_F(NamedAccess, WritesNumbersAndTexts) {
    EXPECT_EQ(set_named_value(filter_, {"A", wire::path_suffix::value}, 0x0102030405060708), S_OK);
    EXPECT_EQ(set_named_property(filter_, {"M", wire::path_suffix::selected_entry}, "Off", 3), S_OK);
    EXPECT_EQ(camera_.filter.TakeRequests(), (std::vector{NamedSet("A/Value", {8, 7, 6, 5, 4, 3, 2, 1}),
                                                          NamedSet("M/SelectedEntry", {'O', 'f', 'f'})}));
}

TEST_F(NamedAccess, PassesTheDriversResultOn) {
    auto& property = camera_.filter.Property(
        {0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}}, 4);
    for (const HRESULT hr : {S_OK, S_FALSE, E_FAIL, device_is_lost}) {
        property.get = [=](GetArguments&) { return hr; };
        property.set = [=](const Bytes&, const Bytes&) { return hr; };
        std::uint64_t value = 0;
        EXPECT_EQ(get_named_value(filter_, {"A"}, value), hr);
        EXPECT_EQ(set_named_value(filter_, {"A"}, value), hr);
    }
}

TEST_F(NamedAccess, ReadsABooleanFromAllEightBytes) {
    EXPECT_FALSE(get_named_bool(filter_, {"unknown"}));
    camera_.Answer("A", std::uint64_t{0});
    EXPECT_FALSE(get_named_bool(filter_, {"A"}));
    camera_.Answer("A", std::uint64_t{1});
    EXPECT_TRUE(get_named_bool(filter_, {"A"}));
    camera_.Answer("A", std::uint64_t{1} << 63);
    EXPECT_TRUE(get_named_bool(filter_, {"A"}));
    camera_.named["A"] = {};
    EXPECT_FALSE(get_named_bool(filter_, {"A"})) << "starts from zero";
}

TEST_F(NamedAccess, TakesAFailedBooleanForFalse) {
    camera_.filter.Property({0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}}, 4)
        .get = [](GetArguments& call) {
        call.data[0] = 1;
        return E_FAIL;
    };
    EXPECT_FALSE(get_named_bool(filter_, {"A"}));
}

TEST(NamedAccessWithoutFilter, FailsEveryCall) {
    std::uint64_t value = 3;
    EXPECT_EQ(get_named_value(nullptr, {"A"}, value), E_NOINTERFACE);
    EXPECT_EQ(set_named_value(nullptr, {"A"}, 1), E_NOINTERFACE);
    EXPECT_FALSE(get_named_bool(nullptr, {"A"}));
    EXPECT_EQ(value, 3U);
}

TEST(NamedAccessCost, IsOneAllocation) {
    IdleDriver driver;
    const std::string name = "AFeatureWithANameThatNoSmallStringHolds";
    std::uint64_t value = 0;
    const std::uint64_t before = AllocationCount();
    (void)get_named_value(&driver, {name, wire::path_suffix::value}, value);
    EXPECT_EQ(AllocationCount() - before, 1U);
    (void)set_named_value(&driver, {name, wire::path_suffix::value}, value);
    EXPECT_EQ(AllocationCount() - before, 2U);
}

}  // namespace
}  // namespace adapter_test
