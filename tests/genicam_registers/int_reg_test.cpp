// `IntReg`: numbers of 1 to 8 bytes.

#include "tests/genicam_registers/register_test.h"

#include <limits>

using namespace register_test;

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

std::string sign(const char* word) { return std::string("<Sign>") + word + "</Sign>"; }

TEST(IntReg, ReadsByEndianessAndSign) {
    const std::vector<register_row<std::int64_t>> rows = {
        {{0xFF, 0xFE}, sign("Signed"), -2},
        {{0xFF, 0xFE}, sign("Unsigned"), 65534},
        {{0xFF, 0xFE}, "", 65534},
        {{0xFF, 0xFE}, little_endian(), 65279},
        {{0xFF, 0xFE}, little_endian() + sign("Signed"), -257},
        {{0x80}, sign("Signed"), -128},
        {{0x7F}, sign("Signed"), 127},
        {{0x80}, "", 128},
        {{0x12, 0x34, 0x56}, "", 0x123456},
        {{0x12, 0x34, 0x56}, little_endian(), 0x563412},
        {{0x80, 0x00, 0x00}, sign("Signed"), -0x800000},
        {{1, 2, 3, 4, 5, 6, 7}, "", 0x01020304050607},
        {{1, 2, 3, 4, 5, 6, 7}, little_endian(), 0x07060504030201},
        {{1, 2, 3, 4, 5, 6, 7, 8}, "", 0x0102030405060708},
        {{1, 2, 3, 4, 5, 6, 7, 8}, little_endian(), 0x0807060504030201},
        {{0x80, 0, 0, 0, 0, 0, 0, 0}, "", lowest},  // unsigned, but there is no greater number
        {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, sign("Signed"), -1},
    };
    expect_reads("IntReg", rows);
}

TEST(IntReg, WritesByEndianessAndTruncates) {
    const std::vector<register_row<std::int64_t>> rows = {
        {{0x23, 0x45}, "", 0x12345},
        {{0x45, 0x23}, little_endian(), 0x12345},
        {{0xFF}, "", -1},
        {{0x80}, sign("Signed"), 0x180},
        {{0x12, 0x34, 0x56}, "", 0x123456},
        {{0x56, 0x34, 0x12}, little_endian(), 0x123456},
        {{0x80, 0, 0, 0, 0, 0, 0, 0}, "", lowest},
        {{8, 7, 6, 5, 4, 3, 2, 1}, little_endian(), 0x0102030405060708},
        {{0xFF, 0xFF, 0xFF, 0xFF, 0xFE}, "", -2},
    };
    expect_writes("IntReg", rows);
}

