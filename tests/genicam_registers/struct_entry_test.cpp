// `StructEntry`: fields of the register that a `StructReg` describes.

#include "genicam/nodes/struct_entry_node.h"
#include "tests/genicam_registers/register_test.h"

#include <memory>

using namespace register_test;

namespace {

std::string struct_reg(const std::string& children, const std::string& entry_children) {
    return "<StructReg Name='struct'>" + children + "<StructEntry Name='r'>" + entry_children +
           "</StructEntry></StructReg>";
}

TEST(StructEntry, TakesItsAddressFromTheStructReg) {
    TestDocument doc("<StructReg>" + address("0x100") + address("0x20") + length("4") + little_endian() +
                     "<pPort>Other</pPort><pAddress>added</pAddress>"
                     "<StructEntry Name='low'><LSB>0</LSB><MSB>15</MSB></StructEntry>"
                     "<StructEntry Name='high'><LSB>16</LSB><MSB>31</MSB><Sign>Signed</Sign></StructEntry>"
                     "</StructReg><Port Name='Other'/>" +
                     number("added", "0x1000"));
    EXPECT_FALSE(doc.Port("Other").bind(&doc.device));
    doc.device.Put(0x1120, {0x34, 0x12, 0xFE, 0xFF});
    EXPECT_EQ(value_of(doc.Integer("low").get_val(0)), 0x1234);
    EXPECT_EQ(value_of(doc.Integer("high").get_val(0)), -2);
    EXPECT_FALSE(doc.Integer("high").set_val(0x5678, 0));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x1120, 4), ReadOf(0x1120, 4), ReadOf(0x1120, 4),
                            WriteOf(0x1120, {0x34, 0x12, 0x78, 0x56})));
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(StructEntry, IgnoresAnAddressOfItsOwn) {
    TestDocument doc(
        struct_reg(fixed_span(4), address("0x900") + length("2") + little_endian() +
                                      "<pPort>nowhere</pPort><pAddress>nobody</pAddress><Bit>0</Bit>"));
    doc.device.Put(0x100, {0x80, 0, 0, 0});
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(StructEntry, HasTheCommonElementsToItself) {
    TestDocument doc(
        struct_reg(fixed_span(4) + "<pIsAvailable>no</pIsAvailable><Visibility>Guru</Visibility>",
                   "<Bit>0</Bit><pIsLocked>yes</pIsLocked>") +
        number("no", "0") + number("yes", "1"));
    EXPECT_TRUE(doc.Node("r").is_available());
    EXPECT_TRUE(doc.Node("r").is_locked());
    EXPECT_EQ(doc.Node("r").get_visibility(), Visibility::Beginner);
}

TEST(StructEntry, AFramesElementsReachEntriesInGroupsOfIt) {
    TestDocument doc("<Group><StructReg Name='struct'>" + fixed_span(2) +
                     "<Group><StructEntry Name='r'><Bit>0</Bit></StructEntry></Group></StructReg></Group>");
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2)));
}

TEST(StructEntry, WithoutAFrameTakesItsParent) {
    TestDocument doc("<Group Name='g'>" + fixed_span(2) +
                     "<StructEntry Name='r'><Bit>0</Bit></StructEntry></Group>");
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2)));
}

std::string entry(const std::string& name) {
    return "<StructEntry Name='" + name + "'><Bit>0</Bit></StructEntry>";
}

TEST(StructEntry, EachHasTheNearestStructReg) {
    const auto struct_reg_at = [](const std::string& at, const std::string& children) {
        return "<StructReg>" + address(at) + length("1") + children + "</StructReg>";
    };
    const auto group = [](const std::string& children) { return "<Group>" + children + "</Group>"; };
    TestDocument doc(struct_reg_at("1", entry("a1") + group(entry("a2")) + entry("a3")) +
                     group(struct_reg_at("2", group(group(entry("b1")) + entry("b2")))) +
                     struct_reg_at("3", entry("c1") + struct_reg_at("4", group(entry("d1"))) + entry("c2") +
                                            group(entry("c3"))) +
                     group(address("5") + length("1") + entry("e1") +
                           group(address("6") + length("1") + entry("f1")) + entry("e2")));
    const std::pair<const char*, std::uint64_t> addresses[] = {{"a1", 1}, {"a2", 1}, {"a3", 1}, {"b1", 2},
                                                               {"b2", 2}, {"c1", 3}, {"c2", 3}, {"c3", 3},
                                                               {"d1", 4}, {"e1", 5}, {"e2", 5}, {"f1", 6}};
    for (const auto& [name, address] : addresses) {
        EXPECT_TRUE(doc.Integer(name).get_val(0));
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(address, 1))) << name;
    }
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

