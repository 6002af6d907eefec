#pragma once

namespace platform {

/// Whether there is a place for the state of exceptions. A process has a few thousand of them; without one
/// the first exception would end it.
[[nodiscard]] bool has_runtime_memory() noexcept;

/// Gives back what the run-time library has taken for the life of the process, because the module ends before
/// it. No exception may be thrown after that.
void release_runtime_memory() noexcept;

}  // namespace platform
