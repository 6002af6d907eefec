#include "simcam/register_memory.h"
#include "genicam/core/error.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace simcam_test {
namespace {

using namespace simcam;

constexpr std::uint64_t top = 0xFFFFFFFFFFFFFFFF;

TEST(RegisterMemory, IsZeroUntilWritten) {
    register_memory memory;
    bytes buffer(4, 0xCC);
    EXPECT_FALSE(memory.read(0x1234, buffer.data(), 4, 0));
    EXPECT_EQ(buffer, bytes(4));
}

TEST(RegisterMemory, KeepsWhatCrossesItsPages) {
    register_memory memory;
    bytes contents(1000);
    for (std::size_t at = 0; at < contents.size(); ++at) contents[at] = static_cast<std::uint8_t>(at);
    EXPECT_FALSE(memory.write(0xFFF0, contents.data(), 1000, 0));
    EXPECT_EQ(memory.peek(0xFFF0, 1000), contents);
    EXPECT_EQ(memory.peek(0xFFEF, 2), (bytes{0, 0}));
}

TEST(RegisterMemory, ReachesToTheLastAddressAndNotAround) {
    register_memory memory;
    const bytes data = {1, 2};
    EXPECT_FALSE(memory.write(top - 1, data.data(), 2, 0));
    EXPECT_EQ(memory.peek(top - 1, 2), data);
    EXPECT_EQ(memory.write(top, data.data(), 2, 0), GenICam::invalid_address);
    bytes buffer(2);
    EXPECT_EQ(memory.read(top, buffer.data(), 2, 0), GenICam::invalid_address);
}

TEST(RegisterMemory, TakesNoNegativeLength) {
    register_memory memory;
    std::uint8_t byte = 0;
    EXPECT_EQ(memory.read(0, &byte, -1, 0), GenICam::invalid_parameter);
    EXPECT_EQ(memory.write(0, &byte, -1, 0), GenICam::invalid_parameter);
    EXPECT_FALSE(memory.read(0, &byte, 0, 0));
}

TEST(RegisterMemory, CountsInBothByteOrders) {
    register_memory memory;
    memory.poke_number(0x10, 3, 0x010203);
    EXPECT_EQ(memory.peek(0x10, 3), (bytes{1, 2, 3}));
    EXPECT_EQ(memory.peek_number(0x10, 3), 0x010203U);
    EXPECT_EQ(memory.peek_number(0x10, 3, true), 0x030201U);
    memory.poke_number(0x20, 8, 0x0102030405060708, true);
    EXPECT_EQ(memory.peek(0x20, 8), (bytes{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST(RegisterMemory, ProtectsAreasByTheByte) {
    register_memory memory;
    memory.protect(0x100, 4, area_access::read_only);
    memory.protect(0x200, 4, area_access::write_only);
    bytes data(8, 0x55);
    EXPECT_EQ(memory.write(0x103, data.data(), 1, 0), GenICam::access_denied);
    EXPECT_EQ(memory.write(0xFC, data.data(), 8, 0), GenICam::access_denied);
    EXPECT_FALSE(memory.write(0xFC, data.data(), 4, 0));
    EXPECT_FALSE(memory.write(0x104, data.data(), 4, 0));
    EXPECT_EQ(memory.peek(0x100, 4), bytes(4));
    EXPECT_EQ(memory.read(0x1FD, data.data(), 4, 0), GenICam::access_denied);
    EXPECT_FALSE(memory.write(0x200, data.data(), 4, 0));
    EXPECT_EQ(memory.peek(0x200, 4), bytes(4, 0x55));
    EXPECT_FALSE(memory.read(0x204, data.data(), 4, 0));
}

TEST(RegisterMemory, ProtectsUpToTheTop) {
    register_memory memory;
    memory.protect(top - 3, 4, area_access::read_only);
    const std::uint8_t byte = 1;
    EXPECT_EQ(memory.write(top, &byte, 1, 0), GenICam::access_denied);
    EXPECT_FALSE(memory.write(top - 4, &byte, 1, 0));
    EXPECT_FALSE(memory.write(0, &byte, 1, 0));
}

TEST(RegisterMemory, RunsHooksForAccessesThroughThePortAlone) {
    register_memory memory;
    int reads = 0;
    int writes = 0;
    memory.before_read(0x10, 2, [&](register_memory&) { ++reads; });
    memory.after_write(0x10, 2, [&](register_memory& own) {
        ++writes;
        own.poke_number(0x10, 2, 0);
    });
    std::uint8_t data[2] = {1, 2};
    EXPECT_FALSE(memory.write(0x10, data, 2, 0));
    EXPECT_EQ(memory.peek(0x10, 2), bytes(2));
    EXPECT_FALSE(memory.read(0x11, data, 1, 0));
    EXPECT_FALSE(memory.read(0x12, data, 2, 0));
    EXPECT_FALSE(memory.read(0x11, data, 0, 0));
    memory.poke(0x10, {3});
    (void)memory.peek(0x10, 2);
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(writes, 1);
}

TEST(RegisterMemory, LetsARegisterChangeBeforeItIsRead) {
    register_memory memory;
    memory.before_read(0, 1, [](register_memory& own) { own.poke_number(0, 1, own.peek_number(0, 1) + 1); });
    std::uint8_t byte = 0;
    EXPECT_FALSE(memory.read(0, &byte, 1, 0));
    EXPECT_FALSE(memory.read(0, &byte, 1, 0));
    EXPECT_EQ(byte, 2);
}

TEST(RegisterMemory, ScattersWhatWasNotWritten) {
    register_memory memory;
    memory.poke(0x104, {1, 2});
    memory.scatter(7);
    EXPECT_EQ(memory.peek(0x100, 4), bytes(4)) << "a page that was written keeps its zeros";
    memory.poke(0x204, {1, 2});
    register_memory other;
    other.scatter(7);
    bytes expected = other.peek(0x200, 0x400);
    EXPECT_EQ(memory.peek(0x300, 0x300), other.peek(0x300, 0x300)) << "the number decides, and the address";
    expected[4] = 1;
    expected[5] = 2;
    EXPECT_EQ(memory.peek(0x200, 0x400), expected);
    EXPECT_NE(other.peek(0x300, 0x100), other.peek(0x400, 0x100));
    other.scatter(8);
    EXPECT_NE(memory.peek(0x300, 0x300), other.peek(0x300, 0x300));
    std::set<std::uint8_t> values;
    for (const std::uint8_t byte : memory.peek(0x10000, 0x4000)) values.insert(byte);
    EXPECT_EQ(values.size(), 256U);
}

TEST(RegisterMemory, ScattersTheSameEverywhere) {
    register_memory memory;
    memory.scatter(1);
    EXPECT_EQ(memory.peek(0x1000, 8), (bytes{0x28, 0x49, 0x8E, 0xE3, 0x39, 0xE2, 0xA4, 0x49}));
}

TEST(RegisterMemory, LoadsLines) {
    register_memory memory;
    EXPECT_EQ(memory.load("# nothing\n"
                          "\n"
                          "0x0100: 01 Ff\t7a\r\n"
                          "  20 : \"A#B\" 00 \"C\"  # and a word\n"
                          "0x30:\n"
                          "fffffffffffffff0: 09"),
              0U);
    EXPECT_EQ(memory.peek(0x100, 4), (bytes{0x01, 0xFF, 0x7A, 0}));
    EXPECT_EQ(memory.peek(0x20, 6), (bytes{'A', '#', 'B', 0, 'C', 0}));
    EXPECT_EQ(memory.peek(0xFFFFFFFFFFFFFFF0, 1), (bytes{9}));
}

class BadLine : public testing::TestWithParam<const char*> {};

TEST_P(BadLine, IsNamedByItsNumber) {
    register_memory memory;
    EXPECT_EQ(memory.load(std::string("# a comment\n0x10: 01\n") + GetParam() + "\n0x20: 02\n"), 3U);
    EXPECT_EQ(memory.peek(0x10, 1), (bytes{1}));
    EXPECT_EQ(memory.peek(0x20, 1), (bytes{0}));
}

INSTANTIATE_TEST_SUITE_P(All, BadLine,
                         testing::Values("0x10 01", "xyz: 01", ": 01", "0x10: 1", "0x10: 123", "0x10: 0g",
                                         "0x10: \"open", "0x10: 01,02", "0x11112222333344445: 01", "-1: 01"));

}  // namespace
}  // namespace simcam_test
