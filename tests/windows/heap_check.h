// Whether what was written behind blocks, or into freed ones, can be seen in a heap.

#pragma once

#include <windows.h>

extern "C" ULONG WINAPI RtlGetNtGlobalFlags();

namespace test_support {

/** Whether heaps fill the ends of their blocks and those that are freed: FLG_HEAP_ENABLE_TAIL_CHECK and
 * FLG_HEAP_ENABLE_FREE_CHECK, which `GlobalFlag` of the session manager's key gives to every process. */
inline bool HeapsAreWatched() {
    constexpr ULONG watched = 0x10 | 0x20;
    return (RtlGetNtGlobalFlags() & watched) == watched;
}

/** False where a heap's own lists or, in a heap that is watched, the end of a block or a freed block was
 * written over. */
inline bool HeapIsWhole(HANDLE heap) { return HeapValidate(heap, 0, nullptr) != FALSE; }

}  // namespace test_support
