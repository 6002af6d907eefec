#pragma once

#include "genicam/core/node_base.h"

#include <boost/container/small_vector.hpp>

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
    void add_dependent(INode* node) final;
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
    void add_dependent(INode* node) final;
    [[nodiscard]] gsl::span<IEval* const> get_dependents() final {
        return {dependents_.data(), dependents_.size()};
    }
    void close_dependents() final;
    [[nodiscard]] std::int32_t get_dependent_count() final {
        return static_cast<std::int32_t>(dependents_.size());
    }

    void invalidate_dependents();

protected:
    ~node_base_impl_value() = default;

private:
    void mark_listed(IEval* dependent, bool is_covered);
    void append_unseen(gsl::span<IEval* const> nodes, bool are_complete);

    boost::container::small_vector<IEval*, 8> dependents_;
};

/// Whether `dependent` stands in the list. Nodes register themselves while they are resolved one after the
/// other, so that during a load only the last entry needs a look.
template <class List>
[[nodiscard]] bool is_registered(const List& dependents, const IEval* dependent, bool is_loading) noexcept {
    if (dependents.empty()) return false;
    if (dependents.back() == dependent) return true;
    if (is_loading) return false;
    for (const IEval* known : dependents) {
        if (known == dependent) return true;
    }
    return false;
}

}  // namespace GenICam
