// The memory that the inspector takes for a description that is four times as large is not that of the
// square.

#include "apps/inspect/run.h"
#include "tests/adapter/allocation_watch.h"
#include "tests/support/worst_shapes.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace faults_test {
namespace {

class AllocationGrowth : public testing::Test {
protected:
    ~AllocationGrowth() override { std::filesystem::remove(file_); }

    [[nodiscard]] std::uint64_t BytesOf(const std::vector<std::string>& words,
                                        const std::string& text) const {
        std::ofstream(file_, std::ios::binary) << text;
        std::vector<std::string> arguments = words;
        arguments.push_back(file_);
        std::ostringstream out;
        std::ostringstream err;
        const std::uint64_t before = adapter_test::AllocatedBytes();
        static_cast<void>(selvane_inspect::run(arguments, out, err));
        return adapter_test::AllocatedBytes() - before;
    }

private:
    std::string file_ =
        (std::filesystem::temp_directory_path() / ("selvane_" + std::to_string(std::random_device()())))
            .string();
};

TEST_F(AllocationGrowth, IsThatOfTheDescription) {
#ifdef SELVANE_SANITIZED
    constexpr std::size_t few = 80;
#else
    constexpr std::size_t few = 250;
#endif
    constexpr std::uint64_t most = 6;
    const std::vector<std::string> works[] = {{"lint"}, {"pages"}, {"list", "--all"}};
    for (const test_support::worst_shape& shape : test_support::worst_shapes()) {
        for (const std::vector<std::string>& words : works) {
            const std::uint64_t for_few = BytesOf(words, shape.make(few));
            const std::uint64_t for_many = BytesOf(words, shape.make(4 * few));
            EXPECT_GT(for_many, for_few) << shape.name << ", " << words[0];
            EXPECT_LE(for_many, most * for_few) << shape.name << ", " << words[0];
        }
    }
}

}  // namespace
}  // namespace faults_test
