#pragma once

#include "genicam/inode.h"
#include "genicam/nodes/register_address.h"

#include <cstdint>

namespace GenICam {

/// The greatest register that has a value as a number, in bytes.
constexpr std::int64_t word_size = 8;

/// Whether a register of that many bytes can be read as a number.
[[nodiscard]] constexpr bool fits_word(std::int64_t length) noexcept {
    return length >= 1 && length <= word_size;
}

/// The number in the first `length` bytes (1 to 8); those behind them must be 0.
[[nodiscard]] std::uint64_t decode_word(const unsigned char (&bytes)[word_size], std::int64_t length,
                                        Endianess endianess) noexcept;

/// Sets the first `length` bytes (1 to 8) to the low bytes of a number, and the others to 0.
void encode_word(std::uint64_t word, std::int64_t length, Endianess endianess,
                 unsigned char (&bytes)[word_size]) noexcept;

/// The port of a register with the bytes that were last seen behind it, at one address. What the element says
/// about their order and meaning stands beside them to fill the gap.
struct register_cache {
    // Lengths are at least 1.

    /// Fills `dest` from the cache where flags and mode allow it, else from the port. Every successful read
    /// of up to 8 bytes is remembered, also under `NoCache`: a later request that must not reach the device
    /// finds it.
    [[nodiscard]] std::error_code cache_read(std::uint64_t address, void* dest, std::int64_t length,
                                             std::uint32_t flags);
    /// Under `WriteThrough` the cache has the new bytes before the port is asked, and keeps them if that
    /// fails.
    [[nodiscard]] std::error_code cache_write(std::uint64_t address, const void* src, std::int64_t length,
                                              std::uint32_t flags);
    void clear() noexcept { cached_length = 0; }

    // The same for a number; the length must fit one.

    [[nodiscard]] std::error_code read_word(register_span span, std::uint64_t& word, std::uint32_t flags) {
        unsigned char bytes[word_size] = {};
        const std::error_code failure = cache_read(span.address, bytes, span.length, flags);
        if (!failure) word = decode_word(bytes, span.length, endianess);
        return failure;
    }
    [[nodiscard]] std::error_code write_word(register_span span, std::uint64_t word, std::uint32_t flags);

    IPort* port = nullptr;
    unsigned char cached_bytes[word_size] = {};  ///< in the device's order
    std::uint64_t cached_address = 0;
    std::uint8_t cached_length = 0;  ///< how many of the bytes count; 0: nothing is cached
    Cachable cachable = Cachable::NoCache;
    Endianess endianess = Endianess::BigEndian;
    Sign sign = Sign::Unsigned;

private:
    void store(std::uint64_t address, const void* bytes, std::int64_t length) noexcept;
};

static_assert(sizeof(register_cache) == 32);

}  // namespace GenICam
