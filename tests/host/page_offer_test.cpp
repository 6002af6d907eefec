// What the host makes of pages that cannot reach their camera: the failure leaves the DLL as an exception.

#include "apps/host/page_offer.h"

#include "apps/host/host_error.h"
#include "apps/host/page_server.h"
#include "simcam/fault.h"
#include "simcam/simulated_camera.h"
#include "wire/page_classes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace selvane_host;

class PageOffer : public testing::Test {
protected:
    static std::string FailureWith(simcam::simulated_camera& camera) {
        try {
            static_cast<void>(ask_pages(camera));
        } catch (const host_error& failure) {
            EXPECT_EQ(failure.code(), 1);
            return failure.what();
        }
        return "no failure";
    }

    com_apartment apartment;
    page_server server{page_server_path()};
};

TEST_F(PageOffer, ADriverWithoutAnAccessPathIsNamedAsUnreachable) {
    simcam::camera_options options;
    options.named_access = false;
    options.register_access = false;
    const simcam::camera_ptr camera = simcam::make_camera(options);
    EXPECT_EQ(FailureWith(*camera), "Selvane Exposure Controls: Failed to access GenICam data");
}

TEST_F(PageOffer, AMalformedDescriptionFromTheDriverIsNamed) {
    simcam::camera_options options;
    options.descriptions = {"<RegisterDescription"};
    const simcam::camera_ptr camera = simcam::make_camera(options);
    EXPECT_EQ(FailureWith(*camera), "Selvane Exposure Controls: Failed to parse GenICam data");
}

TEST_F(PageOffer, ACameraIsLetGoAfterTheQuestion) {
    const simcam::camera_ptr camera = simcam::make_camera("full");
    const std::vector<page_answer> answers = ask_pages(*camera);
    ASSERT_EQ(answers.size(), wire::page_classes.size());
    EXPECT_EQ(willing_pages(answers).size(), wire::page_classes.size());
    EXPECT_EQ(camera->references(), 1);
}

TEST_F(PageOffer, AnObjectThatIsNoCameraIsRefused) {
    simcam::camera_options options;
    options.property_set = false;
    const simcam::camera_ptr camera = simcam::make_camera(options);
    const std::vector<page_answer> answers = ask_pages(*camera);
    EXPECT_TRUE(willing_pages(answers).empty());
    EXPECT_EQ(describe_answer(answers.front()), "page \"Selvane Exposure Controls\": nothing to show");
}

TEST(DescribeAnswer, TellsEachOutcome) {
    EXPECT_EQ(describe_answer({CLSID{}, "A", S_OK}), "page \"A\": shown");
    EXPECT_EQ(describe_answer({CLSID{}, "A", E_NOINTERFACE}), "page \"A\": nothing to show");
    EXPECT_EQ(describe_answer({CLSID{}, "A", E_OUTOFMEMORY}), "page \"A\": refused with 0x8007000E");
}

TEST(PageServer, TheClassesAreGoneWithIt) {
    const com_apartment apartment;
    { const page_server server(page_server_path()); }
    platform::com_ptr<IUnknown> page;
    EXPECT_EQ(
        CoCreateInstance(wire::page_classes[0], nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, page.put_void()),
        REGDB_E_CLASSNOTREG);
}

}  // namespace
