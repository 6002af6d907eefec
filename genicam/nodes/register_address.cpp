#include "genicam/nodes/register_address.h"

#include "genicam/base/node_link.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

namespace GenICam {
namespace {

constexpr std::int64_t default_length = 4;

// An address does not know whose it is.
std::error_code fail_term(const message<>& without_value, const std::error_code& failure) {
    report(without_value, {});
    return failure;
}

// What one term adds to the address. Wraps, so everything is unsigned.
result<std::uint64_t> evaluate_index(const address_term& term, std::int64_t length, std::uint32_t flags) {
    const result<std::int64_t> index = get_eval_int(term.index_node, flags);
    if (!index) {
        return fail_term(messages::address_index_without_value, index.error());
    }
    auto stride = static_cast<std::uint64_t>(term.offset);
    if (term.value_node != nullptr) {
        const result<std::int64_t> offset = get_eval_int(term.value_node, flags);
        if (!offset) {
            return fail_term(messages::address_offset_without_value, offset.error());
        }
        stride += static_cast<std::uint64_t>(offset.assume_value());
    } else if (term.offset == 0) {
        stride = static_cast<std::uint64_t>(length);
    }
    return stride * static_cast<std::uint64_t>(index.assume_value());
}

result<std::uint64_t> evaluate_added(const address_term& term, std::uint32_t flags) {
    const result<std::int64_t> value = get_eval_int(term.value_node, flags);
    if (!value) {
        return fail_term(messages::address_link_without_value, value.error());
    }
    return static_cast<std::uint64_t>(value.assume_value());
}

}  // namespace

std::uint64_t calc_address_nodes_sum(const described_element& xml) {
    std::uint64_t sum = 0;
    xml.for_each(child::Address, [&](const known_child& found) {
        std::int64_t address = 0;
        if (parse_int(found.text(), address) == 0) {
            report(messages::address_invalid, {xml, found.element});
        }
        sum += static_cast<std::uint64_t>(address);
    });
    return sum;
}

IPort* find_register_port(IGenICamDoc* doc, const described_element& xml) {
    return static_cast<IPort*>(doc->find_port(child_text(xml, child::pPort)));
}

register_const_address_eval::register_const_address_eval(const described_element& xml) : span_{0, 0} {
    if (parse_int(child_text(xml, child::Length), span_.length) == 0) {
        report(messages::fixed_length_invalid, {xml, child::Length});
    }
    span_.address = calc_address_nodes_sum(xml);
}

void address_eval::resolve_references(IGenICamDoc* doc, const described_element& xml, INode* self) {
    if (xml.has(child::Address)) base_ = calc_address_nodes_sum(xml);
    if (!xml.present().has_any(child::IntSwissKnife, child::pAddress, child::pIndex)) return;
    terms_.reserve(xml.count(child::IntSwissKnife) + xml.count(child::pAddress) + xml.count(child::pIndex));
    xml.for_each(child::IntSwissKnife, [&](const known_child& found) {
        append_added(doc->find_node(found.element.attribute("Name").value()), xml, found.element, self,
                     messages::address_formula_unresolved);
    });
    xml.for_each(child::pAddress, [&](const known_child& found) {
        append_added(doc->find_node(found.text()), xml, found.element, self,
                     messages::address_link_unresolved);
    });
    xml.for_each(child::pIndex, [&](const known_child& found) { append_index(doc, xml, found, self); });
}

void address_eval::append_added(INode* node, const described_element& xml, pugi::xml_node element,
                                INode* self, const message<>& unresolved) {
    if (!depend_on(node, self)) {
        report(unresolved, {xml, element});
        return;
    }
    address_term term;
    term.value_node = node;
    terms_.push_back(term);
}

void address_eval::append_index(IGenICamDoc* doc, const described_element& xml, const known_child& found,
                                INode* self) {
    address_term term;
    term.index_node = doc->find_node(found.text());
    if (term.index_node == nullptr) {
        report(messages::address_index_unresolved, {xml, found.element});
        return;
    }
    const pugi::xml_attribute offset = found.element.attribute("Offset");
    if (offset && parse_int(offset.value(), term.offset) == 0) {
        report(messages::address_offset_invalid, {xml, found.element, "Offset"});
    }
    if (const pugi::xml_attribute offset_node = found.element.attribute("pOffset")) {
        term.value_node = doc->find_node(offset_node.value());
        if (!depend_on(term.value_node, self))
            report(messages::address_offset_unresolved, {xml, found.element, "pOffset"});
    }
    terms_.push_back(term);
}

result<std::uint64_t> address_eval::add_terms(std::int64_t length, std::uint32_t flags) const {
    std::uint64_t address = base_;
    for (const address_term& term : terms_) {
        const result<std::uint64_t> added =
            term.index_node != nullptr ? evaluate_index(term, length, flags) : evaluate_added(term, flags);
        if (!added) return added.error();
        address += added.assume_value();
    }
    return address;
}

void register_dyn_address_eval::resolve_references_len(IGenICamDoc* doc, const described_element& xml,
                                                       INode* self) {
    length_.store(resolve_link_or_value_(doc, xml, child::Length, child::pLength), self);
    if (length_.kind == limit_kind::absent) {
        report(messages::length_missing, xml);
        length_.number = default_length;
        length_.kind = limit_kind::constant;
    }
    address_.resolve_references(doc, xml, self);
}

result<register_span> register_dyn_address_eval::evaluate(std::uint32_t flags) const {
    const result<std::int64_t> length = length_.evaluate(flags);
    if (!length) return length.error();
    const result<std::uint64_t> address = address_.calc_address(length.assume_value(), flags);
    if (!address) return address.error();
    return register_span{address.assume_value(), length.assume_value()};
}

std::int64_t register_dyn_address_eval::get_length() const {
    const result<std::int64_t> length = length_.evaluate(access_flags::none);
    return length ? length.assume_value() : default_length;
}

}  // namespace GenICam