// The address is resolved once for all of them.
TEST(StructEntry, EachDependsOnTheNodesOfTheSharedAddress) {
    TestDocument doc("<StructReg>" + length("1") +
                     "<Cachable>WriteThrough</Cachable><pAddress>added</pAddress><pAddress>added</pAddress>"
                     "<IntSwissKnife Name='sum'><pVariable Name='V'>variable</pVariable><Formula>V</Formula>"
                     "</IntSwissKnife><pIndex pOffset='offset'>index</pIndex>" +
                     entry("a") + entry("b") + "</StructReg>" + number("added", "0x10") +
                     number("variable", "0") + number("index", "2") + number("offset", "0x100"));
    const auto read = [&](const char* name) {
        EXPECT_TRUE(doc.Integer(name).get_val(0)) << name;
        return doc.device.TakeAccesses();
    };
    EXPECT_THAT(read("a"), ElementsAre(ReadOf(0x220, 1)));
    EXPECT_THAT(read("b"), ElementsAre(ReadOf(0x220, 1)));
    EXPECT_THAT(read("b"), IsEmpty());
    const struct {
        const char* changed;
        std::int64_t value;
        std::uint64_t address;
    } rows[] = {{"added", 0x20, 0x240}, {"variable", 4, 0x244}, {"offset", 0x200, 0x444}};
    for (const auto& row : rows) {
        EXPECT_FALSE(doc.Integer(row.changed).set_val(row.value, 0));
        for (const char* name : {"a", "b"})
            EXPECT_THAT(read(name), ElementsAre(ReadOf(row.address, 1))) << name;
    }
}

TEST(StructEntry, EachHearsWhatTheSharedAddressLacks) {
    TestDocument doc("<StructReg><Address>x</Address><Address>1</Address><pAddress>nobody</pAddress>" +
                     length("1") + entry("a") + entry("b") + "</StructReg>");
    const std::string address =
        "calc_address_nodes_sum, StructReg (\"\"). Node contains invalid \"Address\" XML "
        "element.\n";
    const std::string link =
        "GenICam::address_eval::resolve_references, StructReg (\"\"). Node contains invalid "
        "\"pAddress\" XML element.\n";
    EXPECT_THAT(doc.load_messages, ElementsAre(address, link, address, link));
}

TEST(StructEntry, FollowersRepeatABoundedNumberOfMessages) {
    const std::size_t problems = 64;
    const std::size_t entries = 70;
    std::string text = "<StructReg>" + length("1");
    for (std::size_t at = 0; at < problems; ++at) text += address("x");
    for (std::size_t at = 0; at < entries; ++at) text += entry("e" + std::to_string(at));
    TestDocument doc(text + "</StructReg>");
    const std::size_t followers = GenICam::shared_struct_reg::most_repeated / problems;
    ASSERT_EQ(followers * problems, GenICam::shared_struct_reg::most_repeated) << "the last one just fits";
    EXPECT_EQ(doc.load_messages.size(), problems * (1 + followers));
    EXPECT_LT(1 + followers, entries);
}

// The lists would be short, but what is registered for them first is the product.
TEST(StructEntry, TooManyDependentsAreRefusedWhileTheyRegister) {
    constexpr std::size_t many = 4100;
    std::string text = "<R><StructReg>" + length("1");
    for (std::size_t at = 0; at < many; ++at)
        text += at % 2 == 0 ? "<pAddress>a</pAddress>" : "<pAddress>b</pAddress>";
    for (std::size_t at = 0; at < many; ++at) text += entry("e" + std::to_string(at));
    text += "</StructReg>" + number("a", "0") + number("b", "0") + "</R>";
    const std::unique_ptr<GenICam::IGenICamDoc> doc(GenICam::load_genicam_doc(text.data(), text.size(), {}));
    EXPECT_EQ(doc, nullptr);
}

