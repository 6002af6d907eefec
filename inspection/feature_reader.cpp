#include "inspection/feature_reader.h"

#include "genicam/base/value_links.h"
#include "genicam/core/number_parser.h"
#include "genicam/document/node_facts.h"

#include <limits>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using namespace GenICam;
using access_flags::none;

constexpr std::string_view not_implemented_word = "NI";
constexpr std::string_view not_available_word = "NA";

template <class T>
result<feature_value> as_value(const result<T>& from) {
    if (!from) return from.error();
    return feature_value(from.assume_value());
}

result<feature_value> value_of(IEnumeration& node, std::uint32_t flags) {
    const result<IEnumEntry*> entry = node.get_selected_entry(flags);
    if (!entry) return entry.error();
    return feature_value(
        entry_value{std::string(entry.assume_value()->get_name()), entry.assume_value()->get_value()});
}

// A register's text comes with all its trailing zeros.
result<feature_value> value_of(IString& node, std::uint32_t flags) {
    const result<std::string> text = node.get_val(flags);
    if (!text) return text.error();
    return feature_value(text.assume_value().substr(0, text.assume_value().find('\0')));
}

result<feature_value> value_of(IRegister& node, std::uint32_t flags) {
    constexpr std::int64_t longest_block = 1 << 20;
    const result<std::int64_t> length = node.get_length(flags);
    if (!length) return length.error();
    if (length.assume_value() > longest_block)
        throw std::length_error(fmt::format("a block of {} bytes is not read", length.assume_value()));
    if (length.assume_value() < 1) return make_error_code(invalid_parameter);
    simcam::bytes bytes(static_cast<std::size_t>(length.assume_value()));
    if (const std::error_code failure = node.read(bytes.data(), length.assume_value(), flags)) return failure;
    return feature_value(std::move(bytes));
}

template <class Node>
result<feature_value> engine_limit(Node& node, operation limit) {
    switch (limit) {
        case operation::minimum:
            return as_value(node.get_min(none));
        case operation::maximum:
            return as_value(node.get_max(none));
        case operation::increment:
            return as_value(node.get_inc(none));
        default:
            return as_value(node.get_default(none));
    }
}

result<feature_value> engine_limit(INode& node, operation limit) {
    const node_type kind = node.get_node_type();
    if (kind == node_type::integer) return engine_limit(static_cast<IInteger&>(node), limit);
    if (kind == node_type::floating) return engine_limit(static_cast<IFloat&>(node), limit);
    const bool has_default = kind == node_type::boolean && limit == operation::default_value;
    if (has_default) return as_value(static_cast<IBoolean&>(node).get_default(none));
    return make_error_code(not_implemented);
}

result<bool> engine_flag(INode& node, operation flag) {
    bool value = false;
    std::error_code failure;
    if (flag == operation::implemented) failure = node.is_implemented(value, none);
    if (flag == operation::available) failure = node.is_available(value, none);
    if (flag == operation::locked) failure = node.is_locked(value, none);
    if (failure) return failure;
    return value;
}

std::string engine_unit(INode& node) {
    if (node.get_node_type() == node_type::integer)
        return std::string(static_cast<IInteger&>(node).get_unit());
    if (node.get_node_type() == node_type::floating)
        return std::string(static_cast<IFloat&>(node).get_unit());
    return {};
}

// What an enumeration looks for among its entries. One without a link holds what it began with: only the
// value of an entry could have taken its place.
std::optional<std::int64_t> number_behind(INode& enumeration) {
    if (const pugi::xml_node value = element_of(enumeration).child("Value")) {
        std::int64_t stated = 0;
        static_cast<void>(parse_int(value.child_value(), stated));
        return stated;
    }
    INode* const target = linked_node(enumeration, "pValue");
    const result<std::int64_t> number =
        target != nullptr ? get_eval_int(target, none) : make_error_code(not_implemented);
    if (!number) return std::nullopt;
    return number.assume_value();
}

std::string end_text(const std::optional<feature_value>& limit, Representation style) {
    if (!limit || is_end_of_all(*limit)) return {};
    return value_text(*limit, style);
}

bool has_value(node_type kind) {
    return kind != node_type::command && kind != node_type::category && kind != node_type::port;
}

void put(nlohmann::ordered_json& json, const char* key, const std::optional<feature_value>& value) {
    if (value) json[key] = value_json(*value);
}

}  // namespace

result<feature_value> engine_value(INode& node, std::uint32_t flags) {
    switch (node.get_node_type()) {
        case node_type::integer:
            return as_value(static_cast<IInteger&>(node).get_val(flags));
        case node_type::floating:
            return as_value(static_cast<IFloat&>(node).get_val(flags));
        case node_type::boolean:
            return as_value(static_cast<IBoolean&>(node).get_val(flags));
        case node_type::enumeration:
            return value_of(static_cast<IEnumeration&>(node), flags);
        case node_type::string:
            return value_of(static_cast<IString&>(node), flags);
        case node_type::register_block:
            return value_of(static_cast<IRegister&>(node), flags);
        default:
            return feature_value();
    }
}

