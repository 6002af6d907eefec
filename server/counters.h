#pragma once

#include <atomic>
#include <cstdint>

namespace selvane_server {

/// What keeps the component loaded beside its live objects, which `CUnknown` counts.
struct Counters {
    std::atomic<std::int32_t> server_locks{0};
    std::atomic<std::int32_t> live_factories{0};
};

[[nodiscard]] Counters& ServerCounters() noexcept;

/// Whether nobody needs the component any more.
[[nodiscard]] bool CanUnload() noexcept;

}  // namespace selvane_server
