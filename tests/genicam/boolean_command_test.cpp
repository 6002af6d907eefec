#include "tests/support/node_test.h"

namespace node_test {
namespace {

TEST(BooleanValue, Words) {
    const struct {
        const char* text;
        bool value;
        bool logged;
    } rows[] = {{"true", true, false}, {"1", true, false},   {"false", false, false}, {"0", false, false},
                {"TRUE", false, true}, {"yes", false, true}, {"", false, true},       {" true", false, true}};
    for (const auto& row : rows) {
        TestDocument doc(std::string("<Boolean Name='b'><Value>") + row.text + "</Value></Boolean>");
        EXPECT_EQ(doc.Boolean("b").get_val(0).value(), row.value) << row.text;
        if (row.logged) {
            EXPECT_THAT(doc.load_messages,
                        ElementsAre("GenICam::boolean_Value_type::_resolve_references, Boolean "
                                    "(\"b\"). Failed to parse or resolve \"Value\" xml element.\n"));
        } else {
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
    }
}

TEST(BooleanValue, StoresItsNumbersAndGivesOneOrZeroToOthers) {
    TestDocument doc(
        "<Boolean Name='b'><Value>true</Value><OnValue>7</OnValue><OffValue>3</OffValue></Boolean>"
        "<Integer Name='i'><pValue>b</pValue></Integer>");
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 1);
    ChangeCounter changes(doc.Node("b"));
    ChangeCounter dependent(doc.Node("i"));
    EXPECT_FALSE(doc.Boolean("b").set_val(true, 0));
    EXPECT_EQ(changes.Count(), 0);
    EXPECT_FALSE(doc.Boolean("b").set_val(false, 0));
    EXPECT_EQ(changes.Count(), 1);
    EXPECT_EQ(dependent.Count(), 1);
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 0);
    EXPECT_FALSE(doc.Integer("i").set_val(99, 0));
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
}

// With a text that is no truth value the stored 0 is neither of the two numbers.
TEST(BooleanValue, AnUnknownNumberIsLoggedAndTolerated) {
    TestDocument doc(
        "<Boolean Name='b'><Value>x</Value><OnValue>7</OnValue><OffValue>3</OffValue></Boolean>");
    EXPECT_FALSE(doc.Boolean("b").get_val(0).value());
    EXPECT_THAT(doc.log.Take(), ElementsAre("GenICam::boolean_Value_type::get_val, Boolean (\"b\"). Invalid "
                                            "floating_value contents=0.\n"));
}

TEST(BooleanLink, MapsNumbers) {
    TestDocument doc(
        "<Boolean Name='b'><pValue>i</pValue><OnValue>5</OnValue><OffValue>3</OffValue></Boolean>"
        "<Integer Name='i'><Value>5</Value></Integer>");
    IBoolean& node = doc.Boolean("b");
    EXPECT_TRUE(node.get_val(0).value());
    EXPECT_FALSE(node.set_val(false, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 3);
    EXPECT_FALSE(node.get_val(0).value());
    EXPECT_THAT(doc.log.Take(), IsEmpty());
    EXPECT_FALSE(doc.Integer("i").set_val(4, 0));
    EXPECT_TRUE(node.get_val(0).value());
    EXPECT_FALSE(doc.Integer("i").set_val(0, 0));
    EXPECT_FALSE(node.get_val(0).value());
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::boolean_pValue_type::get_val, Boolean (\"b\"). Invalid floating_value "
                            "contents=4.\n",
                            "GenICam::boolean_pValue_type::get_val, Boolean (\"b\"). Invalid floating_value "
                            "contents=0.\n"));
}

TEST(BooleanLink, EqualNumbersAreTrue) {
    TestDocument doc(
        "<Boolean Name='b'><pValue>i</pValue><OnValue>0</OnValue></Boolean><Integer Name='i'><Value>0</Value>"
        "</Integer>");
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
}

TEST(BooleanLink, BadNumbersTakeTheDefaultsInSilence) {
    TestDocument doc(
        "<Boolean Name='b'><pValue>i</pValue><OnValue>abc</OnValue><OffValue>x</OffValue></Boolean>"
        "<Integer Name='i'><Value>1</Value></Integer>");
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
    EXPECT_FALSE(doc.Boolean("b").set_val(false, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 0);
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(BooleanLink, UnresolvedLinks) {
    TestDocument doc("<Boolean Name='b'><pValue>gone</pValue></Boolean>");
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::boolean_pValue_type::_resolve_references, Boolean (\"b\"). "
                            "Failed to parse or resolve \"pValue\" xml element.\n"));
    EXPECT_EQ(doc.Boolean("b").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Boolean("b").set_val(true, 0), code(not_implemented));
}

TEST(BooleanLink, FailuresAndAccessOfTheTarget) {
    TestDocument doc(
        "<Boolean Name='b'><pValue>i</pValue></Boolean>"
        "<Integer Name='i'><Value>1</Value><ImposedAccessMode>WO</ImposedAccessMode></Integer>"
        "<Boolean Name='c'><pValue>s</pValue></Boolean><String Name='s'/>");
    EXPECT_EQ(doc.Node("b").get_access_mode(), AccessMode::WO);
    EXPECT_EQ(doc.Boolean("b").get_val(0).error(), code(access_denied));
    EXPECT_EQ(doc.Boolean("c").get_val(0).error(), code(not_implemented));
    EXPECT_EQ(doc.Boolean("c").set_val(true, 0), code(not_implemented));
}

TEST(BooleanDefault, DiffersFromTheOffValue) {
    const struct {
        const char* children;
        bool value;
    } rows[] = {
        {"<Extension><Default>1</Default></Extension>", true},
        {"<Extension><Default>0</Default></Extension>", false},
        {"<OffValue>5</OffValue><Extension><Default>0</Default></Extension>", true},
        {"<OffValue>2</OffValue><Extension><Default>1.5</Default></Extension>", false},
        {"<Extension><pDefault>i</pDefault></Extension>", true},
    };
    for (const auto& row : rows) {
        for (const char* kind : {"<Value>true</Value>", "<pValue>i</pValue>"}) {
            TestDocument doc(
                std::string("<Boolean Name='b'>") + kind + row.children +
                "<pIsAvailable>no</pIsAvailable></Boolean><Integer Name='i'><Value>1</Value></Integer>"
                "<Integer Name='no'><Value>0</Value></Integer>");
            EXPECT_EQ(doc.Boolean("b").get_default(0).value(), row.value) << row.children << kind;
        }
    }
    TestDocument none("<Boolean Name='b'><Value>true</Value></Boolean>");
    EXPECT_EQ(none.Boolean("b").get_default(0).error(), code(not_implemented));
    TestDocument failing(
        "<Boolean Name='b'><Value>true</Value><Extension><pDefault>s</pDefault></Extension></Boolean>"
        "<String Name='s'/>");
    EXPECT_EQ(failing.Boolean("b").get_default(0).error(), code(not_implemented));
}

TEST(BooleanAccess, IsChecked) {
    for (const char* kind : {"<Value>true</Value>", "<pValue>i</pValue>"}) {
        TestDocument doc(
            std::string("<Boolean Name='b'>") + kind +
            "<pIsAvailable>no</pIsAvailable></Boolean><Integer Name='i'><Value>1</Value></Integer>"
            "<Integer Name='no'><Value>0</Value></Integer>");
        EXPECT_EQ(doc.Boolean("b").get_val(0).error(), code(node_not_available));
        EXPECT_EQ(doc.Boolean("b").set_val(false, 0), code(node_not_available));
    }
}

TEST(BooleanAccess, ReadsAndWritesAreAskedForApart) {
    for (const char* kind : {"<Value>true</Value>", "<pValue>i</pValue>"}) {
        for (const char* mode : {"RO", "WO"}) {
            const bool is_read_only = std::string_view(mode) == "RO";
            TestDocument doc(std::string("<Boolean Name='b'>") + kind + "<ImposedAccessMode>" + mode +
                             "</ImposedAccessMode></Boolean><Integer Name='i'><Value>1</Value></Integer>");
            const GenICam::result<bool> read = doc.Boolean("b").get_val(0);
            const std::error_code write = doc.Boolean("b").set_val(false, 0);
            EXPECT_EQ(read.has_value(), is_read_only) << kind << mode;
            EXPECT_EQ(is_read_only ? write : read.error(), code(access_denied)) << kind << mode;
            EXPECT_EQ(!write, !is_read_only) << kind << mode;
        }
    }
}

TEST(CommandLink, WritesItsValueAndIsDoneWhenItIsGone) {
    TestDocument doc(
        "<Command Name='c'><pValue>i</pValue><CommandValue>5</CommandValue></Command>"
        "<Integer Name='i'><Value>0</Value></Integer>");
    ICommand& node = doc.Command("c");
    EXPECT_TRUE(node.is_done(0).value());
    EXPECT_FALSE(node.execute(0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 5);
    EXPECT_FALSE(node.is_done(0).value());
    EXPECT_FALSE(doc.Integer("i").set_val(0, 0));
    EXPECT_TRUE(node.is_done(0).value());
}

TEST(CommandLink, CommandValues) {
    const struct {
        const char* children;
        std::int64_t written;
    } rows[] = {
        {"<CommandValue>0x10</CommandValue>", 16},
        {"<CommandValue>2.5</CommandValue>", 3},
        {"<pCommandValue>v</pCommandValue>", 7},
        {"<CommandValue>1</CommandValue><pCommandValue>v</pCommandValue>", 7},
    };
    for (const auto& row : rows) {
        TestDocument doc(std::string("<Command Name='c'><pValue>i</pValue>") + row.children +
                         "</Command><Integer Name='i'><Value>0</Value></Integer><Integer "
                         "Name='v'><Value>7</Value></Integer>");
        EXPECT_FALSE(doc.Command("c").execute(0));
        EXPECT_EQ(doc.Integer("i").get_val(0).value(), row.written) << row.children;
    }
}

TEST(CommandLink, WithoutACommandValue) {
    TestDocument doc(
        "<Command Name='c'><pValue>i</pValue></Command><Integer Name='i'><Value>0</Value></Integer>");
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::command_pValue_type::_resolve_references, Command (\"c\"). Failed to parse "
                    "contents of \"CommandValue\"/\"pCommandValue\" xml node.\n"));
    EXPECT_EQ(doc.Command("c").execute(0), code(not_implemented));
    EXPECT_EQ(doc.Command("c").is_done(0).error(), code(not_implemented));
}

TEST(CommandLink, UnresolvedLinksStillReadTheCommandValue) {
    TestDocument doc("<Command Name='c'><pValue>gone</pValue></Command>");
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::command_pValue_type::_resolve_references, Command (\"c\"). Failed to "
                    "parse/resolve contents of \"pValue\" xml node.\n",
                    "GenICam::command_pValue_type::_resolve_references, Command (\"c\"). Failed to parse "
                    "contents of \"CommandValue\"/\"pCommandValue\" xml node.\n"));
    TestDocument stated("<Command Name='c'><pValue>gone</pValue><CommandValue>1</CommandValue></Command>");
    EXPECT_EQ(stated.Command("c").execute(0), code(not_implemented));
    EXPECT_EQ(stated.Command("c").is_done(0).error(), code(not_implemented));
}

TEST(CommandLink, ThatCannotBeReadIsDone) {
    TestDocument doc(
        "<Command Name='c'><pValue>r</pValue><CommandValue>1</CommandValue></Command>"
        "<IntReg Name='r'><Address>0</Address><Length>4</Length><AccessMode>WO</AccessMode></IntReg>");
    EXPECT_EQ(doc.Node("c").get_access_mode(), AccessMode::WO);
    EXPECT_TRUE(doc.Command("c").is_done(0).value());
    EXPECT_TRUE(doc.device.TakeAccesses().empty());
    EXPECT_FALSE(doc.Command("c").execute(0));
    EXPECT_EQ(doc.device.TakeAccesses().size(), 1U);
}

TEST(CommandLink, OnAReadOnlyNodeFailsWithItsFailure) {
    TestDocument doc(
        "<Command Name='c'><pValue>i</pValue><CommandValue>1</CommandValue><ImposedAccessMode>RW"
        "</ImposedAccessMode></Command><Integer Name='i'><pValue>v</pValue><ImposedAccessMode>RO"
        "</ImposedAccessMode></Integer><Integer Name='v'><Value>0</Value></Integer>");
    EXPECT_EQ(doc.Command("c").execute(0), code(access_denied));
    EXPECT_TRUE(doc.Command("c").is_done(0).value());
    EXPECT_FALSE(doc.Integer("v").set_val(1, 0));
    EXPECT_FALSE(doc.Command("c").is_done(0).value());
}

TEST(CommandLink, FailuresOfTheTargetAreReturned) {
    TestDocument doc(
        "<Command Name='c'><pValue>s</pValue><CommandValue>1</CommandValue></Command><String Name='s'/>");
    EXPECT_EQ(doc.Command("c").execute(0), code(not_implemented));
    EXPECT_EQ(doc.Command("c").is_done(0).error(), code(not_implemented));
}

TEST(CommandValue, StaysUnfinishedOnceExecuted) {
    TestDocument doc("<Command Name='c'><Value>0</Value><CommandValue>5</CommandValue></Command>");
    ChangeCounter changes(doc.Node("c"));
    EXPECT_TRUE(doc.Command("c").is_done(0).value());
    EXPECT_FALSE(doc.Command("c").execute(0));
    EXPECT_FALSE(doc.Command("c").is_done(0).value());
    EXPECT_FALSE(doc.Command("c").execute(0));
    EXPECT_EQ(changes.Count(), 1) << "the second time nothing changed";
}

TEST(CommandValue, BadTexts) {
    TestDocument doc("<Command Name='c'><Value>x</Value></Command>");
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::command_Value_type::_resolve_references, Command (\"c\"). Failed to parse "
                    "contents of \"Value\" xml node.\n",
                    "GenICam::command_Value_type::_resolve_references, Command (\"c\"). Failed to parse "
                    "contents of \"CommandValue\"/\"pCommandValue\" xml node.\n"));
    EXPECT_EQ(doc.Command("c").execute(0), code(not_implemented));
    EXPECT_EQ(doc.Command("c").is_done(0).error(), code(not_implemented));
}

TEST(CommandAccess, IsChecked) {
    for (const char* kind : {"<Value>0</Value>", "<pValue>i</pValue>"}) {
        TestDocument doc(
            std::string("<Command Name='c'>") + kind +
            "<CommandValue>1</CommandValue><pIsAvailable>no</pIsAvailable></Command><Integer Name='i'>"
            "<Value>1</Value></Integer><Integer Name='no'><Value>0</Value></Integer>");
        EXPECT_EQ(doc.Command("c").execute(0), code(node_not_available));
        EXPECT_TRUE(doc.Command("c").is_done(0).value());
    }
}

}  // namespace
}  // namespace node_test
