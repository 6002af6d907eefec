// The value tables behind `pIndex`.

#include "tests/support/node_test.h"

#include <cstdint>
#include <map>
#include <string>

namespace node_test {
namespace {

TestDocument table(const std::string& children, const std::string& element = "Integer") {
    return TestDocument(
        "<" + element + " Name='n'><pIndex>index</pIndex>" + children + "</" + element +
        "><Integer Name='index'><Value>1</Value></Integer><Integer Name='a'><Value>100</Value><Min>5"
        "</Min><Max>900</Max><Inc>5</Inc><Unit>ua</Unit><Representation>HexNumber</Representation>"
        "<Extension><Default>50</Default></Extension></Integer>"
        "<Float Name='f'><Value>2.5</Value><Min>-10</Min><Max>10</Max><Inc>0.5</Inc><Unit>uf</Unit>"
        "<Representation>Logarithmic</Representation><DisplayNotation>Fixed</DisplayNotation>"
        "<DisplayPrecision>3</DisplayPrecision><Extension><Default>1.5</Default></Extension></Float>");
}

std::int64_t at(TestDocument& doc, std::int64_t index) {
    EXPECT_FALSE(doc.Integer("index").set_val(index, 0));
    return doc.Integer("n").get_val(0).value();
}

TEST(IndexedValue, FindsTheFirstEntryOfAnIndexLinksBeforeConstants) {
    TestDocument doc = table(
        "<ValueIndexed Index='1'>11</ValueIndexed><ValueIndexed Index='0x10'>16</ValueIndexed>"
        "<ValueIndexed Index='1'>12</ValueIndexed><pValueIndexed Index='16'>a</pValueIndexed>"
        "<ValueIndexed Index='-2'>-0x2</ValueIndexed><ValueDefault>99</ValueDefault>");
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(at(doc, 1), 11);
    EXPECT_EQ(at(doc, 16), 100);
    EXPECT_EQ(at(doc, -2), -2);
    EXPECT_EQ(at(doc, 5), 99);
}

// Few rows are searched, many are found in an order that is made of them.
TEST(IndexedValue, FindsTheFirstRowOfAnIndexHoweverManyThereAre) {
    for (const int rows : {1, 2, 31, 32, 33, 34, 100}) {
        std::string text;
        std::map<std::int64_t, std::int64_t> first;
        for (int row = 0; row < rows; ++row) {
            const int index = row * 37 % ((rows + 1) / 2) - 20;
            first.emplace(index, row);
            text += "<ValueIndexed Index='" + std::to_string(index) + "'>" + std::to_string(row) +
                    "</ValueIndexed>";
        }
        TestDocument doc = table(text + "<ValueDefault>-7</ValueDefault>");
        for (const auto& [index, row] : first) EXPECT_EQ(at(doc, index), row) << rows;
        for (const std::int64_t index : {std::int64_t{-21}, std::int64_t{1000}, INT64_MIN, INT64_MAX})
            EXPECT_EQ(at(doc, index), -7) << rows;
    }
}

TEST(IndexedValue, WritesGoToTheConstantOrTheLink) {
    TestDocument doc = table(
        "<ValueIndexed Index='1'>11</ValueIndexed><pValueIndexed "
        "Index='2'>a</pValueIndexed><ValueDefault>99</ValueDefault>");
    EXPECT_FALSE(doc.Integer("n").set_val(5, 0));
    EXPECT_EQ(at(doc, 2), 100);
    EXPECT_FALSE(doc.Integer("n").set_val(105, 0));
    EXPECT_EQ(doc.Integer("a").get_val(0).value(), 105);
    EXPECT_EQ(at(doc, 3), 99);
    EXPECT_FALSE(doc.Integer("n").set_val(98, 0));
    EXPECT_EQ(at(doc, 4), 98) << "the default is one entry for all other indices";
    EXPECT_EQ(at(doc, 1), 5);
}

TEST(IndexedValue, AWriteOfTheSameConstantIsSilent) {
    TestDocument doc = table("<ValueIndexed Index='1'>11</ValueIndexed><ValueDefault>99</ValueDefault>");
    ChangeCounter changes(doc.Node("n"));
    EXPECT_FALSE(doc.Integer("n").set_val(12, 0));
    EXPECT_FALSE(doc.Integer("n").set_val(12, 0));
    EXPECT_EQ(changes.Count(), 1);
}

TEST(IndexedValue, DefaultLinkWinsAndFallsBackInSilence) {
    TestDocument link = table("<pValueDefault>a</pValueDefault><ValueDefault>99</ValueDefault>");
    EXPECT_EQ(at(link, 7), 100);
    TestDocument fallback = table("<pValueDefault>gone</pValueDefault><ValueDefault>99</ValueDefault>");
    EXPECT_EQ(at(fallback, 7), 99);
    EXPECT_THAT(fallback.load_messages, IsEmpty());
}

TEST(IndexedValue, WithoutADefaultNoEntryIsRead) {
    for (const char* children : {"<ValueIndexed Index='1'>11</ValueIndexed>",
                                 "<ValueIndexed Index='1'>11</ValueIndexed><ValueDefault>x</ValueDefault>"}) {
        TestDocument doc = table(children);
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre("GenICam::value_eval_indexed::resolve_references, Integer (\"n\"). Invalid or no "
                        "\"pValueDefault\"/\"ValueDefault\" element.\n"));
        EXPECT_EQ(at(doc, 1), 0);
    }
}

TEST(IndexedValue, BadEntriesAreSkippedWithAMessage) {
    TestDocument doc = table(
        "<ValueDefault>99</ValueDefault><pValueIndexed "
        "Index='x'>a</pValueIndexed><pValueIndexed>a</pValueIndexed>"
        "<pValueIndexed Index='3'>gone</pValueIndexed><ValueIndexed Index=''>1</ValueIndexed>"
        "<ValueIndexed Index='4'>x</ValueIndexed><ValueIndexed Index='5'>55</ValueIndexed>");
    const std::string start =
        "GenICam::value_eval_indexed::resolve_references, Integer (\"n\"). Failed to parse ";
    EXPECT_THAT(doc.load_messages, ElementsAre(start + "\"Index\" attribute of \"pValueIndexed\" element.\n",
                                               start + "\"Index\" attribute of \"pValueIndexed\" element.\n",
                                               start + "resolve contents of \"pValueIndexed\" element.\n",
                                               start + "\"Index\" attribute of \"ValueIndexed\" element.\n",
                                               start + "resolve contents of \"ValueIndexed\" element.\n"));
    EXPECT_EQ(at(doc, 3), 99);
    EXPECT_EQ(at(doc, 4), 99);
    EXPECT_EQ(at(doc, 5), 55);
}

TEST(IndexedValue, AFailingIndexFailsTheValue) {
    TestDocument doc(
        "<Integer Name='n'><pIndex>i</pIndex><ValueDefault>1</ValueDefault></Integer>"
        "<Integer Name='i'><Value>1</Value><ImposedAccessMode>WO</ImposedAccessMode></Integer>");
    EXPECT_EQ(doc.Integer("n").get_val(0).error(), code(access_denied));
    EXPECT_EQ(doc.Integer("n").set_val(1, 0), code(access_denied));
    EXPECT_EQ(doc.Integer("n").get_inc(0).value(), 1);
}

TEST(IndexedValue, RangeOfIntegersComesFromTheCurrentTarget) {
    TestDocument doc = table(
        "<pValueIndexed Index='1'>a</pValueIndexed><pValueIndexed "
        "Index='2'>f</pValueIndexed><ValueDefault>0</ValueDefault>");
    IInteger& node = doc.Integer("n");
    EXPECT_TRUE(HasRange(node, 5, 900, 5, 50));
    EXPECT_EQ(node.get_unit(), "ua");
    EXPECT_EQ(node.get_representation(), Representation::HexNumber);
    EXPECT_FALSE(doc.Integer("index").set_val(2, 0));
    EXPECT_EQ(node.get_min(0).value(), -10);
    EXPECT_EQ(node.get_default(0).value(), 2);
    EXPECT_EQ(node.get_unit(), "") << "a float target is not asked";
    EXPECT_EQ(node.get_representation(), Representation::PureNumber);
    EXPECT_FALSE(doc.Integer("index").set_val(3, 0));
    EXPECT_TRUE(HasRange(node, lowest, highest, 1, none));
}

TEST(IndexedValue, StatedElementsBeatTheTarget) {
    TestDocument doc = table(
        "<pValueIndexed "
        "Index='1'>a</pValueIndexed><ValueDefault>0</ValueDefault><Min>7</Min><Max>8</Max><Inc>9</Inc>"
        "<Unit>own</Unit><Representation>Linear</Representation><Extension><Default>6</Default></Extension>");
    IInteger& node = doc.Integer("n");
    EXPECT_TRUE(HasRange(node, 7, 8, 9, 6));
    EXPECT_EQ(node.get_unit(), "own");
    EXPECT_EQ(node.get_representation(), Representation::Linear);
}

TEST(IndexedValue, BadRepresentationFallsToTheTargetInSilence) {
    TestDocument doc = table(
        "<pValueIndexed "
        "Index='1'>a</pValueIndexed><ValueDefault>0</ValueDefault><Representation>x</Representation>");
    EXPECT_EQ(doc.Integer("n").get_representation(), Representation::HexNumber);
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(IndexedValue, RangeCheckOfTheNode) {
    TestDocument doc =
        table("<pValueIndexed Index='1'>a</pValueIndexed><ValueDefault>0</ValueDefault><Max>50</Max>");
    EXPECT_EQ(doc.Integer("n").set_val(51, 0), code(value_out_of_range));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::integer_pIndex_type::set_val, Integer (\"n\"). Failed range "
                            "check for parameter value=51.\n"));
}

TEST(IndexedFloat, TableOfDoubles) {
    TestDocument doc = table(
        "<ValueIndexed Index='1'>1.5</ValueIndexed><pValueIndexed Index='2'>f</pValueIndexed>"
        "<ValueDefault>-0.5</ValueDefault><Min>-10</Min>",
        "Float");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_val(0).value(), 1.5);
    EXPECT_FALSE(node.set_val(1.75, 0));
    EXPECT_EQ(node.get_val(0).value(), 1.75);
    EXPECT_FALSE(doc.Integer("index").set_val(2, 0));
    EXPECT_EQ(node.get_val(0).value(), 2.5);
    EXPECT_FALSE(node.set_val(3.5, 0));
    EXPECT_EQ(doc.Float("f").get_val(0).value(), 3.5);
    EXPECT_FALSE(doc.Integer("index").set_val(3, 0));
    EXPECT_EQ(node.get_val(0).value(), -0.5);
}

