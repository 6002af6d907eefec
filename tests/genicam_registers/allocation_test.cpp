// Reading and writing a register takes nothing from the heap.

#include "tests/adapter/allocation_watch.h"
#include "tests/genicam_registers/register_test.h"

#include "genicam/core/log.h"

#include <cstring>

using namespace register_test;

namespace {

class flat_memory final : public IDevicePort {
public:
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length, std::uint32_t) override {
        std::memcpy(buffer, bytes_ + address, static_cast<std::size_t>(length));
        return {};
    }
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t) override {
        std::memcpy(bytes_ + address, buffer, static_cast<std::size_t>(length));
        return {};
    }

private:
    unsigned char bytes_[64] = {};
};

template <class Call>
std::uint64_t allocations_of(Call call) {
    const std::uint64_t before = adapter_test::AllocationCount();
    for (int time = 0; time < 3; ++time) call();
    return adapter_test::AllocationCount() - before;
}

TEST(RegisterAllocation, TextsTakeSome) {
    TestDocument doc(element("StringReg", fixed_span(100)));
    IString& text = doc.String("r");
    EXPECT_TRUE(text.get_val(0));
    EXPECT_GE(allocations_of([&] { EXPECT_TRUE(text.get_val(0)); }), 3U) << "or nothing is counted";
}

TEST(RegisterAllocation, NumbersTakeNone) {
    const std::string at_16 = address("16") + length("4") + "<pPort>Flat</pPort>";
    for (const char* mode : {"WriteThrough", "WriteAround", "NoCache"}) {
        const std::string children = at_16 + "<Cachable>" + mode + "</Cachable>";
        TestDocument doc(
            "<Port Name='Flat'/>" + element("IntReg", children, "fixed") +
            element("IntReg", children + "<pIndex>one</pIndex><pAddress>one</pAddress>", "dynamic") +
            element("MaskedIntReg", children + "<Bit>3</Bit>", "masked") + "<StructReg>" + children +
            "<StructEntry Name='entry'><Bit>3</Bit></StructEntry></StructReg>" +
            element("FloatReg", children, "real") + element("Integer", "<pValue>fixed</pValue>", "link") +
            element("Register", children, "block") + number("one", "1"));
        flat_memory memory;
        EXPECT_FALSE(doc.Port("Flat").bind(&memory));
        for (const char* name : {"fixed", "dynamic", "masked", "entry", "link"}) {
            IInteger& node = doc.Integer(name);
            for (const std::uint32_t flags : {0U, 0x200U, 0x800U}) {
                EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(node.get_val(flags)); }), 0U) << name << mode;
                EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(node.set_val(1, flags)); }), 0U) << name << mode;
            }
            EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(node.get_max(0)); }), 0U) << name;
        }
        IFloat& real = doc.Float("real");
        EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(real.get_val(0)); }), 0U) << mode;
        EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(real.set_val(1.5, 0)); }), 0U) << mode;
        IRegister& block = doc.Register("block");
        unsigned char bytes[4] = {};
        EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(block.read(bytes, 4, 0)); }), 0U);
        EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(block.write(bytes, 4, 0)); }), 0U);
    }
}

TEST(RegisterAllocation, RefusalsTakeNone) {
    TestDocument doc(element("IntReg", fixed_span(9), "long") +
                     element("IntReg", fixed_span(4) + "<pPort>no</pPort>", "none") +
                     element("IntReg", fixed_span(4) + "<AccessMode>WO</AccessMode>", "hidden"));
    log_threshold = 0;
    for (const char* name : {"long", "none", "hidden"}) {
        IInteger& node = doc.Integer(name);
        EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(node.get_val(0)); }), 0U) << name;
    }
}

TEST(RegisterAllocation, ATextWithoutRoomForItThrowsAndKeepsTheCache) {
    TestDocument doc(element("StringReg", fixed_span(100)));
    IString& text = doc.String("r");
    doc.device.records = false;
    for (std::uint64_t n = 1;; ++n) {
        adapter_test::FailingAllocation failing(n);
        bool was_read = false;
        try {
            was_read = text.get_val(access_flags::bypass_cache).has_value();
        } catch (const std::bad_alloc&) {
        }
        if (!failing.Came()) {
            EXPECT_TRUE(was_read);
            EXPECT_GT(n, 1U);
            break;
        }
        EXPECT_FALSE(was_read) << n;
    }
    EXPECT_EQ(value_of(text.get_val(access_flags::cache_only)), std::string(100, '\0'));
}

}  // namespace
