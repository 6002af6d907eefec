#include "genicam/nodes/enumeration_nodes.h"

#include "genicam/base/value_links.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cmath>
#include <limits>
#include <new>

namespace GenICam {

enum_entry_type::enum_entry_type(document_services* services, const described_element& xml,
                                 std::uint32_t index)
    : node_base_impl_ignore_dependent(services, xml), index_(index) {
    if (parse_int(child_text(xml, child::Value), value_) == 0) {
        report(messages::entry_value_invalid, origin(child::Value));
    }
}

std::optional<double> enum_entry_type::get_numeric_value() const {
    double number = 0;
    if (parse_double(child_text(node_base_data::xml(), "NumericValue"), number) == 0) return std::nullopt;
    return number;
}

bool enum_entry_type::is_self_clearing() const { return says_yes(node_base_data::xml(), "IsSelfClearing"); }

enum_entries::enum_entries(document_services* services, const described_element& xml, void* storage) {
    auto* first = static_cast<enum_entry_type*>(storage);
    std::uint32_t count = 0;
    for (const described_element& entry : xml.entries()) {
        ::new (first + count) enum_entry_type(services, entry, count);
        ++count;
    }
    entries_ = {first, count};
    if (numbers_for(count) == 0) return;
    auto* const numbers =
        static_cast<std::uint32_t*>(services->take_room(numbers_for(count) * sizeof(std::uint32_t)));
    by_value_ = {numbers, count};
    by_name_ = {numbers + count, count};
    put_in_order(by_value_, [this](std::uint32_t left, std::uint32_t right) {
        return compare_numbers(entries_[left].get_value(), entries_[right].get_value());
    });
    put_in_order(by_name_, [this](std::uint32_t left, std::uint32_t right) {
        return entries_[left].find_name().compare(entries_[right].find_name());
    });
}

// Nearly all entries have nothing to resolve.
void enum_entries::resolve_references(IGenICamDoc* doc, const described_element& xml) {
    for (enum_entry_type& entry : entries_) {
        const described_element& element = xml.entries()[entry.get_index()];
        if (has_access_links(element) || element.has(child::pInvalidator))
            entry.resolve_described(doc, element);
    }
}

std::vector<IEnumEntry*> enum_entries::list() const {
    std::vector<IEnumEntry*> entries;
    entries.reserve(entries_.size());
    for (enum_entry_type& entry : entries_) entries.push_back(&entry);
    return entries;
}

IEnumEntry* enum_entries::find_nearest(double value) const {
    double best = std::numeric_limits<double>::max();
    IEnumEntry* nearest = nullptr;
    for (enum_entry_type& entry : entries_) {
        const double number = entry.get_numeric_value().value_or(static_cast<double>(entry.get_value()));
        const double distance = std::fabs(number - value);
        if (distance < best) {
            best = distance;
            nearest = &entry;
        }
    }
    return nearest;
}

IEnumEntry* enum_entries::find(std::int64_t value) const {
    return entry_at(find_key(by_value_, entries_.size(), value,
                             [this](std::size_t at) { return entries_[at].get_value(); }));
}

IEnumEntry* enum_entries::find(std::string_view name) const {
    return entry_at(find_key(by_name_, entries_.size(), name,
                             [this](std::size_t at) { return entries_[at].find_name(); }));
}

namespace {

result<IEnumEntry*> entry_of(const enum_entries& entries, std::int64_t value, const node_base_data& owner,
                             const message<std::int64_t>& has_no_entry) {
    if (IEnumEntry* entry = entries.find(value)) return entry;
    report(has_no_entry, owner.origin(), value);
    return make_error_code(index_out_of_range);
}

}  // namespace

enumeration_Value_type::enumeration_Value_type(document_services* services, const described_element& xml,
                                               void* entries)
    : node_base_impl_value(services, xml), implement_enum_entries(services, xml, entries) {}

void enumeration_Value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    if (parse_int(child_text(xml, child::Value), value_) == 0) {
        report(messages::enumeration_value_invalid, origin(child::Value));
    }
    entries_.resolve_references(doc, xml);
}

std::error_code enumeration_Value_type::set_selected_entry(IEnumEntry* entry, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (entry == nullptr) return make_error_code(index_out_of_range);
    store_value(value_, entry->get_value());
    return {};
}

result<IEnumEntry*> enumeration_Value_type::get_selected_entry(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    return entry_of(entries_, value_, *this, messages::enumeration_value_has_no_entry);
}

enumeration_pValue_type::enumeration_pValue_type(document_services* services, const described_element& xml,
                                                 void* entries)
    : node_base_impl_dependent_cache(services, xml), implement_enum_entries(services, xml, entries) {}

void enumeration_pValue_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    value_.resolve(doc, xml, child::pValue, *this, messages::enumeration_link_unresolved);
    entries_.resolve_references(doc, xml);
}

std::error_code enumeration_pValue_type::set_selected_entry(IEnumEntry* entry, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (entry == nullptr) return make_error_code(index_out_of_range);
    return value_.set(entry->get_value(), flags);
}

result<IEnumEntry*> enumeration_pValue_type::get_selected_entry(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    const result<std::int64_t> value = value_.get<std::int64_t>(flags);
    if (!value) return value.error();
    return entry_of(entries_, value.assume_value(), *this, messages::enumeration_link_has_no_entry);
}

}  // namespace GenICam
