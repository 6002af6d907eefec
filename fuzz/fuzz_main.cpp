// One target as a program of libFuzzer. SELVANE_FUZZ_TARGET is its name.

#include "fuzz/fuzz_targets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::SELVANE_FUZZ_TARGET(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}

// A block that large does not come to exist, and whoever asked for it is told. The operators are those of
// allocation_watch.cpp, but for one that libFuzzer uses. Whole stacks of allocations and a larger quarantine
// cost a fifth of the speed; for a find ASAN_OPTIONS=malloc_context_size=30 brings the stacks back. With less
// than two callers in a stack no leak is reported: LeakSanitizer takes the block for one of the dynamic
// linker.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=256:alloc_dealloc_mismatch=0:"
           "malloc_context_size=3:quarantine_size_mb=16";
}
