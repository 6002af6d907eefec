#include "inspection/feature_value.h"

#include "inspection/traced_port.h"

#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::Representation;

std::string byte_list(std::uint64_t number, int bytes, const char* format, char separator) {
    std::string text;
    for (int at = bytes; at-- > 0;) {
        if (!text.empty()) text += separator;
        text += fmt::format(fmt::runtime(format), number >> (8 * at) & 0xFF);
    }
    return text;
}

std::string integer_text(std::int64_t number, Representation style) {
    const auto bits = static_cast<std::uint64_t>(number);
    switch (style) {
        case Representation::HexNumber:
            return fmt::format("0x{:X}", bits);
        case Representation::IPV4Address:
            return byte_list(bits, 4, "{}", '.');
        case Representation::MACAddress:
            return byte_list(bits, 6, "{:02X}", ':');
        default:
            return std::to_string(number);
    }
}

struct text_writer {
    Representation style;
    std::size_t most_bytes;

    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(std::int64_t number) const { return integer_text(number, style); }
    std::string operator()(double number) const { return number_text(number); }
    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return quoted_text(text); }
    std::string operator()(const entry_value& entry) const {
        return fmt::format("{} ({})", entry.name, entry.value);
    }
    std::string operator()(const simcam::bytes& bytes) const { return block_text(bytes, most_bytes); }
};

struct json_writer {
    using json = nlohmann::ordered_json;

    json operator()(std::monostate) const { return nullptr; }
    json operator()(std::int64_t number) const { return number; }
    json operator()(double number) const {
        if (std::isfinite(number)) return number;
        return number_text(number);
    }
    json operator()(bool truth) const { return truth; }
    json operator()(const std::string& text) const { return text; }
    json operator()(const entry_value& entry) const { return entry.name; }
    json operator()(const simcam::bytes& bytes) const { return bytes_text(bytes); }
};

constexpr std::string_view kind_words[] = {"integer", "float",    "enumeration", "boolean", "string",
                                           "command", "category", "register",    "port",    "entry"};
constexpr std::string_view visibility_table[] = {"Beginner", "Expert", "Guru", "Invisible"};
constexpr std::string_view access_words[] = {"RW", "RO", "WO"};

}  // namespace

std::string value_text(const feature_value& value, Representation style, std::size_t most_bytes) {
    return std::visit(text_writer{style, most_bytes}, value);
}

std::string block_text(const simcam::bytes& block, std::size_t most_bytes) {
    if (block.size() <= most_bytes) return bytes_text(block);
    const auto behind = block.begin() + static_cast<std::ptrdiff_t>(most_bytes);
    return fmt::format("{} ... ({} bytes)", bytes_text({block.begin(), behind}), block.size());
}

nlohmann::ordered_json value_json(const feature_value& value) { return std::visit(json_writer{}, value); }

// The sign of a NaN says nothing.
std::string number_text(double number) { return std::isnan(number) ? "nan" : fmt::format("{}", number); }

std::string on_one_line(std::string_view text) {
    constexpr std::string_view breaks = "\t\n\v\f\r";
    const auto drop_blanks = [](std::string& line) { line.erase(line.find_last_not_of(' ') + 1); };
    std::string line;
    bool is_at_break = true;
    for (const char c : text) {
        if (breaks.find(c) != std::string_view::npos) {
            drop_blanks(line);
            is_at_break = true;
        } else if (c != ' ' || !is_at_break) {
            if (is_at_break && !line.empty()) line += ' ';
            is_at_break = false;
            line += c;
        }
    }
    drop_blanks(line);
    return visible_text(line);
}

std::string_view kind_word(GenICam::node_type kind) noexcept {
    return kind_words[static_cast<std::size_t>(kind)];
}

std::string_view visibility_word(GenICam::Visibility visibility) noexcept {
    return visibility_table[static_cast<std::size_t>(visibility)];
}

std::string_view access_word(GenICam::AccessMode access) noexcept {
    return access_words[static_cast<std::size_t>(access)];
}

}  // namespace selvane_inspect