bool is_end_of_all(const feature_value& limit) {
    if (const auto* integer = std::get_if<std::int64_t>(&limit)) {
        return *integer == std::numeric_limits<std::int64_t>::min() ||
               *integer == std::numeric_limits<std::int64_t>::max();
    }
    const auto* real = std::get_if<double>(&limit);
    return real != nullptr && (*real == std::numeric_limits<double>::max() ||
                               *real == static_cast<double>(std::numeric_limits<float>::max()));
}

template <class T, class Ask>
answer<T> feature_reader::ask(INode& node, operation asked, Ask question) {
    answer<T> given;
    if (const hazard* found = guard_.find(node, asked)) {
        given.failure = guard_.describe(*found);
        return given;
    }
    try {
        result<T> outcome = question();
        if (outcome) {
            given.value = std::move(outcome.assume_value());
        } else {
            given.failure = outcome.assume_error().message();
            given.code = static_cast<std::uint32_t>(outcome.assume_error().value());
        }
    } catch (const std::exception& failure) {
        given.failure = failure.what();
    }
    return given;
}

answer<feature_value> feature_reader::read_value(INode& node) {
    return ask<feature_value>(node, operation::value, [&] { return engine_value(node, none); });
}

void feature_reader::explain(INode& node, answer<feature_value>& failed) {
    if (node.get_node_type() != node_type::enumeration || failed.code != index_out_of_range) return;
    const silence quiet;
    if (const auto number = number_behind(node))
        failed.failure += fmt::format(": no entry has the value {}", *number);
}

std::optional<feature_value> feature_reader::read_limit(INode& node, operation limit) {
    return ask<feature_value>(node, limit, [&] { return engine_limit(node, limit); }).value;
}

std::string feature_reader::read_unit(INode& node) {
    return ask<std::string>(node, operation::unit, [&] { return engine_unit(node); }).value.value_or("");
}

answer<bool> feature_reader::read_flag(INode& node, operation flag) {
    return ask<bool>(node, flag, [&] { return engine_flag(node, flag); });
}

answer<AccessMode> feature_reader::read_access(INode& node) {
    return ask<AccessMode>(node, operation::access, [&] { return node.get_access_mode(); });
}

// As the engine decides: a link that cannot be read leaves a node implemented, but not available.
std::string_view feature_reader::access_state(INode& node) {
    if (!read_flag(node, operation::implemented).value.value_or(true)) return not_implemented_word;
    if (!read_flag(node, operation::available).value.value_or(false)) return not_available_word;
    const answer<AccessMode> access = read_access(node);
    return access.value ? access_word(*access.value) : "?";
}

feature_state feature_reader::begin(INode& node) {
    feature_state state;
    state.kind = node.get_node_type();
    state.name = node.get_name();
    state.access = access_state(node);
    return state;
}

void feature_reader::add_unit(INode& node, feature_state& state) {
    state.unit = read_unit(node);
    if (state.kind == node_type::integer && guard_.find(node, operation::unit) == nullptr) {
        state.style = static_cast<IInteger&>(node).get_representation();
    }
}

feature_state feature_reader::read(INode& node) {
    feature_state state = begin(node);
    state.value = read_value(node);
    explain(node, state.value);
    add_unit(node, state);
    state.minimum = read_limit(node, operation::minimum);
    state.maximum = read_limit(node, operation::maximum);
    state.increment = read_limit(node, operation::increment);
    state.default_value = read_limit(node, operation::default_value);
    return state;
}

std::string range_text(const feature_state& state) {
    const std::string low = end_text(state.minimum, state.style);
    const std::string high = end_text(state.maximum, state.style);
    if (low.empty() && high.empty()) return {};
    const std::string step = state.increment ? value_text(*state.increment) : std::string();
    const bool has_step = !step.empty() && step != "1";
    return fmt::format("[{}..{}{}]", low, high, has_step ? " step " + step : "");
}

std::string assignment_text(const feature_state& state, std::size_t most_bytes) {
    if (!state.value.value) return state.name + " (" + state.value.failure + ")";
    const std::string value = value_text(*state.value.value, state.style, most_bytes);
    if (value.empty()) return state.name;
    return state.name + " = " + value + (state.unit.empty() ? "" : " " + on_one_line(state.unit));
}

bool is_absent(const feature_state& state) {
    return (state.access == not_implemented_word && state.value.code == not_implemented) ||
           (state.access == not_available_word && state.value.code == node_not_available);
}

nlohmann::ordered_json to_json(const feature_state& state) {
    nlohmann::ordered_json json;
    json["name"] = state.name;
    json["kind"] = kind_word(state.kind);
    json["access"] = state.access;
    if (const auto& value = state.value.value) {
        if (has_value(state.kind)) json["value"] = value_json(*value);
        if (const auto* entry = std::get_if<entry_value>(&*value)) json["number"] = entry->value;
    } else {
        json["error"]["message"] = state.value.failure;
        if (state.value.code != 0) json["error"]["code"] = fmt::format("0x{:08X}", state.value.code);
    }
    if (!state.unit.empty()) json["unit"] = state.unit;
    put(json, "min", state.minimum);
    put(json, "max", state.maximum);
    put(json, "inc", state.increment);
    put(json, "default", state.default_value);
    return json;
}

}  // namespace selvane_inspect
