// `String` and `StringReg`.

#include "tests/genicam_registers/register_test.h"

using namespace register_test;

namespace {

using std::string_literals::operator""s;

std::string text_register(int bytes, const std::string& children = "") {
    return element("StringReg", fixed_span(bytes) + children);
}

Bytes bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

// String

TEST(String, HoldsItsValue) {
    TestDocument doc(element("String", "<Value>two words</Value>") + element("String", "", "empty"));
    EXPECT_EQ(doc.Node("r").get_node_type(), node_type::string);
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "two words");
    EXPECT_EQ(value_of(doc.String("empty").get_val(0)), "");
    EXPECT_FALSE(doc.String("r").set_val("a\0b"s, 0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "a\0b"s);
    const std::string text(100000, 'x');
    EXPECT_FALSE(doc.String("r").set_val(text, 0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), text);
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(String, ForwardsToAnotherString) {
    TestDocument doc(element("String", "<pValue>other</pValue><Value>unused</Value>") +
                     element("String", "<Value>its value</Value>", "other"));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "its value");
    EXPECT_FALSE(doc.String("r").set_val("new", 0));
    EXPECT_EQ(value_of(doc.String("other").get_val(0)), "new");
    EXPECT_THAT(dependents_of(doc, "other"), ElementsAre("r"));
}

TEST(String, ForwardsItsFlags) {
    TestDocument doc(element("String", "<pValue>reg</pValue>") + element("StringReg", fixed_span(4), "reg"));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(no_cached_value));
    EXPECT_TRUE(doc.String("r").get_val(0x200));
    EXPECT_FALSE(doc.String("r").set_val("abc", 0x800));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x100, 4, 0x200), WriteOf(0x100, bytes_of("abc"), 0x800)));
}

TEST(String, AnEmptyLinkCountsAsNone) {
    TestDocument doc(element("String", "<pValue></pValue><Value>own</Value>"));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "own");
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(String, AnUnresolvedLinkLeavesItEmpty) {
    for (const char* link : {"nobody", "number"}) {
        TestDocument doc(
            element("String", std::string("<pValue>") + link + "</pValue><Value>unused</Value>") +
            number("number", "1"));
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre(
                "GenICam::string_type::_resolve_references, String (\"r\"). Failed to parse or resolve "
                "\"pValue\" xml node."));
        EXPECT_EQ(value_of(doc.String("r").get_val(0)), "");
        EXPECT_FALSE(doc.String("r").set_val("own", 0));
        EXPECT_EQ(value_of(doc.String("r").get_val(0)), "own");
        EXPECT_THAT(dependents_of(doc, "number"), IsEmpty());
    }
}

TEST(String, EveryWriteIsAChange) {
    TestDocument doc(element("String", "<Value>a</Value>") +
                     element("String", "<pInvalidator>r</pInvalidator>", "other"));
    ChangeCounter own(doc.Node("r"));
    ChangeCounter dependent(doc.Node("other"));
    EXPECT_FALSE(doc.String("r").set_val("a", 0));
    EXPECT_FALSE(doc.String("r").set_val("a", 0));
    EXPECT_EQ(own.Count(), 2);
    EXPECT_EQ(dependent.Count(), 2);
}

TEST(String, ChecksAccess) {
    TestDocument doc(element("String", "<Value>a</Value><ImposedAccessMode>RO</ImposedAccessMode>", "ro") +
                     element("String", "<Value>a</Value><ImposedAccessMode>WO</ImposedAccessMode>", "wo") +
                     element("String", "<pValue>wo</pValue>", "link"));
    EXPECT_EQ(doc.String("ro").set_val("b", 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.String("wo").get_val(0)), code(access_denied));
    EXPECT_EQ(failure_of(doc.String("link").get_val(0)), code(access_denied)) << "by the linked node";
    EXPECT_EQ(doc.Node("link").get_access_mode(), AccessMode::RW) << "a string tells no source";
    EXPECT_FALSE(doc.String("ro").set_val("b", access_flags::skip_access_check));
}

// StringReg

