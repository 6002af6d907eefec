#include "apps/inspect/feature_writer.h"

#include "apps/inspect/feature_value.h"
#include "apps/inspect/inspect_error.h"
#include "apps/inspect/memory_options.h"
#include "apps/inspect/similar_name.h"
#include "genicam/core/error.h"
#include "platform/text.h"

#include <limits>
#include <optional>
#include <vector>

namespace selvane_inspect {
namespace {

using namespace GenICam;
using access_flags::none;

// Hexadecimal digits may say all 64 bits.
std::optional<std::int64_t> parse_integer(std::string_view text) {
    const bool is_negative = text.substr(0, 1) == "-";
    const std::string_view digits = is_negative ? text.substr(1) : text;
    const auto magnitude = parse_address(digits);
    if (!magnitude) return std::nullopt;
    constexpr auto greatest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool is_decimal = digits.find_first_of("xX") == std::string_view::npos;
    if (is_decimal && *magnitude > greatest + (is_negative ? 1 : 0)) return std::nullopt;
    return static_cast<std::int64_t>(is_negative ? 0 - *magnitude : *magnitude);
}

}  // namespace

feature_write::feature_write(INode& feature, std::string_view text) {
    switch (feature.get_node_type()) {
        case node_type::integer:
            read_integer(text);
            break;
        case node_type::floating:
            read_float(text);
            break;
        case node_type::boolean:
            read_truth(text);
            break;
        case node_type::enumeration:
            read_entry(static_cast<IEnumeration&>(feature), text);
            break;
        case node_type::string:
            text_ = text;
            break;
        case node_type::command:
            if (text != "1") throw wrong_use("a command is executed by the value 1");
            break;
        case node_type::register_block:
            read_bytes(text);
            break;
        default:
            throw wrong_use("a " + std::string(kind_word(feature.get_node_type())) + " has no value");
    }
}

void feature_write::read_integer(std::string_view text) {
    const auto number = parse_integer(text);
    if (!number) throw wrong_use(std::string(text) + " is no integer");
    number_ = eval_value::of(*number);
}

void feature_write::read_float(std::string_view text) {
    double number = 0;
    const std::size_t read = platform::read_double(text, number);
    if (read == 0 || read != text.size()) throw wrong_use(std::string(text) + " is no number");
    number_ = eval_value::of(number);
}

void feature_write::read_truth(std::string_view text) {
    const bool truth = text == "true" || text == "1";
    if (!truth && text != "false" && text != "0")
        throw wrong_use(std::string(text) + " is neither true nor false");
    number_ = eval_value::of(std::int64_t{truth ? 1 : 0});
}

void feature_write::read_bytes(std::string_view text) {
    const auto bytes = parse_bytes(text);
    if (!bytes) throw wrong_use(std::string(text) + " is no sequence of bytes in hexadecimal");
    bytes_ = *bytes;
}

void feature_write::read_entry(IEnumeration& feature, std::string_view text) {
    IEnumEntry* entry = feature.find_entry(text);
    if (entry == nullptr) {
        const auto number = parse_integer(text);
        if (number) entry = feature.find_entry(*number);
    }
    if (entry == nullptr) {
        std::vector<std::string_view> known;
        for (const IEnumEntry* one : feature.get_entries()) known.push_back(one->get_name());
        const std::string_view meant = find_similar(text, known);
        throw wrong_use("no entry " + std::string(text) +
                        (meant.empty() ? "" : " (did you mean " + std::string(meant) + "?)"));
    }
    text_ = entry->get_name();
}

std::error_code feature_write::carry_out(INode& feature) const {
    switch (feature.get_node_type()) {
        case node_type::integer:
            return static_cast<IInteger&>(feature).set_val(number_.value.integer, none);
        case node_type::floating:
            return static_cast<IFloat&>(feature).set_val(number_.value.real, none);
        case node_type::boolean:
            return static_cast<IBoolean&>(feature).set_val(number_.value.integer != 0, none);
        case node_type::enumeration: {
            auto& enumeration = static_cast<IEnumeration&>(feature);
            return enumeration.set_selected_entry(enumeration.find_entry(std::string_view(text_)), none);
        }
        case node_type::string:
            return static_cast<IString&>(feature).set_val(text_, none);
        case node_type::command:
            return static_cast<ICommand&>(feature).execute(none);
        case node_type::register_block:
            return static_cast<IRegister&>(feature).write(bytes_.data(),
                                                          static_cast<std::int64_t>(bytes_.size()), none);
        default:
            return make_error_code(not_implemented);
    }
}

}  // namespace selvane_inspect
