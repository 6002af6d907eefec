// Fields of bits: every position in every register, and those that lie outside.

#include "tests/genicam_registers/register_test.h"

#include <limits>
#include <optional>

using namespace register_test;

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

// One bit at a time: bit `at` of the register's value, or nothing beyond it.
struct bits_of_register {
    Bytes bytes;
    bool is_little_endian;

    std::optional<std::size_t> index_of(int at) const {
        const int count = static_cast<int>(bytes.size());
        if (at < 0 || at >= count * 8) return std::nullopt;
        const int byte = is_little_endian ? at / 8 : count - 1 - at / 8;
        return static_cast<std::size_t>(byte);
    }
    bool get(int at) const {
        const auto byte = index_of(at);
        return byte && (bytes[*byte] >> (at % 8) & 1) != 0;
    }
    void set(int at, bool value) {
        const auto byte = index_of(at);
        if (!byte) return;
        const auto mask = static_cast<std::uint8_t>(1U << (at % 8));
        bytes[*byte] = static_cast<std::uint8_t>(value ? bytes[*byte] | mask : bytes[*byte] & ~mask);
    }
};

struct field_model {
    int length, lsb, msb;
    bool is_little_endian, is_signed;

    // The position in the register's value of the field's bit 0, and how many bits it has.
    int low() const { return is_little_endian ? lsb : length * 8 - 1 - lsb; }
    int count() const { return is_little_endian ? msb - lsb + 1 : lsb - msb + 1; }
    bool starts_inside() const { return low() >= 0 && low() < 64; }

    std::int64_t read(const bits_of_register& bits) const {
        if (!starts_inside()) return 0;
        std::uint64_t field = 0;
        for (int at = 0; at < count() && at < 64; ++at) {
            if (bits.get(low() + at)) field |= std::uint64_t{1} << at;
        }
        const int sign_bit = std::abs(msb - lsb);
        if (is_signed && sign_bit < 64 && (field >> sign_bit & 1) != 0)
            field |= ~std::uint64_t{0} << sign_bit;
        return static_cast<std::int64_t>(field);
    }
    void write(bits_of_register& bits, std::int64_t value) const {
        if (!starts_inside()) return;
        for (int at = 0; at < count() && at < 64; ++at) {
            bits.set(low() + at, (static_cast<std::uint64_t>(value) >> at & 1) != 0);
        }
    }
};

std::string name_of(const field_model& field) {
    return std::string("f") + std::to_string(field.length) + "_" + std::to_string(field.lsb) + "_" +
           std::to_string(field.msb) + (field.is_signed ? "s" : "u");
}

std::string element_of(const field_model& field) {
    return element("MaskedIntReg",
                   fixed_span(field.length) + "<LSB>" + std::to_string(field.lsb) + "</LSB><MSB>" +
                       std::to_string(field.msb) + "</MSB>" + (field.is_signed ? "<Sign>Signed</Sign>" : "") +
                       (field.is_little_endian ? little_endian() : ""),
                   name_of(field));
}

