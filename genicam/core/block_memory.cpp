#include "genicam/core/block_memory.h"

#include <algorithm>
#include <utility>

namespace GenICam {

void* block_memory::take(std::size_t size) {
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    if (rounded > left_) {
        const std::size_t block_size = std::max(rounded, next_block_);
        std::unique_ptr<unsigned char[]> block(new unsigned char[block_size]);
        unsigned char* const first = block.get();
        blocks_.push_back(std::move(block));
        free_ = first;
        left_ = block_size;
        next_block_ = std::min(2 * next_block_, largest_block_);
    }
    void* const room = free_;
    free_ += rounded;
    left_ -= rounded;
    return room;
}

}  // namespace GenICam