TEST(StringReg, ReadsAllItsBytes) {
    TestDocument doc(text_register(16));
    EXPECT_EQ(doc.Node("r").get_node_type(), node_type::string);
    doc.device.Put(0x100, bytes_of("abc"));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "abc" + std::string(13, '\0'));
    doc.device.Put(0x100, bytes_of("a\0b\xFF no end here!"s));
    EXPECT_EQ(value_of(doc.String("r").get_val(0x200)), "a\0b\xFF no end here"s);
}

TEST(StringReg, WritesAsManyBytesAsTheTextHas) {
    TestDocument doc(text_register(16));
    doc.device.Put(0x100, Bytes(24, 'x'));
    EXPECT_FALSE(doc.String("r").set_val("abc", 0));
    const std::string longer = "twenty bytes of text";
    EXPECT_FALSE(doc.String("r").set_val(longer, 0));
    EXPECT_FALSE(doc.String("r").set_val("", 0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, bytes_of("abc")),
                                                       WriteOf(0x100, bytes_of(longer)), WriteOf(0x100, {})));
    EXPECT_EQ(doc.device.At(0x100, 24), bytes_of(longer + "xxxx")) << "no padding, no zero";
}

TEST(StringReg, CachesUnlessToldOtherwise) {
    const struct {
        const char* cachable;
        std::size_t reads;
        bool logs;
    } rows[] = {{"", 1, false},
                {"<Cachable>WriteThrough</Cachable>", 1, false},
                {"<Cachable>WriteAround</Cachable>", 1, false},
                {"<Cachable>NoCache</Cachable>", 2, false},
                {"<Cachable>x</Cachable>", 1, true}};
    for (const auto& row : rows) {
        TestDocument doc(text_register(4, row.cachable));
        if (row.logs) {
            EXPECT_THAT(doc.load_messages, ElementsAre("Invalid contents of \"Cachable\" node (\"x\"\n"));
        } else {
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
        doc.device.Put(0x100, bytes_of("abcd"));
        for (int time = 0; time < 2; ++time) EXPECT_EQ(value_of(doc.String("r").get_val(0)), "abcd");
        EXPECT_EQ(doc.device.TakeAccesses().size(), row.reads) << row.cachable;
    }
}

TEST(StringReg, EndianessIsNotRead) {
    TestDocument doc(text_register(4, "<Endianess>x</Endianess>"));
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

TEST(StringReg, AReadPastTheCacheFillsIt) {
    TestDocument doc(text_register(4));
    EXPECT_TRUE(doc.String("r").get_val(0));
    doc.device.Put(0x100, bytes_of("new!"));
    EXPECT_EQ(value_of(doc.String("r").get_val(0x300)), "new!") << "the bypass beats the cache-only flag";
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "new!");
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4), ReadOf(0x100, 4, 0x300)));
}

TEST(StringReg, ReadsThatMustNotReachTheDevice) {
    for (const char* cachable : {"WriteThrough", "WriteAround", "NoCache"}) {
        TestDocument doc(
            element("StringReg", address("0x100") +
                                     "<pLength>size</pLength><pAddress>more</pAddress><Cachable>" +
                                     std::string(cachable) + "</Cachable>") +
            number("size", "4") + number("more", "0"));
        doc.device.Put(0x100, bytes_of("abcdefgh"));
        EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(no_cached_value));
        EXPECT_TRUE(doc.String("r").get_val(0));
        EXPECT_EQ(value_of(doc.String("r").get_val(0x100)), "abcd") << cachable;
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
    }
}

TEST(StringReg, ServesAPrefixButNothingLonger) {
    // The length is read from a port, so that a change of it empties no cache.
    TestDocument doc(element("StringReg", address("0x100") + "<pLength>size</pLength>") +
                     element("IntReg", address("0x10") + length("1"), "size"));
    doc.device.Put(0x100, bytes_of("abcdefgh"));
    doc.device.Put(0x10, {4});
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "abcd");
    doc.device.Put(0x10, {2});
    doc.device.ForgetAccesses();
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "ab");
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x10, 1)));
    doc.device.Put(0x10, {8});
    const auto refused = doc.String("r").get_val(0);
    EXPECT_EQ(value_of(refused), "abcdefgh") << "the cache holds too little: the device is asked";
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x10, 1), ReadOf(0x100, 8)));
}

