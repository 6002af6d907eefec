#include "genicam/nodes/register_cache.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace GenICam {
namespace {

// Written out so that compilers see the one instruction that it is.
constexpr std::uint64_t reverse_bytes(std::uint64_t word) noexcept {
    word = (word & 0x00FF00FF00FF00FFU) << 8 | (word >> 8 & 0x00FF00FF00FF00FFU);
    word = (word & 0x0000FFFF0000FFFFU) << 16 | (word >> 16 & 0x0000FFFF0000FFFFU);
    return word << 32 | word >> 32;
}

using word_bytes = std::make_index_sequence<word_size>;

// The bytes as a number whose low byte comes first, whatever the machine. Loops would stay loops.
template <std::size_t... At>
std::uint64_t load(const unsigned char (&bytes)[word_size], std::index_sequence<At...>) noexcept {
    return ((std::uint64_t{bytes[At]} << At * 8) | ...);
}

template <std::size_t... At>
void unload(std::uint64_t word, unsigned char (&bytes)[word_size], std::index_sequence<At...>) noexcept {
    ((bytes[At] = static_cast<unsigned char>(word >> At * 8)), ...);
}

// The usual lengths of registers without a call.
void copy_bytes(void* dest, const void* src, std::int64_t length) noexcept {
    switch (length) {
        case 1:
            std::memcpy(dest, src, 1);
            return;
        case 2:
            std::memcpy(dest, src, 2);
            return;
        case 4:
            std::memcpy(dest, src, 4);
            return;
        case 8:
            std::memcpy(dest, src, 8);
            return;
        default:
            std::memcpy(dest, src, static_cast<std::size_t>(length));
    }
}

constexpr unsigned unused_bits(std::int64_t length) noexcept {
    return static_cast<unsigned>(word_size - length) * 8;
}

}  // namespace

std::uint64_t decode_word(const unsigned char (&bytes)[word_size], std::int64_t length,
                          Endianess endianess) noexcept {
    const std::uint64_t word = load(bytes, word_bytes());
    return endianess == Endianess::LittleEndian ? word : reverse_bytes(word) >> unused_bits(length);
}

void encode_word(std::uint64_t word, std::int64_t length, Endianess endianess,
                 unsigned char (&bytes)[word_size]) noexcept {
    const std::uint64_t on_top = word << unused_bits(length);
    unload(endianess == Endianess::LittleEndian ? on_top >> unused_bits(length) : reverse_bytes(on_top),
           bytes, word_bytes());
}

std::error_code register_cache::cache_read(std::uint64_t address, void* dest, std::int64_t length,
                                           std::uint32_t flags) {
    if (port == nullptr) return make_error_code(not_implemented);
    const bool is_cache_only = (flags & access_flags::cache_only) != 0;
    if ((flags & access_flags::bypass_cache) == 0 && (is_cache_only || cachable != Cachable::NoCache)) {
        const bool is_held = cached_length != 0 && cached_address == address;
        if (is_held && length <= cached_length) {
            copy_bytes(dest, cached_bytes, length);
            return {};
        }
        if (is_cache_only) return make_error_code(is_held ? buffer_too_small : no_cached_value);
    }
    const std::error_code failure = port->read(address, dest, length, flags);
    if (!failure && length <= word_size) store(address, dest, length);
    return failure;
}

std::error_code register_cache::cache_write(std::uint64_t address, const void* src, std::int64_t length,
                                            std::uint32_t flags) {
    if (port == nullptr) return make_error_code(not_implemented);
    const bool is_cache_only = (flags & access_flags::cache_only) != 0;
    if (is_cache_only && cachable == Cachable::NoCache) return make_error_code(not_implemented);
    if (is_cache_only || cachable == Cachable::WriteThrough) {
        if (length > word_size) return make_error_code(buffer_too_small);
        store(address, src, length);
        if (is_cache_only) return {};
    } else if (cachable == Cachable::WriteAround) {
        clear();
    }
    return port->write(address, src, length, flags);
}

void register_cache::store(std::uint64_t address, const void* bytes, std::int64_t length) noexcept {
    copy_bytes(cached_bytes, bytes, length);
    cached_address = address;
    cached_length = static_cast<std::uint8_t>(length);
}

std::error_code register_cache::write_word(register_span span, std::uint64_t word, std::uint32_t flags) {
    unsigned char bytes[word_size];
    encode_word(word, span.length, endianess, bytes);
    return cache_write(span.address, bytes, span.length, flags);
}

}  // namespace GenICam
