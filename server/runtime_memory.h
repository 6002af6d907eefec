#pragma once

namespace selvane_server {

/// Whether there is a place for the state of exceptions. A process has a few thousand of them; without one
/// the first exception would end it.
[[nodiscard]] bool HasRuntimeMemory() noexcept;

/// Gives back what the run-time library has taken for the life of the process, because the module ends before
/// it. No exception may be thrown after that.
void ReleaseRuntimeMemory() noexcept;

}  // namespace selvane_server
