#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace GenICam {

/// Where the nodes of a document stand, by their names. Made for the load alone, in which every link is
/// looked up once: a search among sorted names waits for memory at each step.
class name_index {
public:
    static constexpr std::uint32_t not_found = 0xFFFFFFFF;

    /// Room for that many names.
    explicit name_index(std::size_t count);

    /// Each name once. False where too many names would share their slots, which real ones do not: the index
    /// is of no use then.
    [[nodiscard]] bool add(std::string_view name, std::uint32_t position);

    /// The position of a name; `is_named` tells whether what stands at a position bears it.
    template <class IsNamed>
    [[nodiscard]] std::uint32_t find(std::string_view name, IsNamed is_named) const {
        const std::uint32_t hash = hash_of(name);
        for (std::size_t at = hash & mask_; slots_[at].position != not_found; at = (at + 1) & mask_) {
            if (slots_[at].hash == hash && is_named(slots_[at].position)) return slots_[at].position;
        }
        return not_found;
    }

private:
    struct slot {
        std::uint32_t hash = 0;
        std::uint32_t position = not_found;
    };

    [[nodiscard]] static std::uint32_t hash_of(std::string_view name) noexcept;

    std::vector<slot> slots_;
    std::size_t mask_;
};

}  // namespace GenICam
