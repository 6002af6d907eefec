#include "tests/formula/formula_node_test.h"

using namespace formula_test;

namespace {

constexpr const char* prefix =
    "GenICam::converter::converter_impl::resolve_converter_references, Converter (\"k\"). ";

std::string int_converter(const std::string& to, const std::string& from, const std::string& more = "") {
    return node("IntConverter", more + formulas(to, from) + target("t"));
}
std::string float_converter(const std::string& to, const std::string& from, const std::string& more = "") {
    return node("Converter", more + formulas(to, from) + target("t"));
}

TEST(IntConverter, FixedAnswers) {
    TestDocument doc("<Integer Name='t'><Value>5</Value><Min>1</Min><Max>9</Max><Inc>2</Inc></Integer>" +
                     int_converter("FROM", "TO", "<Unit>us</Unit><Representation>Linear</Representation>"));
    IInteger& converter = doc.Integer("k");
    EXPECT_EQ(converter.get_node_type(), node_type::integer);
    EXPECT_EQ(converter.get_min(0).value(), lowest);
    EXPECT_EQ(converter.get_max(0).value(), highest);
    EXPECT_EQ(converter.get_inc(0).value(), 1);
    EXPECT_EQ(converter.get_default(0).error(), code(not_implemented));
    EXPECT_EQ(converter.get_unit(), "us");
    EXPECT_EQ(converter.get_representation(), Representation::Linear);
    EXPECT_EQ(converter.get_eval()->get_access_source(), &doc.Node("t"));
    EXPECT_EQ(converter.get_eval()->get_dependent_count(), 0);
}

TEST(Converter, FixedAnswers) {
    TestDocument doc("<Float Name='t'><Value>5</Value><Min>1</Min><Max>9</Max></Float>" +
                     float_converter("FROM", "TO", "<Unit>us</Unit>"));
    IFloat& converter = doc.Float("k");
    EXPECT_EQ(converter.get_node_type(), node_type::floating);
    EXPECT_EQ(converter.get_min(0).value(), 2.2250738585072014e-308);
    EXPECT_EQ(converter.get_max(0).value(), 1.7976931348623157e+308);
    EXPECT_EQ(converter.get_inc(0).error(), code(not_implemented));
    EXPECT_EQ(converter.get_default(0).error(), code(not_implemented));
    EXPECT_EQ(converter.get_unit(), "us");
    EXPECT_EQ(converter.get_eval()->get_access_source(), &doc.Node("t"));
}

TEST(Converters, ConvertBothWays) {
    TestDocument doc(integer("t", "50") + float_converter("FROM*10", "TO/10.0"));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 5.0);
    EXPECT_FALSE(doc.Float("k").set_val(7.5, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 75);
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 7.5);

    TestDocument integers(integer("t", "50") + int_converter("FROM<<1", "TO>>1"));
    EXPECT_EQ(integers.Integer("k").get_val(0).value(), 25);
    EXPECT_FALSE(integers.Integer("k").set_val(7, 0));
    EXPECT_EQ(integers.Integer("t").get_val(0).value(), 14);
}

TEST(Converters, FromAndToAreTheSame) {
    TestDocument doc(integer("t", "50") + int_converter("TO*10+FROM", "FROM*10+TO"));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 550);
    EXPECT_FALSE(doc.Integer("k").set_val(2, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 22);
}

TEST(Converters, FromAndToCannotBeBound) {
    TestDocument doc(integer("t", "50") + integer("n", "1") +
                     int_converter("FROM", "TO", variable("TO", "n") + constant("FROM", "9")));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 50);
    EXPECT_FALSE(doc.Integer("k").set_val(3, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 3);
}

TEST(Converters, LowerCaseNamesAreOrdinary) {
    TestDocument doc(integer("t", "50") + int_converter("FROM", "to", constant("to", "9")));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 9);
}

TEST(Converters, ReadTheTargetWithTheKindThatItHas) {
    EXPECT_EQ(TestDocument(integer("t", "7") + float_converter("FROM", "TO/2")).Float("k").get_val(0).value(),
              3.0);
    EXPECT_EQ(TestDocument(real("t", "7") + float_converter("FROM", "TO/2")).Float("k").get_val(0).value(),
              3.5);
    EXPECT_EQ(TestDocument(real("t", "7") + int_converter("FROM", "TO/2")).Integer("k").get_val(0).value(),
              4);
    EXPECT_EQ(TestDocument(truth_value("t", "true") + float_converter("FROM", "TO/2"))
                  .Float("k")
                  .get_val(0)
                  .value(),
              0.0);
}

