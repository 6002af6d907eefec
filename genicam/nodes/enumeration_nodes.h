#pragma once

#include "genicam/base/node_link.h"
#include "genicam/base/node_state.h"
#include "genicam/core/key_order.h"
#include "genicam/nodes/node_classes.h"

namespace GenICam {

/// `EnumEntry`. Lives in the array of its enumeration; no document list holds it.
class enum_entry_type final : public node_base_impl_ignore_dependent,
                              public implement_inode<enum_entry_type, IEnumEntry> {
public:
    enum_entry_type(document_services* services, const described_element& xml, std::uint32_t index);
    INode* get_node() override { return this; }
    [[nodiscard]] node_type get_node_type() const override { return node_type::enum_entry; }
    [[nodiscard]] std::int64_t get_value() const override { return value_; }
    [[nodiscard]] std::uint32_t get_index() const override { return index_; }
    [[nodiscard]] std::optional<double> get_numeric_value() const override;
    [[nodiscard]] bool is_self_clearing() const override;

private:
    std::int64_t value_ = 0;
    std::uint32_t index_;
};

/// The entries of an enumeration, made in memory that the document's arena gave.
class enum_entries {
public:
    /// `storage` has room for one entry per `EnumEntry` child. Takes more room for so many numbers.
    enum_entries(document_services* services, const described_element& xml, void* storage);
    /// Many entries are put in order, by their values and by their names.
    [[nodiscard]] static constexpr std::size_t numbers_for(std::size_t entries) noexcept {
        return entries > most_searched_keys ? 2 * entries : 0;
    }
    void resolve_references(IGenICamDoc* doc, const described_element& xml);
    [[nodiscard]] std::vector<IEnumEntry*> list() const;
    [[nodiscard]] IEnumEntry* find_nearest(double value) const;
    [[nodiscard]] IEnumEntry* find(std::int64_t value) const;
    [[nodiscard]] IEnumEntry* find(std::string_view name) const;
    [[nodiscard]] gsl::span<enum_entry_type> span() const noexcept { return entries_; }

private:
    [[nodiscard]] IEnumEntry* entry_at(std::size_t position) const noexcept {
        return position < entries_.size() ? &entries_[position] : nullptr;
    }

    gsl::span<enum_entry_type> entries_;
    gsl::span<std::uint32_t> by_value_;  // empty where there are few
    gsl::span<std::uint32_t> by_name_;
};

/// What both enumeration classes answer from their entries.
template <class T>
class implement_enum_entries : public implement_inode_IEnumeration<T> {
public:
    [[nodiscard]] std::vector<IEnumEntry*> get_entries() final { return entries_.list(); }
    [[nodiscard]] IEnumEntry* find_nearest_entry(double value) final { return entries_.find_nearest(value); }
    [[nodiscard]] IEnumEntry* find_entry(std::int64_t value) final { return entries_.find(value); }
    [[nodiscard]] IEnumEntry* find_entry(std::string_view name) final { return entries_.find(name); }
    [[nodiscard]] gsl::span<enum_entry_type> get_entry_span() final { return entries_.span(); }

protected:
    implement_enum_entries(document_services* services, const described_element& xml, void* storage)
        : entries_(services, xml, storage) {}
    ~implement_enum_entries() = default;

    enum_entries entries_;
};

/// `Enumeration` with `Value`.
class enumeration_Value_type final : public node_base_impl_value,
                                     public implement_enum_entries<enumeration_Value_type> {
public:
    enumeration_Value_type(document_services* services, const described_element& xml, void* entries);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_selected_entry(IEnumEntry* entry, std::uint32_t flags) override;
    result<IEnumEntry*> get_selected_entry(std::uint32_t flags) override;

private:
    std::int64_t value_ = 0;
};

/// `Enumeration` with `pValue`. With an unresolved link reading and writing fail with `not_implemented`.
class enumeration_pValue_type final : public node_base_impl_dependent_cache,
                                      public implement_enum_entries<enumeration_pValue_type> {
public:
    enumeration_pValue_type(document_services* services, const described_element& xml, void* entries);
    INode* get_node() override { return this; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    std::error_code set_selected_entry(IEnumEntry* entry, std::uint32_t flags) override;
    result<IEnumEntry*> get_selected_entry(std::uint32_t flags) override;

private:
    node_link value_;
};

}  // namespace GenICam
