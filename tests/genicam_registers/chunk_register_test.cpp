// Registers over a chunk port: a block of every size, and every address in and beside it.

#include "tests/genicam_registers/register_test.h"

#include <algorithm>
#include <limits>

using namespace register_test;

namespace {

constexpr std::uint64_t base = 0x100;

// What a port over a block of that size says to `length` bytes at `address`.
std::error_code expected(std::uint64_t address, std::int64_t length, std::int64_t size) {
    if (address < base || address > base + static_cast<std::uint64_t>(size)) return code(invalid_address);
    const auto offset = static_cast<std::int64_t>(address - base);
    return offset + length > size ? code(index_out_of_range) : std::error_code();
}

std::string registers_at(const std::string& address) {
    std::string text = "<Port Name='Chunk'><ChunkID>1</ChunkID></Port>";
    for (int length = 1; length <= 8; ++length) {
        text += element("IntReg",
                        address + register_test::length(std::to_string(length)) + "<pPort>Chunk</pPort>",
                        "i" + std::to_string(length));
    }
    text += element("FloatReg", address + length("4") + "<pPort>Chunk</pPort>", "f");
    text += element("MaskedIntReg", address + length("4") + "<pPort>Chunk</pPort><Bit>0</Bit>", "m");
    text += element("Register", address + length("16") + "<pPort>Chunk</pPort>", "b");
    text += element("StringReg", address + length("16") + "<pPort>Chunk</pPort>", "s");
    text += "<StructReg>" + address + length("4") +
            "<pPort>Chunk</pPort><StructEntry Name='e'><Bit>0</Bit></StructEntry></StructReg>";
    return text + number("at", "0");
}

TEST(ChunkRegister, EverySizeAndAddress) {
    TestDocument doc(registers_at("<pAddress>at</pAddress>"));
    IPort& port = doc.Port("Chunk");
    for (std::int64_t size = 1; size <= 20; ++size) {
        // On the heap and of exact size, where a sanitizer sees a byte too many.
        Bytes block(static_cast<std::size_t>(size), 0xA5);
        EXPECT_FALSE(port.bind(base, block.data(), size));
        for (std::uint64_t at = base - 9; at <= base + 30; ++at) {
            EXPECT_FALSE(doc.Integer("at").set_val(static_cast<std::int64_t>(at), 0));
            for (int length = 1; length <= 8; ++length) {
                IInteger& node = doc.Integer("i" + std::to_string(length));
                EXPECT_EQ(failure_of(node.get_val(0)), expected(at, length, size)) << at << " " << length;
                EXPECT_EQ(node.set_val(-1, 0), expected(at, length, size));
            }
            EXPECT_EQ(failure_of(doc.Float("f").get_val(0)), expected(at, 4, size));
            EXPECT_EQ(doc.Float("f").set_val(1, 0), expected(at, 4, size));
            EXPECT_EQ(doc.Integer("m").set_val(1, 0), expected(at, 4, size));
            EXPECT_EQ(doc.Integer("e").set_val(1, 0), expected(at, 4, size));
            EXPECT_EQ(failure_of(doc.String("s").get_val(0x200)), expected(at, 16, size));
            EXPECT_EQ(doc.String("s").set_val("0123456789", 0), expected(at, 10, size));
            Bytes bytes(16);
            EXPECT_EQ(doc.Register("b").read(bytes.data(), 16, 0), expected(at, 16, size));
            EXPECT_EQ(doc.Register("b").write(bytes.data(), 3, 0), expected(at, 3, size));
        }
        port.unbind();
    }
    static_cast<void>(doc.log.Take());
}

TEST(ChunkRegister, ValuesComeFromTheBlock) {
    TestDocument doc(registers_at(address("0x104")));
    Bytes block(16);
    block[4] = 0x12;
    block[5] = 0x34;
    EXPECT_FALSE(doc.Port("Chunk").bind(base, block.data(), 16));
    EXPECT_EQ(value_of(doc.Integer("i2").get_val(0)), 0x1234);
    EXPECT_FALSE(doc.Integer("i2").set_val(0x5678, 0));
    EXPECT_EQ(block[4], 0x56);
    EXPECT_EQ(block[5], 0x78);
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

TEST(ChunkRegister, BlockOfNoBytes) {
    TestDocument doc(registers_at(address("0x100")));
    unsigned char nothing = 0;
    EXPECT_FALSE(doc.Port("Chunk").bind(base, &nothing, 0));
    EXPECT_EQ(failure_of(doc.Integer("i1").get_val(0)), code(index_out_of_range));
    EXPECT_FALSE(doc.String("s").set_val("", 0)) << "nothing fits into nothing";
    doc.Port("Chunk").unbind();
    EXPECT_FALSE(doc.Port("Chunk").bind(base, nullptr, 16));
    EXPECT_EQ(failure_of(doc.Integer("i1").get_val(0)), code(invalid_parameter)) << "still unbound";
}

TEST(ChunkRegister, AddressesThatWrap) {
    TestDocument doc(registers_at("<Address>-4</Address><pAddress>at</pAddress>"));
    Bytes block(8);
    EXPECT_FALSE(doc.Port("Chunk").bind(0xFFFFFFFFFFFFFFFC, block.data(), 3));
    EXPECT_EQ(failure_of(doc.Integer("i3").get_val(0)), std::error_code());
    EXPECT_EQ(failure_of(doc.Integer("i4").get_val(0)), code(index_out_of_range));
    EXPECT_FALSE(doc.Integer("at").set_val(8, 0));
    EXPECT_EQ(failure_of(doc.Integer("i1").get_val(0)), code(invalid_address)) << "wrapped to 4";
    for (const std::int64_t at :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_FALSE(doc.Integer("at").set_val(at, 0));
        EXPECT_EQ(failure_of(doc.Integer("i1").get_val(0)), code(invalid_address));
    }
    static_cast<void>(doc.log.Take());
}

TEST(ChunkRegister, ACacheKeepsTheOldChunk) {
    TestDocument doc(
        "<Port Name='Chunk'><ChunkID>1</ChunkID></Port>" +
        element("IntReg", fixed_span(1) + "<pPort>Chunk</pPort><Cachable>WriteThrough</Cachable>"));
    Bytes first{1};
    Bytes second{2};
    EXPECT_FALSE(doc.Port("Chunk").bind(base, first.data(), 1));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    doc.Port("Chunk").unbind();
    EXPECT_FALSE(doc.Port("Chunk").bind(base, second.data(), 1));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0x200)), 2);
}

}  // namespace
