// Addresses that depend on themselves. They load; who reads them recurses until the stack ends, in a process
// of its own. And chains of links that end.

#include "tests/genicam_registers/register_test.h"
#include "tests/support/small_stack.h"

#include <cstdlib>

using namespace register_test;

namespace {

struct circle {
    const char* name;
    std::string elements;
};

std::vector<circle> circles() {
    return {
        {"an address that is its own term", element("IntReg", fixed_span(4) + "<pAddress>r</pAddress>")},
        {"an index of itself", element("IntReg", fixed_span(4) + "<pIndex>r</pIndex>")},
        {"a stride of itself",
         element("IntReg", fixed_span(4) + "<pIndex pOffset='r'>zero</pIndex>") + number("zero", "0")},
        {"a length of itself", element("IntReg", address("0x100") + "<pLength>r</pLength>")},
        {"two that are each other's address",
         element("IntReg", length("4") + "<pAddress>s</pAddress>") +
             element("MaskedIntReg", length("4") + "<pAddress>r</pAddress>", "s")},
        {"an availability that needs itself",
         element("IntReg", fixed_span(4) + "<pIsAvailable>r</pIsAvailable>")},
    };
}

TEST(CircularRegister, Loads) {
    for (const circle& circle : circles()) {
        TestDocument doc(circle.elements);
        EXPECT_TRUE(doc.IsLoaded());
        EXPECT_THAT(doc.load_messages, IsEmpty()) << circle.name;
        EXPECT_EQ(doc.Node("r").get_access_mode(), AccessMode::RW);
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(CircularRegister, CanBeWrittenAroundInTheCircle) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<pIsAvailable>r</pIsAvailable>"));
    EXPECT_FALSE(doc.Integer("r").set_val(1, access_flags::skip_access_check));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, {0, 0, 0, 1}, 0x800)));
}

#ifdef NDEBUG
constexpr int longest_chain = 1000;
#else
constexpr int longest_chain = 100;  // code that is instrumented or not optimised takes more stack
#endif

struct chain {
    const char* element;
    const char* before_next;
    const char* behind_next;
};

// Links that go on without a circle: what `lint` does not name holds on the stack of a host's window.
TEST(ChainOfLinks, OfAThousandIsReadOnTheStackOfAHost) {
    constexpr chain chains[] = {
        {"Integer", "<pValue>", "</pValue>"},
        {"Integer", "<Value>1</Value><pIsAvailable>", "</pIsAvailable>"},
        {"Integer", "<pIndex>r0</pIndex><pValueDefault>", "</pValueDefault>"},
        {"IntSwissKnife", "<pVariable Name='X'>", "</pVariable><Formula>X</Formula>"},
        {"IntConverter", "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>", "</pValue>"},
        {"IntReg", "<Length>4</Length><pAddress>", "</pAddress>"},
    };
    for (const chain& links : chains) {
        std::string elements = number("r0", "7");
        for (int at = 1; at <= longest_chain; ++at) {
            elements +=
                element(links.element, links.before_next + ("r" + std::to_string(at - 1)) + links.behind_next,
                        "r" + std::to_string(at));
        }
        TestDocument doc(elements);
        IInteger& last = doc.Integer("r" + std::to_string(longest_chain));
        test_support::RunOnSmallStack([&] {
            EXPECT_TRUE(last.get_val(0)) << links.element;
            static_cast<void>(last.set_val(7, 0));
        });
    }
}

constexpr int survived = 37;
constexpr int lost_its_thread = 39;

void read_and_exit(const std::string& elements) {
    TestDocument doc(elements);
    test_support::RunOnSmallStack([&doc] {
        static_cast<void>(doc.Integer("r").get_val(0));
        std::_Exit(survived);
    });
    // Where the end of the stack takes the thread alone.
    std::_Exit(lost_its_thread);
}

bool did_not_survive(int status) { return !testing::ExitedWithCode(survived)(status); }

TEST(CircularRegisterDeathTest, EndsOnlyTheProcessThatReads) {
    EXPECT_EXIT(read_and_exit(element("IntReg", fixed_span(4))), testing::ExitedWithCode(survived), "");
    for (const circle& circle : circles()) {
        EXPECT_EXIT(read_and_exit(circle.elements), did_not_survive, "") << circle.name;
    }
}

}  // namespace
