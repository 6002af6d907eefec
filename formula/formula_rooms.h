#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace GenICam {

/// Memory in pieces that come and go together. What is not touched costs nothing but addresses.
class formula_rooms {
public:
    /// So many bytes, aligned to 8.
    [[nodiscard]] void* take(std::size_t size);

private:
    std::vector<std::unique_ptr<unsigned char[]>> blocks_;
    unsigned char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t next_block_ = 1024;
};

}  // namespace GenICam