TEST(StructEntry, ResolvedByItselfFindsItsFrame) {
    TestDocument doc("<StructReg>" + fixed_span(2) + "<Group>" + entry("r") + "</Group></StructReg>" +
                     "<Group>" + address("5") + length("1") + entry("s") + "</Group>");
    for (const char* name : {"r", "s"}) doc.Node(name).get_eval()->resolve_references(&*doc);
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_TRUE(doc.Integer("s").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2), ReadOf(5, 1)));
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(StructEntry, ManyInOneFrameAndAtAnyDepth) {
    constexpr int count = 20'000;
    std::string side_by_side;
    std::string nested;
    for (int at = 0; at < count; ++at) {
        side_by_side += entry("s" + std::to_string(at));
        nested += "<Group>" + entry("n" + std::to_string(at));
    }
    for (int at = 0; at < count; ++at) nested += "</Group>";
    TestDocument doc("<StructReg>" + fixed_span(2) + side_by_side + nested + "</StructReg>");
    for (const char* name : {"s0", "s19999", "n0", "n19999"}) {
        EXPECT_TRUE(doc.Integer(name).get_val(0));
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2))) << name;
    }
}

TEST(StructEntry, CachableIsItsOwnWordOrTheFrames) {
    const struct {
        const char* in_struct_reg;
        const char* in_entry;
        bool is_cached;
        bool logs;
    } rows[] = {
        {"NoCache", "WriteThrough", true, false},  {"WriteThrough", "NoCache", false, false},
        {"WriteThrough", "", true, false},         {"", "", false, false},
        {"WriteThrough", "nonsense", true, false},  // an own text that is no word is as none
        {"nonsense", "WriteThrough", true, false}, {"nonsense", "", false, true},
        {"WriteAround", "", true, false},          {"", "WriteAround", true, false},
    };
    for (const auto& row : rows) {
        TestDocument doc(struct_reg(fixed_span(4) + "<Cachable>" + row.in_struct_reg + "</Cachable>",
                                    "<Bit>0</Bit><Cachable>" + std::string(row.in_entry) + "</Cachable>"));
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        EXPECT_EQ(doc.device.TakeAccesses().size(), row.is_cached ? 1U : 2U)
            << row.in_struct_reg << "/" << row.in_entry;
        if (row.logs) {
            EXPECT_THAT(doc.load_messages,
                        ElementsAre("Invalid contents of \"Cachable\" node (\"nonsense\"\n"));
        } else {
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
    }
}

TEST(StructEntry, AccessModeIsItsOwnWordOrTheFrames) {
    const struct {
        const char* in_struct_reg;
        const char* in_entry;
        AccessMode mode;
        bool logs;
    } rows[] = {
        {"RO", "", AccessMode::RO, false},   {"RO", "RW", AccessMode::RW, false},
        {"RW", "WO", AccessMode::WO, false}, {"", "RO", AccessMode::RO, false},
        {"", "", AccessMode::RW, false},     {"WO", "ro", AccessMode::WO, false},
        {"x", "RO", AccessMode::RO, false},  {"x", "", AccessMode::RW, true},
    };
    for (const auto& row : rows) {
        TestDocument doc(
            struct_reg(fixed_span(4) + "<AccessMode>" + row.in_struct_reg + "</AccessMode>",
                       "<Bit>0</Bit><AccessMode>" + std::string(row.in_entry) + "</AccessMode>"));
        EXPECT_EQ(doc.Node("r").get_access_mode(), row.mode) << row.in_struct_reg << "/" << row.in_entry;
        if (row.logs) {
            EXPECT_THAT(doc.load_messages, ElementsAre("Invalid contents of \"AccessMode\" node (\"x\"\n"));
        } else {
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
    }
}

TEST(StructEntry, AnImposedModeStaysAboveTheFrames) {
    TestDocument doc(struct_reg(fixed_span(4) + "<AccessMode>WO</AccessMode>",
                                "<Bit>0</Bit><ImposedAccessMode>RO</ImposedAccessMode>"));
    EXPECT_EQ(doc.Node("r").get_access_mode(), AccessMode::RO);
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::node_base_data::set_actual_access_mode, StructEntry (\"r\"). Trying to change "
                    "access mode from ImposedAccessMode == RO to WO.\n"));
}

TEST(StructEntry, SignIsItsOwnAndEndianessTheFrames) {
    TestDocument doc(struct_reg(fixed_span(1) + "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>",
                                "<LSB>0</LSB><MSB>3</MSB>"));
    doc.device.Put(0x100, {0x0F});
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 15);
    TestDocument bad(struct_reg(fixed_span(1) + "<Endianess>x</Endianess>", "<Bit>0</Bit><Sign>y</Sign>"));
    EXPECT_THAT(bad.load_messages,
                testing::UnorderedElementsAre("Invalid contents of \"Endianess\" node (\"x\"\n",
                                              "Invalid contents of \"Sign\" node (\"y\"\n"));
}

