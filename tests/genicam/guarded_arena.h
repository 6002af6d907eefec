#pragma once

#include <cstddef>

namespace arena_test {

/// While it lives, the next block of exactly this size that `new[]` gives out ends at a page that nobody may
/// touch, but for its last `spare` bytes, which lie in that page.
class GuardedBlock {
public:
    GuardedBlock(std::size_t size, std::size_t spare) noexcept;
    ~GuardedBlock();
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;

    /// The block, once it was given out; null before.
    [[nodiscard]] static unsigned char* Get() noexcept;
};

}  // namespace arena_test
