#include "tests/simcam/driver_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace simcam_test {
namespace {

using namespace simcam;

class Faults : public testing::Test {
protected:
    HRESULT Read() { return get_path(*camera_, "I/Value").result; }

    static camera_options Options() {
        camera_options options;
        options.descriptions = {R"(<D><Integer Name="I"><Value>1</Value></Integer></D>)"};
        options.vendor = full_vendor_model();
        return options;
    }
    camera_ptr camera_ = make_camera(Options());
};

TEST_F(Faults, FailTheNthCall) {
    EXPECT_EQ(Read(), S_OK);
    camera_->add_fault(fail_nth(2, E_OUTOFMEMORY));
    EXPECT_EQ(Read(), S_OK);
    EXPECT_EQ(Read(), E_OUTOFMEMORY);
    EXPECT_EQ(Read(), S_OK);
}

TEST_F(Faults, CountEveryKindOfCall) {
    camera_->add_fault(fail_nth(3, E_FAIL));
    DWORD support = 0;
    LONG value = 0, flags = 0;
    EXPECT_EQ(camera_->property_set()->QuerySupported(wire::device_set, 4, &support), S_OK);
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes_of(std::int64_t{2})), S_OK);
    EXPECT_EQ(camera_->camera_control()->Get(4, &value, &flags), E_FAIL);
    EXPECT_EQ(camera_->video_proc_amp()->Get(9, &value, &flags), S_OK);
}

TEST_F(Faults, LeaveTheCameraUntouched) {
    camera_->add_fault(fail_nth(1, E_FAIL));
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes_of(std::int64_t{9})), E_FAIL);
    std::int64_t value = 0;
    EXPECT_EQ(camera_->get_named("I/Value", value), S_OK);
    EXPECT_EQ(value, 1);
    camera_->add_fault(fail_when({}, E_FAIL));
    const answer got = get_path(*camera_, "I/Value");
    EXPECT_EQ(got.data, bytes(8));
    EXPECT_EQ(got.returned, 0U);
}

TEST_F(Faults, StrikeWhereTheFilterSays) {
    camera_->add_fault(fail_when(suffix_calls("/Max"), E_NOTIMPL));
    EXPECT_EQ(get_path(*camera_, "I/Min").result, S_OK);
    EXPECT_EQ(get_path(*camera_, "I/Max").result, E_NOTIMPL);
    camera_->clear_faults();
    EXPECT_EQ(get_path(*camera_, "I/Max").result, S_OK);
}

TEST_F(Faults, KnowTheFiltersOfCalls) {
    const GUID device = wire::device_set;
    (void)get_path(*camera_, "I/Value");
    (void)set_path(*camera_, "I/Value", bytes(8));
    (void)get_register(*camera_, 0x20, 4);
    DWORD support = 0;
    camera_->property_set()->QuerySupported(device, 4, &support);
    LONG value = 0, flags = 0;
    camera_->camera_control()->Get(4, &value, &flags);
    const auto calls = camera_->calls();
    const auto picked = [&](const call_filter& filter) {
        std::vector<std::uint64_t> numbers;
        for (const driver_call& call : calls) {
            if (filter(call)) numbers.push_back(call.number);
        }
        return numbers;
    };
    EXPECT_THAT(picked(calls_of(call_kind::get)), testing::ElementsAre(1, 3));
    EXPECT_THAT(picked(property_calls(device, 4)), testing::ElementsAre(1, 2, 4));
    EXPECT_THAT(picked(property_calls(call_kind::set, device, 4)), testing::ElementsAre(2));
    EXPECT_THAT(picked(path_calls("I/Value")), testing::ElementsAre(1, 2));
    EXPECT_THAT(picked(path_calls("I/Valu")), testing::ElementsAre());
    EXPECT_THAT(picked(suffix_calls("/Value")), testing::ElementsAre(1, 2));
    EXPECT_THAT(picked(register_calls(0x20)), testing::ElementsAre(3));
    EXPECT_THAT(picked(register_calls(0x21)), testing::ElementsAre());
}