TEST(StringReg, ACacheOnlyReadOfMoreThanIsHeld) {
    TestDocument doc(text_register(4, "<pIndex Offset='0x10'>index</pIndex>") + number("index", "0"));
    EXPECT_FALSE(doc.String("r").set_val("abc", 0));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(buffer_too_small));
    EXPECT_FALSE(doc.String("r").set_val("abcd", 0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0x100)), "abcd");
    EXPECT_FALSE(doc.Integer("index").set_val(1, 0));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(no_cached_value)) << "another address";
    EXPECT_TRUE(doc.String("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, bytes_of("abc")),
                                                       WriteOf(0x100, bytes_of("abcd")), ReadOf(0x110, 4)));
}

TEST(StringReg, AShorterTextIsReadBackFromTheDevice) {
    TestDocument doc(text_register(8));
    EXPECT_FALSE(doc.String("r").set_val("abc", 0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "abc" + std::string(5, '\0'));
    EXPECT_TRUE(doc.String("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, bytes_of("abc")), ReadOf(0x100, 8)));
    EXPECT_FALSE(doc.String("r").set_val("12345678", 0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "12345678");
    EXPECT_EQ(doc.device.TakeAccesses().size(), 1U) << "a text of the full length is served";
}

TEST(StringReg, WritesThatMustNotReachTheDevice) {
    for (const char* cachable : {"WriteThrough", "WriteAround"}) {
        TestDocument doc(text_register(4, "<Cachable>" + std::string(cachable) + "</Cachable>"));
        ChangeCounter changes(doc.Node("r"));
        EXPECT_FALSE(doc.String("r").set_val("abcd", 0x100)) << cachable;
        EXPECT_EQ(changes.Count(), 1);
        EXPECT_EQ(value_of(doc.String("r").get_val(0)), "abcd");
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
    TestDocument doc(text_register(4, "<Cachable>NoCache</Cachable>"));
    ChangeCounter changes(doc.Node("r"));
    EXPECT_EQ(doc.String("r").set_val("abcd", 0x100), code(not_implemented));
    EXPECT_EQ(changes.Count(), 0);
}

TEST(StringReg, WhatAFailedWriteLeavesInTheCache) {
    const struct {
        const char* cachable;
        const char* read_back;
        std::size_t accesses;
    } rows[] = {{"WriteThrough", "new!", 0}, {"WriteAround", "old!", 1}, {"NoCache", "old!", 1}};
    for (const auto& row : rows) {
        TestDocument doc(text_register(4, "<Cachable>" + std::string(row.cachable) + "</Cachable>"));
        doc.device.Put(0x100, bytes_of("old!"));
        EXPECT_TRUE(doc.String("r").get_val(0));
        ChangeCounter changes(doc.Node("r"));
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(doc.String("r").set_val("new!", 0), code(device_lost));
        EXPECT_EQ(changes.Count(), 0);
        doc.device.ForgetAccesses();
        EXPECT_EQ(value_of(doc.String("r").get_val(0)), row.read_back) << row.cachable;
        EXPECT_EQ(doc.device.TakeAccesses().size(), row.accesses) << row.cachable;
    }
}

TEST(StringReg, AFailedReadLeavesTheCache) {
    TestDocument doc(text_register(4));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0)), code(device_lost));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(no_cached_value));
    EXPECT_TRUE(doc.String("r").get_val(0));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x200)), code(device_lost));
    EXPECT_TRUE(doc.String("r").get_val(0x100));
}

TEST(StringReg, AnInvalidatorEmptiesTheCacheBeforeItsCallbacksRun) {
    TestDocument doc(text_register(4, "<pInvalidator>trigger</pInvalidator>") + number("trigger", "0"));
    EXPECT_TRUE(doc.String("r").get_val(0));
    doc.device.Put(0x100, bytes_of("new!"));
    std::string seen;
    doc.Node("r").register_callback([&](INode*) { seen = value_of(doc.String("r").get_val(0)); });
    EXPECT_FALSE(doc.Integer("trigger").set_val(1, 0));
    EXPECT_EQ(seen, "new!");
    doc.Node("r").clear_callbacks();
}

