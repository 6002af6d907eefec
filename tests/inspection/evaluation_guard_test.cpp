// What the engine would not survive is known before it is asked.

#include "inspection/evaluation_guard.h"

#include "genicam/base/value_links.h"
#include "genicam/nodes/formula_watch.h"
#include "tests/support/description_files.h"

#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace selvane_inspect;
using GenICam::eval_value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EvaluationGuardTest : public test_support::DescriptionFiles {
protected:
    void Load(const std::string& elements) {
        opened_ = description::open(WriteElements(elements));
        guard_.emplace(*opened_);
    }
    [[nodiscard]] GenICam::INode& Node(const std::string& name) const {
        GenICam::INode* node = opened_->document()->find_node(name);
        if (node == nullptr) throw std::invalid_argument("no node " + name);
        return *node;
    }
    /// The words for a hazard; empty for none.
    [[nodiscard]] std::string Find(const std::string& name, operation asked) {
        return Words(guard_->find(Node(name), asked));
    }
    [[nodiscard]] std::string FindInStore(const std::string& name, const eval_value& value) {
        GenICam::INode& node = Node(name);
        return Words(guard_->find_in_store(node, [&] {
            static_cast<void>(value.is_integer ? GenICam::set_eval_val(&node, value.value.integer, 0)
                                               : GenICam::set_eval_val(&node, value.value.real, 0));
        }));
    }
    [[nodiscard]] description& Opened() { return *opened_; }
    [[nodiscard]] evaluation_guard& Guard() { return *guard_; }

private:
    [[nodiscard]] std::string Words(const hazard* found) const {
        return found != nullptr ? guard_->describe(*found) : std::string();
    }

    std::unique_ptr<description> opened_;
    std::optional<evaluation_guard> guard_;
};

std::string Link(const std::string& name, const std::string& target) {
    return "<Integer Name=\"" + name + "\"><pValue>" + target + "</pValue></Integer>";
}

std::string Register(const std::string& name, const std::string& address) {
    return "<IntReg Name=\"" + name + "\"><Address>" + address + "</Address><Length>4</Length></IntReg>";
}

/// An integer over a register, whose maximum is twice what it reads of itself: "X" its value, "X.Max" its
/// maximum.
std::string WithMaximum(const std::string& name, const std::string& twice) {
    return "<Integer Name=\"" + name +
           "\"><pValue>R</pValue><pMax>Twice</pMax></Integer><IntSwissKnife Name=\"Twice\"><pVariable "
           "Name=\"" +
           twice + "\">" + name + "</pVariable><Formula>" + twice + "*2</Formula></IntSwissKnife>" +
           Register("R", "0");
}

TEST_F(EvaluationGuardTest, LetsTheHarmlessThrough) {
    Load(Link("A", "R") + Register("R", "0"));
    for (std::size_t asked = 0; asked < operation_count; ++asked) {
        EXPECT_EQ(Find("A", static_cast<operation>(asked)), "");
    }
    EXPECT_TRUE(Guard().all().empty());
}

// Which feature an index chooses is asked before that feature is asked for its access.
TEST_F(EvaluationGuardTest, FindsACircleOfAccessThroughAnIndex) {
    Load(
        "<Integer Name=\"A\"><pIndex>K</pIndex><pValueIndexed Index=\"0\">R</pValueIndexed></Integer>"
        "<IntSwissKnife Name=\"K\"><pVariable Name=\"X\">B</pVariable><Formula>X</Formula></IntSwissKnife>" +
        Link("B", "A") + Register("R", "0"));
    EXPECT_THAT(Find("A", operation::access), HasSubstr("a circle"));
    EXPECT_THAT(Find("B", operation::access), HasSubstr("a circle"));
    EXPECT_EQ(Find("R", operation::access), "");
}

