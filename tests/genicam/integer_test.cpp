#include "tests/support/node_test.h"

namespace node_test {
namespace {

TEST(IntegerValue, RangeIsCheckedAndTheIncrementIsNot) {
    TestDocument doc("<Integer Name='n'><Value>5</Value><Min>0</Min><Max>10</Max><Inc>2</Inc></Integer>");
    IInteger& node = doc.Integer("n");
    EXPECT_FALSE(node.set_val(3, 0));
    EXPECT_EQ(node.get_val(0).value(), 3);
    EXPECT_EQ(node.set_val(11, 0), code(value_out_of_range));
    EXPECT_EQ(node.set_val(-1, 0), code(value_out_of_range));
    EXPECT_EQ(node.get_val(0).value(), 3);
    EXPECT_THAT(
        doc.log.Take(),
        ElementsAre("GenICam::integer_floating_value_type::set_val, Integer (\"n\"). Failed range check for "
                    "parameter value=11.\n",
                    "GenICam::integer_floating_value_type::set_val, Integer (\"n\"). Failed range check for "
                    "parameter value=-1.\n"));
    EXPECT_FALSE(node.set_val(11, access_flags::skip_range_check));
    EXPECT_EQ(node.get_val(0).value(), 11);
    EXPECT_EQ(node.get_inc(0).value(), 2);
}

TEST(IntegerValue, RangeMessagesPrintSixtyFourBits) {
    TestDocument doc("<Integer Name='n'><Value>5</Value><Max>10</Max></Integer>");
    EXPECT_TRUE(doc.Integer("n").set_val(highest, 0));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::integer_floating_value_type::set_val, Integer (\"n\"). Failed "
                            "range check for parameter value=9223372036854775807.\n"));
}

TEST(IntegerValue, Texts) {
    const struct {
        const char* text;
        std::int64_t value;
    } rows[] = {{"0x10", 16}, {" -5", -5}, {"--5", 5}, {"12abc", 12}, {"18446744073709551615", -1}};
    for (const auto& row : rows) {
        TestDocument doc(std::string("<Integer Name='n'><Value>") + row.text + "</Value></Integer>");
        EXPECT_EQ(doc.Integer("n").get_val(0).value(), row.value) << row.text;
        EXPECT_THAT(doc.load_messages, IsEmpty());
    }
}

TEST(IntegerValue, BadTextLeavesZero) {
    for (const char* text : {"abc", "", ".5"}) {
        TestDocument doc(std::string("<Integer Name='n'><Value>") + text + "</Value></Integer>");
        EXPECT_EQ(doc.Integer("n").get_val(0).value(), 0);
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre(
                "GenICam::integer_floating_value_type::_resolve_references, Integer (\"n\"). Failed to "
                "parse or resolve \"Value\" xml element.\n"));
    }
}

TEST(IntegerValue, PercentSignsOfADescriptionAreNoConversions) {
    TestDocument doc("<Integer Name='%s%n'><Value>5</Value><Max>4</Max></Integer>");
    EXPECT_TRUE(doc.Integer("%s%n").set_val(6, 0));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::integer_floating_value_type::set_val, Integer (\"%s%n\"). Failed "
                            "range check for parameter value=6.\n"));
}

TEST(IntegerValue, DefaultsOfTheRange) {
    TestDocument doc("<Integer Name='n'><Value>5</Value></Integer>");
    IInteger& node = doc.Integer("n");
    EXPECT_TRUE(HasRange(node, lowest, highest, 1, none));
}

TEST(IntegerValue, FractionsInTheRangeAreRounded) {
    TestDocument doc(
        "<Integer "
        "Name='n'><Value>5</Value><Min>1.5</Min><Max>9.4</Max><Inc>0.5</Inc><Extension><Default>2.5</Default>"
        "</Extension></Integer><Integer Name='m'><Value>5</Value><Min>-1.5</Min></Integer>");
    EXPECT_TRUE(HasRange(doc.Integer("n"), 2, 9, 1, 3));
    EXPECT_EQ(doc.Integer("m").get_min(0).value(), -2);
}

