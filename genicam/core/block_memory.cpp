#include "genicam/core/block_memory.h"

#include <algorithm>

namespace GenICam {
namespace {

constexpr std::size_t largest_block = std::size_t{1} << 16;

}  // namespace

void* block_memory::take(std::size_t size) {
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    if (rounded > left_) {
        left_ = std::max(rounded, next_block_);
        blocks_.emplace_back(new unsigned char[left_]);
        free_ = blocks_.back().get();
        next_block_ = std::min(2 * next_block_, largest_block);
    }
    void* const room = free_;
    free_ += rounded;
    left_ -= rounded;
    return room;
}

}  // namespace GenICam