TEST(Converters, ReadAnEnumerationByItsEntry) {
    TestDocument doc(
        "<Enumeration Name='t'><Value>1</Value><EnumEntry Name='A'><Value>1</Value></EnumEntry>"
        "<EnumEntry Name='B'><Value>2</Value><NumericValue>2.5</NumericValue></EnumEntry></Enumeration>" +
        float_converter("FROM", "(TO+4)/2"));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 2.0) << "of integers";
    EXPECT_FALSE(doc.Enumeration("t").set_selected_entry(doc.Enumeration("t").find_entry("B"), 0));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 3.25);
    EXPECT_FALSE(doc.Enumeration("t").set_selected_entry(doc.Enumeration("t").find_entry("A"), 0));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 2.0);
}

TEST(Converters, StartToWriteWithTheKindOfTheClass) {
    TestDocument integers(real("t", "0") + int_converter("FROM/2", "TO"));
    EXPECT_FALSE(integers.Integer("k").set_val(7, 0));
    EXPECT_EQ(integers.Float("t").get_val(0).value(), 3.0);
    TestDocument floats(real("t", "0") + float_converter("FROM/2", "TO"));
    EXPECT_FALSE(floats.Float("k").set_val(7, 0));
    EXPECT_EQ(floats.Float("t").get_val(0).value(), 3.5);
}

TEST(Converters, RoundWhatAnIntegerTargetGets) {
    TestDocument doc(integer("t", "0") + float_converter("FROM", "TO"));
    for (const double value : {2.9, 2.5, 2.4, -2.5, -2.4}) {
        EXPECT_FALSE(doc.Float("k").set_val(value, 0));
        EXPECT_EQ(doc.Integer("t").get_val(0).value(), std::llround(value)) << value;
    }
    EXPECT_FALSE(doc.Float("k").set_val(1e300, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), lowest);
}

TEST(Converters, WriteIntegersExactly) {
    TestDocument doc(integer("t", "0") + int_converter("FROM+1", "TO"));
    EXPECT_FALSE(doc.Integer("k").set_val(9007199254740992, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 9007199254740993);
    TestDocument floats(real("t", "0") + int_converter("FROM", "TO"));
    EXPECT_FALSE(floats.Integer("k").set_val(5, 0));
    EXPECT_EQ(floats.Float("t").get_val(0).value(), 5.0);
}

TEST(Converters, WriteTruthValues) {
    TestDocument doc(truth_value("t", "false") + float_converter("FROM", "TO"));
    EXPECT_FALSE(doc.Float("k").set_val(0.4, 0));
    EXPECT_TRUE(doc.Boolean("t").get_val(0).value()) << "a float that is not 0.0 is true";
    EXPECT_FALSE(doc.Float("k").set_val(0.0, 0));
    EXPECT_FALSE(doc.Boolean("t").get_val(0).value());
    TestDocument integers(truth_value("t", "false") + int_converter("FROM", "TO"));
    EXPECT_FALSE(integers.Integer("k").set_val(-3, 0));
    EXPECT_TRUE(integers.Boolean("t").get_val(0).value());
}

TEST(Converters, WriteEnumerations) {
    const std::string enumeration =
        "<Enumeration Name='t'><Value>1</Value>"
        "<EnumEntry Name='A'><Value>1</Value><NumericValue>10</NumericValue></EnumEntry>"
        "<EnumEntry Name='B'><Value>2</Value><NumericValue>20.5</NumericValue></EnumEntry></Enumeration>";
    TestDocument integers(enumeration + int_converter("FROM", "TO"));
    EXPECT_FALSE(integers.Integer("k").set_val(2, 0));
    EXPECT_EQ(integers.Enumeration("t").get_selected_entry(0).value()->get_value(), 2) << "by the value";
    TestDocument floats(enumeration + float_converter("FROM", "TO"));
    EXPECT_FALSE(floats.Float("k").set_val(18.0, 0));
    EXPECT_EQ(floats.Enumeration("t").get_selected_entry(0).value()->get_value(), 2)
        << "by the nearest number";
}

TEST(Converters, CannotWriteOrReadWhatHasNoNumber) {
    TestDocument doc("<String Name='t'><Value>x</Value></String>" + int_converter("FROM", "TO"));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(doc.Integer("k").set_val(2, 0), code(not_implemented));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::set_eval_val, get value on a (4) node_type seems to be futile ...\n"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::get_eval_val, get value on a (4) node_type seems to be futile ...\n"));
    TestDocument floats("<String Name='t'><Value>x</Value></String>" + float_converter("FROM", "TO"));
    EXPECT_EQ(floats.Float("k").set_val(2.5, 0), code(not_implemented));
}

