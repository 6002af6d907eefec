#include "tests/genicam/guarded_arena.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <new>

namespace arena_test {
namespace {

std::size_t wanted = 0;  // 0 for none
std::size_t spare_bytes = 0;
unsigned char* pages = nullptr;
std::size_t pages_size = 0;
unsigned char* block = nullptr;

void* MakeGuarded() {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usable = (wanted - spare_bytes + page - 1) / page * page;
    pages_size = usable + page;
    void* const made = mmap(nullptr, pages_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (made == MAP_FAILED) throw std::bad_alloc();
    pages = static_cast<unsigned char*>(made);
    if (mprotect(pages + usable, page, PROT_NONE) != 0) std::abort();
    block = pages + usable - (wanted - spare_bytes);
    wanted = 0;
    return block;
}

void Free(void* memory) noexcept {
    if (memory == nullptr || memory != block) return std::free(memory);
    munmap(pages, pages_size);
    block = nullptr;
}

}  // namespace

GuardedBlock::GuardedBlock(std::size_t size, std::size_t spare) noexcept {
    wanted = size;
    spare_bytes = spare;
}
GuardedBlock::~GuardedBlock() { wanted = 0; }
unsigned char* GuardedBlock::Get() noexcept { return block; }

}  // namespace arena_test

void* operator new[](std::size_t size) {
    if (size == arena_test::wanted && size != 0) return arena_test::MakeGuarded();
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void operator delete[](void* memory) noexcept { arena_test::Free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { arena_test::Free(memory); }
