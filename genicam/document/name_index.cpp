#include "genicam/document/name_index.h"

#include "genicam/core/text_words.h"

namespace GenICam {
namespace {

constexpr std::size_t longest_search = 64;

// Half of the slots stay empty, so that nearly every search ends at the first.
std::size_t slots_for(std::size_t count) noexcept {
    std::size_t slots = 1;
    while (slots < 2 * count + 1) slots *= 2;
    return slots;
}

}  // namespace

name_index::name_index(std::size_t count) : slots_(slots_for(count)), mask_(slots_.size() - 1) {}

bool name_index::add(std::string_view name, std::uint32_t position) {
    const std::uint32_t hash = hash_of(name);
    std::size_t at = hash & mask_;
    for (std::size_t left = longest_search; slots_[at].position != not_found; at = (at + 1) & mask_) {
        if (--left == 0) return false;
    }
    slots_[at] = {hash, position};
    return true;
}

std::uint32_t name_index::hash_of(std::string_view name) noexcept {
    constexpr std::size_t width = sizeof(std::uint64_t);
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;  // odd, and its bits are mixed well
    std::uint64_t hash = name.size();
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * factor;
        hash ^= hash >> 32U;
    };
    for (std::size_t at = 0; at + width < name.size(); at += width) mix(word_at(name, at));
    if (name.size() >= width) {
        mix(word_at(name, name.size() - width));
    } else {
        for (const char c : name) mix(static_cast<unsigned char>(c));
    }
    // What the last bytes of a word changed has to reach the bits that choose a slot.
    return static_cast<std::uint32_t>(hash * factor >> 32U);
}

}  // namespace GenICam
