// Every feature of the descriptions of real cameras is read, over a memory of zeros and over memories of
// noise.

#include "data_paths.h"
#include "tests/genicam_registers/feature_reader.h"
#include "tests/genicam_registers/register_test.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>

using namespace register_test;

namespace {

struct real_description {
    const char* file;
    /// The features that divide by a register's value, directly or through others, and so end the process
    /// over zeros.
    std::vector<std::string> dividing;
};

void PrintTo(const real_description& description, std::ostream* out) { *out << description.file; }

const std::vector<std::string> sensor_areas = {
    "AE_HeightMax_Int", "AE_WidthMax_Int", "AutoFunctionAOIHeight", "AutoFunctionAOIWidth", "Height",
    "HeightMax_Int",    "Width",           "WidthMax_Int"};

const real_description descriptions[] = {
    {"real/adimec-q12a180cxp", {"AcquisitionFrameRate", "AcquisitionFrameRate_Converter"}},
    {"real/alliedvision-gt1930", {"AcquisitionFrameRateAbs", "AcquisitionFrameRateLimit"}},
    {"real/basler-a2a2600_20gmbas", {}},
    {"real/euresys-coaxlink_tlinterface", {"LineSource", "node_206"}},
    {"real/flir-bfs_u3_161s7m", {}},
    {"real/flir-sc6700", {}},
    {"real/hamamatsu-c16240_20up", {}},
    {"real/pointgrey-blackfly_50s5c-leading-line", sensor_areas},
    {"real/pointgrey-gs3_u3_51s5c", sensor_areas},
    {"real/vieworks-vnp604", {}},
    {"marked/basler-a2a2600-marked", {}},
    {"marked/flir-bfs_u3-marked", {}},
};

std::string text_of(const real_description& description) {
    std::ifstream file(std::string(SELVANE_SHARED_DESCRIPTIONS) + "/" + description.file + ".xml",
                       std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A camera over a patterned memory.
class patterned_camera {
public:
    patterned_camera(const std::string& text, std::uint64_t seed)
        : device_(seed), block_(256), doc_(load_genicam_doc(text.data(), text.size(), {true, true})) {
        bind_ports(*doc_, device_, block_);
    }

    [[nodiscard]] INode* find(const std::string& name) { return doc_->find_node(name); }

    /// Reads all features but those named, and gives what the device was asked.
    [[nodiscard]] std::vector<patterned_device::access> read_all(const std::vector<std::string>& but) {
        device_.accesses.clear();
        doc_->for_each_node([&but](INode* node) {
            if (std::find(but.begin(), but.end(), node->get_name()) != but.end()) return;
            for (const std::uint32_t flags : {0U, access_flags::skip_access_check})
                read_feature(*node, flags);
        });
        return std::move(device_.accesses);
    }
    [[nodiscard]] int writes() const { return device_.writes; }

private:
    patterned_device device_;
    std::vector<unsigned char> block_;
    std::unique_ptr<IGenICamDoc> doc_;
};

constexpr std::uint64_t zeros = 0;
constexpr std::uint64_t seeds[] = {zeros, 1, 2, 3, 4, 5};

class RealRegisters : public testing::TestWithParam<real_description> {};

TEST_P(RealRegisters, EveryFeatureIsReadWithTheSameTrafficAgain) {
    const std::string text = text_of(GetParam());
    if (text.empty()) GTEST_SKIP() << "the real descriptions are not on this machine";
    for (const std::uint64_t seed : seeds) {
        const std::vector<std::string> but = seed == zeros ? GetParam().dividing : std::vector<std::string>();
        patterned_camera camera(text, seed);
        const auto first = camera.read_all(but);
        EXPECT_FALSE(first.empty());
        // The first reading fills the caches; from then on nothing may change.
        const auto second = camera.read_all(but);
        EXPECT_LE(second.size(), first.size());
        EXPECT_EQ(camera.read_all(but), second) << "seed " << seed;
        EXPECT_EQ(patterned_camera(text, seed).read_all(but), first) << "seed " << seed;
        EXPECT_EQ(camera.writes(), 0);
    }
}

constexpr int survived = 37;
constexpr int faulted = 39;

void read_and_exit(const std::string& text, const std::string& name) {
    std::signal(SIGFPE, [](int) { std::_Exit(faulted); });
    patterned_camera camera(text, zeros);
    INode* node = camera.find(name);
    if (node != nullptr) read_feature(*node, access_flags::skip_access_check);
    std::_Exit(survived);
}

class RealRegistersDeathTest : public RealRegisters {};

TEST_P(RealRegistersDeathTest, ADivisionByARegisterOfZeroEndsTheProcess) {
    const std::string text = text_of(GetParam());
    if (text.empty()) GTEST_SKIP() << "the real descriptions are not on this machine";
    for (const std::string& name : GetParam().dividing) {
        EXPECT_EXIT(read_and_exit(text, name), testing::ExitedWithCode(faulted), "") << name;
    }
    EXPECT_EXIT(read_and_exit(text, "Root"), testing::ExitedWithCode(survived), "");
}

INSTANTIATE_TEST_SUITE_P(All, RealRegisters, testing::ValuesIn(descriptions));
INSTANTIATE_TEST_SUITE_P(All, RealRegistersDeathTest, testing::ValuesIn(descriptions));

}  // namespace
