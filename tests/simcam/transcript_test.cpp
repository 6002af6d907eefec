#include "tests/simcam/driver_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace simcam_test {
namespace {

using namespace simcam;
using testing::ElementsAre;

constexpr GUID vendor_set = {0x515E97D1, 0xC453, 0x4772, {0xA4, 0x89, 0xCC, 0x07, 0x0A, 0x5A, 0x24, 0x42}};
constexpr GUID color_set = {0x8CBCF1C6, 0x53C3, 0x4D79, {0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8}};

camera_options small() {
    camera_options options;
    options.descriptions = {R"(<D><Float Name="F"><Value>0.1</Value><Min>0</Min></Float>
        <Integer Name="I"><Value>-4</Value></Integer>
        <Enumeration Name="E"><EnumEntry Name="On"><Value>0</Value></EnumEntry><Value>0</Value></Enumeration></D>)"};
    options.vendor = full_vendor_model();
    return options;
}

class Transcript : public testing::Test {
protected:
    camera_ptr camera_ = make_camera(small());
};

TEST_F(Transcript, ReadsAsLines) {
    DWORD support = 0;
    camera_->property_set()->QuerySupported(wire::device_set, 4, &support);
    camera_->property_set()->QuerySupported(vendor_set, 1, &support);
    (void)get_property(*camera_, wire::gate_set, 0, bytes(144), 144);
    (void)get_property(*camera_, wire::device_set, 1, bytes_of(std::uint64_t{1}), 4);
    (void)get_property(*camera_, wire::device_set, 2, bytes_of(std::uint64_t{1}), 400);
    const std::string size = std::to_string(camera_->options().descriptions[0].size());
    EXPECT_THAT(camera_->transcript(),
                ElementsAre("QuerySupported device 4 -> 0x3, ok", "QuerySupported vendor 1, 0x80070490",
                            "Get gate 0 -> 5, ok", "Get device 1 {1, 0} -> " + size + ", ok",
                            "Get device 2 {1, 0} -> " + size + " bytes (returned " + size + "), ok"));
}

TEST_F(Transcript, ATextOfADescriptionStaysOnItsLine) {
    camera_options options;
    options.descriptions = {
        "<D><Enumeration Name=\"E&#x1B;[2K&#x9B;\"><EnumEntry Name=\"On&#xA;forged&#x202E;\">"
        "<Value>0</Value></EnumEntry><Value>0</Value></Enumeration></D>"};
    const camera_ptr camera = make_camera(options);
    (void)get_path(*camera, "E\x1B[2K\xC2\x9B/SelectedEntry", 256);
    (void)set_path(*camera, "E\x1B[2K\xC2\x9B/SelectedEntry", text_bytes("On\nforged\xE2\x80\xAE"));
    EXPECT_THAT(camera->transcript(),
                ElementsAre("Get device 4 E\\x1B[2K\\u009B/SelectedEntry -> \"On\\x0Aforged\\u202E\", ok",
                            "Set device 4 E\\x1B[2K\\u009B/SelectedEntry <- \"On\\x0Aforged\\u202E\", ok"));
}

TEST_F(Transcript, ShowsRegisters) {
    (void)set_register(*camera_, 0x1234, {0xAB, 1});
    (void)get_register(*camera_, 0x123456789A, 3);
    (void)set_register(*camera_, 0, bytes(65, 0x11));
    const auto lines = camera_->transcript();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Set device 3 0x00001234 <- AB 01, ok");
    EXPECT_EQ(lines[1], "Get device 3 0x123456789A -> 00 00 00, ok");
    EXPECT_THAT(lines[2], testing::EndsWith("11 11 ... (65 bytes), ok"));
}

TEST_F(Transcript, ShowsNamedValuesByTheirKind) {
    (void)get_path(*camera_, "F/Value");
    (void)set_path(*camera_, "F/Value", bytes_of(2.5));
    (void)set_path(*camera_, "F/Value", bytes_of(-2.5));
    (void)get_path(*camera_, "F/IsLocked");
    (void)get_path(*camera_, "I/Value");
    (void)get_path(*camera_, "E/SelectedEntry", 256);
    (void)set_path(*camera_, "E/SelectedEntry", text_bytes("On"));
    (void)get_path(*camera_, "E/On/IsImplemented");
    (void)get_path(*camera_, "Nothing/Value");
    (void)get_path(*camera_, "I/Value", 16);
    EXPECT_THAT(
        camera_->transcript(),
        ElementsAre(
            "Get device 4 F/Value -> 0.1, ok", "Set device 4 F/Value <- 2.5, ok",
            "Set device 4 F/Value <- -2.5, 0x80070057", "Get device 4 F/IsLocked -> 1, ok",
            "Get device 4 I/Value -> -4, ok", "Get device 4 E/SelectedEntry -> \"On\", ok",
            "Set device 4 E/SelectedEntry <- \"On\", ok", "Get device 4 E/On/IsImplemented -> 1, ok",
            "Get device 4 Nothing/Value, 0x80070490",
            "Get device 4 I/Value -> FC FF FF FF FF FF FF FF 00 00 00 00 00 00 00 00 (returned 8), ok"));
}

TEST_F(Transcript, ShowsPropertiesThatTheDeviceDoesNotHave) {
    (void)get_property(*camera_, wire::device_set, 9, bytes(), 4);
    EXPECT_THAT(camera_->transcript(), ElementsAre("Get device 9, 0x80070490"));
}

TEST_F(Transcript, ShowsVendorRecordsByTheirFields) {
    (void)get_property(*camera_, vendor_set, 106, bytes(48), 48);
    (void)get_property(*camera_, vendor_set, 238, bytes(56), 56);
    (void)get_property(*camera_, vendor_set, 122, bytes(40), 40);
    (void)get_property(*camera_, vendor_set, 125, bytes(88), 88);
    (void)get_property(*camera_, color_set, 0, bytes(48), 48);
    bytes record(48);
    record[24] = 9;
    record[28] = 2;
    (void)set_property(*camera_, vendor_set, 106, record, record);
    EXPECT_THAT(
        camera_->transcript(),
        ElementsAre(
            "Get vendor 106 -> value=128 flags=0x2 caps=0x2 min=0 max=255 default=128, ok",
            "Get vendor 238 -> value=0 flags=0x2 caps=0x2 min=0 max=1000000 default=0, ok",
            "Get vendor 122 -> in=1 out=0 in-max=3 out-max=3, ok",
            "Get vendor 125 -> enable=0 delay=0 [0..100000 default 0] duration=1000 [0..100000 default 1000] "
            "polarity=1 follow-exposure=0 restrictions=0x0, ok",
            "Get color-enhancement 0 -> value=0 flags=0x2 caps=0x2 min=0 max=1 default=0, ok",
            "Set vendor 106 <- value=9 flags=0x2 caps=0x0 min=0 max=0 default=0, ok"));
}

TEST_F(Transcript, ShowsTheControlInterfaces) {
    LONG a = 0, b = 0, c = 0, d = 0, e = 0;
    camera_->camera_control()->GetRange(6, &a, &b, &c, &d, &e);
    camera_->camera_control()->Get(6, &a, &b);
    camera_->camera_control()->Set(6, 10, 2);
    camera_->video_proc_amp()->GetRange(1, &a, &b, &c, &d, &e);
    camera_->video_proc_amp()->Get(9, &a, &b);
    camera_->video_proc_amp()->Set(9, 481, 2);
    EXPECT_THAT(
        camera_->transcript(),
        ElementsAre("CameraControl GetRange 6 -> min=0 max=1023 step=1 default=420 caps=0x3, ok",
                    "CameraControl Get 6 -> value=420 flags=0x2, ok",
                    "CameraControl Set 6 <- value=10 flags=0x2, ok", "VideoProcAmp GetRange 1, 0x80070490",
                    "VideoProcAmp Get 9 -> value=0 flags=0x2, ok",
                    "VideoProcAmp Set 9 <- value=481 flags=0x2, 0x80070057"));
}

TEST_F(Transcript, NamesAnUnknownSetByItsId) {
    const GUID other = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    (void)get_property(*camera_, other, 17, bytes(4), 4);
    EXPECT_THAT(camera_->transcript(),
                ElementsAre("Get {00000001-0002-0003-0405-060708090A0B} 17, 0x80070492"));
}

TEST_F(Transcript, KeepsTheBytesOfEachCall) {
    bytes record(48);
    record[24] = 77;
    (void)camera_->property_set()->Set(vendor_set, SELVANE_AUTO_EXPOSURE_REFERENCE, record.data(), 48,
                                       record.data(), 48);
    (void)get_property(*camera_, vendor_set, 106, bytes(48), 48, 0xEE);
    const auto calls = camera_->calls();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].kind, call_kind::set);
    EXPECT_EQ(calls[0].set, vendor_set);
    EXPECT_EQ(calls[0].id, 106U);
    EXPECT_EQ(calls[0].instance, record);
    EXPECT_EQ(calls[0].data, record);
    EXPECT_TRUE(calls[0].one_buffer);
    EXPECT_EQ(calls[1].data, bytes(48, 0xEE));
    EXPECT_EQ(calls[1].answer[24], 77);
    EXPECT_FALSE(calls[1].one_buffer);
    EXPECT_EQ(calls[1].returned, 48U);
    EXPECT_EQ(calls[1].number, 2U);
}