// What a feature writes to holds the value against limits of its own.
TEST_F(EvaluationGuardTest, FindsACircleInTheLimitsOfWhatIsWrittenTo) {
    Load("<Integer Name=\"A\"><pValue>B</pValue><Min>0</Min><Max>9</Max></Integer>" +
         WithMaximum("B", "X.Max"));
    EXPECT_EQ(Find("A", operation::value), "");
    EXPECT_EQ(Find("A", operation::maximum), "");
    EXPECT_THAT(Find("A", operation::store), HasSubstr("a circle"));
}

TEST_F(EvaluationGuardTest, FindsACircleOfValues) {
    Load(Link("A", "B") + Link("B", "C") + Link("C", "A") + Link("D", "B"));
    EXPECT_EQ(Find("A", operation::value), "a circle: A needs B needs C needs A");
    EXPECT_THAT(Find("D", operation::value), HasSubstr("a circle"));
    EXPECT_THAT(Find("D", operation::store), HasSubstr("a circle"));
    EXPECT_THAT(Find("D", operation::access), HasSubstr("a circle"));
    EXPECT_EQ(Find("D", operation::implemented), "");
    EXPECT_EQ(Guard().all().size(), 1U);
}

TEST_F(EvaluationGuardTest, FindsANodeThatNeedsItself) {
    Load(Link("A", "A"));
    EXPECT_EQ(Find("A", operation::value), "a circle: A needs A");
}

TEST_F(EvaluationGuardTest, ALimitThatReadsTheValueIsNoCircle) {
    Load(WithMaximum("A", "X"));
    EXPECT_EQ(Find("A", operation::maximum), "");
    EXPECT_EQ(Find("A", operation::store), "");
}

TEST_F(EvaluationGuardTest, ALimitThatReadsItselfIsACircle) {
    Load(WithMaximum("A", "X.Max"));
    EXPECT_THAT(Find("A", operation::maximum), HasSubstr("a circle"));
    EXPECT_EQ(Find("A", operation::value), "");
    EXPECT_THAT(Find("A", operation::store), HasSubstr("a circle"));
}

TEST_F(EvaluationGuardTest, ALockThatReadsTheValueIsNoCircle) {
    Load("<Integer Name=\"A\"><pValue>R</pValue><pIsLocked>A</pIsLocked></Integer>" + Register("R", "0"));
    EXPECT_EQ(Find("A", operation::locked), "");
    EXPECT_EQ(Find("A", operation::value), "");
}

TEST_F(EvaluationGuardTest, AnAvailabilityThatReadsTheValueIsACircle) {
    for (const char* link : {"pIsAvailable", "pIsImplemented"}) {
        const std::string element = link;
        Load("<Integer Name=\"A\"><pValue>R</pValue><" + element + ">A</" + element + "></Integer>" +
             Register("R", "0"));
        EXPECT_THAT(Find("A", operation::value), HasSubstr("a circle")) << link;
    }
}

TEST_F(EvaluationGuardTest, FollowsAddresses) {
    Load(
        "<IntReg Name=\"A\"><pAddress>B</pAddress><Length>4</Length></IntReg>"
        "<IntReg Name=\"B\"><Address>0</Address><pIndex "
        "pOffset=\"C\">Zero</pIndex><Length>4</Length></IntReg>"
        "<Integer Name=\"Zero\"><Value>0</Value></Integer>"
        "<IntReg Name=\"C\"><IntSwissKnife Name=\"K\"><pVariable Name=\"X\">A</pVariable><Formula>X</Formula>"
        "</IntSwissKnife><Length>4</Length></IntReg>");
    EXPECT_EQ(Find("A", operation::value), "a circle: A needs B needs C needs K needs A");
}

TEST_F(EvaluationGuardTest, FollowsTheFrameOfAStructure) {
    Load(
        "<StructReg><pAddress>E</pAddress><Length>4</Length><StructEntry "
        "Name=\"E\"><Bit>0</Bit></StructEntry></StructReg>");
    EXPECT_EQ(Find("E", operation::value), "a circle: E needs E");
}

