#pragma once

#include <cstdint>
#include <string>

#include <gsl/span>

namespace GenICam {

class IGenICamDoc;
class described_element;
class INode;

/// The inside face of a node: how references are resolved and how changes spread.
class IEval {
public:
    /// The links that all nodes have, then the class's own step. Called once, after all nodes exist.
    virtual void resolve_references(IGenICamDoc* doc) = 0;
    /// What this node remembers is stale: empties its cache and calls its callbacks. Passes nothing on.
    virtual void invalidate() = 0;
    /// `node` wants to hear of changes of this node. A node is not its own dependent.
    virtual void add_dependent(INode* node) = 0;
    [[nodiscard]] virtual gsl::span<IEval* const> get_dependents() = 0;
    /// Completes the dependents transitively, at the end of the load.
    virtual void close_dependents() = 0;
    [[nodiscard]] virtual INode* get_node() = 0;
    [[nodiscard]] virtual std::string describe() = 0;
    /// -1 for a class that keeps no dependents, 0 for one whose dependents lived in the document.
    [[nodiscard]] virtual std::int32_t get_dependent_count() = 0;
    virtual void _resolve_references(IGenICamDoc* doc, const described_element& xml) = 0;
    /// The node whose access mode this node reports, or null.
    [[nodiscard]] virtual INode* get_access_source() = 0;

protected:
    ~IEval() = default;
};

}  // namespace GenICam