TEST(StructEntry, LengthsThatAreNoNumberSizeTouchNothing) {
    for (const char* size : {"0", "9", "16", "-1", "1000000", "0x7FFFFFFFFFFFFFFF", "0x8000000000000000"}) {
        TestDocument doc(struct_reg(address("0x100") + length(size) + "<Cachable>WriteThrough</Cachable>",
                                    "<Bit>0</Bit>") +
                         "<StructReg>" + address("0x100") +
                         "<pLength>size</pLength><StructEntry Name='linked'>"
                         "<Bit>0</Bit></StructEntry></StructReg>" +
                         number("size", size));
        for (const char* name : {"r", "linked"}) {
            for (const std::uint32_t flags : {0U, 0x100U, 0x200U, 0x800U}) {
                EXPECT_EQ(failure_of(doc.Integer(name).get_val(flags)), code(index_out_of_range)) << size;
                EXPECT_EQ(doc.Integer(name).set_val(1, flags), code(index_out_of_range)) << size;
            }
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
}

TEST(StructEntry, EveryLengthThatFitsIsRead) {
    for (int size = 1; size <= 8; ++size) {
        TestDocument doc(struct_reg(fixed_span(size), "<Bit>0</Bit>"));
        doc.device.Put(0x100, {0x80});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, size)));
    }
}

TEST(StructEntry, TwoFieldsAreTwoRounds) {
    TestDocument doc(
        "<StructReg>" + fixed_span(1) +
        "<StructEntry Name='a'><Bit>0</Bit></StructEntry><StructEntry Name='b'><Bit>7</Bit></StructEntry>"
        "</StructReg>");
    EXPECT_FALSE(doc.Integer("a").set_val(1, 0));
    EXPECT_FALSE(doc.Integer("b").set_val(1, 0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 1), WriteOf(0x100, {0x80}),
                                                       ReadOf(0x100, 1), WriteOf(0x100, {0x81})));
}

TEST(StructEntry, ACachedFieldIsWrittenFromItsCache) {
    TestDocument doc(
        struct_reg(fixed_span(1) + "<Cachable>WriteThrough</Cachable>", "<LSB>7</LSB><MSB>4</MSB>"));
    doc.device.Put(0x100, {0xA0});
    EXPECT_FALSE(doc.Integer("r").set_val(5, 0));
    doc.device.Put(0x100, {0xB0});
    EXPECT_FALSE(doc.Integer("r").set_val(6, 0));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x100, 1), WriteOf(0x100, {0xA5}), WriteOf(0x100, {0xA6})));
}

TEST(StructEntry, CacheOnlyAccess) {
    TestDocument doc(struct_reg(fixed_span(1) + "<Cachable>WriteAround</Cachable>", "<Bit>7</Bit>"));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0x100), code(no_cached_value)) << "its read finds nothing";
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0x100));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0x100)), 1);
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 1)));
}

TEST(StructEntry, ChecksAccessFirst) {
    TestDocument doc(
        struct_reg(address("0x100") + length("9") + "<AccessMode>RO</AccessMode>", "<Bit>0</Bit>"));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0)), code(index_out_of_range));
}

TEST(StructEntry, AnswersFromItsElement) {
    TestDocument doc(struct_reg(fixed_span(1) + "<Unit>struct</Unit>",
                                "<Bit>0</Bit><Representation>Linear</Representation><Unit>own</Unit>"));
    IInteger& entry = doc.Integer("r");
    EXPECT_EQ(entry.get_node_type(), node_type::integer);
    EXPECT_EQ(entry.get_representation(), Representation::Linear);
    EXPECT_EQ(entry.get_unit(), "own");
    EXPECT_THAT(entry.get_selected(), IsEmpty());
    EXPECT_EQ(value_of(entry.get_inc(0)), 1);
    EXPECT_EQ(failure_of(entry.get_default(0)), code(not_implemented));
}

TEST(StructEntry, AnAddressThatCannotBeReadFailsReadingAndWriting) {
    TestDocument doc(struct_reg(fixed_span(4) + "<pAddress>bad</pAddress>", "<Bit>0</Bit>") + broken("bad"));
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0)), code(not_implemented));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(not_implemented));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

}  // namespace
