#pragma once

#include "simcam/fault.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace simcam {

/// The calls of a camera, and the faults that wait for some of them.
class call_book {
public:
    explicit call_book(bool keeps) noexcept : keeps_(keeps) {}

    /// Whether anyone looks at the contents of calls, so that it is worth noting them.
    [[nodiscard]] bool is_watched() const noexcept { return keeps_ || listener_ || !faults_.empty(); }
    /// Whether anyone reads the lines.
    [[nodiscard]] bool is_read() const noexcept { return keeps_ || listener_; }
    [[nodiscard]] std::uint64_t open() noexcept { return ++count_; }
    /// Counts the call for every fault that picks it, and gives the first that strikes.
    [[nodiscard]] std::optional<fault> strike(const driver_call& call);
    void close(driver_call call);

    void add_fault(fault added) { faults_.push_back({std::move(added), 0}); }
    void clear_faults() { faults_.clear(); }
    void set_listener(std::function<void(const driver_call&)> listener) { listener_ = std::move(listener); }
    void clear() { calls_.clear(); }
    [[nodiscard]] const std::vector<driver_call>& calls() const noexcept { return calls_; }
    [[nodiscard]] std::uint64_t count() const noexcept { return count_; }

private:
    struct waiting_fault {
        fault what;
        std::uint64_t picked;
    };

    bool keeps_;
    std::uint64_t count_ = 0;
    std::vector<driver_call> calls_;
    std::vector<waiting_fault> faults_;
    std::function<void(const driver_call&)> listener_;
};

}  // namespace simcam