TEST(IntReg, LimitsPlayNoPartInAWrite) {
    TestDocument doc(element("IntReg", fixed_span(1) + "<Min>5</Min><Max>6</Max>"));
    EXPECT_FALSE(doc.Integer("r").set_val(200, 0));
    EXPECT_EQ(doc.device.At(0x100, 1), Bytes{200});
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(IntReg, RangeFollowsFromLengthAndSign) {
    const struct {
        int size;
        std::int64_t signed_min, signed_max, unsigned_max;
    } rows[] = {
        {1, -128, 127, 255},
        {2, -32768, 32767, 65535},
        {3, -0x800000, 0x7FFFFF, 0xFFFFFF},
        {4, -0x80000000LL, 0x7FFFFFFF, 0xFFFFFFFF},
        {7, -0x80000000000000, 0x7FFFFFFFFFFFFF, 0xFFFFFFFFFFFFFF},
        {8, lowest, highest, highest},
        {0, 0, 0, 0},  // no bits, no numbers
        {-3, 0, 0, 0},
        {9, lowest, highest, highest},
        {1000000, lowest, highest, highest},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("IntReg", fixed_span(row.size) + sign("Signed"), "s") +
                         element("IntReg", fixed_span(row.size) + "<Min>1</Min><Max>2</Max>", "u"));
        IInteger& with_sign = doc.Integer("s");
        IInteger& without = doc.Integer("u");
        EXPECT_EQ(value_of(with_sign.get_min(0)), row.signed_min) << row.size;
        EXPECT_EQ(value_of(with_sign.get_max(0)), row.signed_max) << row.size;
        EXPECT_EQ(value_of(without.get_min(0)), 0) << row.size;
        EXPECT_EQ(value_of(without.get_max(0)), row.unsigned_max) << row.size;
        EXPECT_EQ(value_of(without.get_inc(0)), 1);
        EXPECT_EQ(failure_of(without.get_default(0)), code(not_implemented));
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(IntReg, RangeFollowsALengthThatIsALink) {
    TestDocument doc(element("IntReg", address("0x100") + "<pLength>size</pLength>") + number("size", "2"));
    EXPECT_EQ(value_of(doc.Integer("r").get_max(0)), 65535);
    EXPECT_FALSE(doc.Integer("size").set_val(1, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_max(0)), 255);
    EXPECT_FALSE(doc.Integer("size").set_val(highest, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_max(0)), highest);
    EXPECT_FALSE(doc.Integer("size").set_val(lowest, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_max(0)), 0);
}

TEST(IntReg, RangeAsksForTheLengthAlone) {
    TestDocument doc(element("IntReg", length("2") + "<pAddress>broken</pAddress>") + broken("broken"));
    EXPECT_FALSE(doc.Integer("r").get_val(0));
    EXPECT_EQ(value_of(doc.Integer("r").get_max(0)), 65535);
}

TEST(IntReg, RangeIsThatOfFourBytesWhereTheLengthFails) {
    TestDocument doc(element("IntReg", address("0x100") + "<pLength>broken</pLength>", "u") +
                     element("IntReg", address("0x100") + "<pLength>broken</pLength>" + sign("Signed"), "s") +
                     broken("broken"));
    EXPECT_EQ(value_of(doc.Integer("u").get_max(0)), 0xFFFFFFFF);
    EXPECT_EQ(value_of(doc.Integer("s").get_min(0)), -0x80000000LL);
}

TEST(IntReg, ALengthThatIsNoNumberSizeIsRefusedBeforeThePort) {
    for (const std::string size : {"0", "9", "-1", "0x7FFFFFFFFFFFFFFF", "0x8000000000000000"}) {
        const std::string printed = size == "0x7FFFFFFFFFFFFFFF"   ? "9223372036854775807"
                                    : size == "0x8000000000000000" ? "-9223372036854775808"
                                                                   : size;
        TestDocument doc(element("IntReg", address("0x100") + length(size)) +
                         element("IntReg", address("0x100") + "<pLength>size</pLength>", "dyn") +
                         number("size", size));
        for (const char* name : {"r", "dyn"}) {
            EXPECT_EQ(failure_of(doc.Integer(name).get_val(0)), code(index_out_of_range));
            EXPECT_EQ(doc.Integer(name).set_val(1, 0), code(index_out_of_range));
            const std::string rest = std::string(", IntReg (\"") + name +
                                     "\"). Invalid Length value=" + printed + " out of range [1;8].\n";
            EXPECT_THAT(doc.log.Take(), ElementsAre("GenICam::int_reg_type_base::get_val" + rest,
                                                    "GenICam::int_reg_type_base::set_val" + rest));
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(IntReg, ChecksAccessBeforeAnythingElse) {
    TestDocument doc(element("IntReg", address("0x100") + length("9") + "<AccessMode>RO</AccessMode>", "ro") +
                     element("IntReg", address("0x100") + length("9") + "<AccessMode>WO</AccessMode>", "wo") +
                     element("IntReg",
                             fixed_span(4) + "<pIsAvailable>no</pIsAvailable><pAddress>index</pAddress>",
                             "unavailable") +
                     element("IntReg", address("0x900") + length("4"), "index") + number("no", "0"));
    EXPECT_EQ(doc.Integer("ro").set_val(1, 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.Integer("wo").get_val(0)), code(access_denied));
    EXPECT_EQ(failure_of(doc.Integer("unavailable").get_val(0)), code(node_not_available));
    EXPECT_EQ(doc.Integer("unavailable").set_val(1, 0), code(node_not_available));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    EXPECT_THAT(doc.log.Take(), IsEmpty());
    EXPECT_TRUE(doc.Integer("unavailable").get_val(access_flags::skip_access_check));
    EXPECT_FALSE(doc.Integer("unavailable").set_val(1, access_flags::skip_access_check));
}

TEST(IntReg, AnswersFromItsElement) {
    TestDocument doc(element("IntReg", fixed_span(4) +
                                           "<Representation>HexNumber</Representation><Unit>ms</Unit>"
                                           "<pSelected>other</pSelected>") +
                     element("IntReg", fixed_span(4), "other"));
    EXPECT_EQ(doc.Node("r").get_node_type(), node_type::integer);
    EXPECT_EQ(doc.Integer("r").get_representation(), Representation::HexNumber);
    EXPECT_EQ(doc.Integer("r").get_unit(), "ms");
    EXPECT_THAT(doc.Integer("r").get_selected(), ElementsAre(&doc.Node("other")));
    EXPECT_EQ(doc.Integer("other").get_representation(), Representation::PureNumber);
    EXPECT_EQ(doc.Integer("other").get_unit(), "");
}

TEST(IntReg, BadWordsFallToTheirDefaults) {
    const struct {
        const char* child;
        const char* text;
    } rows[] = {
        {"Cachable", "writethrough"},
        {"Endianess", "littleEndian"},
        {"Sign", "signed"},
        {"AccessMode", "ro"},
        {"Cachable", "NoCache "},
        {"Endianess", "Little"},
        {"Sign", "-"},
        {"AccessMode", "RW "},
    };
    for (const auto& row : rows) {
        const std::string child = std::string("<") + row.child + ">" + row.text + "</" + row.child + ">";
        TestDocument doc(element("IntReg", fixed_span(2) + child));
        EXPECT_THAT(doc.load_messages, ElementsAre(std::string("Invalid contents of \"") + row.child +
                                                   "\" node (\"" + row.text + "\"\n"));
        doc.device.Put(0x100, {0xFF, 0xFE});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 65534) << "big-endian and unsigned";
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 65534);
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2), ReadOf(0x100, 2)))
            << "not cached";
        EXPECT_EQ(doc.Node("r").get_access_mode(), AccessMode::RW);
    }
}

