// `FloatReg`: numbers of 4 or 8 bytes.

#include "tests/genicam_registers/register_test.h"

#include <cmath>
#include <limits>

using namespace register_test;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(FloatReg, ReadsByLengthAndEndianess) {
    const std::vector<register_row<double>> rows = {
        {{0x3F, 0x8C, 0xCC, 0xCD}, "", 1.100000023841858},
        {{0xCD, 0xCC, 0x8C, 0x3F}, little_endian(), 1.100000023841858},
        {{0xC0, 0x20, 0x00, 0x00}, "", -2.5},
        {{0x3F, 0xF1, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A}, "", 1.1},
        {{0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xF1, 0x3F}, little_endian(), 1.1},
        {{0x7F, 0x80, 0x00, 0x00}, "", infinity},
        {{0xFF, 0xF0, 0, 0, 0, 0, 0, 0}, "", -infinity},
        {{0x00, 0x00, 0x00, 0x01}, "", 0x1p-149},
    };
    expect_reads("FloatReg", rows);
}

TEST(FloatReg, ReadsEveryPatternThatIsNoNumber) {
    TestDocument doc(element("FloatReg", fixed_span(4), "single") +
                     element("FloatReg", fixed_span(8), "double"));
    for (const std::uint8_t top : Bytes{0x7F, 0xFF}) {
        for (const std::uint8_t next : Bytes{0xA0, 0xC0, 0xF8}) {  // quiet and signalling
            doc.device.Put(0x100, {top, next, 0, 1, 0, 0, 0, 0});
            EXPECT_TRUE(std::isnan(value_of(doc.Float("single").get_val(0))));
            doc.device.Put(0x100, {top, 0xF4, 0, 1, 0, 0, 0, 0});
            EXPECT_TRUE(std::isnan(value_of(doc.Float("double").get_val(0))));
        }
    }
}

TEST(FloatReg, WritesByLengthAndEndianess) {
    const double greatest = static_cast<double>(std::numeric_limits<float>::max());
    const std::vector<register_row<double>> rows = {
        {{0x3F, 0x8C, 0xCC, 0xCD}, "", 1.1},
        {{0xCD, 0xCC, 0x8C, 0x3F}, little_endian(), 1.1},
        {{0x3F, 0xF1, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A}, "", 1.1},
        {{0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xF1, 0x3F}, little_endian(), 1.1},
        {{0, 0, 0, 0}, "", 0},
        {{0x80, 0, 0, 0}, "", -0.0},
        {{0x7F, 0x7F, 0xFF, 0xFF}, "", greatest},
        // between the greatest number and half a step above it, and from there on
        {{0x7F, 0x7F, 0xFF, 0xFF}, "", 0x1.fffffefffffffp127},
        {{0x7F, 0x80, 0, 0}, "", 0x1.ffffffp127},
        {{0xFF, 0x7F, 0xFF, 0xFF}, "", -0x1.fffffefffffffp127},
        {{0xFF, 0x80, 0, 0}, "", -0x1.ffffffp127},
        {{0x7F, 0x80, 0, 0}, "", 1e300},
        {{0xFF, 0x80, 0, 0}, "", -1e300},
        {{0x7F, 0x80, 0, 0}, "", infinity},
        {{0, 0, 0, 0}, "", 1e-300},
        {{0xFF, 0xF0, 0, 0, 0, 0, 0, 0}, "", -infinity},
    };
    expect_writes("FloatReg", rows);
    TestDocument doc(element("FloatReg", fixed_span(4)));
    EXPECT_FALSE(doc.Float("r").set_val(std::numeric_limits<double>::quiet_NaN(), 0));
    EXPECT_TRUE(std::isnan(value_of(doc.Float("r").get_val(0))));
}

TEST(FloatReg, KeepsTheNearestSingle) {
    TestDocument doc(element("FloatReg", fixed_span(4)));
    EXPECT_FALSE(doc.Float("r").set_val(1.1, 0));
    EXPECT_EQ(value_of(doc.Float("r").get_val(0)), 1.100000023841858);
}

TEST(FloatReg, RangeIsThatOfPositiveNormalNumbers) {
    const struct {
        const char* size;
        double min, max;
    } rows[] = {
        {"8", 2.2250738585072014e-308, 1.7976931348623157e308},
        {"4", 1.1754943508222875e-38, 3.4028234663852886e38},
        {"5", 1.1754943508222875e-38, 3.4028234663852886e38},
        {"0", 1.1754943508222875e-38, 3.4028234663852886e38},
        {"-8", 1.1754943508222875e-38, 3.4028234663852886e38},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("FloatReg", address("0x100") + length(row.size)) +
                         element("FloatReg", address("0x100") + "<pLength>size</pLength>", "dyn") +
                         number("size", row.size));
        for (const char* name : {"r", "dyn"}) {
            EXPECT_EQ(value_of(doc.Float(name).get_min(0)), row.min) << row.size;
            EXPECT_EQ(value_of(doc.Float(name).get_max(0)), row.max) << row.size;
            EXPECT_EQ(failure_of(doc.Float(name).get_inc(0)), code(not_implemented));
            EXPECT_EQ(failure_of(doc.Float(name).get_default(0)), code(not_implemented));
        }
    }
    TestDocument doc(element("FloatReg", address("0x100") + "<pLength>broken</pLength>") + broken("broken"));
    EXPECT_EQ(value_of(doc.Float("r").get_max(0)), 3.4028234663852886e38)
        << "four bytes where the length fails";
}

