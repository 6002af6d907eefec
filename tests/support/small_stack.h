#pragma once

#include <functional>

namespace test_support {

/// Runs the function with 1 MB of stack, what a host's window thread has, and waits for its end.
void RunOnSmallStack(std::function<void()> function);

}  // namespace test_support
