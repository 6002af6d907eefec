#include "platform/text.h"

#include <cstdint>

namespace platform {
namespace {

constexpr char32_t replacement = 0xFFFD;

struct sequence_form {
    unsigned lead_mask;
    unsigned lead_value;
    unsigned following;
    char32_t least;
};

constexpr sequence_form sequence_forms[] = {
    {0x80, 0x00, 0, 0},
    {0xE0, 0xC0, 1, 0x80},
    {0xF0, 0xE0, 2, 0x800},
    {0xF8, 0xF0, 3, 0x10000},
};

// One character from the front of the text, or the replacement and one byte consumed for a bad sequence.
char32_t take_character(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    for (const sequence_form& form : sequence_forms) {
        if ((lead & form.lead_mask) != form.lead_value || text.size() <= form.following) continue;
        char32_t character = lead & ~form.lead_mask;
        bool sound = true;
        for (unsigned at = 1; at <= form.following; ++at) {
            const auto byte = static_cast<unsigned char>(text[at]);
            sound = sound && (byte & 0xC0U) == 0x80U;
            character = (character << 6) | (byte & 0x3FU);
        }
        const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
        if (!sound || character < form.least || surrogate || character > 0x10FFFF) break;
        text.remove_prefix(form.following + 1);
        return character;
    }
    text.remove_prefix(1);
    return replacement;
}

void append_utf8(std::string& text, char32_t c) {
    const auto byte = [&text](char32_t value) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::wstring widen(std::string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) wide += static_cast<wchar_t>(take_character(utf8));
    return wide;
}

std::string narrow(std::wstring_view wide) {
    std::string text;
    for (const wchar_t c : wide) append_utf8(text, static_cast<char32_t>(c));
    return text;
}

}  // namespace platform
