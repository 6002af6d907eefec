#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

namespace simcam_test {
namespace {

using namespace simcam;

TEST(CameraObject, CountsItsReferences) {
    const camera_ptr camera = make_camera(camera_options{});
    EXPECT_EQ(camera->references(), 1);
    {
        const auto properties = platform::query<IKsPropertySet>(camera.get());
        EXPECT_EQ(properties.get(), camera->property_set());
        EXPECT_EQ(camera->references(), 2);
    }
    EXPECT_EQ(camera->references(), 1);
}

TEST(CameraObject, EndsWithItsLastReference) {
    const std::int32_t before = simulated_camera::live_cameras();
    camera_ptr camera = make_camera(camera_options{});
    platform::com_ptr<IAMCameraControl> control = platform::query<IAMCameraControl>(camera.get());
    EXPECT_EQ(simulated_camera::live_cameras(), before + 1);
    camera.reset();
    EXPECT_EQ(simulated_camera::live_cameras(), before + 1);
    control.reset();
    EXPECT_EQ(simulated_camera::live_cameras(), before);
}

TEST(CameraObject, IsOneObjectThroughEveryInterface) {
    const camera_ptr camera = make_camera(camera_options{});
    for (IUnknown* face :
         {static_cast<IUnknown*>(camera->property_set()), static_cast<IUnknown*>(camera->camera_control()),
          static_cast<IUnknown*>(camera->video_proc_amp())}) {
        void* identity = nullptr;
        ASSERT_EQ(face->QueryInterface(platform::iid_unknown, &identity), S_OK);
        EXPECT_EQ(identity, static_cast<IUnknown*>(camera.get()));
        camera->Release();
    }
}

struct switchable {
    const char* name;
    bool camera_options::*offered;
    const GUID* iid;
};

class SwitchableInterface : public testing::TestWithParam<switchable> {};

TEST_P(SwitchableInterface, CanBeLeftOutAlone) {
    camera_options options;
    options.*(GetParam().offered) = false;
    const camera_ptr camera = make_camera(options);
    for (const GUID* iid :
         {&platform::iid_property_set, &platform::iid_camera_control, &platform::iid_video_proc_amp}) {
        void* found = camera.get();
        const HRESULT result = camera->QueryInterface(*iid, &found);
        if (iid == GetParam().iid) {
            EXPECT_EQ(result, E_NOINTERFACE);
            EXPECT_EQ(found, nullptr);
        } else {
            EXPECT_EQ(result, S_OK);
            camera->Release();
        }
    }
    EXPECT_EQ(camera->references(), 1);
}

INSTANTIATE_TEST_SUITE_P(All, SwitchableInterface,
                         testing::Values(switchable{"property_set", &camera_options::property_set,
                                                    &platform::iid_property_set},
                                         switchable{"camera_control", &camera_options::camera_control,
                                                    &platform::iid_camera_control},
                                         switchable{"video_proc_amp", &camera_options::video_proc_amp,
                                                    &platform::iid_video_proc_amp}),
                         [](const auto& shown) { return std::string(shown.param.name); });

TEST(CameraObject, RefusesNullPointers) {
    const camera_ptr camera = make_camera(camera_options{});
    EXPECT_EQ(camera->QueryInterface(platform::iid_unknown, nullptr), E_POINTER);
    const GUID set = wire::gate_set;
    EXPECT_EQ(camera->property_set()->QuerySupported(set, 0, nullptr), E_POINTER);
    std::uint8_t data[144] = {};
    DWORD returned = 0;
    EXPECT_EQ(camera->property_set()->Get(set, 0, data, 144, data, 144, nullptr), E_POINTER);
    EXPECT_EQ(camera->property_set()->Get(set, 0, nullptr, 0, nullptr, 144, &returned), E_POINTER);
    EXPECT_EQ(camera->property_set()->Set(set, 0, nullptr, 0, nullptr, 144), E_POINTER);
    EXPECT_EQ(camera->call_count(), 0U);
}

TEST(CameraObject, AnswersTheGate) {
    camera_options options;
    options.device_kind = 9;
    const camera_ptr camera = make_camera(options);
    DWORD support = 0;
    EXPECT_EQ(camera->property_set()->QuerySupported(wire::gate_set, 0, &support), S_OK);
    EXPECT_EQ(support, 1U);
    std::uint8_t block[144] = {};
    DWORD returned = 0;
    EXPECT_EQ(camera->property_set()->Get(wire::gate_set, 0, block, 144, block, 144, &returned), S_OK);
    EXPECT_EQ(returned, 144U);
    EXPECT_EQ(value_of<std::uint32_t>(bytes(block, block + 144)), 9U);
    EXPECT_TRUE(camera->calls().back().one_buffer);
    EXPECT_EQ(get_property(*camera, wire::gate_set, 0, bytes(144), 143).result, buffer_too_small);
    EXPECT_EQ(get_property(*camera, wire::gate_set, 1, bytes(144), 144).result, set_unknown);
}

TEST(CameraObject, CanBeWithoutAGate) {
    camera_options options;
    options.gate_set = false;
    const camera_ptr camera = make_camera(options);
    DWORD support = 7;
    EXPECT_EQ(camera->property_set()->QuerySupported(wire::gate_set, 0, &support), set_unknown);
    EXPECT_EQ(support, 7U);
    EXPECT_EQ(get_property(*camera, wire::gate_set, 0, bytes(144), 144).result, set_unknown);
}

TEST(CameraObject, KnowsNoOtherSet) {
    const camera_ptr camera = make_camera(camera_options{});
    const GUID other = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    DWORD support = 0;
    EXPECT_EQ(camera->property_set()->QuerySupported(other, 0, &support), set_unknown);
    EXPECT_EQ(get_property(*camera, other, 0, bytes(8), 8).result, set_unknown);
    EXPECT_EQ(set_property(*camera, other, 0, bytes(8), bytes(8)), set_unknown);
}

TEST(CameraObject, RefusesRegisterContentsThatItCannotRead) {
    camera_options options;
    options.memory = "0x0: 01\nrubbish\n";
    const std::int32_t before = simulated_camera::live_cameras();
    EXPECT_THROW((void)make_camera(options), std::invalid_argument);
    EXPECT_EQ(simulated_camera::live_cameras(), before);
}

}  // namespace
}  // namespace simcam_test