TEST_F(EvaluationGuardTest, EntriesOfAStructureNeedItsPlaceOnce) {
    Load(
        "<StructReg><pAddress>A</pAddress><pAddress>A</pAddress><pIndex "
        "pOffset=\"B\">A</pIndex><Length>4</Length>"
        "<pPort>Device</pPort><pIsLocked>A</pIsLocked>"
        "<StructEntry Name=\"E\"><Bit>0</Bit><pIsLocked>A</pIsLocked></StructEntry>"
        "<StructEntry Name=\"F\"><Bit>1</Bit></StructEntry></StructReg>"
        "<Integer Name=\"A\"><Value>1</Value></Integer><Integer Name=\"B\"><Value>1</Value></Integer>");
    const operation_graph& graph = Guard().graph();
    const auto element = [&](const char* name) { return *Opened().tree().find(Node(name)); };
    const auto shared = [&](const char* name) {
        std::vector<element_index> found;
        for (const node_operation need : graph.needs_of({element(name), operation::value})) {
            if (need.element != element(name)) found.push_back(need.element);
        }
        return found;
    };
    ASSERT_EQ(shared("E").size(), 1U);
    EXPECT_EQ(shared("F"), shared("E"));
    const element_index place = shared("E").front();
    EXPECT_FALSE(graph.is_node(place));
    std::vector<element_index> needs;
    for (const node_operation need : graph.needs_of({place, operation::value})) {
        EXPECT_EQ(need.asked, operation::value);
        needs.push_back(need.element);
    }
    EXPECT_THAT(needs, testing::UnorderedElementsAre(element("A"), element("A"), element("A"), element("B")));
    std::vector<std::string> roles;
    graph.for_each_link(element("E"), [&](const element_link& link) { roles.emplace_back(link.role); });
    EXPECT_THAT(roles,
                ElementsAre("pIsLocked", "pAddress", "pAddress", "pIndex", "pOffset", "pPort", "pIsLocked"));
}

TEST_F(EvaluationGuardTest, NodesOfOneNameAreNeededTogether) {
    Load("<Integer Name=\"A\"><Value>1</Value></Integer><Integer Name=\"A\"><pValue>C</pValue></Integer>" +
         Link("B", "A") + Link("C", "A") + Link("D", "B"));
    const operation_graph& graph = Guard().graph();
    const auto beyond = [&](const char* name) {
        const element_index element = *Opened().tree().find(Node(name));
        std::vector<element_index> found;
        for (const node_operation need : graph.needs_of({element, operation::value})) {
            if (!graph.is_node(need.element)) found.push_back(need.element);
        }
        return found;
    };
    ASSERT_EQ(beyond("B").size(), 1U);
    EXPECT_EQ(beyond("C"), beyond("B"));
    EXPECT_THAT(beyond("D"), IsEmpty());
    std::vector<element_index> namesakes;
    for (const node_operation need : graph.needs_of({beyond("B").front(), operation::minimum})) {
        EXPECT_EQ(need.asked, operation::minimum);
        namesakes.push_back(need.element);
    }
    EXPECT_EQ(namesakes, Opened().tree().find("A"));
    EXPECT_EQ(Find("D", operation::value), "a circle: A needs C needs A");
}