TEST(IntegerValue, LinkedLimits) {
    TestDocument doc(
        "<Integer "
        "Name='n'><Value>5</Value><pMin>low</pMin><pMax>high</pMax><pInc>step</pInc><Extension><pDefault>flag"
        "</pDefault></Extension></Integer><Float Name='low'><Value>-2.5</Value><Min>-9</Min></Float>"
        "<Enumeration Name='high'><Value>7</Value><EnumEntry "
        "Name='x'><Value>7</Value></EnumEntry></Enumeration>"
        "<Integer Name='step'><Value>2</Value></Integer><Boolean Name='flag'><Value>true</Value></Boolean>");
    IInteger& node = doc.Integer("n");
    EXPECT_TRUE(HasRange(node, -3, 7, 2, 1));
    EXPECT_FALSE(node.set_val(7, 0));
    EXPECT_EQ(node.set_val(8, 0), code(value_out_of_range));
}

TEST(IntegerConstant, ReadsButNeverWrites) {
    TestDocument doc(
        "<Integer Name='n'><Value>5</Value><ImposedAccessMode>RO</ImposedAccessMode><Min>1</Min></Integer>"
        "<Integer Name='bad'><Value>x</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>");
    IInteger& node = doc.Integer("n");
    EXPECT_EQ(node.get_val(0).value(), 5);
    EXPECT_EQ(node.set_val(5, 0), code(access_denied));
    EXPECT_EQ(node.set_val(5, access_flags::skip_access_check | access_flags::skip_range_check),
              code(access_denied));
    EXPECT_TRUE(HasRange(node, 1, highest, 1, none));
    EXPECT_EQ(doc.Integer("bad").get_val(0).value(), 0);
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::integer_constant_value_type::_resolve_references, Integer (\"bad\"). Failed to "
                    "parse or resolve \"Value\" xml element.\n"));
}

TEST(IntegerConstant, ItsAvailabilityCounts) {
    TestDocument doc(
        "<Integer Name='n'><Value>5</Value><ImposedAccessMode>RO</ImposedAccessMode><pIsAvailable>no"
        "</pIsAvailable></Integer><Integer Name='no'><Value>0</Value></Integer>");
    EXPECT_EQ(doc.Integer("n").get_val(0).error(), code(node_not_available));
    EXPECT_EQ(doc.Integer("n").set_val(1, 0), code(access_denied));
}

TEST(IntegerLink, ReadsAndWritesItsTarget) {
    TestDocument doc(
        "<Integer Name='n'><pValue>f</pValue></Integer><Float Name='f'><Value>2.5</Value><Min>-9</Min>"
        "<Max>9</Max><Inc>0.5</Inc><Extension><Default>1.5</Default></Extension></Float>");
    IInteger& node = doc.Integer("n");
    EXPECT_EQ(node.get_val(0).value(), 3);
    EXPECT_FALSE(doc.Float("f").set_val(-2.5, 0));
    EXPECT_EQ(node.get_val(0).value(), -3);
    EXPECT_FALSE(node.set_val(4, 0));
    EXPECT_EQ(doc.Float("f").get_val(0).value(), 4.0);
    EXPECT_TRUE(HasRange(node, -9, 9, 1, 2));
    EXPECT_EQ(node.set_val(10, 0), code(value_out_of_range));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::integer_pValue_type::set_val, Integer (\"n\"). Failed range "
                            "check for parameter value=10.\n"));
    EXPECT_EQ(node.set_val(10, access_flags::skip_range_check).value(), 0) << "the flag reaches the target";
    EXPECT_EQ(doc.Float("f").get_val(0).value(), 10.0);
}

constexpr const char* copy_targets =
    "<Integer "
    "Name='a'><Value>1</Value><Min>-5</Min><Max>50</Max><Inc>2</Inc><Extension><Default>9</Default></"
    "Extension>"
    "</Integer><Integer Name='b'><Value>2</Value><Min>0</Min><Max>40</Max></Integer>"
    "<Integer Name='ro'><Value>3</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer><String "
    "Name='s'/>";

TEST(IntegerCopies, WritesAllInDocumentOrderAndReadsOne) {
    TestDocument doc(std::string("<Integer Name='n'><pValueCopy>b</pValueCopy><pValue>a</pValue></Integer>") +
                     copy_targets);
    IInteger& node = doc.Integer("n");
    EXPECT_EQ(node.get_val(0).value(), 1);
    std::string order;
    doc.Node("a").register_callback([&order](INode*) { order += 'a'; });
    doc.Node("b").register_callback([&order](INode*) { order += 'b'; });
    EXPECT_FALSE(node.set_val(7, 0));
    EXPECT_EQ(order, "ba");
    EXPECT_EQ(doc.Integer("a").get_val(0).value(), 7);
    EXPECT_EQ(doc.Integer("b").get_val(0).value(), 7);
}

