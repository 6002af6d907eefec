#pragma once

#include "simcam/driver_call.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

namespace simcam {

/// A misbehaviour of the driver. It strikes the calls that `when` picks, from the `first` such call after it
/// was added, `count` times. With `result` the driver does nothing of its own; the other fields distort the
/// answer, also that of a call that fails.
struct fault {
    static constexpr std::uint64_t always = std::numeric_limits<std::uint64_t>::max();

    call_filter when;         ///< empty: every call
    std::uint64_t first = 1;  ///< from 1
    std::uint64_t count = always;
    std::optional<HRESULT> result;  ///< the driver does nothing and answers this
    std::optional<DWORD> returned;  ///< size that a `Get` reports, whatever it wrote
    std::optional<DWORD> support;   ///< word that a `QuerySupported` gives
    std::optional<bytes> data;      ///< laid over the data of a `Get`, cut to the buffer
    std::function<void()> action;   ///< runs before the driver does anything; what it throws leaves the call
};

/// Fails one call, the n-th from now (from 1).
[[nodiscard]] fault fail_nth(std::uint64_t n, HRESULT result);
[[nodiscard]] fault fail_when(call_filter when, HRESULT result);
/// The camera is gone after `n` more calls: every later one answers `camera_lost`.
[[nodiscard]] fault lost_after(std::uint64_t n);
/// Runs in the midst of the n-th call from now.
[[nodiscard]] fault act_at(std::uint64_t n, std::function<void()> action);
/// The n-th call from now leaves with a std::runtime_error.
[[nodiscard]] fault throw_at(std::uint64_t n);
[[nodiscard]] fault claim_size(call_filter when, DWORD returned);
[[nodiscard]] fault answer_bytes(call_filter when, bytes data);

}  // namespace simcam
