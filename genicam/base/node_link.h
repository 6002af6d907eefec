#pragma once

#include "genicam/base/node_base.h"
#include "genicam/base/value_links.h"

namespace GenICam {

/// What every link does with the node that it found: `self` hears of its changes from now on. False where
/// there is none.
[[nodiscard]] bool depend_on(INode* source, INode* self);

/// A link of a node to the one whose value it reads and writes. Null until it is resolved, and where the name
/// is unknown: then every operation that needs it fails with `not_implemented`.
class node_link {
public:
    /// Looks up the node that a child names, and makes the owner its dependent; false, and a message about
    /// the child, for none.
    bool resolve(IGenICamDoc* doc, const described_element& xml, child name, node_base_data& owner,
                 const message<>& unresolved);

    [[nodiscard]] explicit operator bool() const noexcept { return node_ != nullptr; }
    [[nodiscard]] INode* node() const noexcept { return node_; }

    template <class T>
    [[nodiscard]] result<T> get(std::uint32_t flags) const {
        if (node_ == nullptr) return make_error_code(not_implemented);
        return get_eval_val<T>(node_, flags);
    }
    template <class T>
    [[nodiscard]] std::error_code set(T value, std::uint32_t flags) const {
        if (node_ == nullptr) return make_error_code(not_implemented);
        return set_eval_val(node_, value, flags);
    }

private:
    INode* node_ = nullptr;
};

}  // namespace GenICam
