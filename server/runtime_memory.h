#pragma once

namespace selvane_server {

/// Gives back what the run-time library has taken for the life of the process, because the module ends before
/// it. No exception may be thrown after that.
void ReleaseRuntimeMemory() noexcept;

}  // namespace selvane_server