void compare(const std::vector<field_model>& fields) {
    std::string text;
    for (const field_model& field : fields) text += element_of(field);
    TestDocument doc(text);
    for (const field_model& field : fields) {
        IInteger& node = doc.Integer(name_of(field));
        const Bytes contents[] = {{0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00},
                                  {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
                                  {0x81, 0x42, 0x24, 0x18, 0xE7, 0x5A, 0xC3, 0x3C}};
        for (const Bytes& bytes : contents) {
            bits_of_register bits{{bytes.begin(), bytes.begin() + field.length}, field.is_little_endian};
            doc.device.Put(0x100, bits.bytes);
            EXPECT_EQ(value_of(node.get_val(0)), field.read(bits)) << node.get_name();
            constexpr std::int64_t value = 0x5A5A5A5A5A5A5A59;
            EXPECT_FALSE(node.set_val(value, 0));
            field.write(bits, value);
            EXPECT_EQ(doc.device.At(0x100, bits.bytes.size()), bits.bytes) << node.get_name();
        }
        doc.device.ForgetAccesses();
    }
}

TEST(BitField, EveryFieldOfEveryRegister) {
    for (const bool is_little_endian : {false, true}) {
        for (int length = 1; length <= 8; ++length) {
            std::vector<field_model> fields;
            const int step = length < 3 ? 1 : 5;
            for (int lsb = 0; lsb < length * 8 + 3; lsb += step) {
                for (int msb = 0; msb < length * 8 + 3; msb += step) {
                    fields.push_back({length, lsb, msb, is_little_endian, (lsb + msb) % 2 != 0});
                }
            }
            compare(fields);
        }
    }
}

TEST(BitField, FieldsOfAllBits) {
    for (const bool is_signed : {false, true}) {
        compare({{8, 0, 63, true, is_signed}});
        compare({{8, 63, 0, false, is_signed}});
    }
}

TEST(BitField, FieldsFarOutside) {
    for (const bool is_signed : {false, true}) {
        for (const bool is_little_endian : {false, true}) {
            for (const int distant : {63, 64, 65, 127, 128, 1000, 2147483646}) {
                compare({{4, 0, distant, is_little_endian, is_signed},
                         {4, distant, 0, is_little_endian, is_signed},
                         {4, distant, distant, is_little_endian, is_signed},
                         {8, 60, distant, is_little_endian, is_signed},
                         {8, distant, 60, is_little_endian, is_signed}});
            }
        }
    }
}

TEST(BitField, NumbersBeyond32BitsStayOutside) {
    for (const char* number : {"0x100000000", "0xFFFFFFFF", "0x7FFFFFFFFFFFFFFF"}) {
        TestDocument doc(
            element("MaskedIntReg", fixed_span(4) + "<Bit>" + number + "</Bit>") +
            element("MaskedIntReg", fixed_span(4) + little_endian() + "<Bit>" + number + "</Bit>", "l"));
        doc.device.Put(0x100, {0xFF, 0xFF, 0xFF, 0xFF});
        for (const char* name : {"r", "l"}) {
            EXPECT_EQ(value_of(doc.Integer(name).get_val(0)), 0) << number;
            EXPECT_FALSE(doc.Integer(name).set_val(0, 0));
            EXPECT_EQ(doc.device.At(0x100, 4), Bytes(4, 0xFF)) << number;
        }
    }
}

TEST(BitField, ParsesItsElements) {
    const struct {
        const char* children;
        std::int64_t lsb, msb;
    } rows[] = {
        {"<Bit>3</Bit>", 3, 3},
        {"<Bit>0x3</Bit>", 3, 3},
        {"<Bit>3</Bit><LSB>7</LSB><MSB>7</MSB>", 3, 3},
        {"<Bit>-3</Bit><LSB>7</LSB><MSB>6</MSB>", 7, 6},
        {"<Bit>-1</Bit><LSB>7</LSB><MSB>6</MSB>", 7, 6},
        {"<Bit>x</Bit><LSB>7</LSB><MSB>6</MSB>", 7, 6},
        {"<Bit/><LSB>7</LSB><MSB>6</MSB>", 7, 6},
        {"<LSB>7</LSB><MSB>6</MSB>", 7, 6},
        {"<LSB>7</LSB>", 0, 0},
        {"<MSB>6</MSB>", 0, 0},
        {"<LSB>7</LSB><MSB>-6</MSB>", 0, 0},
        {"<LSB>-7</LSB><MSB>6</MSB>", 0, 0},
        {"<LSB>-1</LSB><MSB>6</MSB>", 0, 0},
        {"<LSB>7</LSB><MSB>-1</MSB>", 0, 0},
        {"<LSB>7</LSB><MSB>x</MSB>", 0, 0},
        {"", 0, 0},
        {"<Bit>x</Bit>", 0, 0},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("MaskedIntReg", fixed_span(1) + row.children) + "<StructReg>" +
                         fixed_span(1) + "<StructEntry Name='e'>" + row.children +
                         "</StructEntry></StructReg>");
        EXPECT_THAT(doc.load_messages, IsEmpty());
        for (int at = 0; at < 8; ++at) {
            doc.device.Put(0x100, {static_cast<std::uint8_t>(0x80 >> at)});
            const std::int64_t expected =
                at < row.msb || at > row.lsb ? 0 : std::int64_t{1} << (row.lsb - at);
            EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), expected) << row.children << at;
            EXPECT_EQ(value_of(doc.Integer("e").get_val(0)), expected) << row.children << at;
        }
    }
}

TEST(BitField, RangeFollowsFromTheDistanceOfItsEnds) {
    const struct {
        const char* lsb;
        const char* msb;
        std::int64_t signed_min, signed_max, unsigned_max;
    } rows[] = {
        {"3", "0", -8, 7, 15},
        {"0", "3", -8, 7, 15},
        {"5", "5", -1, 0, 1},
        {"31", "0", -0x80000000LL, 0x7FFFFFFF, 0xFFFFFFFF},
        {"62", "0", lowest / 2, highest / 2, highest},
        {"63", "0", lowest, highest, highest},
        {"0", "63", lowest, highest, highest},
        {"64", "0", lowest, highest, highest},
        {"4294967295", "0", lowest, highest, highest},
    };
    for (const auto& row : rows) {
        const std::string bits = std::string("<LSB>") + row.lsb + "</LSB><MSB>" + row.msb + "</MSB>";
        TestDocument doc(element("MaskedIntReg", fixed_span(1) + bits + "<Sign>Signed</Sign>", "s") +
                         element("MaskedIntReg", fixed_span(1) + bits, "u") + "<StructReg>" + fixed_span(99) +
                         "<StructEntry Name='e'>" + bits + "</StructEntry></StructReg>");
        EXPECT_EQ(value_of(doc.Integer("s").get_min(0)), row.signed_min) << bits;
        EXPECT_EQ(value_of(doc.Integer("s").get_max(0)), row.signed_max) << bits;
        for (const char* name : {"u", "e"}) {
            EXPECT_EQ(value_of(doc.Integer(name).get_min(0)), 0) << bits;
            EXPECT_EQ(value_of(doc.Integer(name).get_max(0)), row.unsigned_max) << bits;
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

}  // namespace
