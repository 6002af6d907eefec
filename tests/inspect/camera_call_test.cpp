// What is asked of a camera, without one.

#include "tests/inspect/inspection.h"

#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/camera/write_shield.h"
#include "genicam/core/error.h"
#include "simcam/register_memory.h"

#include <gmock/gmock.h>

namespace {

using namespace inspect_test;
using selvane_inspect::camera_call;
using testing::ElementsAre;

std::vector<std::string> Seen(const std::vector<std::string>& arguments) {
    return camera_call(arguments).arguments();
}

TEST(CameraCall, PutsTheCameraInThePlaceOfTheFile) {
    EXPECT_THAT(Seen({"get", "--camera", "A", "Width"}), ElementsAre("get", "camera:A", "Width"));
    EXPECT_THAT(Seen({"get", "Width", "--camera=A"}), ElementsAre("get", "camera:A", "Width"));
    EXPECT_THAT(Seen({"list", "--camera", "A", "--save-description", "f.xml", "--json"}),
                ElementsAre("list", "camera:A", "--json"));
    EXPECT_THAT(Seen({"list", "f.xml", "--all"}), ElementsAre("list", "f.xml", "--all"));
    EXPECT_THAT(Seen({"list", "--camera", "A", "--trace"}), ElementsAre("list", "camera:A"));
    EXPECT_THAT(Seen({"get", "--camera", "A", "Width", "--trace"}),
                ElementsAre("get", "camera:A", "Width", "--trace"));
    EXPECT_THAT(Seen({"eval", "--", "--camera"}), ElementsAre("eval", "--", "--camera"));
}

TEST(CameraCall, ListsCamerasWithoutAName) {
    EXPECT_THAT(Seen({"--camera"}), ElementsAre("cameras"));
    EXPECT_THAT(Seen({"--camera", "--json"}), ElementsAre("cameras", "--json"));
    EXPECT_THAT(Seen({"list", "--camera", "--json"}), ElementsAre("cameras", "--json"));
}

TEST(CameraCall, RefusesWordsThatDoNotFit) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"get", "--camera"},
                                                  {"--camera", "A"},
                                                  {"eval", "--camera", "A", "1+1"},
                                                  {"cameras", "--camera", "A"},
                                                  {"list", "--trace", "f.xml"},
                                                  {"info", "f.xml", "--save-description", "g.xml"},
                                                  {"info", "--camera", "A", "--save-description"}}) {
        const Outcome outcome = Call(words);
        EXPECT_EQ(outcome.code, 2) << words.front();
        EXPECT_EQ(Lines(outcome.err).size(), 1U) << outcome.err;
    }
}

TEST(WriteShield, KeepsWritesToItself) {
    simcam::register_memory memory;
    memory.poke(0x100, {1, 2, 3, 4});
    selvane_inspect::write_shield shield(memory);
    const std::uint8_t written[] = {8, 9};
    EXPECT_FALSE(shield.write(0x101, written, sizeof(written), 0));
    simcam::bytes seen(4);
    EXPECT_FALSE(shield.read(0x100, seen.data(), 4, 0));
    EXPECT_THAT(seen, ElementsAre(1, 8, 9, 4));
    EXPECT_THAT(memory.peek(0x100, 4), ElementsAre(1, 2, 3, 4));
    shield.forget();
    EXPECT_FALSE(shield.read(0x100, seen.data(), 4, 0));
    EXPECT_THAT(seen, ElementsAre(1, 2, 3, 4));
}

TEST(WriteShield, FailsAsTheDeviceDoes) {
    simcam::register_memory memory;
    memory.protect(0x100, 4, simcam::area_access::write_only);
    selvane_inspect::write_shield shield(memory);
    const std::uint8_t written[] = {8, 9, 7};
    EXPECT_FALSE(shield.write(0x10, written, sizeof(written), 0));
    simcam::bytes seen(4);
    EXPECT_EQ(shield.read(0x100, seen.data(), 4, 0), GenICam::make_error_code(GenICam::access_denied));
    EXPECT_FALSE(shield.read(0x0F, seen.data(), 2, 0));
    EXPECT_THAT(seen, ElementsAre(0, 8, 0, 0)) << "what lies behind is not read";
}

}  // namespace
