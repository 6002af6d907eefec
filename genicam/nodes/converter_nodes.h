#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/nodes/formula_number.h"
#include "genicam/nodes/variable_binding.h"

namespace GenICam {

class kept_formula;
struct source_kinds;

/// Two formulas in front of a target node: one for reading it and one for writing.
class converter_impl {
public:
    explicit converter_impl(bool is_integer) : map_(is_integer) {}

    /// What is missing or wrong leaves the node without that program, or without any.
    void resolve_converter_references(IGenICamDoc* doc, const described_element& xml, node_base_data& self);
    /// The target's value through `FormulaFrom`; `not_implemented` without that program.
    [[nodiscard]] result<eval_value> read(const node_base_data& self, std::uint32_t flags);
    /// The value through `FormulaTo`, written to the target; `not_implemented` without that program.
    [[nodiscard]] std::error_code write(const node_base_data& self, const eval_value& value,
                                        std::uint32_t flags);

    [[nodiscard]] INode* target() const noexcept { return target_.node(); }

private:
    /// Keeps the formula of one direction; null, and a message, for one that is known to be refused.
    [[nodiscard]] static kept_formula* keep(const described_element& xml, child name,
                                            const variable_table& table, const source_kinds& kinds,
                                            const node_base_data& self);
    [[nodiscard]] source_kinds kinds_when_reading() const;
    [[nodiscard]] bool can_write() const;

    node_link target_;
    variable_map_impl map_;
    kept_formula* formula_to_ = nullptr;
    kept_formula* formula_from_ = nullptr;
};

/// `IntConverter`: an integer computed from a target node and back. Without limits of its own.
class int_converter_type final : public node_base_impl_dependent_cache,
                                 public implement_inode_formula_integer<int_converter_type> {
public:
    using node_base_impl_dependent_cache::node_base_impl_dependent_cache;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return impl_.target(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;

private:
    converter_impl impl_{true};
};

/// `Converter`: the same with a float. Its minimum is the smallest positive number.
class float_converter_type final : public node_base_impl_dependent_cache,
                                   public implement_inode_formula_float<float_converter_type> {
public:
    using node_base_impl_dependent_cache::node_base_impl_dependent_cache;
    INode* get_node() override { return this; }
    INode* get_access_source() override { return impl_.target(); }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t flags) override;

private:
    converter_impl impl_{false};
};

}  // namespace GenICam
