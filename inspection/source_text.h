#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// The text of an XML file as the XML parser sees it: its encoding is told as that parser tells it, by a byte
/// order mark, by the first characters, or by the declaration; the result is UTF-8. A byte order mark stays
/// in front.
[[nodiscard]] std::string to_utf8(std::string_view bytes);

/// A position in a file as editors count: line and column from 1, a column a character. 0 where it is not
/// known.
struct text_position {
    std::size_t line = 0;
    std::size_t column = 0;
};

/// The contents of a file: its bytes, its text, and which position of the text is where. Owns both.
class source_text {
public:
    explicit source_text(std::string bytes);

    [[nodiscard]] const std::string& bytes() const noexcept { return bytes_; }
    [[nodiscard]] std::string_view utf8() const noexcept { return text_; }
    /// The position of a byte of the UTF-8 text. Lines end in LF, CR LF or CR; a byte order mark counts as
    /// nothing.
    [[nodiscard]] text_position position_of(std::size_t offset) const;

private:
    [[nodiscard]] std::size_t characters_before(std::size_t offset) const;

    std::string bytes_;
    std::string text_;
    std::vector<std::size_t> line_starts_;
    std::vector<std::size_t> block_starts_;  // the characters before each block: a line may be the whole file
};

}  // namespace selvane_inspect
