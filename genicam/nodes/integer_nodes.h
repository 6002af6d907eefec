#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/base/value_table.h"
#include "genicam/core/message.h"
#include "genicam/core/number_parser.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/range_record.h"

#include <boost/container/small_vector.hpp>

namespace GenICam {

/// Holds the range of an `Integer` element: what it states wins, for the rest `T` has `unstated_limit`.
template <class T>
class implement_inode_Integer_type : public implement_inode_IInteger<T> {
public:
    result<std::int64_t> get_min(std::uint32_t flags) final { return get_limit(range_record::min, flags); }
    result<std::int64_t> get_max(std::uint32_t flags) final { return get_limit(range_record::max, flags); }
    result<std::int64_t> get_inc(std::uint32_t flags) final { return get_limit(range_record::inc, flags); }
    result<std::int64_t> get_default(std::uint32_t flags) override {
        return get_limit(range_record::default_value, flags);
    }

protected:
    ~implement_inode_Integer_type() = default;

    range_record range_;

private:
    result<std::int64_t> get_limit(range_record::limit which, std::uint32_t flags) {
        switch (range_.kind(which)) {
            case limit_kind::link:
                return get_eval_int(range_.link(which), flags);
            case limit_kind::constant:
                return range_.number(which).integer;
            default:
                return static_cast<T&>(*this).unstated_limit(which, flags);
        }
    }
};

/// `Integer` with `Value`: holds its number.
template <class T, class Base>
class integer_own_value : public Base, public implement_inode_Integer_type<T> {
public:
    using Base::Base;
    result<std::int64_t> get_val(std::uint32_t flags) final {
        if (const std::error_code refused = this->check_access(false, flags)) return refused;
        return value_;
    }
    result<std::int64_t> unstated_limit(range_record::limit which, std::uint32_t) {
        return unlimited_integer(which);
    }

protected:
    ~integer_own_value() = default;
    void read_value(IGenICamDoc* doc, const described_element& xml, const message<>& invalid) {
        this->range_.resolve(doc, xml, *this, false);
        if (parse_int(child_text(xml, child::Value), value_) == 0)
            report(invalid, this->origin(child::Value));
    }

    std::int64_t value_ = 0;
};

/// Imposed read-only.
class integer_constant_value_type final
    : public integer_own_value<integer_constant_value_type, node_base_impl_dependent_cache> {
public:
    using integer_own_value::integer_own_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
};

class integer_floating_value_type final
    : public integer_own_value<integer_floating_value_type, node_base_impl_value> {
public:
    using integer_own_value::integer_own_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
};

/// `Integer` with `pValue`: reads the node that it links to.
template <class T>
class integer_linked_value : public node_base_impl_dependent_cache, public implement_inode_Integer_type<T> {
public:
    using node_base_impl_dependent_cache::node_base_impl_dependent_cache;
    INode* get_access_source() final { return value_.node(); }
    result<std::int64_t> get_val(std::uint32_t flags) final {
        if (const std::error_code refused = check_access(false, flags)) return refused;
        return value_.get<std::int64_t>(flags);
    }
    result<std::int64_t> unstated_limit(range_record::limit which, std::uint32_t flags) {
        if (!value_) return make_error_code(not_implemented);
        return get_eval_limit<std::int64_t>(value_.node(), which, flags);
    }

protected:
    ~integer_linked_value() = default;

    node_link value_;
};

/// Writes it as well. With an unresolved link every operation that needs it fails with `not_implemented`.
class integer_pValue_type final : public integer_linked_value<integer_pValue_type> {
public:
    using integer_linked_value::integer_linked_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
};

/// With `pValueCopy`: writes all.
class integer_pValueCopy_type final : public integer_linked_value<integer_pValueCopy_type> {
public:
    using integer_linked_value::integer_linked_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    /// The narrowest minimum and maximum of all targets.
    result<std::int64_t> unstated_limit(range_record::limit which, std::uint32_t flags);
    /// Answers with the increment where one is stated: the `Default` of such a node is never used.
    result<std::int64_t> get_default(std::uint32_t flags) override;

private:
    void add_target(IGenICamDoc* doc, pugi::xml_node element);

    boost::container::small_vector<INode*, 3> targets_;
};

/// `Integer` with `pIndex`: a table of links and constants, selected by an index node.
class integer_pIndex_type final : public node_base_impl_value,
                                  public implement_inode_Integer_type<integer_pIndex_type> {
public:
    using node_base_impl_value::node_base_impl_value;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return current_target(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    Representation get_representation() override;
    std::string_view get_unit() override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;
    result<std::int64_t> unstated_limit(range_record::limit which, std::uint32_t flags);

private:
    /// The current entry's link, if it is an integer node.
    [[nodiscard]] IInteger* current_target();

    indexed_values values_;
};

}  // namespace GenICam
