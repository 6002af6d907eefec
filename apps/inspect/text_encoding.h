#pragma once

#include <string>
#include <string_view>

namespace selvane_inspect {

/// The text of an XML file as the XML parser sees it: its encoding is told as that parser tells it, by a byte
/// order mark, by the first characters, or by the declaration; the result is UTF-8. A byte order mark stays
/// in front.
[[nodiscard]] std::string to_utf8(std::string_view bytes);

}  // namespace selvane_inspect
