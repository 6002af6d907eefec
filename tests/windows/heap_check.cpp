// Looks at every heap of the process behind each test.

#include "heap_check.h"

#include <gtest/gtest.h>

#include <iostream>

namespace {

void ExpectWholeHeaps() {
    HANDLE heaps[64] = {};
    const DWORD count = GetProcessHeaps(64, heaps);
    ASSERT_LE(count, 64U);
    for (DWORD i = 0; i < count; ++i) EXPECT_TRUE(test_support::HeapIsWhole(heaps[i])) << "heap " << heaps[i];
}

class HeapCheck : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override {
        if (test_support::HeapsAreWatched()) std::cout << "heaps are watched" << std::endl;
    }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { ExpectWholeHeaps(); }
};

// The list of listeners owns it.
[[maybe_unused]] const bool listens = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new HeapCheck);
    return true;
}();

}  // namespace
