#include "platform/utf8.h"

namespace platform {
namespace {

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

}  // namespace

utf8_character first_character(std::string_view text) noexcept {
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
        return {character, form.following + 1};
    }
    return {no_character, 1};
}

void append_utf8(std::string& text, char32_t character) {
    const auto byte = [&text](char32_t value) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0 | (character >> 6));
        byte(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        byte(0xE0 | (character >> 12));
        byte(0x80 | ((character >> 6) & 0x3F));
        byte(0x80 | (character & 0x3F));
    } else {
        byte(0xF0 | (character >> 18));
        byte(0x80 | ((character >> 12) & 0x3F));
        byte(0x80 | ((character >> 6) & 0x3F));
        byte(0x80 | (character & 0x3F));
    }
}

}  // namespace platform
