// What is asked of a camera, without one.

#include "tests/inspect/inspection.h"

#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/camera/camera_filter.h"
#include "apps/inspect/camera/write_shield.h"
#include "genicam/core/error.h"
#include "simcam/register_memory.h"
#include "wire/device_set.h"

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

/// A camera made of a text and a memory.
class paper_camera final : public selvane_inspect::live_camera {
public:
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override {
        return memory.read(address, buffer, length, flags);
    }
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override {
        return memory.write(address, buffer, length, flags);
    }
    std::string_view description() const override { return "<RegisterDescription/>"; }
    const std::string& ending() const noexcept override { return ending_; }
    void take_control() override {}
    void leave_control() noexcept override {}

    simcam::register_memory memory;

private:
    std::string ending_;
};

TEST(CameraFilter, AnswersAsADriverOfRegistersDoes) {
    paper_camera camera;
    camera.memory.protect(0x200, 4, simcam::area_access::read_only);
    const auto filter = selvane_inspect::make_camera_filter(camera);
    wire::description_request first = {1, 0};
    wire::description_request second = {1, 1};
    std::uint32_t size = 0;
    DWORD returned = 0;
    const auto ask = [&](DWORD id, auto& instance, void* data, DWORD room) {
        return filter->Get(wire::device_set, id, &instance, sizeof(instance), data, room, &returned);
    };
    EXPECT_EQ(ask(SELVANE_DESCRIPTION_SIZE, first, &size, sizeof(size)), S_OK);
    EXPECT_EQ(size, camera.description().size());
    EXPECT_TRUE(FAILED(ask(SELVANE_DESCRIPTION_SIZE, second, &size, sizeof(size))));
    std::string text(size, ' ');
    EXPECT_TRUE(FAILED(ask(SELVANE_DESCRIPTION_DATA, first, text.data(), size - 1)));
    EXPECT_EQ(ask(SELVANE_DESCRIPTION_DATA, first, text.data(), size), S_OK);
    EXPECT_EQ(text, camera.description());
    EXPECT_EQ(returned, size);

    std::uint64_t address = 0x100;
    std::uint32_t number = 7;
    const auto write = [&] {
        return filter->Set(wire::device_set, SELVANE_REGISTER_ACCESS, &address, sizeof(address), &number,
                           sizeof(number));
    };
    EXPECT_EQ(write(), S_OK);
    number = 0;
    EXPECT_EQ(ask(SELVANE_REGISTER_ACCESS, address, &number, sizeof(number)), S_OK);
    EXPECT_EQ(number, 7U);
    address = 0x200;
    EXPECT_EQ(write(), GenICam::to_hresult(GenICam::access_denied));
    DWORD support = 0;
    EXPECT_TRUE(FAILED(filter->QuerySupported(wire::device_set, SELVANE_NAMED_ACCESS, &support)));
    EXPECT_EQ(filter->QuerySupported(wire::device_set, SELVANE_REGISTER_ACCESS, &support), S_OK);
}

}  // namespace
