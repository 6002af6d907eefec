#include "simcam/register_memory.h"

#include "genicam/core/error.h"
#include "platform/ascii.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>

namespace simcam {
namespace {

// Areas are compared by their last byte: one that ends at the top of the address space has no end of its own.
bool overlaps(std::uint64_t address, std::uint64_t length, std::uint64_t other,
              std::uint64_t other_length) noexcept {
    if (length == 0 || other_length == 0) return false;
    return address <= other + (other_length - 1) && other <= address + (length - 1);
}

// Neighbouring numbers give bits that have nothing to do with one another.
std::uint64_t scrambled(std::uint64_t number) noexcept {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

std::string_view without_comment(std::string_view line) noexcept {
    bool quoted = false;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '"') quoted = !quoted;
        if (line[at] == '#' && !quoted) return line.substr(0, at);
    }
    return line;
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t\r";
    return platform::trimmed(text, blanks);
}

template <class Unsigned>
bool read_hex(std::string_view text, Unsigned& number) noexcept {
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return failure == std::errc() && end == text.data() + text.size();
}

std::optional<std::uint64_t> read_address(std::string_view text) noexcept {
    if (text.substr(0, 2) == "0x") text.remove_prefix(2);
    std::uint64_t address = 0;
    if (!read_hex(text, address)) return std::nullopt;
    return address;
}

// One byte or one quoted text from the front of what is left of a line.
bool take_item(std::string_view& rest, bytes& contents) {
    if (rest.front() == '"') {
        const std::size_t end = rest.find('"', 1);
        if (end == std::string_view::npos) return false;
        contents.insert(contents.end(), rest.begin() + 1, rest.begin() + static_cast<std::ptrdiff_t>(end));
        rest = trimmed(rest.substr(end + 1));
        return true;
    }
    const std::string_view digits = rest.substr(0, rest.find_first_of(" \t\""));
    std::uint8_t byte = 0;
    if (digits.size() != 2 || !read_hex(digits, byte)) return false;
    contents.push_back(byte);
    rest = trimmed(rest.substr(digits.size()));
    return true;
}

std::optional<bytes> read_contents(std::string_view text) {
    bytes contents;
    for (std::string_view rest = trimmed(text); !rest.empty();) {
        if (!take_item(rest, contents)) return std::nullopt;
    }
    return contents;
}

}  // namespace

std::error_code register_memory::check(std::uint64_t address, std::int64_t length,
                                       area_access forbidden) const {
    if (length < 0) return GenICam::invalid_parameter;
    const auto size = static_cast<std::uint64_t>(length);
    if (size != 0 && address + (size - 1) < address) return GenICam::invalid_address;
    const bool refused = std::any_of(protections_.begin(), protections_.end(), [&](const area& protection) {
        return protection.access == forbidden &&
               overlaps(address, size, protection.address, protection.length);
    });
    if (refused) return GenICam::access_denied;
    return {};
}

void register_memory::run_hooks(const std::vector<area>& hooks, std::uint64_t address, std::uint64_t length) {
    for (const area& hooked : hooks) {
        if (overlaps(address, length, hooked.address, hooked.length)) hooked.run(*this);
    }
}

std::error_code register_memory::read(std::uint64_t address, void* buffer, std::int64_t length,
                                      std::uint32_t) {
    if (const std::error_code refused = check(address, length, area_access::write_only)) return refused;
    run_hooks(read_hooks_, address, static_cast<std::uint64_t>(length));
    peek(address, buffer, static_cast<std::size_t>(length));
    return {};
}

std::error_code register_memory::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                       std::uint32_t) {
    if (const std::error_code refused = check(address, length, area_access::read_only)) return refused;
    poke(address, buffer, static_cast<std::size_t>(length));
    run_hooks(write_hooks_, address, static_cast<std::uint64_t>(length));
    return {};
}

register_memory::page register_memory::unwritten_page(std::uint64_t number) const {
    page contents = {};
    if (seed_ == 0) return contents;
    const std::uint64_t start = scrambled(seed_ ^ scrambled(number));
    for (std::size_t at = 0; at < page_size; ++at) {
        contents[at] = static_cast<std::uint8_t>(scrambled(start + at));
    }
    return contents;
}

void register_memory::peek(std::uint64_t address, void* buffer, std::size_t length) const {
    auto* to = static_cast<std::uint8_t*>(buffer);
    while (length != 0) {
        const std::size_t offset = address % page_size;
        const std::size_t part = std::min(length, page_size - offset);
        const auto found = pages_.find(address / page_size);
        if (found != pages_.end())
            std::memcpy(to, found->second.data() + offset, part);
        else
            std::memcpy(to, unwritten_page(address / page_size).data() + offset, part);
        to += part;
        address += part;
        length -= part;
    }
}

void register_memory::poke(std::uint64_t address, const void* buffer, std::size_t length) {
    const auto* from = static_cast<const std::uint8_t*>(buffer);
    while (length != 0) {
        const std::size_t offset = address % page_size;
        const std::size_t part = std::min(length, page_size - offset);
        const std::uint64_t number = address / page_size;
        auto found = pages_.find(number);
        if (found == pages_.end()) found = pages_.emplace(number, unwritten_page(number)).first;
        std::memcpy(found->second.data() + offset, from, part);
        from += part;
        address += part;
        length -= part;
    }
}

bytes register_memory::peek(std::uint64_t address, std::size_t length) const {
    bytes contents(length);
    peek(address, contents.data(), length);
    return contents;
}

void register_memory::poke(std::uint64_t address, const bytes& contents) {
    poke(address, contents.data(), contents.size());
}

std::uint64_t register_memory::peek_number(std::uint64_t address, std::size_t length,
                                           bool little_endian) const {
    bytes contents = peek(address, length);
    if (little_endian) std::reverse(contents.begin(), contents.end());
    std::uint64_t number = 0;
    for (const std::uint8_t byte : contents) number = (number << 8) | byte;
    return number;
}

void register_memory::poke_number(std::uint64_t address, std::size_t length, std::uint64_t value,
                                  bool little_endian) {
    bytes contents(length);
    for (std::uint8_t& byte : contents) {
        byte = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
    if (!little_endian) std::reverse(contents.begin(), contents.end());
    poke(address, contents);
}

std::vector<std::uint64_t> register_memory::written_pages() const {
    std::vector<std::uint64_t> addresses;
    for (const auto& [number, contents] : pages_) addresses.push_back(number * page_size);
    return addresses;
}

void register_memory::protect(std::uint64_t address, std::uint64_t length, area_access access) {
    protections_.push_back({address, length, access, nullptr});
}

void register_memory::before_read(std::uint64_t address, std::uint64_t length, hook run) {
    read_hooks_.push_back({address, length, area_access::read_write, std::move(run)});
}

void register_memory::after_write(std::uint64_t address, std::uint64_t length, hook run) {
    write_hooks_.push_back({address, length, area_access::read_write, std::move(run)});
}

std::size_t register_memory::load(std::string_view lines) {
    for (std::size_t number = 1; !lines.empty(); ++number) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        const std::string_view line = trimmed(without_comment(lines.substr(0, end)));
        lines.remove_prefix(std::min(end + 1, lines.size()));
        if (line.empty()) continue;
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) return number;
        const std::optional<std::uint64_t> address = read_address(trimmed(line.substr(0, colon)));
        const std::optional<bytes> contents = read_contents(line.substr(colon + 1));
        if (!address || !contents) return number;
        poke(*address, *contents);
    }
    return 0;
}

}  // namespace simcam
