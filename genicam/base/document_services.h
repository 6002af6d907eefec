#pragma once

#include "genicam/inode.h"

#include <functional>
#include <string_view>

#include <gsl/span>

namespace GenICam {

class dependent_lists;
class expansion_budget;
class formula_store;

/// The document as its nodes see it.
class document_services {
public:
    virtual void add_callback(INode* node, std::function<void(INode*)> callback) = 0;
    virtual void clear_callbacks(INode* node) = 0;
    /// In the order of registration; a node without callbacks does nothing.
    virtual void fire_callbacks(INode* node) = 0;
    [[nodiscard]] virtual INode* find_node(std::string_view name) = 0;
    /// For nodes that keep no list of their own, during the load only.
    virtual void add_dependent(IEval* owner, IEval* dependent) = 0;
    [[nodiscard]] virtual gsl::span<IEval* const> get_dependents(IEval* owner) = 0;
    /// The lists of dependents that nodes share.
    [[nodiscard]] virtual dependent_lists& shared_lists() = 0;
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
