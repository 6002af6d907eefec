#include "heap_check.h"

#include <gtest/gtest.h>

namespace {

struct OwnHeap {
    HANDLE heap = HeapCreate(0, 0, 0);
    unsigned char* block = static_cast<unsigned char*>(HeapAlloc(heap, 0, 20));
    ~OwnHeap() { HeapDestroy(heap); }
};

TEST(HeapCheck, SeesAByteBehindABlockWhereHeapsAreWatched) {
    const OwnHeap own;
    own.block[19] = 1;
    EXPECT_TRUE(test_support::HeapIsWhole(own.heap));
    own.block[20] = 1;
    EXPECT_NE(test_support::HeapIsWhole(own.heap), test_support::HeapsAreWatched());
}

TEST(HeapCheck, SeesAByteInAFreedBlockWhereHeapsAreWatched) {
    const OwnHeap own;
    HeapFree(own.heap, 0, own.block);
    EXPECT_TRUE(test_support::HeapIsWhole(own.heap));
    static_cast<volatile unsigned char*>(own.block)[19] = 1;
    EXPECT_NE(test_support::HeapIsWhole(own.heap), test_support::HeapsAreWatched());
}

}  // namespace