TEST(FloatReg, TheRangeDoesNotBindAWrite) {
    TestDocument doc(element("FloatReg", fixed_span(8) + "<Min>5</Min><Max>6</Max>"));
    EXPECT_FALSE(doc.Float("r").set_val(-1, 0));
    EXPECT_EQ(value_of(doc.Float("r").get_val(0)), -1);
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(FloatReg, OtherLengthsAreRefusedBeforeThePort) {
    for (const std::string size : {"0", "1", "2", "3", "5", "7", "9", "16", "-4"}) {
        TestDocument doc(element("FloatReg", address("0x100") + length(size)) +
                         element("FloatReg", address("0x100") + "<pLength>size</pLength>", "dyn") +
                         number("size", size));
        for (const char* name : {"r", "dyn"}) {
            EXPECT_EQ(failure_of(doc.Float(name).get_val(0)), code(index_out_of_range));
            EXPECT_EQ(doc.Float(name).set_val(1, 0), code(index_out_of_range));
            EXPECT_THAT(
                doc.log.Take(),
                ElementsAre(
                    "GenICam::float_reg_type_base::get_val, length value out of range [1;8]. value=" + size +
                        ".\n",
                    "GenICam::float_reg_type_base::set_val, length value should be either 4 or 8. value=" +
                        size + ".\n"));
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(FloatReg, ChecksAccessBeforeAnythingElse) {
    TestDocument doc(element("FloatReg", fixed_span(9) + "<AccessMode>RO</AccessMode>", "ro") +
                     element("FloatReg", fixed_span(9) + "<AccessMode>WO</AccessMode>", "wo"));
    EXPECT_EQ(doc.Float("ro").set_val(1, 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.Float("wo").get_val(0)), code(access_denied));
    EXPECT_THAT(doc.log.Take(), IsEmpty());
    EXPECT_EQ(doc.Float("ro").set_val(1, access_flags::skip_access_check), code(index_out_of_range));
}

TEST(FloatReg, AnswersFromItsElement) {
    TestDocument doc(element("FloatReg", fixed_span(4) +
                                             "<Representation>Logarithmic</Representation><Unit>dB</Unit>"
                                             "<DisplayNotation>Fixed</DisplayNotation>"
                                             "<DisplayPrecision>3</DisplayPrecision>") +
                     element("FloatReg", fixed_span(4), "plain"));
    IFloat& told = doc.Float("r");
    EXPECT_EQ(told.get_node_type(), node_type::floating);
    EXPECT_EQ(told.get_representation(), FloatRepresentation::Logarithmic);
    EXPECT_EQ(told.get_unit(), "dB");
    EXPECT_EQ(told.get_display_notation(), DisplayNotation::Fixed);
    EXPECT_EQ(told.get_display_precision(), 3);
    IFloat& plain = doc.Float("plain");
    EXPECT_EQ(plain.get_representation(), FloatRepresentation::PureNumber);
    EXPECT_EQ(plain.get_display_notation(), DisplayNotation::Automatic);
    EXPECT_EQ(plain.get_display_precision(), 6);
}

TEST(FloatReg, BadWordsFallToTheirDefaults) {
    const struct {
        const char* child;
        const char* text;
    } rows[] = {{"Cachable", "writethrough"}, {"Endianess", "Big"}, {"AccessMode", "R"}};
    for (const auto& row : rows) {
        const std::string child = std::string("<") + row.child + ">" + row.text + "</" + row.child + ">";
        TestDocument doc(element("FloatReg", fixed_span(4) + child));
        EXPECT_THAT(doc.load_messages, ElementsAre(std::string("Invalid contents of \"") + row.child +
                                                   "\" node (\"" + row.text + "\"\n"));
        EXPECT_TRUE(doc.Float("r").get_val(0));
        EXPECT_TRUE(doc.Float("r").get_val(0));
        EXPECT_EQ(doc.device.TakeAccesses().size(), 2U) << "not cached";
    }
    TestDocument doc(element("FloatReg", fixed_span(4) + "<Sign>nonsense</Sign>"));
    EXPECT_THAT(doc.load_messages, IsEmpty()) << "has no sign to read";
}

}  // namespace
