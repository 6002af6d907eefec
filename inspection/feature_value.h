#pragma once

#include "genicam/inode.h"
#include "platform/visible_text.h"
#include "simcam/driver_call.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <variant>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// The selected entry of an enumeration.
struct entry_value {
    std::string name;
    std::int64_t value;
};

/// What a feature holds: nothing for kinds without a value.
using feature_value =
    std::variant<std::monostate, std::int64_t, double, bool, std::string, entry_value, simcam::bytes>;

constexpr std::size_t all_bytes = std::numeric_limits<std::size_t>::max();
/// As many as stand on a line beside other things.
constexpr std::size_t some_bytes = 16;

/// "12", "0xFF", "true", "\"text\"", "Fast (3)", "00 01"; empty for nothing. A block of more bytes than are
/// wanted ends in "... (512 bytes)".
[[nodiscard]] std::string value_text(const feature_value& value,
                                     GenICam::Representation style = GenICam::Representation::PureNumber,
                                     std::size_t most_bytes = all_bytes);
[[nodiscard]] std::string block_text(const simcam::bytes& block, std::size_t most_bytes);
/// A number, a truth, a text; an entry by its name, bytes as hexadecimal text, infinities and NaN as text.
[[nodiscard]] nlohmann::ordered_json value_json(const feature_value& value);

/// The shortest text that reads as the same number.
[[nodiscard]] std::string number_text(double number);

using platform::quoted_text;
using platform::visible_text;

/// Text of a description or a user with a blank for each line break and the blanks around it, and escapes for
/// what else a terminal would obey.
[[nodiscard]] std::string on_one_line(std::string_view text);

/// "integer", "float", "enumeration" and so on.
[[nodiscard]] std::string_view kind_word(GenICam::node_type kind) noexcept;
[[nodiscard]] std::string_view visibility_word(GenICam::Visibility visibility) noexcept;
[[nodiscard]] std::string_view access_word(GenICam::AccessMode access) noexcept;

}  // namespace selvane_inspect
