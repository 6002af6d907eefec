#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace GenICam {

/// An object that owns memory outside the arena, and how to destroy it.
struct destructor_entry {
    void (*destroy)(void* object) noexcept;
    void* object;
};

/// The allocator as node construction sees it.
class alloc_itf {
public:
    /// Never null and without a bounds check: the arena has exactly the room that was reserved. Every block
    /// is aligned to 8 bytes, whatever `alignment` says.
    [[nodiscard]] virtual void* allocate(std::uint64_t size, std::uint64_t alignment) = 0;
    [[nodiscard]] virtual void* allocate_array(std::uint64_t element_size, std::uint64_t count,
                                               std::uint64_t alignment) = 0;
    virtual void reserve(std::uint64_t element_size, std::uint64_t count, std::uint64_t alignment,
                         bool has_destructor) = 0;
    virtual void add_destructor(destructor_entry entry) = 0;

protected:
    ~alloc_itf() = default;
};

/// One block of memory for all nodes of a document: sized once by what was reserved, freed in one piece.
class document_allocator final : public alloc_itf {
public:
    document_allocator() = default;
    document_allocator(const document_allocator&) = delete;
    document_allocator& operator=(const document_allocator&) = delete;
    /// Destroys the registered objects in the order of their registration.
    ~document_allocator();

    void* allocate(std::uint64_t size, std::uint64_t alignment) override;
    void* allocate_array(std::uint64_t element_size, std::uint64_t count, std::uint64_t alignment) override;
    void reserve(std::uint64_t element_size, std::uint64_t count, std::uint64_t alignment,
                 bool has_destructor) override;
    void add_destructor(destructor_entry entry) override;

    /// Makes the arena. Call once, after all reservations.
    void make_arena();

    [[nodiscard]] std::uint64_t reserved_bytes() const noexcept { return reserved_bytes_; }
    [[nodiscard]] std::uint64_t used_bytes() const noexcept { return used_; }

private:
    std::vector<destructor_entry> destructors_;
    std::unique_ptr<std::uint8_t[]> arena_;
    std::uint8_t* arena_base_ = nullptr;
    std::uint64_t used_ = 0;
    std::uint64_t reserved_bytes_ = 0;
    std::uint64_t reserved_destructors_ = 0;
};

}  // namespace GenICam
