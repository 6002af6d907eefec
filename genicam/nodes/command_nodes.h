#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/nodes/node_classes.h"
#include "genicam/nodes/range_record.h"

namespace GenICam {

/// `Command` with `Value`. Once executed it stays unfinished, as nothing clears its stored value.
class command_Value_type final : public node_base_impl_value,
                                 public implement_inode_command<command_Value_type> {
public:
    using node_base_impl_value::node_base_impl_value;
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code execute(std::uint32_t flags) override;
    result<bool> is_done(std::uint32_t flags) override;

private:
    std::int64_t value_ = 0;
    integer_pair command_value_;
};

/// `Command` with `pValue`. With an unresolved link its operations fail with `not_implemented`.
class command_pValue_type final : public node_base_impl_dependent_cache,
                                  public implement_inode_command<command_pValue_type> {
public:
    using node_base_impl_dependent_cache::node_base_impl_dependent_cache;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return value_.node(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code execute(std::uint32_t flags) override;
    result<bool> is_done(std::uint32_t flags) override;

private:
    node_link value_;
    integer_pair command_value_;
};

}  // namespace GenICam
