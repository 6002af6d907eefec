#include "genicam/document/document_allocator.h"

#include <memory>

namespace GenICam {
namespace {

constexpr std::uint64_t block_alignment = 8;

constexpr std::uint64_t rounded(std::uint64_t size) noexcept {
    return (size + block_alignment - 1) / block_alignment * block_alignment;
}

}  // namespace

document_allocator::~document_allocator() {
    for (const destructor_entry& entry : destructors_) entry.destroy(entry.object);
}

void* document_allocator::allocate(std::uint64_t size, std::uint64_t) {
    void* block = arena_base_ + used_;
    used_ += rounded(size);
    return block;
}

void* document_allocator::allocate_array(std::uint64_t element_size, std::uint64_t count,
                                         std::uint64_t alignment) {
    return allocate(element_size * count, alignment);
}

void document_allocator::reserve(std::uint64_t element_size, std::uint64_t count, std::uint64_t,
                                 bool has_destructor) {
    reserved_bytes_ += rounded(element_size * count);
    if (has_destructor) reserved_destructors_ += count;
}

void document_allocator::add_destructor(destructor_entry entry) { destructors_.push_back(entry); }

void document_allocator::make_arena() {
    // Not filled: each node is written once.
    std::size_t space = reserved_bytes_ + 2 * block_alignment;
    arena_.reset(new std::uint8_t[space]);
    void* base = arena_.get();
    arena_base_ = static_cast<std::uint8_t*>(std::align(block_alignment, reserved_bytes_, base, space));
    destructors_.reserve(reserved_destructors_);
}

}  // namespace GenICam
