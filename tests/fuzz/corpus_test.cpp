// What the fuzzers found worth keeping, each input once, and what each of our descriptions makes of every
// target that takes one.

#include "fuzz/fuzz_targets.h"

#include "data_paths.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fuzz {
namespace {

std::string file_contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The files of a tar archive: each has a block with its size in octal digits before it, and fills its last
// block.
std::vector<std::string> files_of(const std::string& archive) {
    constexpr std::size_t block = 512;
    constexpr std::size_t size_at = 124;
    constexpr std::size_t kind_at = 156;
    std::vector<std::string> files;
    for (std::size_t at = 0; at + block <= archive.size() && archive[at] != '\0';) {
        const std::size_t size = std::strtoull(archive.substr(at + size_at, 12).c_str(), nullptr, 8);
        if (archive[at + kind_at] == '0') files.push_back(archive.substr(at + block, size));
        at += block + (size + block - 1) / block * block;
    }
    return files;
}

class Corpus : public testing::TestWithParam<target> {};

TEST_P(Corpus, EveryInputIsSurvived) {
    const std::string archive =
        file_contents(std::string(SELVANE_SOURCE_DIR) + "/fuzz/corpus/" + GetParam().name + ".tar");
    const std::vector<std::string> inputs = files_of(archive);
    EXPECT_GT(inputs.size(), 10U);
    for (const std::string& input : inputs) GetParam().run(input);
    GetParam().run({});
}

TEST_P(Corpus, OurDescriptionsAreSurvived) {
    for (const char* name : {"first_page", "identity", "value_nodes"}) {
        const std::string text =
            file_contents(std::string(SELVANE_SOURCE_DIR) + "/descriptions/" + name + ".xml");
        ASSERT_FALSE(text.empty());
        GetParam().run(text);
        GetParam().run("lint FILE\n" + text);
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Corpus, testing::ValuesIn(all_targets().begin(), all_targets().end()),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace fuzz
