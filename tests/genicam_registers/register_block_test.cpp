// `Register`: blocks of bytes.

#include "tests/genicam_registers/register_test.h"

#include <array>
#include <limits>

using namespace register_test;

namespace {

constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(RegisterBlock, ReadsAndWritesFromItsAddressOn) {
    TestDocument doc(element("Register", fixed_span(16)));
    doc.device.Put(0x100, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    IRegister& block = doc.Register("r");
    EXPECT_EQ(block.get_node_type(), node_type::register_block);
    std::array<std::uint8_t, 16> bytes{};
    EXPECT_FALSE(block.read(bytes.data(), 8, 0));
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_FALSE(block.read(bytes.data(), 16, 0x200));
    EXPECT_EQ(bytes[15], 16);
    EXPECT_FALSE(block.write("abc", 3, 0x1000));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 8), ReadOf(0x100, 16, 0x200),
                                                       WriteOf(0x100, {'a', 'b', 'c'}, 0x1000)));
}

TEST(RegisterBlock, IsNeverCached) {
    TestDocument doc(element("Register", fixed_span(4) + "<Cachable>WriteThrough</Cachable>"));
    std::array<std::uint8_t, 4> bytes{};
    for (int time = 0; time < 2; ++time) EXPECT_FALSE(doc.Register("r").read(bytes.data(), 4, 0));
    EXPECT_FALSE(doc.Register("r").read(bytes.data(), 4, access_flags::cache_only))
        << "a flag that it hands on";
    EXPECT_EQ(doc.device.TakeAccesses().size(), 3U);
    EXPECT_THAT(doc.load_messages, IsEmpty());
    TestDocument bad(element("Register", fixed_span(4) + "<Cachable>x</Cachable><Endianess>x</Endianess>"));
    EXPECT_THAT(bad.load_messages, IsEmpty()) << "not read";
}

TEST(RegisterBlock, RefusesLengthsThatDoNotFit) {
    TestDocument doc(element("Register", fixed_span(16), "r") + element("Register", fixed_span(0), "none") +
                     element("Register", fixed_span(-5), "negative") +
                     element("Register", address("0x100") + length("0x7FFFFFFFFFFFFFFF"), "huge"));
    std::array<std::uint8_t, 32> bytes{};
    const struct {
        const char* name;
        std::int64_t length;
    } rows[] = {{"r", 17},       {"r", 0},
                {"r", -1},       {"r", highest},
                {"none", 1},     {"none", 0},
                {"negative", 1}, {"negative", -5},
                {"huge", 0},     {"huge", std::numeric_limits<std::int64_t>::min()}};
    for (const auto& row : rows) {
        EXPECT_EQ(doc.Register(row.name).read(bytes.data(), row.length, 0), code(invalid_parameter))
            << row.name;
        EXPECT_EQ(doc.Register(row.name).write(bytes.data(), row.length, 0), code(invalid_parameter))
            << row.name;
    }
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    EXPECT_FALSE(doc.Register("huge").read(bytes.data(), 32, 0)) << "what is asked for counts";
    EXPECT_EQ(value_of(doc.Register("huge").get_length(0)), highest);
    EXPECT_THAT(doc.log.Take(), IsEmpty());
}

TEST(RegisterBlock, TheOrderOfItsChecks) {
    std::uint8_t byte = 0;
    {
        // A read asks for access first, a write for the port.
        TestDocument doc(
            element("Register", fixed_span(1) + "<pPort>nowhere</pPort><AccessMode>WO</AccessMode>", "wo") +
            element("Register", fixed_span(1) + "<pPort>nowhere</pPort><AccessMode>RO</AccessMode>", "ro"));
        EXPECT_EQ(doc.Register("wo").read(&byte, 1, 0), code(access_denied));
        EXPECT_EQ(doc.Register("ro").read(&byte, 1, 0), code(not_implemented));
        EXPECT_EQ(doc.Register("ro").write(&byte, 1, 0), code(not_implemented));
        EXPECT_EQ(doc.Register("wo").write(&byte, 1, 0), code(not_implemented));
    }
    {
        // Then the address, then the length that is asked for.
        TestDocument doc(element("Register", fixed_span(1) + "<pAddress>broken</pAddress>") +
                         broken("broken") +
                         element("Register", fixed_span(1) + "<pPort>nowhere</pPort>", "unported") +
                         element("Register", fixed_span(1) + "<AccessMode>RO</AccessMode>", "ro"));
        EXPECT_EQ(doc.Register("r").read(&byte, 99, 0), code(not_implemented));
        EXPECT_EQ(doc.Register("r").write(&byte, 99, 0), code(not_implemented));
        EXPECT_EQ(doc.Register("unported").read(&byte, 99, 0), code(not_implemented));
        EXPECT_EQ(doc.Register("ro").write(&byte, 99, 0), code(access_denied));
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(RegisterBlock, LogsThatItHasNoPort) {
    TestDocument doc(element("Register", fixed_span(1) + "<pPort>nowhere</pPort>") +
                     element("Register", fixed_span(1) + "<pPort>value</pPort>", "s") + number("value", "1"));
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::register_type::_resolve_references, Register (\"r\"). Failed resolve port.\n",
                    "GenICam::register_type::_resolve_references, Register (\"s\"). Failed resolve port.\n"));
}

TEST(RegisterBlock, FailuresOfThePortTravelUnchanged) {
    TestDocument doc(element("Register", fixed_span(4)));
    std::array<std::uint8_t, 4> bytes{};
    const std::error_code odd(0x12345, GenICam::genicam_error_category::instance());
    doc.device.FailAccess(1, odd);
    EXPECT_EQ(doc.Register("r").read(bytes.data(), 4, 0), odd);
    doc.device.FailAccess(1, odd);
    ChangeCounter changes(doc.Node("r"));
    EXPECT_EQ(doc.Register("r").write(bytes.data(), 4, 0), odd);
    EXPECT_EQ(changes.Count(), 0);
}

TEST(RegisterBlock, AWriteReachesItsDependents) {
    TestDocument doc(
        element("Register", fixed_span(4)) +
        element("IntReg", fixed_span(4) + "<Cachable>WriteThrough</Cachable><pInvalidator>r</pInvalidator>",
                "number"));
    ChangeCounter own(doc.Node("r"));
    ChangeCounter dependent(doc.Node("number"));
    EXPECT_EQ(value_of(doc.Integer("number").get_val(0)), 0);
    EXPECT_FALSE(doc.Register("r").write("\0\0\0\5", 4, 0));
    EXPECT_EQ(value_of(doc.Integer("number").get_val(0)), 5);
    EXPECT_FALSE(doc.Register("r").write("\0\0\0\5", 4, 0));
    EXPECT_EQ(own.Count(), 2) << "changed or not";
    EXPECT_EQ(dependent.Count(), 2);
}

TEST(RegisterBlock, PollingTime) {
    const struct {
        const char* text;
        std::optional<std::int64_t> value;
    } rows[] = {{"100", 100},         {"0x10", 16},        {"0", 0},
                {"-1", std::nullopt}, {"x", std::nullopt}, {"", std::nullopt}};
    for (const auto& row : rows) {
        TestDocument doc(
            element("Register", fixed_span(4) + "<PollingTime>" + std::string(row.text) + "</PollingTime>"));
        EXPECT_EQ(doc.Register("r").get_polling_time(), row.value) << row.text;
    }
    TestDocument doc(element("Register", fixed_span(4)));
    EXPECT_EQ(doc.Register("r").get_polling_time(), std::nullopt);
}

}  // namespace
