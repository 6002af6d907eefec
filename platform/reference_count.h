#pragma once

#include "platform/com.h"

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace platform {

/// What an object counts behind `AddRef` and `Release`, with the numbers that they answer.
class reference_count {
public:
    explicit reference_count(std::int32_t start = 0) noexcept : count_(start) {}

    ULONG add() noexcept { return at_least_one(++count_); }
    /// 0 for the last reference, with which the object has to end. The count then stands at 1 again, so that
    /// the end may hand the object around without coming a second time.
    [[nodiscard]] ULONG give_up() noexcept {
        const std::int32_t left = --count_;
        if (left != 0) return at_least_one(left);
        ++count_;
        return 0;
    }
    [[nodiscard]] std::int32_t value() const noexcept { return count_; }

private:
    static ULONG at_least_one(std::int32_t count) noexcept { return static_cast<ULONG>(std::max(count, 1)); }

    std::atomic<std::int32_t> count_;
};

}  // namespace platform
