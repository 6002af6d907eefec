#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

namespace simcam_test {
namespace {

using namespace simcam;

TEST(RegisterAccess, ReadsAndWritesTheMemory) {
    const camera_ptr camera = make_camera(camera_options{});
    EXPECT_EQ(set_register(*camera, 0x4000, {1, 2, 3}), S_OK);
    EXPECT_EQ(camera->memory().peek(0x4000, 4), (bytes{1, 2, 3, 0}));
    const answer got = get_register(*camera, 0x4001, 2);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 2U);
    EXPECT_EQ(got.data, (bytes{2, 3}));
}

TEST(RegisterAccess, ReportsWhatTheMemoryRefuses) {
    camera_options options;
    options.prepare_memory = [](register_memory& memory) {
        memory.protect(0, 4, area_access::read_only);
        memory.protect(8, 4, area_access::write_only);
    };
    const camera_ptr camera = make_camera(options);
    EXPECT_EQ(set_register(*camera, 0, bytes(4)), E_ACCESSDENIED);
    EXPECT_EQ(get_register(*camera, 8, 4).result, E_ACCESSDENIED);
    EXPECT_TRUE(FAILED(get_register(*camera, 0xFFFFFFFFFFFFFFFE, 4).result));
}

TEST(RegisterAccess, RefusesAShortAddress) {
    const camera_ptr camera = make_camera(camera_options{});
    const GUID set = wire::device_set;
    EXPECT_EQ(get_property(*camera, set, 3, bytes(7), 4).result, E_INVALIDARG);
    EXPECT_EQ(set_property(*camera, set, 3, bytes(7), bytes(4)), E_INVALIDARG);
}

TEST(RegisterAccess, StartsFromTheContentsOfTheOptions) {
    camera_options options;
    options.memory = "0x10: DE AD\n";
    const camera_ptr camera = make_camera(options);
    EXPECT_EQ(get_register(*camera, 0x10, 2).data, (bytes{0xDE, 0xAD}));
}

TEST(RegisterAccess, ScattersWhatTheContentsDoNotTell) {
    camera_options options;
    options.memory_seed = 5;
    options.memory = "0x10: DE AD\n";
    const camera_ptr camera = make_camera(options);
    register_memory scattered;
    scattered.scatter(5);
    bytes expected = scattered.peek(0, 0x40);
    expected[0x10] = 0xDE;
    expected[0x11] = 0xAD;
    EXPECT_EQ(get_register(*camera, 0, 0x40).data, expected);
}

TEST(RegisterAccess, LeadsToAPortInThePlaceOfTheMemory) {
    register_memory behind;
    behind.poke(0x10, bytes{0xDE, 0xAD});
    behind.protect(0x20, 4, area_access::read_only);
    camera_options options;
    options.named_access = false;
    options.registers = &behind;
    const camera_ptr camera = make_camera(options);
    EXPECT_EQ(get_register(*camera, 0x10, 2).data, (bytes{0xDE, 0xAD}));
    EXPECT_EQ(set_register(*camera, 0x11, {0xEF}), S_OK);
    EXPECT_EQ(behind.peek(0x10, 2), (bytes{0xDE, 0xEF}));
    EXPECT_EQ(set_register(*camera, 0x20, bytes(4)), E_ACCESSDENIED);
    EXPECT_EQ(camera->memory().peek(0x10, 2), bytes(2));
}

// The camera's own view reads past its caches: the other access path may have written.
TEST(RegisterAccess, ShowsAtOnceInNamedAccess) {
    camera_options options;
    options.descriptions = {R"(<D><Port Name="Device"/>
        <IntReg Name="R"><Address>0x10</Address><Length>2</Length><pPort>Device</pPort>
          <Cachable>WriteThrough</Cachable></IntReg>
        <Integer Name="I"><pValue>R</pValue></Integer></D>)"};
    const camera_ptr camera = make_camera(options);
    std::int64_t value = 0;
    EXPECT_EQ(camera->get_named("I/Value", value), S_OK);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(set_register(*camera, 0x10, {0x12, 0x34}), S_OK);
    EXPECT_EQ(camera->get_named("I/Value", value), S_OK);
    EXPECT_EQ(value, 0x1234);
    EXPECT_EQ(camera->set_named("I/Value", 0x5678), S_OK);
    EXPECT_EQ(get_register(*camera, 0x10, 2).data, (bytes{0x56, 0x78}));
}

}  // namespace
}  // namespace simcam_test
