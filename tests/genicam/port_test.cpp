#include "tests/support/node_test.h"

#include <array>
#include <limits>

namespace node_test {
namespace {

using test_support::ReadOf;
using test_support::WriteOf;

void expect_unbound(IPort& port) {
    EXPECT_FALSE(port.is_bound());
    std::uint8_t byte = 0;
    EXPECT_EQ(port.read(0, &byte, 1, 0), code(invalid_parameter));
    EXPECT_EQ(port.write(0, &byte, 1, 0), code(invalid_parameter));
}

TEST(DevicePort, ForwardsToItsDevice) {
    TestDocument doc("");
    doc.device.Put(0x10, {1, 2, 3, 4});
    std::array<std::uint8_t, 4> bytes{};
    EXPECT_FALSE(doc.Port().read(0x10, bytes.data(), 4, 0x1234));
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3, 4));
    EXPECT_FALSE(doc.Port().write(0xFFFFFFFFFFFFFFFF, bytes.data(), 1, 0));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x10, 4, 0x1234), WriteOf(0xFFFFFFFFFFFFFFFF, {1})));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Port().read(0, bytes.data(), 4, 0), code(device_lost));
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(DevicePort, Unbound) {
    TestDocument doc("<Port Name='other'/>");
    IPort& port = doc.Port("other");
    expect_unbound(port);
    EXPECT_THAT(
        doc.log.Take(),
        ElementsAre("GenICam::port_device_type::read, IPort (\"other\"). Failed due to no bind called.\n",
                    "GenICam::port_device_type::write, IPort (\"other\"). Failed due to no bind called.\n"));
}

TEST(DevicePort, Binding) {
    TestDocument doc("<Port Name='other'/>");
    IPort& port = doc.Port("other");
    EXPECT_FALSE(port.bind(nullptr));
    EXPECT_FALSE(port.is_bound());
    EXPECT_FALSE(port.bind(&doc.device));
    EXPECT_TRUE(port.is_bound());
    test_support::RecordingDevice second;
    EXPECT_EQ(port.bind(&second), code(access_denied));
    EXPECT_EQ(port.bind(nullptr), code(access_denied));
    constexpr const char* message =
        "GenICam::port_device_type::bind, IPort (\"other\"). Failed due it already being bound.\n";
    EXPECT_THAT(doc.log.Take(), ElementsAre(message, message));
    std::uint8_t byte = 0;
    EXPECT_FALSE(port.read(0, &byte, 1, 0));
    EXPECT_EQ(doc.device.TakeAccesses().size(), 1U) << "the first binding stays";
    port.unbind();
    port.unbind();
    EXPECT_FALSE(port.is_bound());
    EXPECT_FALSE(port.bind(&second));
}