// The place of an entry is no step of its own: with a chain of 999 below it, the entry is the last of 1,000.
TEST_F(EvaluationGuardTest, ThePlaceOfAnEntryIsNoStep) {
    const auto load = [this](int links) {
        std::string chain = "<Integer Name=\"N0\"><Value>0</Value></Integer>";
        for (int at = 1; at <= links; ++at)
            chain += Link("N" + std::to_string(at), "N" + std::to_string(at - 1));
        const std::string last = "N" + std::to_string(links);
        Load(chain + "<StructReg><pAddress>" + last +
             "</pAddress><Length>1</Length><StructEntry Name=\"E\"><Bit>0</Bit>" +
             "</StructEntry></StructReg><IntReg Name=\"R\"><pAddress>" + last +
             "</pAddress><Length>1</Length></IntReg>");
    };
    for (const int links : {997, 998, 999, 1000}) {
        load(links);
        EXPECT_EQ(Find("E", operation::value).empty(), Find("R", operation::value).empty()) << links;
    }
    load(997);
    EXPECT_EQ(Find("E", operation::value), "");
    load(1000);
    EXPECT_NE(Find("E", operation::value), "");
    for (const int links : {998, 999, 1000, 1001}) {
        std::string chains =
            "<StructReg><Address>0</Address><Length>1</Length><StructEntry Name=\"E0\"><Bit>0</Bit>"
            "</StructEntry></StructReg><IntReg Name=\"R0\"><Address>0</Address><Length>1</Length></IntReg>";
        for (const std::string chain : {"E", "R"}) {
            for (int at = 1; at <= links; ++at)
                chains += Link(chain + std::to_string(at), chain + std::to_string(at - 1));
        }
        Load(chains);
        const std::string last = std::to_string(links);
        EXPECT_EQ(Find("E" + last, operation::value).empty(), Find("R" + last, operation::value).empty())
            << links;
    }
}

TEST_F(EvaluationGuardTest, NamesTheFirstOfALongCircle) {
    std::string circle;
    for (int at = 0; at < 25; ++at)
        circle += Link("N" + std::to_string(at), "N" + std::to_string((at + 1) % 25));
    Load(circle);
    const std::string words = Find("N0", operation::value);
    EXPECT_EQ(words.substr(0, 29), "a circle: N0 needs N1 needs N");
    EXPECT_EQ(words.substr(words.find("N19")), "N19 needs (5 more) needs N0");
}

TEST_F(EvaluationGuardTest, KeepsACircleOnceHoweverManyWaysLeadIntoIt) {
    Load(Link("A", "B") + "<Integer Name=\"B\"><pValue>A</pValue><pIsAvailable>A</pIsAvailable></Integer>" +
         Link("C", "A") + Link("D", "B"));
    const hazard* const from_b = Guard().find(Node("B"), operation::value);
    EXPECT_EQ(Guard().find(Node("A"), operation::value), from_b);
    EXPECT_EQ(Guard().find(Node("D"), operation::value), from_b);
    Guard().forget();
    EXPECT_EQ(Guard().find(Node("C"), operation::value), from_b);
    EXPECT_EQ(Guard().all().size(), 1U);
}

TEST_F(EvaluationGuardTest, FollowsIndexedValuesAndTheirUnits) {
    Load(
        "<Integer Name=\"A\"><pIndex>I</pIndex><pValueIndexed "
        "Index=\"0\">B</pValueIndexed><ValueDefault>0</ValueDefault>"
        "</Integer><Integer Name=\"I\"><Value>0</Value></Integer>"
        "<Integer Name=\"B\"><pIndex>I</pIndex><pValueIndexed "
        "Index=\"0\">A</pValueIndexed><ValueDefault>0</ValueDefault>"
        "</Integer>");
    for (const operation asked : {operation::value, operation::unit, operation::minimum, operation::access}) {
        EXPECT_EQ(Find("A", asked), "a circle: A needs B needs A");
    }
}

TEST_F(EvaluationGuardTest, AStatedLimitEndsTheAskingOfTargets) {
    for (const char* limit : {"<Min>0</Min>", "<pMin>I</pMin>"}) {
        Load("<Integer Name=\"A\"><pValue>B</pValue>" + std::string(limit) + "</Integer>" + Link("B", "A") +
             "<Integer Name=\"I\"><Value>0</Value></Integer>");
        EXPECT_EQ(Find("A", operation::minimum), "") << limit;
        EXPECT_THAT(Find("A", operation::maximum), HasSubstr("a circle")) << limit;
    }
}