TEST_F(Transcript, NotesPathAndAddress) {
    (void)get_path(*camera_, "F/Value");
    (void)get_register(*camera_, 0x77, 1);
    EXPECT_EQ(camera_->calls()[0].path, "F/Value");
    EXPECT_EQ(camera_->calls()[1].address, 0x77U);
}

TEST_F(Transcript, CanBeCleared) {
    (void)get_path(*camera_, "F/Value");
    camera_->clear_transcript();
    EXPECT_TRUE(camera_->transcript().empty());
    EXPECT_TRUE(camera_->calls().empty());
    EXPECT_EQ(camera_->call_count(), 1U);
}

TEST_F(Transcript, GoesToAListenerToo) {
    std::vector<std::string> heard;
    camera_->set_listener([&](const driver_call& call) { heard.push_back(call.text); });
    (void)get_path(*camera_, "I/Value");
    EXPECT_THAT(heard, ElementsAre("Get device 4 I/Value -> -4, ok"));
}

TEST_F(Transcript, MayBeLeftToTheListener) {
    camera_options options = small();
    options.keep_transcript = false;
    camera_ = make_camera(options);
    (void)get_path(*camera_, "I/Value");
    std::vector<std::string> heard;
    camera_->set_listener([&](const driver_call& call) { heard.push_back(call.text); });
    (void)get_path(*camera_, "I/Value");
    EXPECT_EQ(heard.size(), 1U);
    EXPECT_TRUE(camera_->transcript().empty());
    EXPECT_EQ(camera_->call_count(), 2U);
}

TEST_F(Transcript, LetsTheListenerCallTheCamera) {
    int depth = 0;
    camera_->set_listener([&](const driver_call&) {
        if (depth++ == 0) (void)get_path(*camera_, "F/Value");
    });
    (void)get_path(*camera_, "I/Value");
    EXPECT_EQ(camera_->call_count(), 2U);
}

}  // namespace
}  // namespace simcam_test
