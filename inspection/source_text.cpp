#include "inspection/source_text.h"

#include "platform/ascii.h"
#include "platform/utf8.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace selvane_inspect {
namespace {

/// How characters stand in a file: as units of that many bytes, in the order that is told.
struct encoding {
    std::size_t unit_size;
    bool little_endian = false;
};
constexpr encoding latin1 = {1};
constexpr encoding utf16_be = {2};
constexpr encoding utf16_le = {2, true};
constexpr encoding utf32_be = {4};
constexpr encoding utf32_le = {4, true};

struct file_start {
    std::string_view bytes;
    std::optional<encoding> means;  // not set for UTF-8
};

using namespace std::string_view_literals;

// The first that a file begins with counts: marks stand before characters, longer ones before shorter.
constexpr file_start file_starts[] = {
    {"\x00\x00\xFE\xFF"sv, utf32_be},
    {"\xFF\xFE\x00\x00"sv, utf32_le},
    {"\xFE\xFF"sv, utf16_be},
    {"\xFF\xFE"sv, utf16_le},
    {"\xEF\xBB\xBF"sv, std::nullopt},
    {"\x00\x00\x00<"sv, utf32_be},
    {"<\x00\x00\x00"sv, utf32_le},
    {"\x00<"sv, utf16_be},
    {"<\x00"sv, utf16_le},
};

// Of all encodings that a declaration can name, the parser knows one besides UTF-8.
bool declares_latin1(std::string_view bytes) {
    if (bytes.substr(0, 4) != "<?xm") return false;
    const std::string_view declaration = bytes.substr(0, std::min(bytes.find('>'), bytes.size()));
    std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) return false;
    at = declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos) return false;
    const std::size_t end = declaration.find(declaration[at], at + 1);
    if (end == std::string_view::npos) return false;
    const std::string name = platform::lower(declaration.substr(at + 1, end - at - 1));
    return name == "latin1" || name == "iso-8859-1";
}

// Not set for UTF-8.
std::optional<encoding> guess_encoding(std::string_view bytes) {
    constexpr std::size_t shortest = 4;
    if (bytes.size() < shortest) return std::nullopt;
    for (const file_start& start : file_starts) {
        if (bytes.substr(0, start.bytes.size()) == start.bytes) return start.means;
    }
    if (declares_latin1(bytes)) return latin1;
    return std::nullopt;
}

std::uint32_t unit_at(std::string_view bytes, std::size_t at, encoding from) {
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < from.unit_size; ++i) {
        const std::size_t index = from.little_endian ? at + from.unit_size - 1 - i : at + i;
        unit = unit << 8 | static_cast<unsigned char>(bytes[index]);
    }
    return unit;
}

constexpr bool is_surrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xE000; }
constexpr bool is_high_surrogate(std::uint32_t unit) { return unit < 0xDC00; }

constexpr std::size_t block_size = 1024;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

// Halves of surrogate pairs that stand alone are passed over, as the parser does.
std::string to_utf8(std::string_view bytes) {
    const std::optional<encoding> from = guess_encoding(bytes);
    if (!from) return std::string(bytes);
    std::string text;
    std::uint32_t high = 0;  // the first half of a pair, before the other; else 0
    for (std::size_t at = 0; at + from->unit_size <= bytes.size(); at += from->unit_size) {
        const std::uint32_t unit = unit_at(bytes, at, *from);
        const bool is_half = from->unit_size == 2 && is_surrogate(unit);
        const bool completes = is_half && high != 0 && !is_high_surrogate(unit);
        if (!is_half) platform::append_utf8(text, unit);
        if (completes) platform::append_utf8(text, 0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FF));
        high = is_half && is_high_surrogate(unit) ? unit : 0;
    }
    return text;
}

source_text::source_text(std::string bytes) : bytes_(std::move(bytes)), text_(to_utf8(bytes_)) {
    const bool marked = utf8().substr(0, byte_order_mark.size()) == byte_order_mark;
    line_starts_.push_back(marked ? byte_order_mark.size() : 0);
    std::size_t characters = 0;
    for (std::size_t at = 0; at <= text_.size(); ++at) {
        if (at % block_size == 0) block_starts_.push_back(characters);
        if (at == text_.size()) break;
        if (!continues_character(text_[at])) ++characters;
        const bool ends = text_[at] == '\n' || (text_[at] == '\r' && text_.compare(at, 2, "\r\n") != 0);
        if (ends) line_starts_.push_back(at + 1);
    }
}

text_position source_text::position_of(std::size_t offset) const {
    const auto behind = std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
    if (behind == line_starts_.begin()) return {1, 1};
    const std::size_t start = *(behind - 1);
    return {static_cast<std::size_t>(behind - line_starts_.begin()),
            characters_before(offset) - characters_before(start) + 1};
}

std::size_t source_text::characters_before(std::size_t offset) const {
    offset = std::min(offset, text_.size());
    const std::size_t block = offset / block_size;
    const std::string_view rest = utf8().substr(block * block_size, offset - block * block_size);
    const auto inside = std::count_if(rest.begin(), rest.end(), continues_character);
    return block_starts_[block] + rest.size() - static_cast<std::size_t>(inside);
}

}  // namespace selvane_inspect
