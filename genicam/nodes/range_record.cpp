#include "genicam/nodes/range_record.h"

#include "genicam/base/node_base.h"
#include "genicam/base/node_link.h"
#include "genicam/genicam_doc.h"

#include <cmath>
#include <limits>

namespace GenICam {
namespace {

constexpr double float_tolerance = 0.00001;

struct limit_elements {
    range_record::limit which;
    child value;
    child link;
};

constexpr limit_elements elements_of_limits[] = {
    {range_record::min, child::Min, child::pMin},
    {range_record::max, child::Max, child::pMax},
    {range_record::inc, child::Inc, child::pInc},
};

}  // namespace

void range_record::resolve(IGenICamDoc* doc, const described_element& xml, node_base_data& owner,
                           bool is_float) {
    for (const limit_elements& pair : elements_of_limits) {
        if (!xml.present().has_any(pair.value, pair.link)) continue;
        store(pair.which, resolve_link_or_value_(doc, xml, pair.value, pair.link), owner, is_float);
    }
    if (!xml.has(child::Extension)) return;
    const std::string_view link = owner.find_extension("pDefault");
    const std::string_view number = owner.find_extension("Default");
    store(default_value, resolve_link_or_value_from_contents(doc, xml, number, link), owner, is_float);
}

void range_record::store(limit which, const link_or_value& resolved, node_base_data& owner, bool is_float) {
    if (!resolved.valid) return;
    if (depend_on(resolved.node, owner.get_node())) {
        words_[which].node = resolved.node;
        kinds_[which] = limit_kind::link;
        return;
    }
    kinds_[which] = limit_kind::constant;
    if (is_float) {
        words_[which].number.real = to_double(resolved.number());
    } else {
        words_[which].number.integer = to_int(resolved.number());
    }
}

result<std::int64_t> unlimited_integer(range_record::limit which) noexcept {
    switch (which) {
        case range_record::min:
            return std::numeric_limits<std::int64_t>::min();
        case range_record::max:
            return std::numeric_limits<std::int64_t>::max();
        case range_record::inc:
            return std::int64_t{1};
        default:
            return make_error_code(not_implemented);
    }
}

result<double> unlimited_float(range_record::limit which) noexcept {
    switch (which) {
        case range_record::min:
            return std::numeric_limits<double>::min();  // the smallest positive one: descriptions state a
                                                        // lower limit
        case range_record::max:
            return std::numeric_limits<double>::max();
        default:
            return make_error_code(not_implemented);
    }
}

void integer_pair::store(const link_or_value& resolved, INode* owner) {
    if (!resolved.valid) return;
    if (depend_on(resolved.node, owner)) {
        node = resolved.node;
        kind = limit_kind::link;
    } else {
        number = to_int(resolved.number());
        kind = limit_kind::constant;
    }
}

result<std::int64_t> integer_pair::evaluate(std::uint32_t flags) const {
    switch (kind) {
        case limit_kind::link:
            return get_eval_int(node, flags);
        case limit_kind::constant:
            return number;
        default:
            return make_error_code(not_implemented);
    }
}

bool is_in_range(IInteger& node, std::int64_t value, std::uint32_t flags) {
    if ((flags & access_flags::skip_range_check) != 0) return true;
    const result<std::int64_t> min = node.get_min(flags);
    if (min && value < min.assume_value()) return false;
    const result<std::int64_t> max = node.get_max(flags);
    return !max || value <= max.assume_value();
}

bool is_in_range(IFloat& node, double value, std::uint32_t flags) {
    if ((flags & access_flags::skip_range_check) != 0) return true;
    const auto is_beyond = [](double greater, double lesser) {
        return greater > lesser && !(std::fabs(greater - lesser) < float_tolerance);
    };
    const result<double> min = node.get_min(flags);
    if (min && is_beyond(min.assume_value(), value)) return false;
    const result<double> max = node.get_max(flags);
    return !max || !is_beyond(value, max.assume_value());
}

}  // namespace GenICam
