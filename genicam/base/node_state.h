#pragma once

#include "genicam/base/dependent_lists.h"
#include "genicam/base/node_base.h"

namespace GenICam {

// Where a node keeps those that depend on it. Only nodes that hold a value pay for a list.

/// Keeps no dependents.
class node_base_impl_ignore_dependent : public node_base_data {
public:
    using node_base_data::node_base_data;
    void add_dependent(INode*) final {}
    [[nodiscard]] gsl::span<IEval* const> get_dependents() final { return {}; }
    void close_dependents() final {}
    [[nodiscard]] std::int32_t get_dependent_count() final { return -1; }

protected:
    ~node_base_impl_ignore_dependent() = default;
};

/// Computes its value from others; its dependents live in the document until the load ends.
class node_base_impl_dependent_cache : public node_base_data {
public:
    using node_base_data::node_base_data;
    void add_dependent(INode* node) final { services().add_dependent(this, node->get_eval()); }
    [[nodiscard]] gsl::span<IEval* const> get_dependents() final { return services().get_dependents(this); }
    void close_dependents() final {}
    [[nodiscard]] std::int32_t get_dependent_count() final { return 0; }

protected:
    ~node_base_impl_dependent_cache() = default;
};

/// Holds a value: a change of it reaches every node in the list.
class node_base_impl_value : public node_base_data {
public:
    using node_base_data::node_base_data;
    void add_dependent(INode* node) final { services().add_dependent(this, node->get_eval()); }
    /// Complete once the description is loaded.
    [[nodiscard]] gsl::span<IEval* const> get_dependents() final {
        if (list_.length == 0) return services().get_dependents(this);
        return services().dependents().spread(list_);
    }
    void close_dependents() final { list_ = services().close_dependents(number()); }
    [[nodiscard]] std::int32_t get_dependent_count() final { return static_cast<std::int32_t>(list_.length); }

    void invalidate_dependents();
    /// Changes what the node holds. A value that is not the same makes those that depend on it, and the node
    /// itself, forget what they know.
    template <class T>
    void store_value(T& held, T value) {
        if (!(value != held)) return;
        held = value;
        invalidate_dependents();
        invalidate();
    }

protected:
    ~node_base_impl_value() = default;

private:
    kept_list list_;
};

}  // namespace GenICam
