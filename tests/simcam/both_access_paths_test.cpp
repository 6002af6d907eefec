#include "genicam/inode.h"
#include "tests/simcam/element_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace simcam_test {
namespace {

using namespace simcam;
using namespace ZELAdapterHelper;

camera_options one_access_path(bool named) { return over_one_access_path(*ready_made("described"), named); }

// What the two access paths show differently, element by element.
std::vector<std::string> differences(const std::vector<element>& named,
                                     const std::vector<element>& registers) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < named.size(); ++at) {
        const std::string by_name = view_of(named[at]);
        const std::string by_register = view_of(registers[at]);
        if (by_name != by_register) lines.push_back(by_name + "\n  but " + by_register);
    }
    return lines;
}

class BothAccessPaths : public testing::Test {
protected:
    // Does the same to an element on both access paths; what comes of it must be the same.
    void Do(std::size_t at, const std::function<HRESULT(const element&)>& act) {
        EXPECT_EQ(act(by_name_[at]), act(by_register_[at])) << by_name_[at].name;
        EXPECT_THAT(differences(by_name_, by_register_), testing::IsEmpty()) << "after " << by_name_[at].name;
    }

    camera_on_pages named_{one_access_path(true)};
    camera_on_pages registers_{one_access_path(false)};
    std::vector<element> by_name_ = elements_of(named_);
    std::vector<element> by_register_ = elements_of(registers_);
};

TEST_F(BothAccessPaths, ShowTheSame) {
    ASSERT_EQ(by_name_.size(), 37U);
    ASSERT_EQ(by_register_.size(), by_name_.size());
    EXPECT_THAT(differences(by_name_, by_register_), testing::IsEmpty());
    const auto lines = view_of(by_name_);
    for (const std::string& line : lines) {
        EXPECT_THAT(line, testing::Not(testing::HasSubstr("8000")))
            << "no operation of a marked feature fails";
    }
    EXPECT_THAT(lines, testing::Contains(testing::StartsWith("ExposureTime available 0 1")));
    EXPECT_THAT(lines, testing::Contains(testing::StartsWith("WdrRatio available 0 0")));
}

TEST_F(BothAccessPaths, UseTheirOwnPropertyAlone) {
    named_.camera->clear_transcript();
    registers_.camera->clear_transcript();
    EXPECT_THAT(differences(by_name_, by_register_), testing::IsEmpty());
    EXPECT_THAT(named_.camera->transcript(), testing::Each(testing::StartsWith("Get device 4 ")));
    EXPECT_THAT(registers_.camera->transcript(), testing::Each(testing::StartsWith("Get device 3 0x")));
}

TEST_F(BothAccessPaths, ChangeTheSame) {
    for (std::size_t at = 0; at < by_name_.size(); ++at) {
        switch (by_name_[at].type) {
            case InterfaceType::Switch:
                for (const bool on : {true, false, true}) {
                    Do(at, [on](const element& one) { return one.item->SetSwitch(one.key, on); });
                }
                break;
            case InterfaceType::Button:
                Do(at, [](const element& one) { return one.item->Push(one.key); });
                break;
            case InterfaceType::MapStrings:
            case InterfaceType::Range:
                for (const std::int32_t value : {2, 0, 1, 16, 17, 300, -1, 5000}) {
                    Do(at, [value](const element& one) { return one.item->SetValue(one.key, value); });
                }
                break;
            case InterfaceType::AbsoluteValue:
                for (const double value : {0.5, 1.5, 2.0, 33.3, -1.0, 1e6}) {
                    Do(at, [value](const element& one) { return one.item->SetAbsValue(one.key, value); });
                }
                break;
        }
    }
}

template <class Answer>
std::string told(HRESULT hr, const Answer& value) {
    return FAILED(hr) ? std::to_string(hr) : testing::PrintToString(value);
}
template <class Value>
std::string told(const GenICam::result<Value>& answer) {
    return answer ? told(S_OK, answer.value()) : told(GenICam::to_hresult(answer.error()), 0);
}

