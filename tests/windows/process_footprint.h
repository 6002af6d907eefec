#pragma once

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <ostream>
#include <vector>

namespace page_test {

/// What a process holds. Tests compare one before and one after.
struct Footprint {
    DWORD windows = 0;            ///< of this thread
    WORD next_window = 0;         ///< slot that a new window gets; it moves up as slots are lost
    WORD highest_gdi_object = 0;  ///< of many that are made at once: grows with each that is left behind
    ULONG_PTR next_handle = 0;    ///< the same for handles of the kernel
    DWORD threads = 0;
    SIZE_T heap_blocks = 0;
    SIZE_T heap_bytes = 0;
};

inline void CountHeap(HANDLE heap, Footprint& footprint) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry) != 0) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
        ++footprint.heap_blocks;
        footprint.heap_bytes += entry.cbData;
    }
    HeapUnlock(heap);
}

inline DWORD CountThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    DWORD threads = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++threads;
    }
    CloseHandle(snapshot);
    return threads;
}

// Which of the freed numbers comes next is the platform's affair. So many objects take all of them, and then
// the highest number tells how many there are.
inline WORD HighestOfManyGdiObjects() {
    std::vector<HBRUSH> brushes(2000);
    WORD highest = 0;
    for (HBRUSH& brush : brushes) {
        brush = CreateSolidBrush(RGB(1, 2, 3));
        highest = std::max(highest, LOWORD(reinterpret_cast<ULONG_PTR>(brush)));
    }
    for (const HBRUSH brush : brushes) DeleteObject(brush);
    return highest;
}

inline Footprint MeasureFootprint() {
    Footprint footprint;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND, LPARAM count) -> BOOL {
            ++*reinterpret_cast<DWORD*>(count);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&footprint.windows));
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    footprint.next_window = LOWORD(reinterpret_cast<ULONG_PTR>(window));
    DestroyWindow(window);
    footprint.highest_gdi_object = HighestOfManyGdiObjects();
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    footprint.next_handle = reinterpret_cast<ULONG_PTR>(event);
    CloseHandle(event);
    footprint.threads = CountThreads();
    HANDLE heaps[64] = {};
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count; ++i) CountHeap(heaps[i], footprint);
    return footprint;
}

inline std::ostream& operator<<(std::ostream& out, const Footprint& footprint) {
    return out << footprint.windows << " windows, next window " << footprint.next_window
               << ", highest GDI object " << footprint.highest_gdi_object << ", next handle "
               << footprint.next_handle << ", " << footprint.threads << " threads, " << footprint.heap_blocks
               << " heap blocks with " << footprint.heap_bytes << " bytes";
}

}  // namespace page_test
