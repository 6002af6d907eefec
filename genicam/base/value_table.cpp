#include "genicam/base/value_table.h"

#include "genicam/base/node_link.h"
#include "genicam/base/value_links.h"
#include "genicam/core/children.h"
#include "genicam/core/key_order.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <string_view>

namespace GenICam {
namespace {

bool parse_constant(std::string_view text, bool is_float, eval_value::payload& value) {
    return (is_float ? parse_double(text, value.real) : parse_int(text, value.integer)) != 0;
}

bool parse_index(pugi::xml_node element, std::int64_t& index) {
    return parse_int(element.attribute("Index").value(), index) != 0;
}

}  // namespace

bool value_eval_indexed::resolve_references(IGenICamDoc* doc, const described_element& xml, INode* self,
                                            bool is_float) {
    default_entry_.node = doc->find_node(child_text(xml, child::pValueDefault));
    if (default_entry_.node == nullptr) {
        if (!parse_constant(child_text(xml, child::ValueDefault), is_float, default_entry_.value)) {
            report(messages::table_default_invalid, {xml, child::pValueDefault});
            return false;
        }
        default_entry_.index = -1;
    }
    entries_.reserve(xml.count(child::pValueIndexed) + xml.count(child::ValueIndexed));
    read_links(doc, xml, self);
    read_constants(xml, is_float);
    if (entries_.size() > most_searched_keys) {
        order_.resize(entries_.size());
        put_in_order(order_, [this](std::uint32_t left, std::uint32_t right) {
            return compare_numbers(entries_[left].index, entries_[right].index);
        });
    }
    return true;
}

void value_eval_indexed::read_links(IGenICamDoc* doc, const described_element& xml, INode* self) {
    for (const known_child& found : xml.known_children()) {
        if (found.name != child::pValueIndexed) continue;
        indexed_entry entry;
        if (!parse_index(found.element, entry.index)) {
            report(messages::index_of_link_invalid, {xml, found.element, "Index"});
            continue;
        }
        entry.node = doc->find_node(found.text());
        if (depend_on(entry.node, self)) {
            entries_.push_back(entry);
        } else {
            report(messages::indexed_link_unresolved, {xml, found.element});
        }
    }
}

void value_eval_indexed::read_constants(const described_element& xml, bool is_float) {
    for (const known_child& found : xml.known_children()) {
        if (found.name != child::ValueIndexed) continue;
        indexed_entry entry;
        if (!parse_index(found.element, entry.index)) {
            report(messages::index_of_constant_invalid, {xml, found.element, "Index"});
            continue;
        }
        if (!parse_constant(found.text(), is_float, entry.value)) {
            report(messages::indexed_constant_invalid, {xml, found.element});
            continue;
        }
        entries_.push_back(entry);
    }
}

indexed_entry& value_eval_indexed::find(std::int64_t index) noexcept {
    const std::size_t found =
        find_key(order_, entries_.size(), index, [this](std::size_t at) { return entries_[at].index; });
    return found < entries_.size() ? entries_[found] : default_entry_;
}

bool indexed_values::resolve_index(IGenICamDoc* doc, const described_element& xml, INode* self) {
    index_ = static_cast<IInteger*>(resolve_pIndex(doc, xml));
    return depend_on(index_, self);
}

void indexed_values::resolve_table(IGenICamDoc* doc, const described_element& xml, INode* self,
                                   bool is_float) {
    table_.resolve_references(doc, xml, self, is_float);
}

result<indexed_entry*> indexed_values::current_entry(std::uint32_t flags) {
    if (index_ == nullptr) return make_error_code(not_implemented);
    const result<std::int64_t> index = index_->get_val(flags);
    if (!index) return index.error();
    return &table_.find(index.assume_value());
}

INode* indexed_values::current_link(std::uint32_t flags) {
    const result<indexed_entry*> entry = current_entry(flags);
    return entry ? entry.assume_value()->node : nullptr;
}

}  // namespace GenICam
