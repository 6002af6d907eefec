#include "apps/inspect/source_text.h"

#include "apps/inspect/text_encoding.h"

#include <algorithm>
#include <utility>

namespace selvane_inspect {
namespace {

constexpr std::size_t block_size = 1024;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

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
