// `MaskedIntReg`: a field of bits in a register of fixed length.

#include "tests/genicam_registers/register_test.h"

using namespace register_test;

namespace {

std::string bits(int lsb, int msb) {
    return "<LSB>" + std::to_string(lsb) + "</LSB><MSB>" + std::to_string(msb) + "</MSB>";
}

// Both classes over the same bytes: "r" at a fixed address and "dyn" at one that is computed.
std::string both(const std::string& children) {
    return element("MaskedIntReg", address("0x100") + children) +
           element("MaskedIntReg", address("0xF0") + "<pAddress>rest</pAddress>" + children, "dyn") +
           number("rest", "0x10");
}

TEST(MaskedIntReg, ReadsItsField) {
    const struct {
        Bytes bytes;
        std::string children;
        std::int64_t value;
    } rows[] = {
        {{0, 0, 0, 0xAB}, bits(31, 24), 0xAB},
        {{0x80, 0, 0, 0}, "<Bit>0</Bit>", 1},
        {{0x7F, 0xFF, 0xFF, 0xFF}, "<Bit>0</Bit>", 0},
        {{0, 0, 0, 1}, "<Bit>31</Bit>", 1},
        {{0x00, 0xAB, 0x00, 0x00}, little_endian() + bits(8, 15), 0xAB},
        {{1, 0, 0, 0}, little_endian() + "<Bit>0</Bit>", 1},
        {{0, 0, 0, 0x80}, little_endian() + "<Bit>31</Bit>", 1},
        {{0xFF, 0xFF, 0xFF, 0xFF}, little_endian() + bits(15, 8), 0},  // the wrong way round
        {{0xFF, 0xFF, 0xFF, 0xFF}, bits(8, 15), 0},
        {{0x12, 0x34, 0x56, 0x78}, bits(31, 0), 0x12345678},
        {{0x00, 0x00, 0x00, 0x0F}, bits(31, 28) + "<Sign>Signed</Sign>", -1},
        {{0x00, 0x00, 0x00, 0x0F}, bits(31, 28), 15},
        {{0x00, 0x00, 0x00, 0x07}, bits(31, 28) + "<Sign>Signed</Sign>", 7},
        {{0xFF, 0xFF, 0xFF, 0xFF}, bits(31, 0) + "<Sign>Signed</Sign>", -1},
    };
    for (const auto& row : rows) {
        TestDocument doc(both(length("4") + row.children));
        doc.device.Put(0x100, row.bytes);
        for (const char* name : {"r", "dyn"}) {
            EXPECT_EQ(value_of(doc.Integer(name).get_val(0)), row.value) << name << row.children;
            EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
        }
    }
}

TEST(MaskedIntReg, WritesByReadingFirst) {
    const struct {
        Bytes before;
        std::string children;
        std::int64_t value;
        Bytes after;
    } rows[] = {
        {{0xAB, 0xCD, 0xEF, 0x12}, bits(31, 24), 0x5A, {0xAB, 0xCD, 0xEF, 0x5A}},
        {{0x00, 0xAB, 0x00, 0x00}, little_endian() + bits(8, 15), 0x1CD, {0x00, 0xCD, 0x00, 0x00}},
        {{0xFF, 0xFF, 0xFF, 0xFF}, "<Bit>0</Bit>", 0, {0x7F, 0xFF, 0xFF, 0xFF}},
        {{0, 0, 0, 0}, "<Bit>0</Bit>", -1, {0x80, 0, 0, 0}},
        {{1, 2, 3, 4}, little_endian() + bits(15, 8), 0xFF, {1, 2, 3, 4}},  // an empty field changes nothing
        {{0, 0, 0, 0}, bits(31, 28) + "<Sign>Signed</Sign>", -8, {0, 0, 0, 8}},
        {{0xFF, 0xFF, 0xFF, 0xFF}, bits(27, 20), 0x12, {0xFF, 0xFF, 0xF1, 0x2F}},
    };
    for (const auto& row : rows) {
        TestDocument doc(both(length("4") + row.children));
        for (const char* name : {"r", "dyn"}) {
            doc.device.Put(0x100, row.before);
            EXPECT_FALSE(doc.Integer(name).set_val(row.value, 0));
            EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4), WriteOf(0x100, row.after)))
                << name << row.children;
        }
    }
}

TEST(MaskedIntReg, AFailedReadOfAWriteWritesNothing) {
    TestDocument doc(both(length("4") + "<Bit>3</Bit>"));
    ChangeCounter changes(doc.Node("r"));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(device_lost));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
    doc.device.FailAccess(2, code(access_denied));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(access_denied));
    EXPECT_EQ(changes.Count(), 0);
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0));
    EXPECT_EQ(changes.Count(), 1);
}

TEST(MaskedIntReg, IsNeverCached) {
    TestDocument doc(both(length("4") + "<Bit>3</Bit><Cachable>WriteThrough</Cachable>"));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_EQ(doc.device.TakeAccesses().size(), 2U);
    EXPECT_EQ(doc.Integer("r").set_val(1, access_flags::cache_only), code(not_implemented));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    TestDocument bad(element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit><Cachable>x</Cachable>"));
    EXPECT_THAT(bad.load_messages, IsEmpty()) << "not read";
}

TEST(MaskedIntReg, HandsItsFlagsToBothAccesses) {
    TestDocument doc(both(length("4") + "<Bit>3</Bit>"));
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0x200));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x100, 4, 0x200), WriteOf(0x100, {0x10, 0, 0, 0}, 0x200)));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0x100)), 0) << "what the read had seen, not the write";
}

