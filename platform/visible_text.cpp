#include "platform/visible_text.h"

#include "platform/utf8.h"

#include <algorithm>
#include <iterator>

namespace platform {
namespace {

struct code_range {
    char32_t first;
    char32_t last;
};

constexpr code_range obeyed[] = {
    {0x00, 0x1F},      // C0
    {0x7F, 0x9F},      // DEL and C1
    {0x061C, 0x061C},  // Arabic letter mark
    {0x200E, 0x200F},  // left-to-right and right-to-left mark
    {0x2028, 0x202E},  // line and paragraph separator, embeddings and overrides
    {0x2066, 0x2069},  // isolates
};

bool is_obeyed(char32_t character) noexcept {
    return std::any_of(std::begin(obeyed), std::end(obeyed), [character](const code_range& range) {
        return character >= range.first && character <= range.last;
    });
}

void append_hex(std::string& text, char32_t number, int digits) {
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[(number >> shift) & 0xF];
}

void append_byte(std::string& text, char32_t byte) {
    text += "\\x";
    append_hex(text, byte, 2);
}

void append_code(std::string& text, char32_t character) {
    text += "\\u";
    append_hex(text, character, 4);
}

}  // namespace

std::string visible_text(std::string_view text) {
    std::string visible;
    visible.reserve(text.size());
    while (!text.empty()) {
        const utf8_character next = first_character(text);
        if (next.code == no_character) {
            append_byte(visible, static_cast<unsigned char>(text.front()));
        } else if (!is_obeyed(next.code)) {
            visible += text.substr(0, next.size);
        } else if (next.code < 0x80) {
            append_byte(visible, next.code);
        } else {
            append_code(visible, next.code);
        }
        text.remove_prefix(next.size);
    }
    return visible;
}

std::string quoted_text(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '"' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return '"' + visible_text(escaped) + '"';
}

// The line breaks between the values are the writer's own; those in texts have become escapes already.
std::string visible_json(std::string_view json) {
    std::string visible;
    visible.reserve(json.size());
    while (!json.empty()) {
        const utf8_character next = first_character(json);
        if (next.code > 0x20 && next.code != no_character && is_obeyed(next.code)) {
            append_code(visible, next.code);
        } else {
            visible += json.substr(0, next.size);
        }
        json.remove_prefix(next.size);
    }
    return visible;
}

}  // namespace platform