TEST_F(EvaluationGuardTest, AnEnumerationsEntriesAreAskedByThemselves) {
    Load(
        "<Enumeration Name=\"E\"><pValue>R</pValue><EnumEntry "
        "Name=\"X\"><Value>0</Value><pIsAvailable>E</pIsAvailable>"
        "</EnumEntry></Enumeration>" +
        Register("R", "0"));
    EXPECT_EQ(Find("E", operation::value), "");
    auto* entry = static_cast<GenICam::IEnumeration&>(Node("E")).get_entries().front();
    EXPECT_EQ(Guard().find(*entry, operation::available), nullptr);
}

TEST_F(EvaluationGuardTest, RefusesChainsThatAreTooDeep) {
    std::string elements;
    for (int at = 0; at < 1200; ++at)
        elements += Link("N" + std::to_string(at), "N" + std::to_string(at + 1));
    Load(elements + Register("N1200", "0"));
    EXPECT_EQ(Find("N1199", operation::value), "");
    EXPECT_EQ(Find("N500", operation::value), "");
    EXPECT_THAT(Find("N0", operation::value), HasSubstr("depend on one another"));
}

TEST_F(EvaluationGuardTest, NeedsNoStackForAVeryLongChain) {
    std::string elements;
    for (int at = 0; at < 100000; ++at)
        elements += Link("N" + std::to_string(at), "N" + std::to_string(at + 1));
    Load(elements + Link("N100000", "N0"));
    EXPECT_THAT(Find("N7", operation::value).substr(0, 10), HasSubstr("a circle"));
}

constexpr const char* division =
    "<IntSwissKnife Name=\"K\"><pVariable Name=\"D\">R</pVariable><Formula>100/D</Formula></IntSwissKnife>";

TEST_F(EvaluationGuardTest, FindsADivisionByZeroInTheRegisters) {
    Load(division + Link("A", "K") + Register("R", "0x10"));
    EXPECT_THAT(Find("K", operation::value), HasSubstr("Formula of K divides integers"));
    EXPECT_THAT(Find("A", operation::value), HasSubstr("Formula of K divides integers"));
    EXPECT_EQ(Find("K", operation::minimum), "");
    Opened().memory().poke(0x13, simcam::bytes{5});
    Guard().forget();
    EXPECT_EQ(Find("K", operation::value), "");
}

TEST_F(EvaluationGuardTest, FindsTheOneQuotientThatDoesNotFit) {
    Load(
        "<IntSwissKnife Name=\"K\"><pVariable "
        "Name=\"A\">R</pVariable><Formula>(1&lt;&lt;63)/(A-1)</Formula></IntSwissKnife>" +
        Register("R", "0"));
    EXPECT_THAT(Find("K", operation::value), HasSubstr("divides"));
}

TEST_F(EvaluationGuardTest, FloatsDivideByZeroWithoutHarm) {
    Load(
        "<SwissKnife Name=\"K\"><pVariable Name=\"D\">R</pVariable><Formula>100/D</Formula></SwissKnife>"
        "<SwissKnife Name=\"L\"><pVariable Name=\"D\">R</pVariable><Formula>100 % D</Formula></SwissKnife>" +
        Register("R", "0"));
    EXPECT_EQ(Find("K", operation::value), "");
    EXPECT_THAT(Find("L", operation::value), HasSubstr("Formula of L divides"));
}

TEST_F(EvaluationGuardTest, AnUnreadableVariableIsTheIntegerZero) {
    Load(
        "<SwissKnife Name=\"K\"><pVariable Name=\"D\">R</pVariable><Formula>100/D</Formula></SwissKnife>"
        "<IntReg Name=\"R\"><Address>0</Address><Length>4</Length><AccessMode>WO</AccessMode></IntReg>");
    EXPECT_THAT(Find("K", operation::value), HasSubstr("divides"));
}