TEST(Converters, UseVariablesInBothDirections) {
    TestDocument doc(integer("t", "50") + integer("n", "10") +
                     int_converter("FROM*N", "TO/N", variable("N", "n") + expression("X", "FROM*2")));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 5);
    EXPECT_FALSE(doc.Integer("n").set_val(5, 0));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 10);
    EXPECT_FALSE(doc.Integer("k").set_val(3, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 15);
}

TEST(Converters, ExpressionsSeeTheCurrentValueWithItsKind) {
    TestDocument doc(integer("t", "7") + float_converter("X", "X", expression("X", "FROM/2")));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 3.0) << "the target's integer";
    EXPECT_FALSE(doc.Float("k").set_val(7, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 4) << "the float of the class, rounded";
}

TEST(Converters, ReportChangesOfTargetAndVariables) {
    TestDocument doc(integer("t", "50") + integer("n", "10") +
                     int_converter("FROM", "TO", variable("N", "n")));
    ChangeCounter changes(doc.Node("k"));
    EXPECT_FALSE(doc.Integer("t").set_val(51, 0));
    EXPECT_EQ(changes.Count(), 1);
    EXPECT_FALSE(doc.Integer("n").set_val(11, 0));
    EXPECT_EQ(changes.Count(), 2);
    EXPECT_FALSE(doc.Integer("k").set_val(52, 0));
    EXPECT_EQ(changes.Count(), 3) << "through the target";
}

TEST(Converters, WithoutATargetAreNotImplemented) {
    for (const char* missing : {"", "<pValue/>", "<pValue>nobody</pValue>"}) {
        TestDocument doc(node("IntConverter", formulas("FROM", "TO") + missing));
        EXPECT_THAT(doc.load_messages,
                    ElementsAre(prefix + std::string("Failed due to missing pValue element.\n")));
        EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
        EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(not_implemented));
        EXPECT_EQ(doc.Node("k").get_eval()->get_access_source(), nullptr);
    }
}

TEST(Converters, WithoutBothFormulasAreNotImplemented) {
    for (const char* one :
         {"", "<FormulaFrom>TO</FormulaFrom>", "<FormulaTo>FROM</FormulaTo>",
          "<FormulaFrom>TO</FormulaFrom><FormulaTo/>", "<FormulaFrom/><FormulaTo>FROM</FormulaTo>"}) {
        for (const char* element : {"IntConverter", "Converter"}) {
            TestDocument doc(integer("t", "5") + node(element, one + target("t")));
            EXPECT_THAT(doc.load_messages,
                        ElementsAre(prefix +
                                    std::string("Failed due to missing FormulaFrom/FormulaTo member(s).\n")));
            const bool is_integer = std::string_view(element) == "IntConverter";
            EXPECT_EQ(is_integer ? doc.Integer("k").get_val(0).error() : doc.Float("k").get_val(0).error(),
                      code(not_implemented));
            EXPECT_EQ(is_integer ? doc.Integer("k").set_val(1, 0) : doc.Float("k").set_val(1, 0),
                      code(not_implemented));
            // The target is known all the same.
            ChangeCounter changes(doc.Node("k"));
            EXPECT_FALSE(doc.Integer("t").set_val(6, 0));
            EXPECT_EQ(changes.Count(), 1);
        }
    }
}

TEST(Converters, ABadFormulaFromLeavesBothOut) {
    TestDocument doc(integer("t", "5") + int_converter("$", "(TO"));
    EXPECT_THAT(doc.load_messages, ElementsAre(parse_failed("Failed to find a ')'.", ""),
                                               prefix + std::string("failed to evaluate \"(TO\"\n")));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(not_implemented));
}

// Without a log formulas are read when they are first asked for: here by the write.
TEST(Converters, ABadFormulaFromRefusesAWriteBeforeAnybodyHasRead) {
    const std::string text = "<D>" + integer("t", "5") + int_converter("FROM", "(TO") + "</D>";
    const std::unique_ptr<IGenICamDoc> doc(load_genicam_doc(text.data(), text.size(), {}));
    auto* const converter = static_cast<IInteger*>(doc->find_node("k"));
    EXPECT_EQ(converter->set_val(1, 0), code(not_implemented));
    EXPECT_EQ(static_cast<IInteger*>(doc->find_node("t"))->get_val(0).value(), 5);
}

