// Registers from the command line, and back into files.

#include "apps/inspect/memory_options.h"

#include "inspection/description.h"
#include "inspection/inspect_error.h"
#include "tests/inspect/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace selvane_inspect;
using simcam::bytes;
using simcam::register_memory;
using testing::HasSubstr;

class MemoryOptionsTest : public inspect_test::InspectTest {
protected:
    static void ExpectRefused(const memory_options& options, const std::string& words) {
        register_memory memory;
        try {
            fill_memory(options, memory);
            ADD_FAILURE() << "taken";
        } catch (const inspect_error& failure) {
            EXPECT_EQ(failure.code(), 2);
            EXPECT_THAT(failure.what(), HasSubstr(words));
        }
    }
};

memory_options Images(std::vector<std::string> images) { return {std::move(images), {}, false}; }
memory_options Registers(std::vector<std::string> registers) { return {{}, std::move(registers), false}; }

TEST_F(MemoryOptionsTest, ReadsAddresses) {
    EXPECT_EQ(parse_address("16"), 16U);
    EXPECT_EQ(parse_address("0x10"), 16U);
    EXPECT_EQ(parse_address("0XfF"), 255U);
    EXPECT_EQ(parse_address("0xFFFFFFFFFFFFFFFF"), UINT64_MAX);
    for (const char* wrong : {"", "0x", "x", "1g", "-1", " 1", "0x10000000000000000"}) {
        EXPECT_EQ(parse_address(wrong), std::nullopt) << wrong;
    }
}

TEST_F(MemoryOptionsTest, ReadsBytes) {
    EXPECT_EQ(parse_bytes("00ff"), (bytes{0, 0xFF}));
    EXPECT_EQ(parse_bytes("00 FF 1"), std::nullopt);
    EXPECT_EQ(parse_bytes("0 0"), (bytes{0}));
    EXPECT_EQ(parse_bytes(""), std::nullopt);
    EXPECT_EQ(parse_bytes("0g"), std::nullopt);
    EXPECT_EQ(parse_bytes("0x00"), std::nullopt);
}

TEST_F(MemoryOptionsTest, PutsImagesAndRegistersInPlace) {
    const std::string image = Write("image.bin", std::string("\x01\x02\x03", 3));
    const std::string lines = Write("lines.memory", "0x200: \"ab\" 00 # text\n");
    register_memory memory;
    fill_memory({{image + "@0x100", lines}, {"0x101=AA", "512=63"}, false}, memory);
    EXPECT_EQ(memory.peek(0x100, 4), (bytes{1, 0xAA, 3, 0}));
    EXPECT_EQ(memory.peek(0x200, 3), (bytes{'c', 'b', 0}));
}

TEST_F(MemoryOptionsTest, RefusesWhatItCannotRead) {
    const std::string bad = Write("bad.memory", "0x0: 00\nnonsense\n");
    ExpectRefused(Images({bad}), "bad.memory:2: ");
    ExpectRefused(Images({bad + "@here"}), "no address");
    ExpectRefused(Images({PathOf("absent")}), "cannot read");
    ExpectRefused(Registers({"0x100"}), "ADDRESS=BYTES");
    ExpectRefused(Registers({"=00"}), "ADDRESS=BYTES");
    ExpectRefused(Registers({"0x100=0"}), "ADDRESS=BYTES");
}

TEST_F(MemoryOptionsTest, SavesLinesThatItReadsAgain) {
    register_memory memory;
    memory.poke(0x10, bytes{1, 2});
    memory.poke(0x1000, bytes{0, 0});
    memory.poke(0xFFFFFFFFFFFFFFFE, bytes{7, 8});
    const std::string file = PathOf("saved");
    save_memory(file, {}, memory);
    EXPECT_EQ(read_file(file),
              "0x0010: 01 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n"
              "0xFFFFFFFFFFFFFFF0: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 07 08\n");
    register_memory again;
    fill_memory(Images({file}), again);
    EXPECT_EQ(again.peek(0x10, 2), (bytes{1, 2}));
    EXPECT_EQ(again.peek(0xFFFFFFFFFFFFFFFE, 2), (bytes{7, 8}));
}

TEST_F(MemoryOptionsTest, SavesAnImageOfTheSizeThatWasRead) {
    const std::string image = Write("image.bin", std::string(8, '\0'));
    const memory_options options = Images({image + "@0x100"});
    register_memory memory;
    fill_memory(options, memory);
    memory.poke(0x101, bytes{9});
    const std::string file = PathOf("saved.bin");
    save_memory(file + "@0x100", options, memory);
    EXPECT_EQ(read_file(file), std::string("\0\x09\0\0\0\0\0\0", 8));
    save_memory(file + "@0x101", options, memory);
    EXPECT_EQ(read_file(file), "\x09");
    memory.poke(0x10A, bytes{7});
    save_memory(file + "@0x100", options, memory);
    EXPECT_EQ(read_file(file).size(), 11U);
}

TEST_F(MemoryOptionsTest, DoesNotSaveImagesWithoutEnd) {
    register_memory memory;
    memory.poke(0x100000000, bytes{1});
    EXPECT_THROW(save_memory(PathOf("huge") + "@0", {}, memory), inspect_error);
    EXPECT_THROW(save_memory(PathOf(""), {}, memory), inspect_error);
}

}  // namespace