TEST(IndexedFloat, RangeAndDisplayOfTheCurrentTarget) {
    TestDocument doc = table(
        "<pValueIndexed Index='1'>f</pValueIndexed><pValueIndexed "
        "Index='2'>a</pValueIndexed><ValueDefault>0</ValueDefault>",
        "Float");
    IFloat& node = doc.Float("n");
    EXPECT_TRUE(HasRange(node, -10, 10, 0.5, 1.5));
    EXPECT_EQ(node.get_unit(), "uf");
    EXPECT_EQ(node.get_representation(), FloatRepresentation::Logarithmic);
    EXPECT_EQ(node.get_display_notation(), DisplayNotation::Fixed);
    EXPECT_EQ(node.get_display_precision(), 3);
    EXPECT_FALSE(doc.Integer("index").set_val(2, 0));
    EXPECT_EQ(node.get_min(0).value(), 5.0) << "the range converts from an integer target";
    EXPECT_EQ(node.get_unit(), "");
    EXPECT_EQ(node.get_representation(), FloatRepresentation::PureNumber);
    EXPECT_EQ(node.get_display_notation(), DisplayNotation::Automatic);
    EXPECT_EQ(node.get_display_precision(), 6);
    EXPECT_FALSE(doc.Integer("index").set_val(3, 0));
    EXPECT_TRUE(
        HasRange(node, std::numeric_limits<double>::min(), std::numeric_limits<double>::max(), none, none));
}