TEST(StringReg, AWriteKeepsItsOwnCache) {
    TestDocument doc(
        text_register(4) +
        element("IntReg", fixed_span(4) + "<pInvalidator>r</pInvalidator><Cachable>WriteThrough</Cachable>",
                "number"));
    EXPECT_EQ(value_of(doc.Integer("number").get_val(0)), 0);
    EXPECT_FALSE(doc.String("r").set_val("\0\0\0\5"s, 0));
    doc.device.ForgetAccesses();
    EXPECT_TRUE(doc.String("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    EXPECT_EQ(value_of(doc.Integer("number").get_val(0)), 5);
}

TEST(StringReg, WithoutAPort) {
    TestDocument doc(text_register(4, "<pPort>nowhere</pPort>"));
    EXPECT_THAT(doc.load_messages, IsEmpty()) << "unlike a Register";
    EXPECT_EQ(failure_of(doc.String("r").get_val(0)), code(not_implemented));
    EXPECT_EQ(failure_of(doc.String("r").get_val(0x100)), code(not_implemented));
    EXPECT_EQ(doc.String("r").set_val("x", 0x100), code(not_implemented));
}

TEST(StringReg, LengthsThatNoTextHas) {
    for (const char* size : {"-1", "0x8000000000000000", "0x1000001", "0xFFFFFFFF", "0x7FFFFFFFFFFFFFFF"}) {
        TestDocument doc(element("StringReg", address("0x100") + length(size)) +
                         element("StringReg", address("0x100") + "<pLength>size</pLength>", "linked") +
                         number("size", size));
        for (const char* name : {"r", "linked"}) {
            EXPECT_EQ(failure_of(doc.String(name).get_val(0)), code(index_out_of_range)) << size;
            EXPECT_EQ(failure_of(doc.String(name).get_val(0x200)), code(index_out_of_range)) << size;
            EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
            EXPECT_FALSE(doc.String(name).set_val("ab", 0)) << "a write does not ask for the length";
            EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, bytes_of("ab"))));
        }
    }
}

TEST(StringReg, ALengthOfZeroIsAnEmptyText) {
    TestDocument doc(text_register(0));
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "");
    EXPECT_EQ(value_of(doc.String("r").get_val(0)), "");
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 0)));
}

TEST(StringReg, TheGreatestTextIsRead) {
    TestDocument doc(text_register(0x1000000));
    std::int64_t asked = 0;
    doc.device.before_access = [&asked](const test_support::PortAccess& access) {
        asked = access.length;
        return code(device_lost);
    };
    EXPECT_EQ(failure_of(doc.String("r").get_val(0)), code(device_lost));
    EXPECT_EQ(asked, 0x1000000);
}

TEST(StringReg, ATextTooLongToCountStopsTheWrite) {
    // No such text can exist: only its size may be looked at.
    const std::string_view impossible("x", std::size_t{1} << 63);
    TestDocument doc(text_register(4));
    EXPECT_EQ(doc.String("r").set_val(impossible, 0), code(buffer_too_small));
    EXPECT_EQ(doc.String("r").set_val(impossible, 0x100), code(buffer_too_small));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

TEST(StringReg, ChecksAccessBeforeItsAddress) {
    TestDocument doc(element("StringReg", "<pLength>broken</pLength><AccessMode>RO</AccessMode>", "ro") +
                     element("StringReg", "<pLength>broken</pLength><AccessMode>WO</AccessMode>", "wo") +
                     broken("broken"));
    EXPECT_EQ(doc.String("ro").set_val("x", 0), code(access_denied));
    EXPECT_EQ(failure_of(doc.String("wo").get_val(0)), code(access_denied));
    EXPECT_EQ(failure_of(doc.String("ro").get_val(0)), code(not_implemented));
    EXPECT_EQ(doc.String("wo").set_val("x", 0), code(not_implemented));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

}  // namespace
