#include "tests/support/decimal_comma.h"
#include "tests/support/node_test.h"

#include <cmath>

namespace node_test {
namespace {

constexpr double smallest = 2.2250738585072014e-308;
constexpr double greatest = 1.7976931348623157e308;

TEST(FloatValue, WithoutAMinimumNegativesAreRefused) {
    TestDocument doc("<Float Name='n'><Value>1.5</Value></Float>");
    IFloat& node = doc.Float("n");
    EXPECT_TRUE(HasRange(node, smallest, greatest, none, none));
    EXPECT_FALSE(node.set_val(0.0, 0));
    EXPECT_FALSE(node.set_val(-0.000009, 0));
    EXPECT_EQ(node.set_val(-1.0, 0), code(value_out_of_range));
    EXPECT_EQ(node.set_val(-0.00001, 0), code(value_out_of_range));
    EXPECT_THAT(
        doc.log.Take(),
        ElementsAre("GenICam::float_floating_value_type::set_val, Float (\"n\"). Failed range check for "
                    "parameter value=-1.000000e+00.\n",
                    "GenICam::float_floating_value_type::set_val, Float (\"n\"). Failed range check for "
                    "parameter value=-1.000000e-05.\n"));
}

TEST(FloatValue, TheToleranceIsAbsoluteAndDoesNotClamp) {
    TestDocument doc("<Float Name='n'><Value>1.5</Value><Min>0</Min><Max>10</Max></Float>");
    IFloat& node = doc.Float("n");
    EXPECT_FALSE(node.set_val(10.000001, 0));
    EXPECT_EQ(node.get_val(0).value(), 10.000001);
    EXPECT_FALSE(node.set_val(-0.000001, 0));
    EXPECT_EQ(node.get_val(0).value(), -0.000001);
    EXPECT_EQ(node.set_val(10.1, 0), code(value_out_of_range));
    EXPECT_EQ(node.set_val(10.00001001, 0), code(value_out_of_range));
    EXPECT_FALSE(node.set_val(10.1, access_flags::skip_range_check));
    EXPECT_FALSE(node.set_val(std::nan(""), 0)) << "a NaN compares with nothing";
    EXPECT_TRUE(std::isnan(node.get_val(0).value()));
    EXPECT_EQ(node.set_val(HUGE_VAL, 0), code(value_out_of_range));
}

TEST(FloatValue, ANaNAlwaysDiffers) {
    TestDocument doc("<Float Name='n'><Value>1.5</Value></Float><Float Name='p'><pValue>n</pValue></Float>");
    ChangeCounter changes(doc.Node("p"));
    ChangeCounter own(doc.Node("n"));
    for (int round = 0; round < 2; ++round) EXPECT_FALSE(doc.Float("n").set_val(std::nan(""), 0));
    EXPECT_EQ(changes.Count(), 2);
    EXPECT_EQ(own.Count(), 2);
    for (int round = 0; round < 2; ++round) EXPECT_FALSE(doc.Float("n").set_val(2.0, 0));
    EXPECT_EQ(changes.Count(), 3);
}

TEST(FloatValue, TextsInAnyLocale) {
    const test_support::DecimalComma comma;
    TestDocument doc(
        "<Float Name='n'><Value>1.5</Value><Min>0.25</Min><Max>1e3</Max><Inc>0x10</Inc><Extension><Default>7"
        "</Default></Extension></Float>");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_val(0).value(), 1.5);
    EXPECT_TRUE(HasRange(node, 0.25, 1000.0, 16.0, 7.0));
}

TEST(FloatValue, BadTextLeavesZeroAndSpeaksOfAnotherElement) {
    TestDocument doc("<Float Name='n'><Value>x</Value></Float>");
    EXPECT_EQ(doc.Float("n").get_val(0).value(), 0.0);
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::float_floating_value_type::_resolve_references, Float "
                            "(\"n\"). Failed to parse or resolve \"pValue\" xml element.\n"));
}

TEST(FloatConstant, ReadsWhateverItsAvailability) {
    TestDocument doc(
        "<Float Name='n'><Value>1.5</Value><ImposedAccessMode>RO</ImposedAccessMode><pIsAvailable>no"
        "</pIsAvailable></Float><Integer Name='no'><Value>0</Value></Integer>"
        "<Float Name='bad'><Value>x</Value><ImposedAccessMode>RO</ImposedAccessMode></Float>");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_val(0).value(), 1.5);
    EXPECT_EQ(node.set_val(1.5, access_flags::skip_access_check), code(access_denied));
    EXPECT_TRUE(HasRange(node, smallest, greatest, none, none));
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::float_constant_value_type::_resolve_references, Float "
                            "(\"bad\"). Failed to parse \"Value\" xml element.\n"));
}