TEST(DevicePort, HasNoBlockAndNoChunk) {
    TestDocument doc("");
    std::uint8_t byte = 0;
    EXPECT_EQ(doc.Port().bind(0, &byte, 1), code(not_implemented));
    EXPECT_EQ(doc.Port().get_chunk_id(0).error(), code(not_implemented));
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

class ChunkPort : public testing::Test {
protected:
    TestDocument doc{"<Port Name='chunk'><ChunkID>FF</ChunkID></Port>"};
    IPort& port = doc.Port("chunk");
    std::array<std::uint8_t, 16> block{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
};

TEST_F(ChunkPort, ServesItsBlock) {
    EXPECT_FALSE(port.bind(0x100, block.data(), 16));
    std::array<std::uint8_t, 4> bytes{};
    EXPECT_FALSE(port.read(0x10C, bytes.data(), 4, 0xFFFFFFFF));
    EXPECT_THAT(bytes, ElementsAre(12, 13, 14, 15));
    EXPECT_FALSE(port.write(0x100, bytes.data(), 4, 0));
    EXPECT_EQ(block[0], 12);
    EXPECT_EQ(block[4], 4);
    EXPECT_FALSE(port.read(0x110, bytes.data(), 0, 0)) << "one past the end";
    EXPECT_FALSE(port.read(0x100, nullptr, 0, 0));
}

TEST_F(ChunkPort, RefusesWhatLiesOutside) {
    EXPECT_FALSE(port.bind(0x100, block.data(), 16));
    std::array<std::uint8_t, 32> bytes{};
    const struct {
        std::uint64_t address;
        std::int64_t length;
        std::uint32_t failure;
    } rows[] = {
        {0x10D, 4, index_out_of_range},
        {0x110, 1, index_out_of_range},
        {0x111, 0, invalid_address},
        {0xFF, 1, invalid_address},
        {0x100, 17, index_out_of_range},
        {0x108, highest, index_out_of_range},
        {0xFFFFFFFFFFFFFFFF, 1, invalid_address},
        {0x104, -1, index_out_of_range},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(port.read(row.address, bytes.data(), row.length, 0), code(row.failure)) << row.address;
        EXPECT_EQ(port.write(row.address, bytes.data(), row.length, 0), code(row.failure)) << row.address;
    }
    EXPECT_EQ(block[4], 4);
    static_cast<void>(doc.log.Take());
    EXPECT_TRUE(port.read(0xFF, bytes.data(), 1, 0));
    EXPECT_TRUE(port.write(0xFF, bytes.data(), 1, 0));
    EXPECT_TRUE(port.read(0x10D, bytes.data(), 4, 0));
    EXPECT_TRUE(port.write(0x10D, bytes.data(), 4, 0));
    EXPECT_THAT(
        doc.log.Take(),
        ElementsAre(
            "GenICam::port_chunk_type::read, IPort (\"chunk\"). Failed due to out of range address=255 "
            "parameter.\n",
            "GenICam::port_chunk_type::write, IPort (\"chunk\"). Failed due to out of range "
            "address=255 parameter.\n",
            "GenICam::port_chunk_type::read, IPort (\"chunk\"). Failed due to out of range data_len=4 "
            "parameter.\n",
            "GenICam::port_chunk_type::write, IPort (\"chunk\"). oFailed due to out of range "
            "data_len=4 parameter.\n"));
}

TEST_F(ChunkPort, ABlockOfNegativeLengthHoldsNothing) {
    for (const std::int64_t size : {std::int64_t{-1}, std::int64_t{-16}, lowest}) {
        for (const std::uint64_t base : {std::uint64_t{0}, std::uint64_t{0x100}}) {
            EXPECT_FALSE(port.bind(base, block.data(), size));
            EXPECT_TRUE(port.is_bound());
            for (const std::uint64_t address :
                 {base, base + 1, std::uint64_t{0x7FFFFFFFFFFFFFFF}, std::uint64_t{0x8000000000000010}}) {
                std::uint8_t byte = 77;
                const bool is_inside = address <= base + static_cast<std::uint64_t>(size);
                const std::error_code expected = code(is_inside ? index_out_of_range : invalid_address);
                EXPECT_EQ(port.read(address, &byte, 1, 0), expected) << base << " " << size << " " << address;
                EXPECT_EQ(port.write(address, &byte, 1, 0), expected);
                EXPECT_EQ(byte, 77);
            }
            port.unbind();
        }
    }
    EXPECT_EQ(block[0], 0);
}

TEST_F(ChunkPort, Unbound) {
    expect_unbound(port);
    EXPECT_THAT(
        doc.log.Take(),
        ElementsAre("GenICam::port_chunk_type::read, IPort (\"chunk\"). Failed due to no bind called.\n",
                    "GenICam::port_chunk_type::write, IPort (\"chunk\"). Failed due to no bind called.\n"));
}

TEST_F(ChunkPort, Binding) {
    test_support::ChangeCounter changes(port);
    EXPECT_EQ(port.bind(&doc.device), code(not_implemented));
    EXPECT_FALSE(port.bind(0x100, nullptr, 16));
    EXPECT_FALSE(port.is_bound());
    EXPECT_FALSE(port.bind(0x100, block.data(), 16));
    EXPECT_TRUE(port.is_bound());
    EXPECT_EQ(changes.Count(), 2);
    EXPECT_EQ(port.bind(0x200, block.data(), 8), code(access_denied));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::port_chunk_type::bind, IPort (\"chunk\"). Failed due to it "
                            "already being bound.\n"));
    EXPECT_EQ(changes.Count(), 2);
    std::uint8_t byte = 0;
    EXPECT_FALSE(port.read(0x101, &byte, 1, 0));
    EXPECT_EQ(byte, 1);
    port.unbind();
    port.unbind();
    EXPECT_FALSE(port.is_bound());
    EXPECT_FALSE(port.bind(0x200, block.data(), 8));
    EXPECT_FALSE(port.read(0x200, &byte, 1, 0));
}

TEST(ChunkId, TextsAndLinks) {
    const struct {
        const char* children;
        std::int64_t id;
        bool logged;
    } rows[] = {
        {"<ChunkID>FF</ChunkID>", 0xFF, false},
        {"<ChunkID>0xFF</ChunkID>", 0, false},
        {"<ChunkID>-1</ChunkID>", -1, false},
        {"<ChunkID>1A2B zzz</ChunkID>", 0x1A2B, false},
        {"<pChunkID>i</pChunkID>", 42, false},
        {"<ChunkID>xyz</ChunkID><pChunkID>i</pChunkID>", 42, false},
        {"<ChunkID>1</ChunkID><pChunkID>i</pChunkID>", 1, false},
        {"<ChunkID/>", -1, true},
        {"<pChunkID>gone</pChunkID>", -1, true},
    };
    for (const auto& row : rows) {
        TestDocument doc(std::string("<Port Name='chunk'>") + row.children +
                         "</Port><Integer Name='i'><Value>42</Value></Integer>");
        const result<std::int64_t> id = doc.Port("chunk").get_chunk_id(0);
        if (row.logged) {
            EXPECT_EQ(id.error(), code(not_implemented)) << row.children;
            EXPECT_THAT(doc.load_messages,
                        ElementsAre("GenICam::port_chunk_type::_resolve_references IPort (\"chunk\"). "
                                    "Failed to fetch ChunkID or pChunkID.\n"));
        } else {
            EXPECT_EQ(id.value(), row.id) << row.children;
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
    }
    TestDocument failing("<Port Name='chunk'><pChunkID>s</pChunkID></Port><String Name='s'/>");
    EXPECT_EQ(failing.Port("chunk").get_chunk_id(0).error(), code(not_implemented));
}

}  // namespace
}  // namespace node_test
