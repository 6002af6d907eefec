#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

namespace simcam_test {
namespace {

using namespace simcam;

bytes request(std::uint32_t first_field, std::uint32_t index) {
    return bytes_of(wire::description_request{first_field, index});
}

answer ask(simulated_camera& camera, DWORD id, bytes instance, std::size_t size) {
    return get_property(camera, wire::device_set, id, std::move(instance), size);
}

camera_options two_texts() {
    camera_options options;
    options.descriptions = {"<first/>", "not xml at all <"};
    return options;
}

TEST(DescriptionAccess, GivesSizeAndText) {
    const camera_ptr camera = make_camera(two_texts());
    const answer size = ask(*camera, SELVANE_DESCRIPTION_SIZE, request(1, 0), 4);
    EXPECT_EQ(size.result, S_OK);
    EXPECT_EQ(size.returned, 4U);
    EXPECT_EQ(value_of<std::uint32_t>(size.data), 8U);
    const answer text = ask(*camera, SELVANE_DESCRIPTION_DATA, request(1, 0), 8);
    EXPECT_EQ(text.result, S_OK);
    EXPECT_EQ(text.returned, 8U);
    EXPECT_EQ(text.data, text_bytes("<first/>"));
}

TEST(DescriptionAccess, HandsOutWhatItCannotReadItself) {
    const camera_ptr camera = make_camera(two_texts());
    EXPECT_EQ(ask(*camera, SELVANE_DESCRIPTION_DATA, request(1, 1), 16).data, text_bytes("not xml at all <"));
    EXPECT_EQ(camera->document_count(), 2U);
    EXPECT_NE(camera->document(0), nullptr);
    EXPECT_EQ(camera->document(1), nullptr);
}

TEST(DescriptionAccess, HandsOutAnEmptyText) {
    camera_options options;
    options.descriptions = {""};
    const camera_ptr camera = make_camera(options);
    const answer size = ask(*camera, SELVANE_DESCRIPTION_SIZE, request(1, 0), 4);
    EXPECT_EQ(size.result, S_OK);
    EXPECT_EQ(value_of<std::uint32_t>(size.data), 0U);
    const answer text = ask(*camera, SELVANE_DESCRIPTION_DATA, request(1, 0), 0);
    EXPECT_EQ(text.result, S_OK);
    EXPECT_EQ(text.returned, 0U);
}

TEST(DescriptionAccess, EndsBehindTheLast) {
    const camera_ptr camera = make_camera(two_texts());
    EXPECT_TRUE(FAILED(ask(*camera, SELVANE_DESCRIPTION_SIZE, request(1, 2), 4).result));
    EXPECT_TRUE(FAILED(ask(*camera, SELVANE_DESCRIPTION_DATA, request(1, 2), 4).result));
}

TEST(DescriptionAccess, TakesTheFirstFieldThatItKnows) {
    camera_options options = two_texts();
    for (const std::uint32_t known : {0U, 1U}) {
        options.description_field = known;
        const camera_ptr camera = make_camera(options);
        EXPECT_EQ(ask(*camera, SELVANE_DESCRIPTION_SIZE, request(known, 0), 4).result, S_OK);
        EXPECT_EQ(ask(*camera, SELVANE_DESCRIPTION_SIZE, request(1 - known, 0), 4).result, E_INVALIDARG);
        EXPECT_EQ(ask(*camera, SELVANE_DESCRIPTION_SIZE, request(2, 0), 4).result, E_INVALIDARG);
    }
}

TEST(DescriptionAccess, WritesNothingIntoABufferThatIsTooSmall) {
    const camera_ptr camera = make_camera(two_texts());
    const answer size = ask(*camera, SELVANE_DESCRIPTION_SIZE, request(1, 0), 3);
    EXPECT_EQ(size.result, buffer_too_small);
    EXPECT_EQ(size.data, bytes(3));
    const answer text = ask(*camera, SELVANE_DESCRIPTION_DATA, request(1, 0), 7);
    EXPECT_EQ(text.result, buffer_too_small);
    EXPECT_EQ(text.data, bytes(7));
}

TEST(DescriptionAccess, RefusesAShortRequest) {
    const camera_ptr camera = make_camera(two_texts());
    EXPECT_EQ(ask(*camera, SELVANE_DESCRIPTION_SIZE, bytes(7), 4).result, E_INVALIDARG);
}

TEST(DescriptionAccess, CannotBeWritten) {
    const camera_ptr camera = make_camera(two_texts());
    for (const DWORD id : {SELVANE_DESCRIPTION_SIZE, SELVANE_DESCRIPTION_DATA}) {
        EXPECT_EQ(set_property(*camera, wire::device_set, id, request(1, 0), bytes(4)), property_unknown);
        DWORD support = 0;
        EXPECT_EQ(camera->property_set()->QuerySupported(wire::device_set, id, &support), S_OK);
        EXPECT_EQ(support, 1U);
    }
}

struct access_case {
    bool named;
    bool registers;
};
class AccessPaths : public testing::TestWithParam<access_case> {};

TEST_P(AccessPaths, OfferWhatTheOptionsSay) {
    camera_options options;
    options.named_access = GetParam().named;
    options.register_access = GetParam().registers;
    const camera_ptr camera = make_camera(options);
    for (const auto& [id, offered] : {std::pair(SELVANE_REGISTER_ACCESS, GetParam().registers),
                                      std::pair(SELVANE_NAMED_ACCESS, GetParam().named)}) {
        DWORD support = 0;
        const HRESULT result = camera->property_set()->QuerySupported(wire::device_set, id, &support);
        EXPECT_EQ(result, offered ? S_OK : property_unknown);
        EXPECT_EQ(support, offered ? 3U : 0U);
    }
    if (!GetParam().registers) {
        EXPECT_EQ(get_register(*camera, 0, 4).result, property_unknown);
        EXPECT_EQ(set_register(*camera, 0, bytes(4)), property_unknown);
    }
    if (!GetParam().named) {
        EXPECT_EQ(get_path(*camera, "A/Value").result, property_unknown);
        EXPECT_EQ(set_path(*camera, "A/Value", bytes(8)), property_unknown);
    }
}

INSTANTIATE_TEST_SUITE_P(All, AccessPaths,
                         testing::Values(access_case{true, true}, access_case{true, false},
                                         access_case{false, true}, access_case{false, false}));

}  // namespace
}  // namespace simcam_test
