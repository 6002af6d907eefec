#pragma once

#include "platform/windows/owned.h"

#include <tlhelp32.h>

#include <ostream>

namespace page_test {

/// What a process holds. Tests compare one before and one after.
struct Footprint {
    DWORD windows = 0;     ///< of this thread
    WORD next_window = 0;  ///< slot that a new window gets; it moves up as slots are lost
    DWORD gdi_objects = 0;
    ULONG_PTR next_handle = 0;  ///< the same for handles of the kernel
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
    const platform::kernel_handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    DWORD threads = 0;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more != 0;
         more = Thread32Next(snapshot.get(), &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++threads;
    }
    return threads;
}

// Where the platform does not tell how many there are, it takes a number alone for the object that has it, as
// it always did for old programs.
inline DWORD CountGdiObjects() {
    const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (told != 0) return told;
    DWORD count = 0;
    for (ULONG_PTR number = 1; number < 0x4000; ++number) {
        if (GetObjectType(reinterpret_cast<HGDIOBJ>(number)) != 0) ++count;
    }
    return count;
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
    footprint.gdi_objects = CountGdiObjects();
    const platform::kernel_handle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    footprint.next_handle = reinterpret_cast<ULONG_PTR>(event.get());
    footprint.threads = CountThreads();
    HANDLE heaps[64] = {};
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count; ++i) CountHeap(heaps[i], footprint);
    return footprint;
}

inline std::ostream& operator<<(std::ostream& out, const Footprint& footprint) {
    return out << footprint.windows << " windows, next window " << footprint.next_window << ", "
               << footprint.gdi_objects << " GDI objects, next handle " << footprint.next_handle << ", "
               << footprint.threads << " threads, " << footprint.heap_blocks << " heap blocks with "
               << footprint.heap_bytes << " bytes";
}

}  // namespace page_test
