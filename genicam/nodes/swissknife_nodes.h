#pragma once

#include "genicam/base/node_state.h"
#include "genicam/nodes/formula_number.h"
#include "genicam/nodes/variable_binding.h"

namespace GenICam {

class kept_formula;

/// A formula over the values of other nodes.
class swissknife_impl {
public:
    explicit swissknife_impl(bool is_integer) : map_(is_integer) {}

    /// Without a usable `Formula` the node stays without a program.
    void resolve_converter_references(IGenICamDoc* doc, const described_element& xml, node_base_data& self);
    /// Fails with `not_implemented` without a program.
    [[nodiscard]] result<eval_value> evaluate(const node_base_data& self, std::uint32_t flags);

private:
    variable_map_impl map_;
    kept_formula* formula_ = nullptr;
};

/// `IntSwissKnife`: computes an integer from other nodes. Read-only, and without limits of its own.
class int_swissknife_type final : public node_base_impl_dependent_cache,
                                  public implement_inode_formula_integer<int_swissknife_type> {
public:
    int_swissknife_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(std::int64_t value, std::uint32_t flags) override;
    result<std::int64_t> get_val(std::uint32_t flags) override;

private:
    swissknife_impl impl_{true};
};

/// `SwissKnife`: the same with a float. Its minimum is the smallest positive number.
class float_swissknife_type final : public node_base_impl_dependent_cache,
                                    public implement_inode_formula_float<float_swissknife_type> {
public:
    float_swissknife_type(document_services* services, const described_element& xml);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_val(double value, std::uint32_t flags) override;
    result<double> get_val(std::uint32_t flags) override;

private:
    swissknife_impl impl_{false};
};

}  // namespace GenICam