TEST(IntegerCopies, TheNarrowestRangeOfAll) {
    TestDocument doc(std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy></Integer>") +
                     copy_targets);
    IInteger& node = doc.Integer("n");
    EXPECT_TRUE(HasRange(node, 0, 40, 2, 9));
    EXPECT_EQ(node.set_val(41, 0), code(value_out_of_range));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::integer_pValueCopy_type::set_val, Integer (\"n\"). Failed range "
                            "check for parameter value=41.\n"));
}

TEST(IntegerCopies, ItsDefaultIsTheIncrementWhereOneIsStated) {
    TestDocument stated(
        std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy><Inc>4</Inc><Extension>"
                    "<Default>6</Default></Extension></Integer>") +
        copy_targets);
    EXPECT_EQ(stated.Integer("n").get_default(0).value(), 4);
    TestDocument linked(
        std::string(
            "<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy><pInc>b</pInc></Integer>") +
        copy_targets);
    EXPECT_EQ(linked.Integer("n").get_default(0).value(), 2);
    TestDocument unused(
        std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy><Extension><Default>6"
                    "</Default></Extension></Integer>") +
        copy_targets);
    EXPECT_EQ(unused.Integer("n").get_default(0).value(), 9) << "the stated default is never used";
}

TEST(IntegerCopies, StopsAtTheFirstFailureAndKeepsWhatWasWritten) {
    TestDocument doc(
        std::string(
            "<Integer Name='n'><pValue>a</pValue><pValueCopy>ro</pValueCopy><pValueCopy>b</pValueCopy>"
            "</Integer>") +
        copy_targets);
    EXPECT_EQ(doc.Integer("n").set_val(8, 0), code(access_denied));
    EXPECT_EQ(doc.Integer("a").get_val(0).value(), 8);
    EXPECT_EQ(doc.Integer("b").get_val(0).value(), 2);
}

TEST(IntegerCopies, AFailingTargetFailsTheRange) {
    TestDocument doc(std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>s</pValueCopy></Integer>") +
                     copy_targets);
    EXPECT_EQ(doc.Integer("n").get_min(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Integer("n").get_max(0).error(), code(not_implemented));
    EXPECT_FALSE(doc.Integer("n").get_inc(0).has_error());
}

TEST(IntegerCopies, UnresolvedTargets) {
    TestDocument copy(
        std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>gone</pValueCopy></Integer>") +
        copy_targets);
    EXPECT_THAT(copy.load_messages,
                ElementsAre("GenICam::integer_pValueCopy_type::_resolve_references, Integer "
                            "(\"n\"). Failed to parse or resolve \"pValueCopy\" xml element.\n"));
    EXPECT_FALSE(copy.Integer("n").set_val(8, 0));
    TestDocument value(
        std::string("<Integer Name='n'><pValue>gone</pValue><pValueCopy>b</pValueCopy></Integer>") +
        copy_targets);
    EXPECT_THAT(value.load_messages,
                ElementsAre("GenICam::integer_pValueCopy_type::_resolve_references, Integer "
                            "(\"n\"). Failed to parse or resolve \"pValue\" xml element.\n"));
    IInteger& node = value.Integer("n");
    EXPECT_EQ(node.get_val(0).error(), code(not_implemented));
    EXPECT_EQ(node.set_val(8, 0), code(not_implemented));
    EXPECT_TRUE(HasRange(node, lowest, highest, none, none));
    EXPECT_EQ(value.Integer("b").get_val(0).value(), 2);
}

TEST(IntegerCopies, OnlyTheValueRegistersADependent) {
    TestDocument doc(std::string("<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy></Integer>") +
                     copy_targets);
    EXPECT_EQ(doc.Node("a").get_eval()->get_dependent_count(), 1);
    EXPECT_EQ(doc.Node("b").get_eval()->get_dependent_count(), 0);
}

}  // namespace
}  // namespace node_test