TEST(FloatLink, ReadsAndWritesItsTarget) {
    TestDocument doc(
        "<Float Name='n'><pValue>i</pValue></Float><Integer Name='i'><Value>7</Value><Min>-10</Min><Max>10"
        "</Max><Inc>2</Inc><Extension><Default>4</Default></Extension></Integer>");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_val(0).value(), 7.0);
    EXPECT_FALSE(node.set_val(2.9, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 2) << "truncated, not rounded";
    EXPECT_TRUE(HasRange(node, -10.0, 10.0, 2.0, 4.0));
    EXPECT_EQ(node.set_val(11.0, 0), code(value_out_of_range));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::float_pValue_type::set_val, Float (\"n\"). Failed range check "
                            "for parameter value=1.100000e+01.\n"));
}

TEST(FloatLink, OverEveryKindOfSource) {
    TestDocument doc(
        "<Float Name='fb'><pValue>b</pValue></Float><Boolean Name='b'><Value>true</Value></Boolean>"
        "<Float Name='fe'><pValue>e</pValue></Float><Enumeration Name='e'><Value>1</Value><EnumEntry "
        "Name='x'><Value>1"
        "</Value><NumericValue>0.5</NumericValue></EnumEntry><EnumEntry "
        "Name='y'><Value>2</Value></EnumEntry></Enumeration>");
    EXPECT_EQ(doc.Float("fb").get_val(0).value(), 1.0);
    EXPECT_FALSE(doc.Float("fb").set_val(0.0, 0));
    EXPECT_FALSE(doc.Boolean("b").get_val(0).value());
    EXPECT_FALSE(doc.Float("fb").set_val(0.5, 0));
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
    EXPECT_EQ(doc.Float("fe").get_val(0).value(), 0.5);
    EXPECT_FALSE(doc.Float("fe").set_val(1.6, 0));
    EXPECT_EQ(doc.Float("fe").get_val(0).value(), 2.0);
    EXPECT_EQ(doc.Float("fb").get_min(0).error(), code(not_implemented)) << "a boolean has no range";
}

TEST(FloatLink, AnswersDisplayQuestionsFromItsOwnElement) {
    TestDocument doc(
        "<Float Name='n'><pValue>v</pValue></Float><Float Name='v'><Value>1</Value><Unit>us</Unit>"
        "<Representation>Linear</Representation><DisplayNotation>Fixed</DisplayNotation>"
        "<DisplayPrecision>2</DisplayPrecision></Float>");
    EXPECT_EQ(doc.Float("n").get_unit(), "");
    EXPECT_EQ(doc.Float("n").get_representation(), FloatRepresentation::PureNumber);
    EXPECT_EQ(doc.Float("n").get_display_notation(), DisplayNotation::Automatic);
    EXPECT_EQ(doc.Float("n").get_display_precision(), 6);
    EXPECT_EQ(doc.Float("v").get_unit(), "us");
    EXPECT_EQ(doc.Float("v").get_representation(), FloatRepresentation::Linear);
    EXPECT_EQ(doc.Float("v").get_display_notation(), DisplayNotation::Fixed);
    EXPECT_EQ(doc.Float("v").get_display_precision(), 2);
}

TEST(FloatLimits, LinksAreReadAsDoubles) {
    TestDocument doc(
        "<Float Name='n'><Value>1</Value><pMin>m</pMin><pMax>gone2</pMax></Float><Float Name='m'><Value>0.25"
        "</Value></Float>");
    EXPECT_EQ(doc.Float("n").get_min(0).value(), 0.25);
    EXPECT_EQ(doc.Float("n").get_max(0).value(), greatest);
    EXPECT_EQ(doc.Node("m").get_eval()->get_dependent_count(), 1);
}

TEST(FloatLimits, AreReadAsNumbersOfEitherKind) {
    TestDocument doc("<Float Name='n'><Value>.5</Value><Min>.5</Min><Max>20000000000000000000</Max></Float>");
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::resolve_link_or_value_, Float \"n\". Failed to parse content of \"Min\" "
                    "node.\n"));
    EXPECT_EQ(doc.Float("n").get_val(0).value(), 0.5) << "a value needs no digit before the point";
    EXPECT_EQ(doc.Float("n").get_min(0).value(), smallest);
    EXPECT_EQ(doc.Float("n").get_max(0).value(), 1553255926290448384.0) << "what is left in 64 bits";
}

TEST(FloatTable, WithoutItsIndexHasTheRangeOfANodeWithoutLimits) {
    TestDocument doc(
        "<Float Name='n'><pIndex>gone</pIndex><ValueDefault>1</ValueDefault><Min>-9</Min></Float>");
    EXPECT_EQ(doc.Float("n").get_min(0).value(), smallest);
    EXPECT_EQ(doc.Float("n").set_val(-1, 0), code(value_out_of_range));
    EXPECT_EQ(doc.Float("n").set_val(1, 0), code(not_implemented));
}

}  // namespace
}  // namespace node_test
