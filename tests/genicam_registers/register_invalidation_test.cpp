// What a change of one node does to the registers that depend on it.

#include "tests/genicam_registers/register_test.h"

using namespace register_test;

namespace {

const std::string cached = "<Cachable>WriteThrough</Cachable>";

// One cached register of each kind, all invalidated by "trigger".
std::string one_of_each(const std::string& more) {
    const std::string children = cached + more;
    return element("IntReg", fixed_span(4) + children, "int") +
           element("IntReg", address("0x100") + "<pLength>four</pLength>" + children, "int_dyn") +
           element("FloatReg", fixed_span(4) + children, "float") +
           element("FloatReg", address("0x100") + "<pLength>four</pLength>" + children, "float_dyn") +
           element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit>" + children, "masked") +
           element("MaskedIntReg", length("4") + "<pAddress>base</pAddress><Bit>0</Bit>" + children,
                   "masked_dyn") +
           "<StructReg>" + fixed_span(4) + "<StructEntry Name='entry'><Bit>0</Bit>" + children +
           "</StructEntry></StructReg>" + element("StringReg", fixed_span(4) + children, "string") +
           number("four", "4") + number("base", "0x100");
}

constexpr const char* names[] = {"int",    "int_dyn",    "float", "float_dyn",
                                 "masked", "masked_dyn", "entry", "string"};

std::error_code read(TestDocument& doc, const char* name, std::uint32_t flags) {
    INode& node = doc.Node(name);
    switch (node.get_node_type()) {
        case node_type::integer:
            return failure_of(static_cast<IInteger&>(node).get_val(flags));
        case node_type::floating:
            return failure_of(static_cast<IFloat&>(node).get_val(flags));
        default:
            return failure_of(static_cast<IString&>(node).get_val(flags));
    }
}

TEST(RegisterInvalidation, EmptiesTheCacheOfEveryKind) {
    TestDocument doc(one_of_each("<pInvalidator>trigger</pInvalidator>") + number("trigger", "0"));
    for (const char* name : names) {
        EXPECT_EQ(read(doc, name, 0), std::error_code()) << name;
        EXPECT_EQ(read(doc, name, 0x100), std::error_code()) << name;
    }
    EXPECT_FALSE(doc.Integer("trigger").set_val(1, 0));
    for (const char* name : names) EXPECT_EQ(read(doc, name, 0x100), code(no_cached_value)) << name;
}

TEST(RegisterInvalidation, RunsCallbacksAfterwards) {
    TestDocument doc(one_of_each("<pInvalidator>trigger</pInvalidator>") + number("trigger", "0"));
    int emptied = 0;
    for (const char* name : names) {
        EXPECT_EQ(read(doc, name, 0), std::error_code());
        doc.Node(name).register_callback([&doc, &emptied, name](INode*) {
            emptied += read(doc, name, 0x100) == code(no_cached_value) ? 1 : 0;
        });
    }
    EXPECT_FALSE(doc.Integer("trigger").set_val(1, 0));
    EXPECT_EQ(emptied, static_cast<int>(std::size(names)));
}

TEST(RegisterInvalidation, CommonLinksCountToo) {
    for (const char* link : {"pIsImplemented", "pIsAvailable", "pIsLocked"}) {
        const std::string child = std::string("<") + link + ">trigger</" + link + ">";
        TestDocument doc(one_of_each(child) + number("trigger", "1"));
        for (const char* name : names) EXPECT_EQ(read(doc, name, 0), std::error_code());
        EXPECT_FALSE(doc.Integer("trigger").set_val(2, 0));
        for (const char* name : names)
            EXPECT_EQ(read(doc, name, 0x100), code(no_cached_value)) << name << link;
    }
}

TEST(RegisterInvalidation, AWriteToOneRegisterReachesAnotherThroughALink) {
    // command -> feature (which only forwards) -> status
    TestDocument doc(element("IntReg", fixed_span(4), "command") +
                     element("Integer", "<pValue>command</pValue>", "feature") +
                     element("IntReg",
                             address("0x200") + length("4") + cached + "<pInvalidator>feature</pInvalidator>",
                             "status"));
    EXPECT_TRUE(doc.Integer("status").get_val(0));
    doc.device.Put(0x200, {0, 0, 0, 7});
    EXPECT_EQ(value_of(doc.Integer("status").get_val(0)), 0);
    EXPECT_FALSE(doc.Integer("feature").set_val(1, 0));
    EXPECT_EQ(value_of(doc.Integer("status").get_val(0)), 7);
}

TEST(RegisterInvalidation, AWriteIsAnnouncedChangedOrNot) {
    TestDocument doc(element("IntReg", fixed_span(4) + cached, "i") +
                     element("FloatReg", fixed_span(4), "f") +
                     element("MaskedIntReg", fixed_span(4) + "<Bit>0</Bit>", "m") + "<StructReg>" +
                     fixed_span(4) + "<StructEntry Name='e'><Bit>0</Bit></StructEntry></StructReg>" +
                     element("Integer",
                             "<Value>0</Value><pInvalidator>i</pInvalidator><pInvalidator>f</pInvalidator>"
                             "<pInvalidator>m</pInvalidator><pInvalidator>e</pInvalidator>",
                             "dependent"));
    ChangeCounter dependent(doc.Node("dependent"));
    ChangeCounter i(doc.Node("i")), f(doc.Node("f")), m(doc.Node("m")), e(doc.Node("e"));
    for (int time = 0; time < 2; ++time) {
        EXPECT_FALSE(doc.Integer("i").set_val(1, 0));
        EXPECT_FALSE(doc.Float("f").set_val(1, 0));
        EXPECT_FALSE(doc.Integer("m").set_val(1, 0));
        EXPECT_FALSE(doc.Integer("e").set_val(1, 0));
    }
    EXPECT_EQ(i.Count(), 2);
    EXPECT_EQ(f.Count(), 2);
    EXPECT_EQ(m.Count(), 2);
    EXPECT_EQ(e.Count(), 2);
    EXPECT_EQ(dependent.Count(), 8);
}

TEST(RegisterInvalidation, DependentsHearBeforeTheNodesOwnCallbacks) {
    TestDocument doc(element("IntReg", fixed_span(4), "r") +
                     element("IntReg", fixed_span(4) + "<pInvalidator>r</pInvalidator>", "dependent"));
    std::string order;
    doc.Node("r").register_callback([&order](INode*) { order += "own "; });
    doc.Node("dependent").register_callback([&order](INode*) { order += "dependent "; });
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0));
    EXPECT_EQ(order, "dependent own ");
}

