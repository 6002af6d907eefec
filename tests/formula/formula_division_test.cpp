// Integer divisions that no processor can do end the process; nothing may catch, guard or remove them.

#include "data_paths.h"
#include "tests/formula/formula_node_test.h"
#include "tests/formula/formula_test_support.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

constexpr int survived = 37;
constexpr int failed = 38;
constexpr int faulted = 39;

// Turns the fault into an exit code, and keeps debuggers and dialogs of the platform out.
void exit_at_fault() {
    std::signal(SIGFPE, [](int) { std::_Exit(faulted); });
}

void evaluate_and_exit(const char* text, bool specialise) {
    exit_at_fault();
    formula_names names;
    names.add_variable("ZERO", eval_value::of(std::int64_t{0}));
    names.add_variable("ONE", eval_value::of(std::int64_t{1}));
    names.add_variable("SMALL", eval_value::of(0.4));
    names.add_variable("MINUS", eval_value::of(std::int64_t{-1}));
    names.add_variable("LOWEST", eval_value::of(std::numeric_limits<std::int64_t>::min()));
    const formula_program program =
        specialise ? specialised(text, names) : std::move(parse_instructions(text, names).value());
    const auto value = evaluate_formula(program, names);
    std::_Exit(value ? survived : failed);
}

void expect_fault(const char* text) {
    for (const bool specialise : {false, true}) {
        EXPECT_EXIT(evaluate_and_exit(text, specialise), testing::ExitedWithCode(faulted), "")
            << text << (specialise ? " specialised" : "");
    }
}

TEST(FormulaDivisionDeathTest, TheHelperTellsSurvivalApart) {
    EXPECT_EXIT(evaluate_and_exit("1/ONE", false), testing::ExitedWithCode(survived), "");
    EXPECT_EXIT(evaluate_and_exit("1%ONE", true), testing::ExitedWithCode(survived), "");
}

TEST(FormulaDivisionDeathTest, ZeroDivisor) {
    for (const char* text : {"0/0", "1/0", "1/ZERO", "ONE/ZERO", "LOWEST/ZERO"}) expect_fault(text);
    for (const char* text : {"1%0", "ONE%ZERO", "1%0.4", "ONE%SMALL", "SMALL%SMALL", "1.5%0.0"})
        expect_fault(text);
}

TEST(FormulaDivisionDeathTest, TheQuotientThatDoesNotFit) {
    for (const char* text : {"LOWEST/MINUS", "0x8000000000000000/-1"}) expect_fault(text);
    for (const char* text : {"LOWEST%MINUS", "0x8000000000000000%-1", "LOWEST%(0.0-1)"}) expect_fault(text);
}

TEST(FormulaDivisionDeathTest, NoOperatorGuardsItsOperands) {
    for (const char* text : {"ZERO ? 1/ZERO : 2", "ZERO && 1/ZERO", "1 || 1%ZERO", "0*(1/ZERO)"})
        expect_fault(text);
}

// Nodes that divide by what a register of 8 bytes holds, with integers and with floats.
std::string dividing_nodes() {
    const std::string bindings = variable("R", "r") + constant("LOWEST", "0x8000000000000000");
    return "<IntReg Name='r'><Address>16</Address><Length>8</Length><Sign>Signed</Sign>"
           "<Endianess>LittleEndian</Endianess><pPort>Device</pPort></IntReg>"
           "<IntSwissKnife Name='quotient'>" +
           bindings + formula("100/R") + "</IntSwissKnife><IntSwissKnife Name='remainder'>" + bindings +
           formula("100%R") + "</IntSwissKnife><IntSwissKnife Name='lowest'>" + bindings +
           formula("LOWEST/R") + "</IntSwissKnife><IntSwissKnife Name='guarded'>" + bindings +
           formula("R=0?0:100/R") + "</IntSwissKnife><IntConverter Name='converter'>" +
           formulas("1000/FROM", "1000/TO") + target("r") + "</IntConverter><SwissKnife Name='floats'>" +
           variable("R", "r") + formula("100/R") + "</SwissKnife><SwissKnife Name='float_remainder'>" +
           variable("R", "r") + formula("100%(R/4)") + "</SwissKnife><Converter Name='float_converter'>" +
           formulas("FROM", "1000/TO") + target("r") + "</Converter>";
}

