#pragma once

#include "genicam/inode.h"

#include <cstdint>
#include <functional>
#include <string_view>

#include <gsl/span>

namespace GenICam {

class dependent_lists;
class expansion_budget;
class formula_store;
struct kept_list;

/// The document as its nodes see it.
class document_services {
public:
    virtual void add_callback(INode* node, std::function<void(INode*)>&& callback) = 0;
    virtual void clear_callbacks(INode* node) = 0;
    /// In the order of registration; a node without callbacks does nothing.
    virtual void fire_callbacks(INode* node) = 0;
    [[nodiscard]] virtual INode* find_node(std::string_view name) = 0;
    /// During the load only.
    virtual void add_dependent(IEval* owner, IEval* dependent) = 0;
    [[nodiscard]] virtual gsl::span<IEval* const> get_dependents(IEval* owner) = 0;
    /// The complete lists of dependents.
    [[nodiscard]] virtual dependent_lists& dependents() = 0;
    /// Completes the list of a node that has registered all it depends on, at the end of the load.
    [[nodiscard]] virtual kept_list close_dependents(std::uint32_t node) = 0;
    /// Memory of the arena beside the nodes: exactly what was reserved for it.
    [[nodiscard]] virtual void* take_room(std::uint64_t size) = 0;
    /// What the expressions of all formulas of the document share.
    [[nodiscard]] virtual expansion_budget& formula_expansion() = 0;
    /// True until the load ends: from then on lists of dependents are only read. Whoever would add to one
    /// after that made a mistake, and gets false.
    [[nodiscard]] virtual bool takes_dependents() const = 0;
    [[nodiscard]] virtual formula_store& formulas() = 0;

protected:
    ~document_services() = default;
};

}  // namespace GenICam
