#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/core/message.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/range_record.h"

namespace GenICam {

/// The two integers that a `Boolean` element stands for, and its default.
class boolean_mapping {
public:
    explicit boolean_mapping(const described_element& xml);
    void resolve_default(IGenICamDoc* doc, const described_element& xml, node_base_data& owner);
    [[nodiscard]] std::int64_t number_of(bool value) const noexcept { return value ? on_value_ : off_value_; }
    /// Any other number than the two is reported and counts as true unless it is 0.
    [[nodiscard]] bool value_of(std::int64_t number, const node_base_data& owner,
                                const message<std::int64_t>& is_neither) const;
    [[nodiscard]] result<bool> get_default(std::uint32_t flags) const;

private:
    std::int64_t on_value_ = 1;
    std::int64_t off_value_ = 0;
    integer_pair default_;
};

/// Holds the mapping of a `Boolean` element.
template <class T>
class implement_inode_Boolean_type : public implement_inode_boolean<T> {
public:
    explicit implement_inode_Boolean_type(const described_element& xml) : mapping_(xml) {}
    result<bool> get_default(std::uint32_t flags) final { return mapping_.get_default(flags); }

protected:
    ~implement_inode_Boolean_type() = default;

    boolean_mapping mapping_;
};

/// `Boolean` with `pValue`. With an unresolved link reading and writing fail with `not_implemented`.
class boolean_pValue_type final : public node_base_impl_dependent_cache,
                                  public implement_inode_Boolean_type<boolean_pValue_type> {
public:
    boolean_pValue_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    INode* get_access_source() override { return value_.node(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(bool value, std::uint32_t flags) override;
    result<bool> get_val(std::uint32_t flags) override;

private:
    node_link value_;
};

/// `Boolean` with `Value`.
class boolean_Value_type final : public node_base_impl_value,
                                 public implement_inode_Boolean_type<boolean_Value_type> {
public:
    boolean_Value_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(bool value, std::uint32_t flags) override;
    result<bool> get_val(std::uint32_t flags) override;

private:
    std::int64_t value_ = 0;
};

}  // namespace GenICam
