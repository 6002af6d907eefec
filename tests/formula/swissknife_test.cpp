#include "tests/formula/formula_node_test.h"

using namespace formula_test;

namespace {

TEST(IntSwissKnife, FixedAnswers) {
    TestDocument doc(node("IntSwissKnife", formula("5")));
    IInteger& swissknife = doc.Integer("k");
    EXPECT_EQ(swissknife.get_node_type(), node_type::integer);
    EXPECT_EQ(swissknife.get_min(0).value(), lowest);
    EXPECT_EQ(swissknife.get_max(0).value(), highest);
    EXPECT_EQ(swissknife.get_inc(0).value(), 1);
    EXPECT_EQ(swissknife.get_default(0).error(), code(not_implemented));
    EXPECT_EQ(swissknife.set_val(5, 0), code(not_implemented));
    EXPECT_EQ(swissknife.get_access_mode(), AccessMode::RO);
    EXPECT_EQ(swissknife.get_eval()->get_access_source(), nullptr);
    EXPECT_EQ(swissknife.get_eval()->get_dependent_count(), 0);
    EXPECT_EQ(swissknife.get_representation(), Representation::PureNumber);
    EXPECT_EQ(swissknife.get_unit(), "");
    EXPECT_THAT(swissknife.get_selected(), IsEmpty());
}

TEST(IntSwissKnife, CommonElements) {
    TestDocument doc(integer("n", "1") + node("IntSwissKnife",
                                              "<Unit>us</Unit><Representation>HexNumber</Representation>"
                                              "<pSelected>n</pSelected>" +
                                                  formula("5")));
    EXPECT_EQ(doc.Integer("k").get_representation(), Representation::HexNumber);
    EXPECT_EQ(doc.Integer("k").get_unit(), "us");
    EXPECT_THAT(doc.Integer("k").get_selected(), ElementsAre(&doc.Node("n")));
}

TEST(SwissKnife, FixedAnswers) {
    TestDocument doc(node("SwissKnife", formula("5")));
    IFloat& swissknife = doc.Float("k");
    EXPECT_EQ(swissknife.get_node_type(), node_type::floating);
    EXPECT_EQ(swissknife.get_min(0).value(), 2.2250738585072014e-308)
        << "positive, as in a float without a Min";
    EXPECT_EQ(swissknife.get_max(0).value(), 1.7976931348623157e+308);
    EXPECT_EQ(swissknife.get_inc(0).error(), code(not_implemented));
    EXPECT_EQ(swissknife.get_default(0).error(), code(not_implemented));
    EXPECT_EQ(swissknife.set_val(5, 0), code(not_implemented));
    EXPECT_EQ(swissknife.get_access_mode(), AccessMode::RO);
    EXPECT_EQ(swissknife.get_eval()->get_access_source(), nullptr);
    EXPECT_EQ(swissknife.get_display_notation(), DisplayNotation::Automatic);
    EXPECT_EQ(swissknife.get_display_precision(), 6);
}

TEST(SwissKnife, CommonElements) {
    TestDocument doc(node("SwissKnife",
                          "<Unit>dB</Unit><Representation>Linear</Representation>"
                          "<DisplayNotation>Fixed</DisplayNotation>"
                          "<DisplayPrecision>2</DisplayPrecision>" +
                              formula("5")));
    EXPECT_EQ(doc.Float("k").get_representation(), FloatRepresentation::Linear);
    EXPECT_EQ(doc.Float("k").get_unit(), "dB");
    EXPECT_EQ(doc.Float("k").get_display_notation(), DisplayNotation::Fixed);
    EXPECT_EQ(doc.Float("k").get_display_precision(), 2);
}

TEST(SwissKnives, AreReadOnlyWhateverIsImposed) {
    for (const char* element : {"IntSwissKnife", "SwissKnife"}) {
        TestDocument imposed(node(element, "<ImposedAccessMode>RW</ImposedAccessMode>" + formula("5")));
        EXPECT_EQ(imposed.Node("k").get_access_mode(), AccessMode::RO);
        EXPECT_THAT(imposed.load_messages, IsEmpty());
        TestDocument write_only(node(element, "<ImposedAccessMode>WO</ImposedAccessMode>" + formula("5")));
        EXPECT_EQ(write_only.Node("k").get_access_mode(), AccessMode::WO);
        EXPECT_THAT(
            write_only.load_messages,
            ElementsAre("GenICam::node_base_data::set_actual_access_mode, " + std::string(element) +
                        " (\"k\"). Trying to change access mode from ImposedAccessMode == WO to RO.\n"));
    }
}

TEST(SwissKnives, GiveTheirOwnKind) {
    EXPECT_EQ(TestDocument(node("IntSwissKnife", formula("5.0/2"))).Integer("k").get_val(0).value(), 3);
    EXPECT_EQ(TestDocument(node("IntSwissKnife", formula("-5.0/2"))).Integer("k").get_val(0).value(), -3);
    EXPECT_EQ(TestDocument(node("IntSwissKnife", formula("1e300"))).Integer("k").get_val(0).value(), lowest);
    EXPECT_EQ(TestDocument(node("SwissKnife", formula("5/2"))).Float("k").get_val(0).value(), 2.0);
    EXPECT_EQ(TestDocument(node("SwissKnife", formula("1?1:2.5"))).Float("k").get_val(0).value(), 1.0);
}

TEST(SwissKnives, WithoutAFormulaAreNotImplemented) {
    for (const char* children :
         {"", "<Formula/>", "<Formula></Formula>", "<Constant Name='C'>$</Constant>"}) {
        TestDocument doc("<IntSwissKnife Name='a'>" + std::string(children) +
                         "</IntSwissKnife><SwissKnife Name='b'>" + children + "</SwissKnife>");
        const std::string prefix =
            "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"";
        EXPECT_THAT(doc.load_messages, ElementsAre(prefix + "a\"). Failed due to missing Formula member.\n",
                                                   prefix + "b\"). Failed due to missing Formula member.\n"));
        EXPECT_EQ(doc.Integer("a").get_val(0).error(), code(not_implemented));
        EXPECT_EQ(doc.Float("b").get_val(0).error(), code(not_implemented));
    }
}

TEST(SwissKnives, WithABlankFormulaHaveAnEmptyProgram) {
    TestDocument doc(node("IntSwissKnife", formula("  \n ")));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
}

TEST(SwissKnives, WithABadFormulaAreNotImplemented) {
    for (const char* element : {"IntSwissKnife", "SwissKnife"}) {
        TestDocument doc(node(element, formula("(1+2")));
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre(
                parse_failed("Failed to find a ')'.", ""),
                "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"k\"). "
                "failed to evaluate \"(1+2\"\n"));
        const bool is_integer = std::string_view(element) == "IntSwissKnife";
        EXPECT_EQ(is_integer ? doc.Integer("k").get_val(0).error() : doc.Float("k").get_val(0).error(),
                  code(not_implemented));
    }
}

