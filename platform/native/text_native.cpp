#include "platform/text.h"

#include "platform/utf8.h"

namespace platform {

std::wstring widen(std::string_view utf8) {
    constexpr wchar_t replacement = 0xFFFD;
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) {
        const utf8_character next = first_character(utf8);
        wide += next.code != no_character ? static_cast<wchar_t>(next.code) : replacement;
        utf8.remove_prefix(next.size);
    }
    return wide;
}

std::string narrow(std::wstring_view wide) {
    std::string text;
    for (const wchar_t c : wide) append_utf8(text, static_cast<char32_t>(c));
    return text;
}

}  // namespace platform
