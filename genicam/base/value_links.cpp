#include "genicam/base/value_links.h"

#include "genicam/core/children.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <type_traits>

namespace GenICam {
namespace {

// A pair as it is stated: by elements, or by keys of the extension, which have messages of their own.
struct stated_pair {
    const described_element& xml;
    const char* number;
    const char* link;
    bool in_extension;

    [[nodiscard]] message_origin origin(const char* name) const {
        if (in_extension) return {xml, xml.child("Extension").child(name)};
        return {xml, name};
    }
    void report_both() const {
        if (in_extension) {
            report(messages::extension_pair_has_both, origin(number), link, number);
        } else {
            report(messages::pair_has_both, origin(number), number, link);
        }
    }
    void report_number() const {
        report(in_extension ? messages::extension_pair_number_invalid : messages::pair_number_invalid,
               origin(number), number);
    }
    // Among elements the message names the number and means the link.
    void report_link() const {
        report(in_extension ? messages::extension_pair_link_unresolved : messages::pair_link_unresolved,
               origin(link), in_extension ? link : number);
    }
};

link_or_value resolve_pair(IGenICamDoc* doc, const stated_pair& pair, std::string_view value_text,
                           std::string_view link_text) {
    link_or_value resolved;
    if (link_text.empty()) {
        if (value_text.empty()) return resolved;
        eval_value number;
        if (parse_number(value_text, number) == 0) {
            pair.report_number();
            return resolved;
        }
        resolved.value = number.value;
        resolved.is_integer = number.is_integer;
        resolved.valid = true;
        return resolved;
    }
    if (!value_text.empty()) pair.report_both();
    resolved.node = doc->find_node(link_text);
    resolved.is_integer = resolved.valid = resolved.node != nullptr;
    if (!resolved.valid) pair.report_link();
    return resolved;
}

std::error_code refuse_get(node_type kind) {
    report(messages::get_without_value, {}, static_cast<std::int64_t>(kind));
    return make_error_code(not_implemented);
}

std::error_code refuse_set(node_type kind) {
    report(messages::set_without_value, {}, static_cast<std::int64_t>(kind));
    return make_error_code(not_implemented);
}

eval_value number_of(const IEnumEntry& entry) {
    const std::optional<double> numeric = entry.get_numeric_value();
    return numeric ? eval_value::of(*numeric) : eval_value::of(entry.get_value());
}

template <class To, class From>
To convert(From value) {
    if constexpr (std::is_same_v<To, std::int64_t> && std::is_same_v<From, double>) {
        return round_to_int(value);
    } else {
        return static_cast<To>(value);
    }
}

// A range operation of an integer or float node, converted to T.
template <class T, class Integers, class Floats>
result<T> get_limit(INode* node, std::uint32_t flags, Integers of_integer, Floats of_float) {
    switch (node->get_node_type()) {
        case node_type::integer: {
            const result<std::int64_t> limit = (static_cast<IInteger*>(node)->*of_integer)(flags);
            if (!limit) return limit.error();
            return convert<T>(limit.assume_value());
        }
        case node_type::floating: {
            const result<double> limit = (static_cast<IFloat*>(node)->*of_float)(flags);
            if (!limit) return limit.error();
            return convert<T>(limit.assume_value());
        }
        default:
            return make_error_code(not_implemented);
    }
}

}  // namespace

link_or_value resolve_link_or_value_(IGenICamDoc* doc, const described_element& xml, child value,
                                     child link) {
    return resolve_pair(doc, {xml, name_of(value), name_of(link), false}, xml.text(value), xml.text(link));
}

link_or_value resolve_link_or_value_from_contents(IGenICamDoc* doc, const described_element& xml,
                                                  std::string_view value_text, std::string_view link_text) {
    return resolve_pair(doc, {xml, "Default", "pDefault", true}, value_text, link_text);
}

INode* resolve_pIndex(IGenICamDoc* doc, const described_element& xml) {
    INode* node = doc->find_node(child_text(xml, child::pIndex));
    if (node != nullptr && node->get_node_type() == node_type::integer) return node;
    report(messages::index_unresolved, {xml, child::pIndex});
    return nullptr;
}

result<eval_value> get_eval_value(INode* node, std::uint32_t flags) {
    switch (const node_type kind = node->get_node_type()) {
        case node_type::integer: {
            const result<std::int64_t> value = static_cast<IInteger*>(node)->get_val(flags);
            if (!value) return value.error();
            return eval_value::of(value.assume_value());
        }
        case node_type::floating: {
            const result<double> value = static_cast<IFloat*>(node)->get_val(flags);
            if (!value) return value.error();
            return eval_value::of(value.assume_value());
        }
        case node_type::boolean: {
            const result<bool> value = static_cast<IBoolean*>(node)->get_val(flags);
            if (!value) return value.error();
            return eval_value::of(std::int64_t{value.assume_value()});
        }
        case node_type::enumeration: {
            const result<IEnumEntry*> entry = static_cast<IEnumeration*>(node)->get_selected_entry(flags);
            if (!entry) return entry.error();
            return number_of(*entry.assume_value());
        }
        default:
            return refuse_get(kind);
    }
}

result<std::int64_t> get_eval_int(INode* node, std::uint32_t flags) {
    switch (const node_type kind = node->get_node_type()) {
        case node_type::integer:
            return static_cast<IInteger*>(node)->get_val(flags);
        case node_type::floating: {
            const result<double> value = static_cast<IFloat*>(node)->get_val(flags);
            if (!value) return value.error();
            return round_to_int(value.assume_value());
        }
        case node_type::boolean: {
            const result<bool> value = static_cast<IBoolean*>(node)->get_val(flags);
            if (!value) return value.error();
            return std::int64_t{value.assume_value()};
        }
        case node_type::enumeration: {
            const result<IEnumEntry*> entry = static_cast<IEnumeration*>(node)->get_selected_entry(flags);
            if (!entry) return entry.error();
            return entry.assume_value()->get_value();
        }
        default:
            return refuse_get(kind);
    }
}

result<double> get_eval_double(INode* node, std::uint32_t flags) {
    switch (const node_type kind = node->get_node_type()) {
        case node_type::integer: {
            const result<std::int64_t> value = static_cast<IInteger*>(node)->get_val(flags);
            if (!value) return value.error();
            return static_cast<double>(value.assume_value());
        }
        case node_type::floating:
            return static_cast<IFloat*>(node)->get_val(flags);
        case node_type::boolean: {
            const result<bool> value = static_cast<IBoolean*>(node)->get_val(flags);
            if (!value) return value.error();
            return value.assume_value() ? 1.0 : 0.0;
        }
        case node_type::enumeration: {
            // Only here the enumeration's own failure does not come through.
            const result<IEnumEntry*> entry = static_cast<IEnumeration*>(node)->get_selected_entry(flags);
            if (!entry) return make_error_code(index_out_of_range);
            return to_double(number_of(*entry.assume_value()));
        }
        default:
            return refuse_get(kind);
    }
}

result<bool> get_eval_bool(INode* node, std::uint32_t flags) {
    if (node->get_node_type() == node_type::boolean) return static_cast<IBoolean*>(node)->get_val(flags);
    const result<std::int64_t> value = get_eval_int(node, flags);
    if (!value) return value.error();
    return value.assume_value() != 0;
}

std::error_code set_eval_val(INode* node, std::int64_t value, std::uint32_t flags) {
    switch (const node_type kind = node->get_node_type()) {
        case node_type::integer:
            return static_cast<IInteger*>(node)->set_val(value, flags);
        case node_type::floating:
            return static_cast<IFloat*>(node)->set_val(static_cast<double>(value), flags);
        case node_type::boolean:
            return static_cast<IBoolean*>(node)->set_val(value != 0, flags);
        case node_type::enumeration: {
            auto* enumeration = static_cast<IEnumeration*>(node);
            return enumeration->set_selected_entry(enumeration->find_entry(value), flags);
        }
        default:
            return refuse_set(kind);
    }
}

std::error_code set_eval_val(INode* node, double value, std::uint32_t flags) {
    switch (const node_type kind = node->get_node_type()) {
        case node_type::integer:
            return static_cast<IInteger*>(node)->set_val(truncate_to_int(value), flags);
        case node_type::floating:
            return static_cast<IFloat*>(node)->set_val(value, flags);
        case node_type::boolean:
            return static_cast<IBoolean*>(node)->set_val(value != 0.0, flags);
        case node_type::enumeration: {
            auto* enumeration = static_cast<IEnumeration*>(node);
            return enumeration->set_selected_entry(enumeration->find_nearest_entry(value), flags);
        }
        default:
            return refuse_set(kind);
    }
}

template <class T>
result<T> get_eval_min(INode* node, std::uint32_t flags) {
    return get_limit<T>(node, flags, &IInteger::get_min, &IFloat::get_min);
}

template <class T>
result<T> get_eval_max(INode* node, std::uint32_t flags) {
    return get_limit<T>(node, flags, &IInteger::get_max, &IFloat::get_max);
}

template <class T>
result<T> get_eval_inc(INode* node, std::uint32_t flags) {
    return get_limit<T>(node, flags, &IInteger::get_inc, &IFloat::get_inc);
}

template <class T>
result<T> get_eval_default(INode* node, std::uint32_t flags) {
    return get_limit<T>(node, flags, &IInteger::get_default, &IFloat::get_default);
}

template result<std::int64_t> get_eval_min(INode*, std::uint32_t);
template result<double> get_eval_min(INode*, std::uint32_t);
template result<std::int64_t> get_eval_max(INode*, std::uint32_t);
template result<double> get_eval_max(INode*, std::uint32_t);
template result<std::int64_t> get_eval_inc(INode*, std::uint32_t);
template result<double> get_eval_inc(INode*, std::uint32_t);
template result<std::int64_t> get_eval_default(INode*, std::uint32_t);
template result<double> get_eval_default(INode*, std::uint32_t);

}  // namespace GenICam