// The value of any node as the page's own document gives it over registers; empty for kinds without one.
std::string value_over_registers(GenICam::INode& node) {
    using namespace GenICam;
    switch (node.get_node_type()) {
        case node_type::integer:
            return told(static_cast<IInteger&>(node).get_val(0));
        case node_type::floating:
            return told(static_cast<IFloat&>(node).get_val(0));
        case node_type::boolean: {
            const result<bool> on = static_cast<IBoolean&>(node).get_val(0);
            return on ? told(S_OK, std::int64_t{on.value()}) : told(to_hresult(on.error()), 0);
        }
        case node_type::string: {
            const result<std::string> text = static_cast<IString&>(node).get_val(0);
            return text ? told(S_OK, std::string(text.value().c_str())) : told(to_hresult(text.error()), 0);
        }
        case node_type::enumeration: {
            const result<IEnumEntry*> entry = static_cast<IEnumeration&>(node).get_selected_entry(0);
            return entry ? told(S_OK, std::string(entry.value()->get_name()))
                         : told(to_hresult(entry.error()), 0);
        }
        default:
            return {};
    }
}

std::string value_by_name(simulated_camera& camera, const std::string& name, GenICam::node_type type) {
    std::int64_t integer = 0;
    double real = 0;
    std::string text;
    switch (type) {
        case GenICam::node_type::floating:
            return told(camera.get_named(name + "/Value", real), real);
        case GenICam::node_type::string:
            return told(camera.get_named(name + "/Value", text), text);
        case GenICam::node_type::enumeration:
            return told(camera.get_named(name + "/SelectedEntry", text), text);
        default:
            return told(camera.get_named(name + "/Value", integer), integer);
    }
}

// Also what stands on no page: texts, chunks, commands' registers, and registers that change when they are
// read.
TEST_F(BothAccessPaths, TellTheSameOfEveryFeature) {
    std::vector<std::string> refused;
    std::size_t compared = 0;
    registers_.adapter->get_documents().front()->for_each_node([&](GenICam::INode* node) {
        const std::string name(node->get_name());
        const std::string by_register = value_over_registers(*node);
        if (by_register.empty()) return;
        EXPECT_EQ(value_by_name(*named_.camera, name, node->get_node_type()), by_register) << name;
        ++compared;
        if (by_register.rfind("-2", 0) == 0) refused.push_back(name);
    });
    EXPECT_EQ(compared, 146U);
    EXPECT_THAT(refused, testing::UnorderedElementsAre("DeviceResetReg", "TriggerSoftwareReg", "FanSpeed",
                                                       "Teleconverter", "ChunkFrameID", "ChunkExposureTime"));
}

TEST_F(BothAccessPaths, CloseWhenTheCameraLocksItself) {
    named_.camera->memory().poke(0x100, {0x0E});
    registers_.camera->memory().poke(0x100, {0x0E});
    EXPECT_THAT(differences(by_name_, by_register_), testing::IsEmpty());
    EXPECT_THAT(view_of(by_name_), testing::Each(testing::HasSubstr(" available 0 0")));
}

TEST_F(BothAccessPaths, LeaveTheSameContentsBehind) {
    for (const auto* access_path : {&by_name_, &by_register_}) {
        for (const element& one : *access_path) {
            if (one.type == InterfaceType::Range) (void)one.item->SetValue(one.key, 6);
            if (one.type == InterfaceType::AbsoluteValue) (void)one.item->SetAbsValue(one.key, 1.75);
            if (one.type == InterfaceType::Switch) (void)one.item->SetSwitch(one.key, true);
            if (one.type == InterfaceType::MapStrings) (void)one.item->SetValue(one.key, 1);
        }
    }
    EXPECT_EQ(named_.camera->memory().peek(0x1000, 0x1400), registers_.camera->memory().peek(0x1000, 0x1400));
}

TEST_F(BothAccessPaths, LoseTheCameraAlike) {
    named_.camera->add_fault(lost_after(0));
    registers_.camera->add_fault(lost_after(0));
    for (std::size_t at = 0; at < by_name_.size(); ++at) {
        if (by_name_[at].type != InterfaceType::Switch) continue;
        bool on = false;
        EXPECT_EQ(by_name_[at].item->GetSwitch(by_name_[at].key, on), camera_lost);
        EXPECT_EQ(by_register_[at].item->GetSwitch(by_register_[at].key, on), camera_lost);
    }
}

}  // namespace
}  // namespace simcam_test
