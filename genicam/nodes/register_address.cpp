#include "genicam/nodes/register_address.h"

#include "genicam/base/node_link.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <string_view>
#include <tuple>
#include <utility>

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

std::uint64_t sum_addresses(const described_element& xml, std::vector<address_problem>& problems) {
    std::uint64_t sum = 0;
    xml.for_each(child::Address, [&](const known_child& found) {
        std::int64_t address = 0;
        if (parse_int(found.text(), address) == 0) {
            problems.push_back({&messages::address_invalid, {xml, found.element}});
        }
        sum += static_cast<std::uint64_t>(address);
    });
    return sum;
}

}  // namespace

void report_all(const std::vector<address_problem>& problems) {
    for (const address_problem& problem : problems) report(*problem.what, problem.where);
}

std::uint64_t calc_address_nodes_sum(const described_element& xml) {
    std::vector<address_problem> problems;
    const std::uint64_t sum = sum_addresses(xml, problems);
    report_all(problems);
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

/// Finds the nodes of an address.
class address_eval::resolver {
public:
    resolver(address_eval& address, IGenICamDoc* doc, const described_element& xml)
        : address_(address), doc_(doc), xml_(xml) {}

    void resolve();
    [[nodiscard]] std::vector<address_problem>& problems() noexcept { return problems_; }

private:
    void append_added(const known_child& found, std::string_view name, const message<>& unresolved);
    void append_index(const known_child& found);
    template <class... Part>
    void miss(const message<>& what, Part... part) {
        problems_.push_back({&what, {xml_, part...}});
    }

    address_eval& address_;
    IGenICamDoc* doc_;
    const described_element& xml_;
    std::vector<address_problem> problems_;
};

void address_eval::resolver::resolve() {
    if (xml_.has(child::Address)) address_.base_ = sum_addresses(xml_, problems_);
    if (!xml_.present().has_any(child::IntSwissKnife, child::pAddress, child::pIndex)) return;
    address_.terms_.reserve(xml_.count(child::IntSwissKnife) + xml_.count(child::pAddress) +
                            xml_.count(child::pIndex));
    xml_.for_each(child::IntSwissKnife, [this](const known_child& found) {
        append_added(found, found.element.attribute("Name").value(), messages::address_formula_unresolved);
    });
    xml_.for_each(child::pAddress, [this](const known_child& found) {
        append_added(found, found.text(), messages::address_link_unresolved);
    });
    xml_.for_each(child::pIndex, [this](const known_child& found) { append_index(found); });
}

void address_eval::resolver::append_added(const known_child& found, std::string_view name,
                                          const message<>& unresolved) {
    address_term term;
    term.value_node = doc_->find_node(name);
    if (term.value_node == nullptr) {
        miss(unresolved, found.element);
        return;
    }
    address_.terms_.push_back(term);
}

void address_eval::resolver::append_index(const known_child& found) {
    address_term term;
    term.index_node = doc_->find_node(found.text());
    if (term.index_node == nullptr) {
        miss(messages::address_index_unresolved, found.element);
        return;
    }
    const pugi::xml_attribute offset = found.element.attribute("Offset");
    if (offset && parse_int(offset.value(), term.offset) == 0) {
        miss(messages::address_offset_invalid, found.element, "Offset");
    }
    if (const pugi::xml_attribute offset_node = found.element.attribute("pOffset")) {
        term.value_node = doc_->find_node(offset_node.value());
        if (term.value_node == nullptr) miss(messages::address_offset_unresolved, found.element, "pOffset");
    }
    address_.terms_.push_back(term);
}

std::vector<address_problem> address_eval::resolve_terms(IGenICamDoc* doc, const described_element& xml) {
    resolver resolving(*this, doc, xml);
    resolving.resolve();
    return std::move(resolving.problems());
}

void address_eval::resolve_references(IGenICamDoc* doc, const described_element& xml, INode* self) {
    report_all(resolve_terms(doc, xml));
    for_each_source([self](INode* source) { std::ignore = depend_on(source, self); });
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

integer_pair resolve_length(IGenICamDoc* doc, const described_element& xml, INode* self) {
    integer_pair length;
    length.store(resolve_link_or_value_(doc, xml, child::Length, child::pLength), self);
    if (length.kind == limit_kind::absent) {
        report(messages::length_missing, xml);
        length.number = default_length;
        length.kind = limit_kind::constant;
    }
    return length;
}

result<register_span> evaluate_terms(const integer_pair& length, const address_eval& address,
                                     std::uint32_t flags) {
    const result<std::int64_t> bytes = length.evaluate(flags);
    if (!bytes) return bytes.error();
    const result<std::uint64_t> at = address.calc_address(bytes.assume_value(), flags);
    if (!at) return at.error();
    return register_span{at.assume_value(), bytes.assume_value()};
}

void register_dyn_address_eval::resolve_references_len(IGenICamDoc* doc, const described_element& xml,
                                                       INode* self) {
    length_ = resolve_length(doc, xml, self);
    address_.resolve_references(doc, xml, self);
}

std::int64_t register_dyn_address_eval::get_length() const {
    const result<std::int64_t> length = length_.evaluate(access_flags::none);
    return length ? length.assume_value() : default_length;
}

}  // namespace GenICam
