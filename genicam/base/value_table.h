#pragma once

#include "genicam/core/children.h"
#include "genicam/core/eval_value.h"
#include "genicam/inode.h"

#include <cstdint>
#include <vector>

namespace GenICam {

class IGenICamDoc;

/// One row: a link, or a constant of the kind of the owning node.
struct indexed_entry {
    std::int64_t index = 0;
    INode* node = nullptr;
    eval_value::payload value = {0};
};

/// The value table of a `pIndex` node.
class value_eval_indexed {
public:
    /// Reads the table of an element. `self` becomes a dependent of every `pValueIndexed` link, but not of
    /// the default. False, with no rows, when there is no usable default.
    bool resolve_references(IGenICamDoc* doc, const described_element& xml, INode* self, bool is_float);

    /// The first row with that index, or the default.
    [[nodiscard]] indexed_entry& find(std::int64_t index) noexcept;

    [[nodiscard]] const std::vector<indexed_entry>& entries() const noexcept { return entries_; }
    [[nodiscard]] const indexed_entry& default_entry() const noexcept { return default_entry_; }

private:
    void read_links(IGenICamDoc* doc, const described_element& xml, INode* self);
    void read_constants(const described_element& xml, bool is_float);

    std::vector<indexed_entry> entries_;
    std::vector<std::uint32_t> order_;  // by the index; empty where there are few
    indexed_entry default_entry_;
};

/// The index node and the table that it selects from: the state of a `pIndex` node.
class indexed_values {
public:
    /// Looks the index node up and makes `self` its dependent; false, and no table, without one.
    bool resolve_index(IGenICamDoc* doc, const described_element& xml, INode* self);
    void resolve_table(IGenICamDoc* doc, const described_element& xml, INode* self, bool is_float);

    /// Fails with the index node's failure, or with `not_implemented` without one.
    [[nodiscard]] result<indexed_entry*> current_entry(std::uint32_t flags);
    /// The link of the current entry; null for a constant or an index that cannot be read.
    [[nodiscard]] INode* current_link(std::uint32_t flags);

private:
    IInteger* index_ = nullptr;
    value_eval_indexed table_;
};

}  // namespace GenICam