TEST_F(Faults, LoseTheCamera) {
    camera_->add_fault(lost_after(1));
    EXPECT_EQ(Read(), S_OK);
    EXPECT_EQ(Read(), static_cast<HRESULT>(0x80070651));
    EXPECT_EQ(Read(), static_cast<HRESULT>(0x80070651));
    DWORD support = 0;
    EXPECT_EQ(camera_->property_set()->QuerySupported(wire::gate_set, 0, &support), camera_lost);
}

TEST_F(Faults, Throw) {
    camera_->add_fault(throw_at(2));
    EXPECT_EQ(Read(), S_OK);
    EXPECT_THROW((void)Read(), std::runtime_error);
    EXPECT_EQ(Read(), S_OK);
    EXPECT_THAT(camera_->transcript()[1], testing::EndsWith(", threw"));
}

TEST_F(Faults, ThrowWhatTheActionThrows) {
    fault bad;
    bad.when = path_calls("I/Value");
    bad.action = [] { throw std::bad_alloc(); };
    camera_->add_fault(bad);
    EXPECT_THROW((void)Read(), std::bad_alloc);
    EXPECT_THROW((void)Read(), std::bad_alloc);
    EXPECT_EQ(get_path(*camera_, "I/Min").result, S_OK);
}

TEST_F(Faults, LieAboutSizes) {
    camera_->add_fault(claim_size(property_calls(wire::device_set, 1), 2));
    const answer got = get_property(*camera_, wire::device_set, 1, bytes_of(std::uint64_t{1}), 4);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 2U);
    EXPECT_EQ(value_of<std::uint32_t>(got.data), camera_->options().descriptions[0].size());
    EXPECT_THAT(camera_->transcript()[0], testing::HasSubstr("(returned 2)"));
}

TEST_F(Faults, AnswerOtherBytes) {
    camera_->add_fault(answer_bytes(path_calls("I/Value"), {9, 9}));
    EXPECT_EQ(value_of<std::int64_t>(get_path(*camera_, "I/Value").data), 0x0909);
    camera_->clear_faults();
    camera_->add_fault(answer_bytes(path_calls("I/Value"), bytes(100, 1)));
    EXPECT_EQ(get_path(*camera_, "I/Value").data, bytes(8, 1));
}

TEST_F(Faults, MayFailAndAnswerAllTheSame) {
    fault odd = answer_bytes({}, {7});
    odd.result = E_FAIL;
    odd.returned = 99;
    camera_->add_fault(odd);
    const answer got = get_path(*camera_, "I/Value");
    EXPECT_EQ(got.result, E_FAIL);
    EXPECT_EQ(got.returned, 99U);
    EXPECT_EQ(got.data[0], 7);
}

TEST_F(Faults, NeedNoBuffer) {
    camera_->add_fault(answer_bytes({}, {7}));
    const answer got = get_register(*camera_, 0, 0);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 0U);
}

TEST_F(Faults, AnswerAnotherSupportWord) {
    fault odd;
    odd.support = 0;
    camera_->add_fault(odd);
    DWORD support = 9;
    EXPECT_EQ(camera_->property_set()->QuerySupported(wire::device_set, 4, &support), S_OK);
    EXPECT_EQ(support, 0U);
}

TEST_F(Faults, StrikeAsOftenAsTheySay) {
    fault twice = fail_when(path_calls("I/Value"), E_FAIL);
    twice.first = 2;
    twice.count = 2;
    camera_->add_fault(twice);
    EXPECT_EQ(Read(), S_OK);
    (void)get_path(*camera_, "I/Min");
    EXPECT_EQ(Read(), E_FAIL);
    EXPECT_EQ(Read(), E_FAIL);
    EXPECT_EQ(Read(), S_OK);
}

TEST_F(Faults, WorkWithoutATranscript) {
    camera_options options = Options();
    options.keep_transcript = false;
    camera_ = make_camera(options);
    camera_->add_fault(fail_when(path_calls("I/Value"), E_FAIL));
    EXPECT_EQ(Read(), E_FAIL);
}

TEST_F(Faults, TheFirstThatStrikesDecides) {
    camera_->add_fault(fail_nth(2, E_FAIL));
    camera_->add_fault(fail_when({}, E_NOTIMPL));
    EXPECT_EQ(Read(), E_NOTIMPL);
    EXPECT_EQ(Read(), E_FAIL);
    EXPECT_EQ(Read(), E_NOTIMPL);
}

}  // namespace
}  // namespace simcam_test
