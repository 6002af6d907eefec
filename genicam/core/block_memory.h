#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Memory in pieces that come one by one and go together.
class block_memory {
public:
    /// Blocks get larger up to so many bytes: the last one stays half empty on average.
    explicit block_memory(std::size_t largest_block = std::size_t{1} << 16) : largest_block_(largest_block) {}

    /// So many bytes, aligned to 8.
    [[nodiscard]] void* take(std::size_t size);

    /// Copies of objects that need no destructor.
    template <class T>
    [[nodiscard]] gsl::span<T> copy(const T* objects, std::size_t count) {
        static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= alignment);
        auto* const copies = static_cast<T*>(take(count * sizeof(T)));
        std::uninitialized_copy(objects, objects + count, copies);
        return {copies, count};
    }

private:
    static constexpr std::size_t alignment = 8;

    std::vector<std::unique_ptr<unsigned char[]>> blocks_;
    unsigned char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t next_block_ = 1024;
    std::size_t largest_block_;
};

}  // namespace GenICam
