#include "tests/adapter/allocation_watch.h"

#include <cstdlib>
#include <limits>
#include <new>

// The linker sends the calls of calloc in this program here (--wrap).
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
}

namespace adapter_test {
namespace {

// Not per thread: where the run-time library emulates that, it allocates for it.
std::uint64_t allocations = 0;
std::uint64_t allocated_bytes = 0;
std::uint64_t failing = 0;  // 0 for none
std::size_t largest_block = std::numeric_limits<std::size_t>::max();

void* Allocate(std::size_t size) {
    if (++allocations == failing) throw std::bad_alloc();
    allocated_bytes += size;
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace

std::uint64_t AllocationCount() noexcept { return allocations; }
std::uint64_t AllocatedBytes() noexcept { return allocated_bytes; }

FailingAllocation::FailingAllocation(std::uint64_t n) noexcept { failing = allocations + n; }
FailingAllocation::~FailingAllocation() { failing = 0; }
bool FailingAllocation::Came() const noexcept { return allocations >= failing; }

NoLargeBlocks::NoLargeBlocks(std::size_t size) noexcept { largest_block = size - 1; }
NoLargeBlocks::~NoLargeBlocks() { largest_block = std::numeric_limits<std::size_t>::max(); }

}  // namespace adapter_test

void* __wrap_calloc(std::size_t count, std::size_t size) {
    if (size != 0 && count > adapter_test::largest_block / size) return nullptr;
    return __real_calloc(count, size);
}

void* operator new(std::size_t size) { return adapter_test::Allocate(size); }
void* operator new[](std::size_t size) { return adapter_test::Allocate(size); }
// AddressSanitizer's own would take memory that the deletes below know nothing of.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return adapter_test::Allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