TEST(SwissKnives, WhoseProgramFailsSaySo) {
    TestDocument doc(node("IntSwissKnife", formula("1 ? 2 :")));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(formula_parse_failed));
}

TEST(SwissKnives, MakeNoAccessCheck) {
    TestDocument doc(integer("no", "0") +
                     node("IntSwissKnife",
                          "<pIsAvailable>no</pIsAvailable><pIsImplemented>no</pIsImplemented>"
                          "<ImposedAccessMode>WO</ImposedAccessMode>" +
                              formula("5")));
    EXPECT_FALSE(doc.Node("k").is_available());
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 5);
}

TEST(SwissKnives, StandOnOneAnother) {
    TestDocument doc(integer("n", "5") + "<IntSwissKnife Name='a'>" + variable("N", "n") + formula("N*2") +
                     "</IntSwissKnife>" + node("SwissKnife", variable("A", "a") + formula("A/4")));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 2.5);
    ChangeCounter changes(doc.Node("k"));
    EXPECT_FALSE(doc.Integer("n").set_val(6, 0));
    EXPECT_EQ(changes.Count(), 1);
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 3.0);
}

TEST(SwissKnives, MayBeTruthValues) {
    TestDocument doc(
        integer("n", "5") + "<IntSwissKnife Name='open'>" + variable("N", "n") + formula("N>4") +
        "</IntSwissKnife><Integer Name='x'><Value>1</Value><pIsAvailable>open</pIsAvailable></Integer>");
    EXPECT_TRUE(doc.Node("x").is_available());
    EXPECT_FALSE(doc.Integer("n").set_val(4, 0));
    EXPECT_FALSE(doc.Node("x").is_available());
}

TEST(SwissKnives, InsideARegisterAreItsAddress) {
    TestDocument doc(integer("n", "2") + "<IntReg Name='r'><IntSwissKnife Name='k'>" + variable("N", "n") +
                     formula("0x100+N*4") +
                     "</IntSwissKnife><Length>4</Length><pPort>Device</pPort></IntReg>");
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 0x108);
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(test_support::ReadOf(0x108, 4)));
}

// Each formula alone is within its own bound, all together are not: those that come first by name have
// theirs.
TEST(SwissKnives, ExpressionsThatDoubleInManyNodesShareOneBudget) {
    constexpr int levels = 14;
    constexpr int count = 60;
    std::string expressions;
    for (int level = 1; level <= levels; ++level) {
        const std::string inner = "E" + std::to_string(level - 1);
        expressions +=
            "<Expression Name='E" + std::to_string(level) + "'>" + inner + "+" + inner + "</Expression>";
    }
    const std::string formula = "<Formula>E" + std::to_string(levels) + "</Formula></IntSwissKnife>";
    std::string text = "<Integer Name='V'><Value>1</Value></Integer>";
    for (int at = 0; at < count; ++at) {
        text += "<IntSwissKnife Name='K" + std::to_string(100 + at) + "'><pVariable Name='E0'>V</pVariable>" +
                expressions + formula;
    }
    text += "<IntSwissKnife Name='Z'><pVariable Name='A'>V</pVariable><Formula>A+A</Formula></IntSwissKnife>";
    TestDocument doc(text);
    int working = 0;
    for (int at = 0; at < count; ++at) {
        const auto value = doc.Integer("K" + std::to_string(100 + at)).get_val(0);
        if (!value) {
            EXPECT_EQ(value.error(), code(not_implemented));
            continue;
        }
        EXPECT_EQ(value.value(), 1 << levels);
        EXPECT_EQ(working, at) << "none works behind one that was refused";
        ++working;
    }
    EXPECT_GE(working, 8);
    EXPECT_LT(working, 20);
    EXPECT_EQ(doc.Integer("Z").get_val(0).value(), 2) << "has no expression";
}

}  // namespace