TEST(Converters, ABadFormulaToLeavesReading) {
    TestDocument doc(integer("t", "5") + int_converter("$", "TO"));
    EXPECT_THAT(doc.load_messages, ElementsAre(parse_failed("Invalid token found.", "$"),
                                               prefix + std::string("failed to evaluate \"$\"\n")));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 5);
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(not_implemented));
}

TEST(Converters, BlankFormulasAreEmptyPrograms) {
    TestDocument doc(integer("t", "5") + int_converter(" ", " "));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(not_implemented));
}

TEST(Converters, ProgramsThatFailWriteNothing) {
    TestDocument doc(integer("t", "5") + int_converter("1?FROM:", "1?TO:"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(formula_parse_failed));
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(formula_parse_failed));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 5);
}

const std::string reg =
    "<IntReg Name='t'><Address>16</Address><Length>4</Length><pPort>Device</pPort>"
    "<AccessMode>RW</AccessMode></IntReg>";

TEST(Converters, FailuresOfTheTargetPassThrough) {
    TestDocument doc(reg + int_converter("FROM", "TO"));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(device_lost));
    doc.device.FailAccess(1, code(buffer_too_small));
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(buffer_too_small));
    TestDocument limited("<Integer Name='t'><Value>5</Value><Max>9</Max></Integer>" +
                         int_converter("FROM", "TO"));
    EXPECT_EQ(limited.Integer("k").set_val(10, 0), code(value_out_of_range));
}

TEST(Converters, HandTheFlagsOn) {
    TestDocument doc(reg + int_converter("FROM", "TO"));
    EXPECT_TRUE(doc.Integer("k").get_val(access_flags::bypass_cache));
    EXPECT_FALSE(doc.Integer("k").set_val(1, access_flags::skip_range_check));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(test_support::ReadOf(16, 4, access_flags::bypass_cache),
                            test_support::WriteOf(16, {0, 0, 0, 1}, access_flags::skip_range_check)));
    TestDocument limited("<Integer Name='t'><Value>5</Value><Max>9</Max></Integer>" +
                         int_converter("FROM", "TO"));
    EXPECT_FALSE(limited.Integer("k").set_val(10, access_flags::skip_range_check));
    EXPECT_EQ(limited.Integer("t").get_val(0).value(), 10);
}

TEST(Converters, RefreshVariablesBeforeTheTarget) {
    const std::string source =
        "<IntReg Name='s'><Address>32</Address><Length>4</Length><pPort>Device</pPort></IntReg>";
    TestDocument doc(reg + source + int_converter("FROM+S", "TO+S", variable("S", "s")));
    EXPECT_TRUE(doc.Integer("k").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(test_support::ReadOf(32, 4), test_support::ReadOf(16, 4)));
    EXPECT_FALSE(doc.Integer("k").set_val(1, 0));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(test_support::ReadOf(32, 4), test_support::WriteOf(16, {0, 0, 0, 1})));
}

TEST(Converters, HaveTheAccessModeOfTheirTarget) {
    TestDocument doc(
        "<IntReg Name='t'><Address>16</Address><Length>4</Length><pPort>Device</pPort>"
        "<AccessMode>RO</AccessMode></IntReg>" +
        int_converter("FROM", "TO"));
    EXPECT_EQ(doc.Node("k").get_access_mode(), AccessMode::RO);
    EXPECT_EQ(doc.Integer("k").set_val(1, 0), code(access_denied)) << "by the target";
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

TEST(Converters, MakeNoAccessCheckOfTheirOwn) {
    TestDocument doc(
        integer("no", "0") + integer("t", "5") +
        int_converter("FROM", "TO",
                      "<pIsAvailable>no</pIsAvailable><ImposedAccessMode>RO</ImposedAccessMode>"));
    EXPECT_FALSE(doc.Node("k").is_available());
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 5);
    EXPECT_FALSE(doc.Integer("k").set_val(6, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 6);
}

TEST(Converters, StandOnOneAnother) {
    TestDocument doc(integer("t", "5") + int_converter("FROM-1", "TO+1") + "<Converter Name='outer'>" +
                     formulas("FROM*2", "TO/2.0") + "<pValue>k</pValue></Converter>");
    EXPECT_EQ(doc.Float("outer").get_val(0).value(), 3.0);
    EXPECT_FALSE(doc.Float("outer").set_val(4.6, 0));
    EXPECT_EQ(doc.Integer("t").get_val(0).value(), 8);
}

}  // namespace
