// The register cache: what reads and writes do by mode and flags.

#include "tests/genicam_registers/register_test.h"

using namespace register_test;

namespace {

constexpr std::uint32_t cache_only = access_flags::cache_only;
constexpr std::uint32_t bypass = access_flags::bypass_cache;

std::string cachable(const char* mode) { return std::string("<Cachable>") + mode + "</Cachable>"; }

std::string number_register(const char* mode, const std::string& more = "") {
    return element("IntReg", fixed_span(2) + cachable(mode) + more);
}

const char* const modes[] = {"WriteThrough", "WriteAround", "NoCache"};

bool caches(const char* mode) { return std::string(mode) != "NoCache"; }

TEST(RegisterCache, ReadingByMode) {
    for (const char* mode : modes) {
        TestDocument doc(number_register(mode));
        doc.device.Put(0x100, {1, 2});
        for (int time = 0; time < 3; ++time) EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x0102);
        EXPECT_EQ(doc.device.TakeAccesses().size(), caches(mode) ? 1U : 3U) << mode;
    }
}

TEST(RegisterCache, AbsentMeansNotCached) {
    TestDocument doc(element("IntReg", fixed_span(2), "i") + element("FloatReg", fixed_span(4), "f") +
                     "<StructReg>" + fixed_span(1) +
                     "<StructEntry Name='e'><Bit>0</Bit></StructEntry></StructReg>");
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(doc.Integer("i").get_val(0));
        EXPECT_TRUE(doc.Float("f").get_val(0));
        EXPECT_TRUE(doc.Integer("e").get_val(0));
    }
    EXPECT_EQ(doc.device.TakeAccesses().size(), 6U);
}

TEST(RegisterCache, WritingByMode) {
    const struct {
        const char* mode;
        std::size_t reads_after;
    } rows[] = {{"WriteThrough", 0}, {"WriteAround", 1}, {"NoCache", 1}};
    for (const auto& row : rows) {
        TestDocument doc(number_register(row.mode));
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        EXPECT_FALSE(doc.Integer("r").set_val(0x0304, 0));
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2), WriteOf(0x100, {3, 4})));
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x0304);
        EXPECT_EQ(doc.device.TakeAccesses().size(), row.reads_after) << row.mode;
    }
}

TEST(RegisterCache, ABypassingReadGoesToTheDeviceAndIsRemembered) {
    for (const char* mode : modes) {
        TestDocument doc(number_register(mode));
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        doc.device.Put(0x100, {5, 6});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(bypass)), 0x0506) << mode;
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2), ReadOf(0x100, 2, bypass)));
        EXPECT_EQ(value_of(doc.Integer("r").get_val(cache_only)), 0x0506) << mode;
        doc.device.Put(0x100, {7, 8});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(bypass | cache_only)), 0x0708) << "bypassing is stronger";
    }
}

TEST(RegisterCache, ACacheOnlyReadNeverReachesTheDevice) {
    for (const char* mode : modes) {
        TestDocument doc(number_register(mode));
        EXPECT_EQ(failure_of(doc.Integer("r").get_val(cache_only)), code(no_cached_value)) << mode;
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
        doc.device.Put(0x100, {1, 2});
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        doc.device.ForgetAccesses();
        EXPECT_EQ(value_of(doc.Integer("r").get_val(cache_only)), 0x0102) << mode;
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(RegisterCache, HoldsOneAddress) {
    TestDocument doc(number_register("WriteThrough", "<pIndex>index</pIndex>") + number("index", "0"));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("index").set_val(1, 0));
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(cache_only)), code(no_cached_value));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("index").set_val(0, 0));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2), ReadOf(0x102, 2), ReadOf(0x100, 2)));
}

TEST(RegisterCache, AShorterReadIsServedALongerOneIsNot) {
    // The length comes from a port, so that its change empties nothing.
    for (const char* mode : modes) {
        TestDocument doc(element("IntReg", address("0x100") + "<pLength>size</pLength>" + cachable(mode)) +
                         element("IntReg", address("0x10") + length("1") + cachable("NoCache"), "size"));
        doc.device.Put(0x100, {1, 2, 3, 4});
        doc.device.Put(0x10, {2});
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x0102);
        const auto size = [&doc](std::uint8_t bytes) {
            // The cache of the length's register is filled for the reads that must not reach the device.
            doc.device.Put(0x10, {bytes});
            EXPECT_TRUE(doc.Integer("size").get_val(0));
            doc.device.ForgetAccesses();
        };
        size(1);
        EXPECT_EQ(value_of(doc.Integer("r").get_val(cache_only)), 1) << mode << ": the first byte";
        size(3);
        EXPECT_EQ(failure_of(doc.Integer("r").get_val(cache_only)), code(buffer_too_small)) << mode;
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x010203);
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x10, 1), ReadOf(0x100, 3)));
        size(1);
        EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
        EXPECT_EQ(doc.device.TakeAccesses().size(), caches(mode) ? 1U : 2U) << "besides that of the length";
    }
}

