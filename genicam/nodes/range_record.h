#pragma once

#include "genicam/base/value_links.h"
#include "genicam/core/eval_value.h"
#include "genicam/inode.h"

#include <cstdint>

#include <pugixml.hpp>

namespace GenICam {

class IGenICamDoc;
class node_base_data;

/// What an element pair such as `Min` and `pMin` came to.
enum class limit_kind : std::uint8_t { absent = 0, link = 1, constant = 2 };

/// Limits, increment and default of an `Integer` (words hold int64) or a `Float` (words hold doubles).
class range_record {
public:
    enum limit : std::uint8_t { min, max, inc, default_value, limit_count };

    /// Reads the four pairs of an element; constants are converted to the kind of the owner, who becomes a
    /// dependent of every link.
    void resolve(IGenICamDoc* doc, const described_element& xml, node_base_data& owner, bool is_float);

    [[nodiscard]] limit_kind kind(limit which) const noexcept { return kinds_[which]; }
    [[nodiscard]] INode* link(limit which) const noexcept { return words_[which].node; }
    [[nodiscard]] eval_value::payload number(limit which) const noexcept { return words_[which].number; }

private:
    union word {
        eval_value::payload number;
        INode* node;
    };

    void store(limit which, const link_or_value& resolved, node_base_data& owner, bool is_float);

    word words_[limit_count] = {};
    limit_kind kinds_[limit_count] = {};
};

/// A limit of a linked integer or float node.
template <class T>
[[nodiscard]] result<T> get_eval_limit(INode* node, range_record::limit which, std::uint32_t flags) {
    switch (which) {
        case range_record::min:
            return get_eval_min<T>(node, flags);
        case range_record::max:
            return get_eval_max<T>(node, flags);
        case range_record::inc:
            return get_eval_inc<T>(node, flags);
        default:
            return get_eval_default<T>(node, flags);
    }
}

/// The limits of a node that neither states them nor has a link to ask.
[[nodiscard]] result<std::int64_t> unlimited_integer(range_record::limit which) noexcept;
[[nodiscard]] result<double> unlimited_float(range_record::limit which) noexcept;

/// One integer pair of a node without a range: a default, a command value, a chunk id.
struct integer_pair {
    union {
        std::int64_t number = 0;
        INode* node;
    };
    limit_kind kind = limit_kind::absent;

    /// Stores what was resolved; a fraction is rounded half away from zero. `owner` becomes a dependent of a
    /// link.
    void store(const link_or_value& resolved, INode* owner);
    /// The constant, or the value of the link; `not_implemented` when absent.
    [[nodiscard]] result<std::int64_t> evaluate(std::uint32_t flags) const;
};

/// The check of every integer node that has one: only the minimum and the maximum count.
[[nodiscard]] bool is_in_range(IInteger& node, std::int64_t value, std::uint32_t flags);
/// The check of every float node that has one: values within 0.00001 of a limit pass.
[[nodiscard]] bool is_in_range(IFloat& node, double value, std::uint32_t flags);

}  // namespace GenICam