TEST(IntReg, EmptyElementsCountAsAbsent) {
    TestDocument doc(
        element("IntReg", fixed_span(2) + "<Cachable/><Endianess></Endianess><Sign/><AccessMode/>"));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    doc.device.Put(0x100, {0xFF, 0xFE});
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 65534);
    EXPECT_EQ(doc.Node("r").get_access_mode(), AccessMode::RW);
}

TEST(IntReg, TheWordsOfItsElements) {
    const struct {
        const char* children;
        AccessMode mode;
    } rows[] = {{"<AccessMode>RO</AccessMode>", AccessMode::RO},
                {"<AccessMode>WO</AccessMode>", AccessMode::WO},
                {"<AccessMode>RW</AccessMode>", AccessMode::RW},
                {"<ImposedAccessMode>RO</ImposedAccessMode><AccessMode>RW</AccessMode>", AccessMode::RO}};
    for (const auto& row : rows) {
        TestDocument doc(element("IntReg", fixed_span(4) + row.children) +
                         element("FloatReg", fixed_span(4) + row.children, "f") +
                         element("Register", fixed_span(4) + row.children, "b") +
                         element("MaskedIntReg", fixed_span(4) + row.children, "m") +
                         element("StringReg", fixed_span(4) + row.children, "s"));
        for (const char* name : {"r", "f", "b", "m", "s"}) {
            EXPECT_EQ(doc.Node(name).get_access_mode(), row.mode) << name << row.children;
        }
        EXPECT_THAT(doc.load_messages, IsEmpty());
    }
}

}  // namespace
