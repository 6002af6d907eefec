#pragma once

#include "genicam/core/text_words.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenICam {

/// No index of a name.
inline constexpr std::size_t no_such_name = static_cast<std::size_t>(-1);

/// Finds one of a few fixed names, at the cost of one comparison for nearly every text: a table made at
/// compile time, addressed by some bytes of the name. Names have at least three characters.
template <std::size_t Count>
class name_table {
public:
    explicit constexpr name_table(const std::array<std::string_view, Count>& names) : names_(names) {
        for (std::uint8_t& slot : slots_) slot = empty_slot;
        for (std::size_t index = 0; index < Count; ++index) {
            std::size_t at = slot_of(names_[index]);
            while (slots_[at] != empty_slot) at = (at + 1) % slot_count;
            slots_[at] = static_cast<std::uint8_t>(index);
        }
    }

    /// The index of the name in the list, or `no_such_name`.
    [[nodiscard]] std::size_t find(std::string_view name) const noexcept {
        if (name.size() < shortest_name) return no_such_name;
        for (std::size_t at = slot_of(name); slots_[at] != empty_slot; at = (at + 1) % slot_count) {
            if (is_same_text(names_[slots_[at]], name)) return slots_[at];
        }
        return no_such_name;
    }

    [[nodiscard]] constexpr std::string_view operator[](std::size_t index) const noexcept {
        return names_[index];
    }

private:
    static constexpr std::size_t shortest_name = 3;
    static constexpr std::size_t slot_count = 256;
    static constexpr std::uint8_t empty_slot = 0xFF;
    static_assert(Count < slot_count / 2);

    static constexpr std::size_t slot_of(std::string_view name) noexcept {
        const auto byte = [name](std::size_t at) {
            return static_cast<std::size_t>(static_cast<unsigned char>(name[at]));
        };
        const std::size_t size = name.size();
        return (size * 31 + byte(0) * 7 + byte(size / 2) * 5 + byte(size - 1) * 3 +
                byte(size > 5 ? 5 : 1) * 11) %
               slot_count;
    }

    std::array<std::string_view, Count> names_;
    std::array<std::uint8_t, slot_count> slots_{};
};

}  // namespace GenICam
