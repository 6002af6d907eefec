#pragma once

#include "genicam/core/children.h"
#include "genicam/core/eval_value.h"
#include "genicam/inode.h"

#include <cstdint>
#include <string_view>
#include <system_error>

#include <pugixml.hpp>

namespace GenICam {

class IGenICamDoc;

/// What a pair of elements such as `Min` and `pMin` resolved to: a node, a number, or neither.
struct link_or_value {
    INode* node = nullptr;
    eval_value::payload value = {0};
    bool is_integer = false;
    bool valid = false;

    [[nodiscard]] eval_value number() const noexcept {
        eval_value made;
        made.value = value;
        made.is_integer = is_integer;
        return made;
    }
};

/// Resolves a pair by its element names. A link beats a number; failures are logged and give neither.
[[nodiscard]] link_or_value resolve_link_or_value_(IGenICamDoc* doc, const described_element& xml,
                                                   child value, child link);

/// The same for the `Default` and `pDefault` of an extension, whose texts the caller has fetched.
[[nodiscard]] link_or_value resolve_link_or_value_from_contents(IGenICamDoc* doc,
                                                                const described_element& xml,
                                                                std::string_view value_text,
                                                                std::string_view link_text);

/// The integer node named by `pIndex`; null and a message otherwise.
[[nodiscard]] INode* resolve_pIndex(IGenICamDoc* doc, const described_element& xml);

// The value of any node that has one, whatever its own kind: integer, float, boolean and enumeration nodes
// convert, all others fail with `not_implemented`. Failures of the node pass through. The node must not be
// null.

[[nodiscard]] result<eval_value> get_eval_value(INode* node, std::uint32_t flags);
/// Floats are rounded half away from zero.
[[nodiscard]] result<std::int64_t> get_eval_int(INode* node, std::uint32_t flags);
[[nodiscard]] result<double> get_eval_double(INode* node, std::uint32_t flags);
[[nodiscard]] result<bool> get_eval_bool(INode* node, std::uint32_t flags);

/// The same under one name, chosen by the result type.
template <class T>
[[nodiscard]] result<T> get_eval_val(INode* node, std::uint32_t flags);
template <>
[[nodiscard]] inline result<eval_value> get_eval_val(INode* node, std::uint32_t flags) {
    return get_eval_value(node, flags);
}
template <>
[[nodiscard]] inline result<std::int64_t> get_eval_val(INode* node, std::uint32_t flags) {
    return get_eval_int(node, flags);
}
template <>
[[nodiscard]] inline result<double> get_eval_val(INode* node, std::uint32_t flags) {
    return get_eval_double(node, flags);
}
template <>
[[nodiscard]] inline result<bool> get_eval_val(INode* node, std::uint32_t flags) {
    return get_eval_bool(node, flags);
}

[[nodiscard]] std::error_code set_eval_val(INode* node, std::int64_t value, std::uint32_t flags);
/// An integer node gets the value truncated toward zero.
[[nodiscard]] std::error_code set_eval_val(INode* node, double value, std::uint32_t flags);

// The ranges of integer and float nodes; all others fail with `not_implemented` and no message.

template <class T>
[[nodiscard]] result<T> get_eval_min(INode* node, std::uint32_t flags);
template <class T>
[[nodiscard]] result<T> get_eval_max(INode* node, std::uint32_t flags);
template <class T>
[[nodiscard]] result<T> get_eval_inc(INode* node, std::uint32_t flags);
template <class T>
[[nodiscard]] result<T> get_eval_default(INode* node, std::uint32_t flags);

extern template result<std::int64_t> get_eval_min(INode*, std::uint32_t);
extern template result<double> get_eval_min(INode*, std::uint32_t);
extern template result<std::int64_t> get_eval_max(INode*, std::uint32_t);
extern template result<double> get_eval_max(INode*, std::uint32_t);
extern template result<std::int64_t> get_eval_inc(INode*, std::uint32_t);
extern template result<double> get_eval_inc(INode*, std::uint32_t);
extern template result<std::int64_t> get_eval_default(INode*, std::uint32_t);
extern template result<double> get_eval_default(INode*, std::uint32_t);

}  // namespace GenICam
