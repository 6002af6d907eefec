#pragma once

#include "genicam/base/dependent_lists.h"
#include "genicam/base/node_base.h"

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
        if (is_closed_ && shared_list_ != 0) return services().shared_lists()[shared_list_];
        return {dependents_.data(), dependents_.size()};
    }
    void close_dependents() final;
    [[nodiscard]] std::int32_t get_dependent_count() final {
        return static_cast<std::int32_t>(get_dependents().size());
    }

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
    void find_list(dependent_lists& lists);
    [[nodiscard]] bool complete_list(dependent_lists& lists, std::size_t longest);
    static void mark_listed(IEval* dependent, std::uint32_t mark, bool is_covered);
    static void append_unseen(dependent_lists::growing_list& list, gsl::span<IEval* const> nodes,
                              std::uint32_t mark, bool are_complete);

    // What registered itself; the complete list from its closing on, unless others share it.
    boost::container::small_vector<IEval*, 8> dependents_;
};

/// Whether `dependent` stands in the list. Nodes register themselves while they are resolved one after the
/// other, so that only the last entry needs a look.
template <class List>
[[nodiscard]] bool is_registered(const List& dependents, const IEval* dependent) noexcept {
    return !dependents.empty() && dependents.back() == dependent;
}

}  // namespace GenICam