constexpr const char* converter =
    "<IntConverter "
    "Name=\"C\"><FormulaTo>1000/FROM</FormulaTo><FormulaFrom>1000/(TO+1)</FormulaFrom><pValue>R</pValue>"
    "</IntConverter>";

TEST_F(EvaluationGuardTest, FollowsAValueOnItsWayDown) {
    Load(converter + Link("A", "C") + Register("R", "0") +
         "<Boolean Name=\"B\"><pValue>C</pValue><OnValue>0</OnValue><OffValue>5</OffValue></Boolean>");
    EXPECT_EQ(FindInStore("C", eval_value::of(std::int64_t{5})), "");
    EXPECT_THAT(FindInStore("C", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
    EXPECT_EQ(FindInStore("A", eval_value::of(std::int64_t{5})), "");
    EXPECT_THAT(FindInStore("A", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
    EXPECT_THAT(FindInStore("B", eval_value::of(std::int64_t{1})), HasSubstr("FormulaTo of C divides"));
    EXPECT_EQ(FindInStore("B", eval_value::of(std::int64_t{0})), "");
}

TEST_F(EvaluationGuardTest, FollowsItThroughConvertersInARow) {
    Load(
        "<IntConverter "
        "Name=\"D\"><FormulaTo>FROM-5</FormulaTo><FormulaFrom>TO+5</FormulaFrom><pValue>C</pValue></"
        "IntConverter>" +
        std::string(converter) + Register("R", "0"));
    EXPECT_EQ(FindInStore("D", eval_value::of(std::int64_t{4})), "");
    EXPECT_THAT(FindInStore("D", eval_value::of(std::int64_t{5})), HasSubstr("FormulaTo of C"));
}

TEST_F(EvaluationGuardTest, ALinkCutsAFractionAndAConverterRoundsIt) {
    Load(
        "<Float Name=\"F\"><pValue>C</pValue></Float>"
        "<Float Name=\"G\"><pValue>D</pValue></Float>"
        "<Converter Name=\"D\"><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>C</pValue>"
        "</Converter>" +
        std::string(converter) + Register("R", "0"));
    for (const double number : {0.6, -0.9, 0.0})
        EXPECT_THAT(FindInStore("F", eval_value::of(number)), HasSubstr("FormulaTo of C divides")) << number;
    EXPECT_EQ(FindInStore("F", eval_value::of(1.2)), "");
    EXPECT_EQ(FindInStore("G", eval_value::of(0.6)), "");
    EXPECT_THAT(FindInStore("G", eval_value::of(0.4)), HasSubstr("FormulaTo of C divides"));
}

TEST_F(EvaluationGuardTest, AnEnumerationWritesTheEntryThatItTakes) {
    Load(
        "<Enumeration Name=\"E\"><pValue>C</pValue><EnumEntry Name=\"Zero\"><Value>0</Value>"
        "<NumericValue>7.5</NumericValue></EnumEntry><EnumEntry Name=\"One\"><Value>1</Value></EnumEntry>"
        "</Enumeration><Float Name=\"F\"><pValue>E</pValue></Float><Integer "
        "Name=\"I\"><pValue>E</pValue></Integer>" +
        std::string(converter) + Register("R", "0"));
    EXPECT_THAT(FindInStore("F", eval_value::of(8.0)), HasSubstr("FormulaTo of C divides"));
    EXPECT_EQ(FindInStore("F", eval_value::of(0.0)), "");
    EXPECT_THAT(FindInStore("I", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
    EXPECT_EQ(FindInStore("I", eval_value::of(std::int64_t{7})), "") << "refused before";
    EXPECT_THAT(FindInStore("E", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
}

TEST_F(EvaluationGuardTest, ACopyIsWrittenToo) {
    Load("<Integer Name=\"A\"><pValue>R</pValue><pValueCopy>C</pValueCopy></Integer>" +
         std::string(converter) + Register("R", "0"));
    EXPECT_THAT(FindInStore("A", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C"));
    EXPECT_EQ(FindInStore("A", eval_value::of(std::int64_t{1})), "");
}

TEST_F(EvaluationGuardTest, WhatACopyWritesFirstCountsForTheNext) {
    Load(
        "<Integer Name=\"A\"><pValue>D</pValue><pValueCopy>C</pValueCopy></Integer>"
        "<IntConverter Name=\"C\"><pVariable Name=\"V\">D</pVariable><FormulaTo>100/V</FormulaTo>"
        "<FormulaFrom>TO</FormulaFrom><pValue>R</pValue></IntConverter>"
        "<Integer Name=\"D\"><Value>5</Value></Integer>" +
        Register("R", "0"));
    EXPECT_EQ(FindInStore("A", eval_value::of(std::int64_t{4})), "");
    EXPECT_THAT(FindInStore("A", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
}

TEST_F(EvaluationGuardTest, WhatTheEngineRefusesNeverGetsToTheDivision) {
    Load("<Integer Name=\"A\"><pValue>C</pValue><Min>1</Min></Integer>" + std::string(converter) +
         Register("R", "0"));
    EXPECT_EQ(FindInStore("A", eval_value::of(std::int64_t{0})), "");
    EXPECT_THAT(FindInStore("C", eval_value::of(std::int64_t{0})), HasSubstr("FormulaTo of C divides"));
}

TEST_F(EvaluationGuardTest, TheEngineComputesByItselfAgainAfterwards) {
    Load(division + Register("R", "0x10"));
    EXPECT_THAT(Find("K", operation::value), HasSubstr("divides"));
    EXPECT_EQ(GenICam::present_formula_watch, nullptr);
}

TEST_F(EvaluationGuardTest, RefusesWorkWithoutEnd) {
    std::string elements;
    for (int at = 0; at < 100; ++at) {
        const std::string next = "R" + std::to_string(at + 1);
        elements += "<IntSwissKnife Name=\"R" + std::to_string(at) + "\"><pVariable Name=\"A\">" + next +
                    "</pVariable><pVariable Name=\"B\">" + next +
                    "</pVariable><Formula>A+B</Formula></IntSwissKnife>";
    }
    Load(elements + Register("R100", "0"));
    EXPECT_EQ(Find("R90", operation::value), "");
    // Each asks twice for the next, which is the register in the end.
    EXPECT_EQ(Find("R0", operation::value),
              "R82 takes more than a million evaluations of the nodes below it");
}

TEST_F(EvaluationGuardTest, KeepsNoMoreCirclesThanAnyoneReads) {
    std::string elements;
    const int count = 60;
    for (int at = 0; at < count; ++at) {
        elements += "<IntSwissKnife Name=\"K" + std::to_string(at) + "\">";
        for (int to = 0; to < count; ++to) {
            elements +=
                "<pVariable Name=\"V" + std::to_string(to) + "\">K" + std::to_string(to) + "</pVariable>";
        }
        elements += "<Formula>1</Formula></IntSwissKnife>\n";
    }
    Load(elements);
    EXPECT_THAT(Find("K0", operation::value), HasSubstr("a circle"));
    EXPECT_LE(Guard().all().size(), 1000U);
    EXPECT_GT(Guard().all().size(), 100U);
}

TEST_F(EvaluationGuardTest, FollowsAVariableToTheLimitThatItReads) {
    for (const std::string limit : {"Min", "Max", "Inc"}) {
        Load("<Integer Name=\"A\"><Value>1</Value><p" + limit + ">K</p" + limit + "></Integer>" +
             "<IntSwissKnife Name=\"K\"><pVariable Name=\"X." + limit + "\">A</pVariable><Formula>X." +
             limit + "</Formula></IntSwissKnife>");
        EXPECT_EQ(Find("K", operation::value), "a circle: K needs A needs K") << limit;
        EXPECT_EQ(Find("A", operation::value), "") << limit;
    }
}

}  // namespace