TEST(IndexedFloat, BadDisplayTextsAreNotLogged) {
    TestDocument doc = table(
        "<pValueIndexed "
        "Index='1'>f</pValueIndexed><ValueDefault>0</ValueDefault><Representation>x</Representation>"
        "<DisplayNotation>x</DisplayNotation><DisplayPrecision>x</DisplayPrecision>",
        "Float");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_representation(), FloatRepresentation::Logarithmic);
    EXPECT_EQ(node.get_display_notation(), DisplayNotation::Fixed);
    EXPECT_EQ(node.get_display_precision(), 3);
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(IndexedFloat, TheRangeMessagePrintsTheBitsOfTheDouble) {
    TestDocument doc = table(
        "<ValueIndexed Index='1'>1.5</ValueIndexed><ValueDefault>0</ValueDefault><Max>2</Max>", "Float");
    EXPECT_EQ(doc.Float("n").set_val(3.0, 0), code(value_out_of_range));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::float_pIndex_type::set_val, Integer (\"n\"). Failed range check "
                            "for parameter value=4613937818241073152.\n"));
}

TEST(IndexedFloat, ItsOwnDisplayElementsGoBeforeThoseOfTheTarget) {
    TestDocument doc = table(
        "<pValueIndexed Index='1'>f</pValueIndexed><ValueDefault>0</ValueDefault><Unit>own</Unit>"
        "<Representation>Linear</Representation><DisplayNotation>Scientific</DisplayNotation>"
        "<DisplayPrecision>9</DisplayPrecision>",
        "Float");
    IFloat& node = doc.Float("n");
    EXPECT_EQ(node.get_representation(), FloatRepresentation::Linear);
    EXPECT_EQ(node.get_unit(), "own");
    EXPECT_EQ(node.get_display_notation(), DisplayNotation::Scientific);
    EXPECT_EQ(node.get_display_precision(), 9);
}

TEST(IndexedFloat, AnIndexThatCannotBeReadFailsReadingAndWriting) {
    TestDocument doc(
        "<Float Name='n'><pIndex>index</pIndex><ValueIndexed Index='1'>2</ValueIndexed><ValueDefault>0"
        "</ValueDefault></Float><Integer Name='index'><pValue>nowhere</pValue></Integer>");
    EXPECT_EQ(doc.Float("n").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Float("n").set_val(1.5, 0), code(not_implemented));
}

}  // namespace
}  // namespace node_test
