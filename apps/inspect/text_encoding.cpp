#include "apps/inspect/text_encoding.h"

#include "platform/ascii.h"
#include "platform/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace selvane_inspect {
namespace {

enum class encoding { utf8, latin1, utf16_le, utf16_be, utf32_le, utf32_be };

struct file_start {
    std::string_view bytes;
    encoding means;
};

using namespace std::string_view_literals;

// The first that a file begins with counts: marks stand before characters, longer ones before shorter.
constexpr file_start file_starts[] = {
    {"\x00\x00\xFE\xFF"sv, encoding::utf32_be},
    {"\xFF\xFE\x00\x00"sv, encoding::utf32_le},
    {"\xFE\xFF"sv, encoding::utf16_be},
    {"\xFF\xFE"sv, encoding::utf16_le},
    {"\xEF\xBB\xBF"sv, encoding::utf8},
    {"\x00\x00\x00<"sv, encoding::utf32_be},
    {"<\x00\x00\x00"sv, encoding::utf32_le},
    {"\x00<"sv, encoding::utf16_be},
    {"<\x00"sv, encoding::utf16_le},
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

encoding guess_encoding(std::string_view bytes) {
    constexpr std::size_t shortest = 4;
    if (bytes.size() < shortest) return encoding::utf8;
    for (const file_start& start : file_starts) {
        if (bytes.substr(0, start.bytes.size()) == start.bytes) return start.means;
    }
    return declares_latin1(bytes) ? encoding::latin1 : encoding::utf8;
}

// One unit of that many bytes.
std::uint32_t unit_at(std::string_view bytes, std::size_t at, std::size_t size, bool little_endian) {
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t index = little_endian ? at + size - 1 - i : at + i;
        unit = unit << 8 | static_cast<unsigned char>(bytes[index]);
    }
    return unit;
}

constexpr bool is_high_surrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool is_low_surrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

std::string from_utf16(std::string_view bytes, bool little_endian) {
    constexpr std::size_t size = 2;
    std::string text;
    for (std::size_t at = 0; at + size <= bytes.size(); at += size) {
        const std::uint32_t unit = unit_at(bytes, at, size, little_endian);
        if (is_low_surrogate(unit)) continue;
        if (!is_high_surrogate(unit)) {
            platform::append_utf8(text, unit);
            continue;
        }
        if (at + 2 * size > bytes.size()) break;
        const std::uint32_t low = unit_at(bytes, at + size, size, little_endian);
        if (!is_low_surrogate(low)) continue;
        platform::append_utf8(text, 0x10000 + ((unit & 0x3FF) << 10) + (low & 0x3FF));
        at += size;
    }
    return text;
}

std::string from_utf32(std::string_view bytes, bool little_endian) {
    constexpr std::size_t size = 4;
    std::string text;
    for (std::size_t at = 0; at + size <= bytes.size(); at += size) {
        platform::append_utf8(text, unit_at(bytes, at, size, little_endian));
    }
    return text;
}

std::string from_latin1(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) platform::append_utf8(text, static_cast<unsigned char>(c));
    return text;
}

}  // namespace

std::string to_utf8(std::string_view bytes) {
    switch (guess_encoding(bytes)) {
        case encoding::latin1:
            return from_latin1(bytes);
        case encoding::utf16_le:
            return from_utf16(bytes, true);
        case encoding::utf16_be:
            return from_utf16(bytes, false);
        case encoding::utf32_le:
            return from_utf32(bytes, true);
        case encoding::utf32_be:
            return from_utf32(bytes, false);
        case encoding::utf8:
            break;
    }
    return std::string(bytes);
}

}  // namespace selvane_inspect
