#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace genicam_adapter {

// NOLINTBEGIN(cppcoreguidelines-no-malloc)
struct free_deleter {
    void operator()(char* memory) const noexcept { std::free(memory); }
};

using zeroed_buffer = std::unique_ptr<char[], free_deleter>;

/// `size` zero bytes, or null where there is no room. Unlike a vector it touches none of them: a driver may
/// claim 4 GB, and what it then does not fill should cost nothing.
[[nodiscard]] inline zeroed_buffer make_zeroed_buffer(std::size_t size) {
    return zeroed_buffer(static_cast<char*>(std::calloc(size != 0 ? size : 1, 1)));
}
// NOLINTEND(cppcoreguidelines-no-malloc)

}  // namespace genicam_adapter