TEST(RegisterCache, AShorterReadOfLittleEndianBytes) {
    TestDocument doc(element("IntReg", address("0x100") + "<pLength>size</pLength>" +
                                           cachable("WriteThrough") + little_endian()) +
                     element("IntReg", address("0x10") + length("1"), "size"));
    doc.device.Put(0x100, {1, 2, 3, 4});
    doc.device.Put(0x10, {4});
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x04030201);
    doc.device.Put(0x10, {3});
    doc.device.ForgetAccesses();
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x030201);
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x10, 1)));
}

TEST(RegisterCache, ACacheOnlyWriteByMode) {
    for (const char* mode : modes) {
        TestDocument doc(number_register(mode));
        ChangeCounter changes(doc.Node("r"));
        EXPECT_EQ(doc.Integer("r").set_val(0x0304, cache_only), caches(mode) ? ok : code(not_implemented))
            << mode;
        EXPECT_EQ(changes.Count(), caches(mode) ? 1 : 0);
        if (caches(mode)) {
            EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0x0304);
        }
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty()) << mode;
    }
}

TEST(RegisterCache, ABypassFlagOnAWriteIsHandedOn) {
    TestDocument doc(number_register("WriteThrough"));
    EXPECT_FALSE(doc.Integer("r").set_val(1, bypass));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(WriteOf(0x100, {0, 1}, bypass)));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 1);
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

TEST(RegisterCache, UnknownFlagsReachTheDevice) {
    TestDocument doc(number_register("WriteThrough"));
    EXPECT_TRUE(doc.Integer("r").get_val(0xFFFF0CFF));
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0xFFFF0CFF));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x100, 2, 0xFFFF0CFF), WriteOf(0x100, {0, 1}, 0xFFFF0CFF)));
}

TEST(RegisterCache, WhatAFailedWriteLeaves) {
    const struct {
        const char* mode;
        std::error_code cached;  // of a cache-only read afterwards
        std::int64_t value;
    } rows[] = {
        {"WriteThrough", {}, 0x0304}, {"WriteAround", code(no_cached_value), 0}, {"NoCache", {}, 0x0102}};
    for (const auto& row : rows) {
        TestDocument doc(number_register(row.mode));
        doc.device.Put(0x100, {1, 2});
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(doc.Integer("r").set_val(0x0304, 0), code(device_lost));
        const auto cached = doc.Integer("r").get_val(cache_only);
        EXPECT_EQ(failure_of(cached), row.cached) << row.mode;
        if (cached) {
            EXPECT_EQ(cached.assume_value(), row.value) << row.mode;
        }
        EXPECT_EQ(value_of(doc.Integer("r").get_val(bypass)), 0x0102);
    }
}

TEST(RegisterCache, AFailedReadLeavesItAsItWas) {
    for (const char* mode : modes) {
        TestDocument doc(number_register(mode));
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(failure_of(doc.Integer("r").get_val(0)), code(device_lost));
        EXPECT_EQ(failure_of(doc.Integer("r").get_val(cache_only)), code(no_cached_value));
        doc.device.Put(0x100, {1, 2});
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        doc.device.Put(0x100, {3, 4});
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(failure_of(doc.Integer("r").get_val(bypass)), code(device_lost));
        EXPECT_EQ(value_of(doc.Integer("r").get_val(cache_only)), 0x0102) << mode;
    }
}

TEST(RegisterCache, UnderNoCacheAWriteLeavesWhatWasReadBefore) {
    TestDocument doc(number_register("NoCache"));
    doc.device.Put(0x100, {1, 2});
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("r").set_val(0x0304, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(cache_only)), 0x0102);
}

TEST(RegisterCache, EachNodeHasItsOwn) {
    TestDocument doc(number_register("WriteThrough") +
                     element("IntReg", fixed_span(2) + cachable("WriteThrough"), "same"));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_FALSE(doc.Integer("same").set_val(9, 0));
    EXPECT_EQ(value_of(doc.Integer("r").get_val(0)), 0) << "nobody told it";
}

TEST(RegisterCache, OfFloatRegisters) {
    for (const char* mode : modes) {
        TestDocument doc(element("FloatReg", fixed_span(8) + cachable(mode)));
        doc.device.Put(0x100, {0x3F, 0xF0, 0, 0, 0, 0, 0, 0});
        EXPECT_EQ(value_of(doc.Float("r").get_val(0)), 1.0);
        EXPECT_EQ(value_of(doc.Float("r").get_val(0)), 1.0);
        EXPECT_EQ(doc.device.TakeAccesses().size(), caches(mode) ? 1U : 2U) << mode;
        EXPECT_EQ(doc.Float("r").set_val(2.0, cache_only), caches(mode) ? ok : code(not_implemented));
        EXPECT_EQ(value_of(doc.Float("r").get_val(cache_only)), caches(mode) ? 2.0 : 1.0);
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

}  // namespace
