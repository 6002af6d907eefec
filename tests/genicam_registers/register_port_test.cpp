// Registers and their ports: which one, unbound ones, failing ones.

#include "tests/genicam_registers/register_test.h"

#include <array>

using namespace register_test;

namespace {

std::string on_port(const char* port) { return std::string("<pPort>") + port + "</pPort>"; }

TEST(RegisterPort, IsTheOneNamed) {
    TestDocument doc(element("IntReg", fixed_span(4), "default") +
                     element("IntReg", fixed_span(4) + on_port(""), "empty") +
                     element("IntReg", fixed_span(4) + on_port("Other"), "other") + "<Port Name='Other'/>");
    test_support::RecordingDevice second;
    EXPECT_FALSE(doc.Port("Other").bind(&second));
    second.Put(0x100, {0, 0, 0, 2});
    doc.device.Put(0x100, {0, 0, 0, 1});
    EXPECT_EQ(value_of(doc.Integer("default").get_val(0)), 1);
    EXPECT_EQ(value_of(doc.Integer("empty").get_val(0)), 1);
    EXPECT_EQ(value_of(doc.Integer("other").get_val(0)), 2);
    EXPECT_THAT(second.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
}

// Every kind of register on a port, and what reading and writing it gives.
std::string one_of_each(const std::string& port) {
    return element("IntReg", fixed_span(4) + port, "i") + element("FloatReg", fixed_span(4) + port, "f") +
           element("MaskedIntReg", fixed_span(4) + port + "<Bit>0</Bit>", "m") +
           element("Register", fixed_span(4) + port, "b") + element("StringReg", fixed_span(4) + port, "s") +
           "<StructReg>" + fixed_span(4) + port +
           "<StructEntry Name='e'><Bit>0</Bit></StructEntry></StructReg>";
}

std::vector<std::error_code> outcomes(TestDocument& doc, std::uint32_t flags = 0) {
    std::array<char, 4> bytes{};
    return {failure_of(doc.Integer("i").get_val(flags)),    doc.Integer("i").set_val(1, flags),
            failure_of(doc.Float("f").get_val(flags)),      doc.Float("f").set_val(1, flags),
            failure_of(doc.Integer("m").get_val(flags)),    doc.Integer("m").set_val(1, flags),
            doc.Register("b").read(bytes.data(), 4, flags), doc.Register("b").write(bytes.data(), 4, flags),
            failure_of(doc.String("s").get_val(flags)),     doc.String("s").set_val("abc", flags),
            failure_of(doc.Integer("e").get_val(flags)),    doc.Integer("e").set_val(1, flags)};
}

TEST(RegisterPort, WithoutOneNothingIsImplemented) {
    for (const char* port : {"nowhere", "number", "i"}) {
        TestDocument doc(one_of_each(on_port(port)) + number("number", "1"));
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre(
                "GenICam::register_type::_resolve_references, Register (\"b\"). Failed resolve port.\n"))
            << "no other register says so";
        for (const std::uint32_t flags : {0U, 0x100U, 0x200U, 0x800U}) {
            EXPECT_THAT(outcomes(doc, flags), testing::Each(code(not_implemented))) << port;
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
}

TEST(RegisterPort, UnboundOnesAreAskedAndRefuse) {
    TestDocument doc(one_of_each(on_port("Other")) + "<Port Name='Other'/>");
    EXPECT_THAT(outcomes(doc), testing::Each(code(invalid_parameter)));
    const std::vector<std::string> messages = doc.log.Take();
    EXPECT_EQ(messages.size(), 12U);
    EXPECT_THAT(messages,
                testing::Each(testing::HasSubstr("IPort (\"Other\"). Failed due to no bind called.\n")));
}

TEST(RegisterPort, BindingTwiceKeepsTheFirst) {
    TestDocument doc(one_of_each(""));
    test_support::RecordingDevice second;
    EXPECT_EQ(doc.Port().bind(&second), code(access_denied));
    EXPECT_THAT(outcomes(doc), testing::Each(ok));
    EXPECT_THAT(second.TakeAccesses(), IsEmpty());
    doc.Port().unbind();
    EXPECT_EQ(failure_of(doc.Integer("i").get_val(0)), code(invalid_parameter));
    EXPECT_FALSE(doc.Port().bind(&second));
    EXPECT_TRUE(doc.Integer("i").get_val(0));
    EXPECT_EQ(second.TakeAccesses().size(), 1U);
}

TEST(RegisterPort, ACacheOutlivesTheBinding) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<Cachable>WriteThrough</Cachable>"));
    doc.device.Put(0x100, {0, 0, 0, 1});
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    doc.Port().unbind();
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0x200)), code(invalid_parameter));
}

TEST(RegisterPort, EveryCodeTravelsUnchanged) {
    for (const std::uint32_t number : {0x80000002U, 0x80000003U, 0x80008001U, 0x80008006U, 0x80004005U, 1U}) {
        TestDocument doc(one_of_each(""));
        doc.device.before_access = [number](const test_support::PortAccess&) { return code(number); };
        EXPECT_THAT(outcomes(doc), testing::Each(code(number)));
        // As many as asked for, and none of them twice: fields fail at the read of their write.
        EXPECT_EQ(doc.device.TakeAccesses().size(), 12U);
    }
}

TEST(RegisterPort, AnExceptionOfTheDeviceLeavesTheCacheUsable) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<Cachable>WriteThrough</Cachable>"));
    doc.device.before_access = [](const test_support::PortAccess&) -> std::error_code {
        throw std::bad_alloc();
    };
    EXPECT_THROW(static_cast<void>(doc.Integer("r").get_val(0)), std::bad_alloc);
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0x100)), code(no_cached_value));
    doc.device.before_access = nullptr;
    EXPECT_TRUE(doc.Integer("r").get_val(0));
}

}  // namespace
