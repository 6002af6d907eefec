// Who may read and write: implemented, available, locked, access modes.

#include "tests/support/node_test.h"

namespace node_test {
namespace {

// A node with links, and what they can point at; `broken` cannot be read.
TestDocument linked(const std::string& children, const std::string& more = "") {
    return TestDocument(
        "<Integer Name='n'><Value>1</Value>" + children + "</Integer>" + more +
        "<Integer Name='yes'><Value>2</Value></Integer><Integer Name='no'><Value>0</Value></Integer>"
        "<Integer Name='broken'><pValue>nowhere</pValue></Integer><String "
        "Name='text'><Value>1</Value></String>");
}

TEST(AccessModes, ImposedWords) {
    const struct {
        const char* text;
        AccessMode mode;
    } rows[] = {{"RW", AccessMode::RW}, {"RO", AccessMode::RO}, {"WO", AccessMode::WO}, {"", AccessMode::RW}};
    for (const auto& row : rows) {
        TestDocument doc = linked(std::string("<ImposedAccessMode>") + row.text + "</ImposedAccessMode>");
        EXPECT_EQ(doc.Node("n").get_access_mode(), row.mode) << row.text;
        EXPECT_EQ(doc.load_messages.size(), 1U) << "only the unresolved pValue";
    }
    TestDocument bad("<Integer Name='n'><Value>1</Value><ImposedAccessMode>ro</ImposedAccessMode></Integer>");
    EXPECT_EQ(bad.Node("n").get_access_mode(), AccessMode::RW);
    EXPECT_THAT(bad.load_messages, ElementsAre("Invalid contents of \"ImposedAccessMode\" node (\"ro\"\n"));
}

// Each class asks for itself, before it goes to what it links to; converters leave it to that.
TEST(AccessModes, EveryStoredNumberRefusesTheOtherDirection) {
    const struct {
        const char* element;
        const char* children;
    } rows[] = {
        {"Integer", "<Value>1</Value>"},
        {"Integer", "<pValue>i</pValue>"},
        {"Integer", "<pIndex>i</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"},
        {"Integer", "<pIndex>i</pIndex><pValueIndexed Index='1'>i</pValueIndexed>"},
        {"Float", "<Value>1</Value>"},
        {"Float", "<pValue>i</pValue>"},
        {"Float", "<pIndex>i</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"},
        {"Float", "<pIndex>i</pIndex><pValueIndexed Index='1'>i</pValueIndexed>"},
        {"Enumeration", "<Value>1</Value><EnumEntry Name='one'><Value>1</Value></EnumEntry>"},
        {"Enumeration", "<pValue>i</pValue><EnumEntry Name='one'><Value>1</Value></EnumEntry>"},
        {"IntReg", "<Address>0</Address><Length>4</Length>"},
        {"MaskedIntReg", "<Address>0</Address><Length>4</Length><LSB>0</LSB><MSB>7</MSB>"},
        {"FloatReg", "<Address>0</Address><Length>4</Length>"},
    };
    for (const auto& row : rows) {
        for (const bool is_read_only : {true, false}) {
            TestDocument doc("<" + std::string(row.element) + " Name='n'>" + row.children +
                             "<ImposedAccessMode>" + (is_read_only ? "RO" : "WO") + "</ImposedAccessMode></" +
                             row.element + "><Integer Name='i'><Value>1</Value></Integer>");
            const result<eval_value> read = GenICam::get_eval_val<eval_value>(&doc.Node("n"), 0);
            const std::error_code write = GenICam::set_eval_val(&doc.Node("n"), std::int64_t{1}, 0);
            EXPECT_EQ(read.has_value(), is_read_only) << row.element << row.children;
            EXPECT_EQ(is_read_only ? write : read.error(), code(access_denied))
                << row.element << row.children;
            EXPECT_EQ(!write, !is_read_only) << row.element << row.children;
        }
    }
}

constexpr const char* read_only_register =
    "<IntReg Name='reg'><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode></IntReg>";

TEST(AccessModes, ComeFromTheValuesSourceUnlessImposed) {
    TestDocument doc(
        std::string(read_only_register) +
        "<Integer Name='plain'><pValue>reg</pValue></Integer>"
        "<Integer Name='chain'><pValue>plain</pValue></Integer>"
        "<Integer Name='imposed'><pValue>reg</pValue><ImposedAccessMode>RW</ImposedAccessMode></Integer>"
        "<Integer Name='bad'><pValue>reg</pValue><ImposedAccessMode>x</ImposedAccessMode></Integer>");
    EXPECT_EQ(doc.Node("plain").get_access_mode(), AccessMode::RO);
    EXPECT_EQ(doc.Node("chain").get_access_mode(), AccessMode::RO);
    EXPECT_EQ(doc.Node("imposed").get_access_mode(), AccessMode::RW);
    EXPECT_EQ(doc.Node("bad").get_access_mode(), AccessMode::RW) << "the element is there, whatever it says";
    EXPECT_EQ(doc.Integer("imposed").set_val(1, 0), code(access_denied)) << "the register refuses";
    EXPECT_TRUE(doc.device.TakeAccesses().empty());
}

TEST(AccessModes, AnImposedModeIsNeverTurnedAround) {
    const struct {
        const char* imposed;
        const char* own;
        AccessMode result;
        const char* message;
    } rows[] = {
        {"", "RO", AccessMode::RO, nullptr},
        {"", "WO", AccessMode::WO, nullptr},
        {"RO", "RO", AccessMode::RO, nullptr},
        {"RO", "RW", AccessMode::RO, nullptr},
        {"WO", "RW", AccessMode::WO, nullptr},
        {"RO", "WO", AccessMode::RO,
         "GenICam::node_base_data::set_actual_access_mode, IntReg (\"r\"). Trying to change access mode from "
         "ImposedAccessMode == RO to WO.\n"},
        {"WO", "RO", AccessMode::WO,
         "GenICam::node_base_data::set_actual_access_mode, IntReg (\"r\"). Trying to change access mode from "
         "ImposedAccessMode == WO to RO.\n"},
    };
    for (const auto& row : rows) {
        TestDocument doc(std::string("<IntReg Name='r'><Address>0</Address><Length>4</Length><AccessMode>") +
                         row.own + "</AccessMode><ImposedAccessMode>" + row.imposed +
                         "</ImposedAccessMode></IntReg>");
        EXPECT_EQ(doc.Node("r").get_access_mode(), row.result) << row.imposed << " " << row.own;
        if (row.message == nullptr) {
            EXPECT_THAT(doc.load_messages, ElementsAre());
        } else {
            EXPECT_THAT(doc.load_messages, ElementsAre(row.message));
        }
    }
}

TEST(AccessCheck, RefusesByMode) {
    TestDocument doc =
        linked("<ImposedAccessMode>WO</ImposedAccessMode>",
               "<Float Name='ro'><pValue>yes</pValue><ImposedAccessMode>RO</ImposedAccessMode></Float>");
    EXPECT_EQ(doc.Integer("n").get_val(0).error(), code(access_denied));
    EXPECT_FALSE(doc.Integer("n").set_val(5, 0));
    EXPECT_EQ(doc.Integer("n").get_val(access_flags::skip_access_check).value(), 5);
    EXPECT_EQ(doc.Float("ro").set_val(1.0, 0), code(access_denied));
}

TEST(AccessCheck, NotImplementedComesFirst) {
    TestDocument doc = linked(
        "<pIsImplemented>no</pIsImplemented><pIsAvailable>no</pIsAvailable><ImposedAccessMode>WO</"
        "ImposedAccessMode>");
    EXPECT_EQ(doc.Integer("n").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Integer("n").set_val(1, 0), code(not_implemented));
}

TEST(AccessCheck, NotAvailableComesBeforeTheMode) {
    TestDocument doc = linked("<pIsAvailable>no</pIsAvailable><ImposedAccessMode>WO</ImposedAccessMode>");
    EXPECT_EQ(doc.Integer("n").get_val(0).error(), code(node_not_available));
    EXPECT_EQ(doc.Integer("n").get_val(access_flags::skip_access_check).value(), 1);
}

TEST(AccessCheck, FailingLinks) {
    EXPECT_EQ(linked("<pIsImplemented>broken</pIsImplemented>").Integer("n").get_val(0).value(), 1);
    EXPECT_EQ(linked("<pIsAvailable>broken</pIsAvailable>").Integer("n").get_val(0).error(),
              code(node_not_available));
}

TEST(AccessCheck, TheLockIsNotAskedOnWriting) {
    TestDocument doc = linked("<pIsLocked>yes</pIsLocked>");
    EXPECT_FALSE(doc.Integer("n").set_val(7, 0));
    EXPECT_EQ(doc.Integer("n").get_val(0).value(), 7);
}

TEST(CommonLinks, AbsentLinksAnswerWithTheirDefaults) {
    TestDocument doc = linked("");
    INode& node = doc.Node("n");
    EXPECT_TRUE(node.is_implemented());
    EXPECT_TRUE(node.is_available());
    EXPECT_FALSE(node.is_locked());
    bool value = false;
    EXPECT_FALSE(node.is_implemented(value, 0));
    EXPECT_TRUE(value);
    value = false;
    EXPECT_FALSE(node.is_available(value, 0));
    EXPECT_TRUE(value);
    EXPECT_FALSE(node.is_locked(value, 0));
    EXPECT_FALSE(value);
}

TEST(CommonLinks, EvaluateTheirTargets) {
    for (const bool truth : {true, false}) {
        const std::string target = truth ? "yes" : "no";
        TestDocument doc = linked("<pIsImplemented>" + target + "</pIsImplemented><pIsAvailable>" + target +
                                  "</pIsAvailable><pIsLocked>" + target + "</pIsLocked>");
        INode& node = doc.Node("n");
        EXPECT_EQ(node.is_implemented(), truth);
        EXPECT_EQ(node.is_available(), truth);
        EXPECT_EQ(node.is_locked(), truth);
        bool value = !truth;
        EXPECT_FALSE(node.is_implemented(value, 0));
        EXPECT_EQ(value, truth);
        value = !truth;
        EXPECT_FALSE(node.is_available(value, 0));
        EXPECT_EQ(value, truth);
        value = !truth;
        EXPECT_FALSE(node.is_locked(value, 0));
        EXPECT_EQ(value, truth);
    }
}

TEST(CommonLinks, FailuresReachOnlyTheFormWithACode) {
    TestDocument doc = linked(
        "<pIsImplemented>broken</pIsImplemented><pIsAvailable>broken</pIsAvailable><pIsLocked>broken</"
        "pIsLocked>");
    INode& node = doc.Node("n");
    EXPECT_TRUE(node.is_implemented());
    EXPECT_TRUE(node.is_available());
    EXPECT_FALSE(node.is_locked());
    bool value = false;
    EXPECT_EQ(node.is_implemented(value, 0), code(not_implemented));
    EXPECT_EQ(node.is_available(value, 0), code(not_implemented));
    EXPECT_EQ(node.is_locked(value, 0), code(not_implemented));
}

TEST(CommonLinks, OnlyNodesWithATruthValueAreLinks) {
    TestDocument doc(
        "<Integer Name='n'><Value>1</Value><pIsImplemented>text</pIsImplemented><pIsAvailable>gone"
        "</pIsAvailable><pIsLocked>Device</pIsLocked></Integer><String Name='text'/>");
    EXPECT_TRUE(doc.Node("n").is_implemented());
    EXPECT_TRUE(doc.Node("n").is_available());
    EXPECT_FALSE(doc.Node("n").is_locked());
    EXPECT_THAT(doc.load_messages, ElementsAre());
    EXPECT_EQ(doc.Node("text").get_eval()->get_dependent_count(), 0);
}

TEST(CommonLinks, ReadOnlyCountsAsLockedOnlyWithFlags) {
    TestDocument doc(
        "<Integer "
        "Name='n'><pValue>v</pValue><ImposedAccessMode>RO</ImposedAccessMode><pIsLocked>reg</pIsLocked>"
        "</Integer><Integer Name='v'><Value>1</Value></Integer>"
        "<IntReg Name='reg'><Address>16</Address><Length>4</Length></IntReg>");
    bool locked = false;
    EXPECT_FALSE(doc.Node("n").is_locked(locked, 0));
    EXPECT_TRUE(locked);
    EXPECT_TRUE(doc.device.TakeAccesses().empty()) << "the link is not evaluated";
    EXPECT_FALSE(doc.Node("n").is_locked());
    EXPECT_EQ(doc.device.TakeAccesses().size(), 1U) << "only the link is evaluated";
}

TEST(CommonLinks, FlagsTravelToTheTarget) {
    TestDocument doc(
        "<Integer Name='n'><Value>1</Value><pIsAvailable>reg</pIsAvailable></Integer>"
        "<IntReg Name='reg'><Address>16</Address><Length>4</Length></IntReg>");
    bool value = true;
    EXPECT_EQ(doc.Node("n").is_available(value, access_flags::cache_only), code(no_cached_value));
    EXPECT_EQ(doc.Integer("n").get_val(access_flags::cache_only).error(), code(node_not_available));
    EXPECT_FALSE(doc.Node("n").is_available(value, 0x200));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(test_support::ReadOf(16, 4, 0x200)));
}

}  // namespace
}  // namespace node_test