TEST(RegisterInvalidation, AWriteDoesNotEmptyTheWritersCache) {
    TestDocument doc(element("IntReg", fixed_span(4) + cached));
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0x100)), 1);
}

TEST(RegisterInvalidation, AFailedWriteIsSilent) {
    TestDocument doc(
        element("IntReg", fixed_span(4) + cached) +
        element("IntReg", fixed_span(4) + cached + "<pInvalidator>r</pInvalidator>", "dependent"));
    EXPECT_TRUE(doc.Integer("dependent").get_val(0));
    ChangeCounter own(doc.Node("r"));
    ChangeCounter dependent(doc.Node("dependent"));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(device_lost));
    EXPECT_EQ(own.Count(), 0);
    EXPECT_EQ(dependent.Count(), 0);
    EXPECT_TRUE(doc.Integer("dependent").get_val(0x100));
}

TEST(RegisterInvalidation, AnIndexDoesNotTellTheRegister) {
    TestDocument doc(element("IntReg", fixed_span(4) + cached + "<pIndex>index</pIndex>") +
                     number("index", "0"));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("index").set_val(1, 0));
    EXPECT_FALSE(doc.Integer("index").set_val(0, 0));
    doc.device.ForgetAccesses();
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty()) << "still remembers the old address";
}

TEST(RegisterInvalidation, TwoThatInvalidateEachOther) {
    TestDocument doc(
        element("IntReg", fixed_span(4) + cached + "<pInvalidator>b</pInvalidator>", "a") +
        element("IntReg", address("0x200") + length("4") + cached + "<pInvalidator>a</pInvalidator>", "b"));
    EXPECT_TRUE(doc.Integer("b").get_val(0));
    ChangeCounter changes(doc.Node("a"));
    EXPECT_FALSE(doc.Integer("a").set_val(1, 0));
    EXPECT_EQ(changes.Count(), 2) << "as its own dependent through the circle, and as the node written";
    EXPECT_EQ(failure_of(doc.Integer("a").get_val(0x100)), code(no_cached_value))
        << "emptied through the circle";
    EXPECT_EQ(failure_of(doc.Integer("b").get_val(0x100)), code(no_cached_value));
}

}  // namespace
