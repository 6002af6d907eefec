#pragma once

#include <cstddef>
#include <cstdint>

namespace adapter_test {

// For tests of one thread.

/// Allocations through operator new since the program began.
[[nodiscard]] std::uint64_t AllocationCount() noexcept;
/// And their bytes, those that were freed again included.
[[nodiscard]] std::uint64_t AllocatedBytes() noexcept;

/// The n-th allocation from now on throws std::bad_alloc, while this lives. n starts at 1.
class FailingAllocation {
public:
    explicit FailingAllocation(std::uint64_t n) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether that many allocations came.
    [[nodiscard]] bool Came() const noexcept;
};

/// Zeroed blocks of at least this size do not come to exist, while this lives.
class NoLargeBlocks {
public:
    explicit NoLargeBlocks(std::size_t size) noexcept;
    NoLargeBlocks(const NoLargeBlocks&) = delete;
    NoLargeBlocks& operator=(const NoLargeBlocks&) = delete;
    ~NoLargeBlocks();
};

}  // namespace adapter_test