void read_and_exit(const char* name, std::uint8_t low, std::uint8_t rest) {
    exit_at_fault();
    TestDocument doc(dividing_nodes());
    doc.device.Put(16, {low, rest, rest, rest, rest, rest, rest, rest});
    INode& node = doc.Node(name);
    const bool is_read = node.get_node_type() == node_type::integer
                             ? static_cast<IInteger&>(node).get_val(0).has_value()
                             : static_cast<IFloat&>(node).get_val(0).has_value();
    std::_Exit(is_read ? survived : failed);
}

TEST(FormulaDivisionDeathTest, ByTheValueOfARegister) {
    const struct {
        const char* name;
        int by_zero;
        int by_five;
        int by_minus_one;
    } rows[] = {
        {"quotient", faulted, survived, survived},        {"remainder", faulted, survived, survived},
        {"lowest", faulted, survived, faulted},           {"guarded", faulted, survived, survived},
        {"converter", faulted, survived, survived},       {"floats", survived, survived, survived},
        {"float_remainder", faulted, survived, faulted},   // -0.25 is 0 as an integer
        {"float_converter", faulted, survived, survived},  // of two integers, as the target has one
    };
    for (const auto& row : rows) {
        EXPECT_EXIT(read_and_exit(row.name, 0, 0), testing::ExitedWithCode(row.by_zero), "") << row.name;
        EXPECT_EXIT(read_and_exit(row.name, 5, 0), testing::ExitedWithCode(row.by_five), "") << row.name;
        EXPECT_EXIT(read_and_exit(row.name, 0xFF, 0xFF), testing::ExitedWithCode(row.by_minus_one), "")
            << row.name;
    }
}

TEST(FormulaDivisionDeathTest, ByTheValueBeingWritten) {
    const auto write_zero = [] {
        exit_at_fault();
        TestDocument doc(dividing_nodes());
        std::_Exit(doc.Integer("converter").set_val(0, 0) ? failed : survived);
    };
    EXPECT_EXIT(write_zero(), testing::ExitedWithCode(faulted), "");
}

void read_all_and_exit(const std::string& text, std::uint8_t background) {
    exit_at_fault();
    TestDocument doc(TestDocument::WholeText{text});
    if (!doc.IsLoaded()) std::_Exit(failed);
    doc.device.records = false;
    doc.device.background = [background](std::uint64_t) { return background; };
    doc->for_each_node([](INode* node) {
        if (node->get_node_type() == node_type::integer) {
            static_cast<void>(static_cast<IInteger*>(node)->get_val(0));
        } else if (node->get_node_type() == node_type::floating) {
            static_cast<void>(static_cast<IFloat*>(node)->get_val(0));
        }
    });
    std::_Exit(survived);
}

// Whatever a camera's registers hold, its formulas give values or failures, or the division ends the process.
TEST(FormulaDivisionDeathTest, IsTheOnlyEndOfRealDescriptions) {
    const auto survived_or_faulted = [](int status) {
        return testing::ExitedWithCode(survived)(status) || testing::ExitedWithCode(faulted)(status);
    };
    int files = 0;
    for (const char* name : {"adimec-q12a180cxp", "alliedvision-gt1930", "basler-a2a2600_20gmbas",
                             "euresys-coaxlink_tlinterface", "flir-bfs_u3_161s7m", "flir-sc6700",
                             "hamamatsu-c16240_20up", "pointgrey-gs3_u3_51s5c", "vieworks-vnp604"}) {
        std::ifstream in(SELVANE_SHARED_DESCRIPTIONS + std::string("/real/") + name + ".xml",
                         std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        if (text.empty()) continue;
        ++files;
        for (const int background : {0x00, 0x01, 0x80, 0xFF}) {
            EXPECT_EXIT(read_all_and_exit(text, static_cast<std::uint8_t>(background)), survived_or_faulted,
                        "")
                << name << " on " << background;
        }
    }
    if (files == 0) GTEST_SKIP() << "no descriptions in " << SELVANE_SHARED_DESCRIPTIONS;
}

TEST(FormulaDivision, AFloatOperandMakesItHarmless) {
    EXPECT_EQ(outcome("1/0.0"), "inff");
    EXPECT_EQ(outcome("0.0/0"), "nan");
}

}  // namespace
