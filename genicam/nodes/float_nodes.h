#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/base/value_table.h"
#include "genicam/core/message.h"
#include "genicam/core/number_parser.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/range_record.h"

namespace GenICam {

/// Holds the range of a `Float` element: what it states wins, for the rest `T` has `unstated_limit`.
template <class T>
class implement_inode_Float_type : public implement_inode_IFloat<T> {
public:
    result<double> get_min(std::uint32_t flags) final { return get_limit(range_record::min, flags); }
    result<double> get_max(std::uint32_t flags) final { return get_limit(range_record::max, flags); }
    result<double> get_default(std::uint32_t flags) final {
        return get_limit(range_record::default_value, flags);
    }
    result<double> get_inc(std::uint32_t flags) final { return get_limit(range_record::inc, flags); }

protected:
    ~implement_inode_Float_type() = default;

    range_record range_;

private:
    result<double> get_limit(range_record::limit which, std::uint32_t flags) {
        switch (range_.kind(which)) {
            case limit_kind::link:
                return get_eval_double(range_.link(which), flags);
            case limit_kind::constant:
                return range_.number(which).real;
            default:
                return static_cast<T&>(*this).unstated_limit(which, flags);
        }
    }
};

/// `Float` with `Value`: holds its number.
template <class T, class Base>
class float_own_value : public Base, public implement_inode_Float_type<T> {
public:
    using Base::Base;
    result<double> unstated_limit(range_record::limit which, std::uint32_t) { return unlimited_float(which); }

protected:
    ~float_own_value() = default;
    void read_value(IGenICamDoc* doc, const described_element& xml, const message<>& invalid) {
        this->range_.resolve(doc, xml, *this, true);
        if (parse_double(child_text(xml, child::Value), value_) == 0)
            report(invalid, this->origin(child::Value));
    }

    double value_ = 0;
};

/// Imposed read-only. Unlike its integer sibling it can be read whatever its availability.
class float_constant_value_type final
    : public float_own_value<float_constant_value_type, node_base_impl_dependent_cache> {
public:
    using float_own_value::float_own_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t) override { return value_; }
};

class float_floating_value_type final
    : public float_own_value<float_floating_value_type, node_base_impl_value> {
public:
    using float_own_value::float_own_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t flags) override;
};

/// `Float` with `pValue`. With an unresolved link every operation that needs it fails with `not_implemented`.
class float_pValue_type final : public node_base_impl_dependent_cache,
                                public implement_inode_Float_type<float_pValue_type> {
public:
    using node_base_impl_dependent_cache::node_base_impl_dependent_cache;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return value_.node(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t flags) override;
    result<double> unstated_limit(range_record::limit which, std::uint32_t flags);

private:
    node_link value_;
};

/// `Float` with `pIndex`: a table of links and constants, selected by an index node.
class float_pIndex_type final : public node_base_impl_value,
                                public implement_inode_Float_type<float_pIndex_type> {
public:
    using node_base_impl_value::node_base_impl_value;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return current_target(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    FloatRepresentation get_representation() override;
    std::string_view get_unit() override;
    DisplayNotation get_display_notation() override;
    std::int64_t get_display_precision() override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t flags) override;
    result<double> unstated_limit(range_record::limit which, std::uint32_t flags);

private:
    /// The current entry's link, if it is a float node.
    [[nodiscard]] IFloat* current_target();

    indexed_values values_;
};

}  // namespace GenICam