TEST(MaskedIntReg, LengthIsConfined) {
    const struct {
        const char* text;
        int length;
        bool logs;
    } rows[] = {
        {"1", 1, false},
        {"8", 8, false},
        {"0x3", 3, false},
        {"0", 4, false},
        {"9", 4, false},
        {"1000", 4, false},
        {"-1", 1, true},
        {"abc", 1, true},
        {"", 1, true},
        {"0x7FFFFFFFFFFFFFFF", 4, false},
        {"0x8000000000000000", 1, true},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("MaskedIntReg", address("0x100") + length(row.text) + "<Bit>0</Bit>") +
                         element("MaskedIntReg", length(row.text) + "<Bit>0</Bit>", "dyn"));
        EXPECT_EQ(doc.load_messages.size(), row.logs ? 2U : 0U) << row.text;
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        EXPECT_TRUE(doc.Integer("dyn").get_val(0));
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, row.length), ReadOf(0, row.length)));
    }
}

TEST(MaskedIntReg, WithoutALengthIsOneByteAndLogs) {
    TestDocument doc(both("<Bit>0</Bit><pLength>rest</pLength>"));
    static constexpr const char* message =
        "GenICam::masked_int_reg_type_base::_resolve_references, MaskedIntReg (\"%\"). Failed to parse "
        "\"Length\" XML "
        "element.\n";
    const auto naming = [](const char* name) {
        std::string text = message;
        return text.replace(text.find('%'), 1, name);
    };
    EXPECT_THAT(doc.load_messages, ElementsAre(naming("dyn"), naming("r")));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 1))) << "a link to a length is not read";
    EXPECT_THAT(dependents_of(doc, "rest"), ElementsAre("dyn")) << "for its address alone";
}

TEST(MaskedIntReg, ResolvesItsAddressBeforeItsLength) {
    TestDocument doc(element("MaskedIntReg", "<pAddress>nobody</pAddress>"));
    EXPECT_THAT(doc.load_messages,
                ElementsAre(testing::HasSubstr("\"pAddress\""), testing::HasSubstr("\"Length\"")));
}

TEST(MaskedIntReg, ItsLengthIsTheStrideOfAnIndex) {
    TestDocument doc(element("MaskedIntReg", fixed_span(2) + "<Bit>0</Bit><pIndex>index</pIndex>", "two") +
                     element("MaskedIntReg", fixed_span(9) + "<Bit>0</Bit><pIndex>index</pIndex>", "nine") +
                     number("index", "3"));
    EXPECT_TRUE(doc.Integer("two").get_val(0));
    EXPECT_TRUE(doc.Integer("nine").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x106, 2), ReadOf(0x10C, 4)));
}

TEST(MaskedIntReg, ChecksAccessBeforeAnythingElse) {
    TestDocument doc(
        element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit><AccessMode>RO</AccessMode>", "ro") +
        element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit><AccessMode>WO</AccessMode>", "wo") +
        element("MaskedIntReg", "<Bit>0</Bit>" + length("4") + "<AccessMode>WO</AccessMode>", "dyn"));
    EXPECT_EQ(doc.Integer("ro").set_val(1, 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.Integer("wo").get_val(0)), code(access_denied));
    EXPECT_EQ(failure_of(doc.Integer("dyn").get_val(0)), code(access_denied));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    EXPECT_FALSE(doc.Integer("wo").set_val(1, 0)) << "reads the register all the same";
    EXPECT_EQ(doc.device.TakeAccesses().size(), 2U);
}

TEST(MaskedIntReg, BadWordsFallToTheirDefaults) {
    const struct {
        const char* child;
        const char* text;
    } rows[] = {{"Endianess", "big"}, {"Sign", "signed"}, {"AccessMode", "WR"}};
    for (const auto& row : rows) {
        const std::string child = std::string("<") + row.child + ">" + row.text + "</" + row.child + ">";
        TestDocument doc(element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit>" + child));
        EXPECT_THAT(doc.load_messages, ElementsAre(std::string("Invalid contents of \"") + row.child +
                                                   "\" node (\"" + row.text + "\"\n"));
        doc.device.Put(0x100, {0x80, 0, 0, 0});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1) << "big-endian and unsigned";
    }
}

TEST(MaskedIntReg, AnswersFromItsElement) {
    TestDocument doc(element("MaskedIntReg", fixed_span(4) +
                                                 "<Bit>0</Bit><Representation>Boolean</Representation>"
                                                 "<Unit>x</Unit><pSelected>r</pSelected>"));
    IInteger& field = doc.Integer("r");
    EXPECT_EQ(field.get_node_type(), node_type::integer);
    EXPECT_EQ(field.get_representation(), Representation::Boolean);
    EXPECT_EQ(field.get_unit(), "x");
    EXPECT_THAT(field.get_selected(), ElementsAre(&doc.Node("r")));
    EXPECT_EQ(value_of(field.get_inc(0)), 1);
    EXPECT_EQ(failure_of(field.get_default(0)), code(not_implemented));
}

TEST(MaskedIntReg, AnAddressThatCannotBeReadFailsReadingAndWriting) {
    TestDocument doc(
        element("MaskedIntReg", address("0") + "<pAddress>bad</pAddress>" + length("4") + bits(3, 0)) +
        broken("bad"));
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0)), code(not_implemented));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(not_implemented));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

}  // namespace
