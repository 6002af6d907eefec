#include "genicam/nodes/struct_entry_node.h"

#include "genicam/base/node_link.h"

#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace GenICam {
namespace {

template <class Function>
void with_struct_reg(const described_element& entry, Function fn) {
    if (entry.struct_reg() != nullptr) {
        fn(*entry.struct_reg());
    } else {
        const scanned_element alone(find_struct_reg(entry));
        shared_struct_reg struct_reg(*alone);
        fn(struct_reg);
    }
}

}  // namespace

pugi::xml_node find_struct_reg(pugi::xml_node entry) {
    for (pugi::xml_node struct_reg = entry.parent(); struct_reg; struct_reg = struct_reg.parent()) {
        if (struct_reg.name() == std::string_view("StructReg")) return struct_reg;
    }
    return entry.parent();
}

std::shared_ptr<const address_eval> shared_struct_reg::resolve_address(IGenICamDoc* doc, INode* entry) {
    if (address_ == nullptr) resolve_once(doc);
    report_problems();
    for (INode* const source : sources_) std::ignore = depend_on(source, entry);
    return address_;
}

void shared_struct_reg::resolve_once(IGenICamDoc* doc) {
    auto address = std::make_shared<address_eval>();
    problems_ = address->resolve_terms(doc, xml_);
    std::unordered_set<INode*> known;
    address->for_each_source([&](INode* source) {
        if (known.insert(source).second) sources_.push_back(source);
    });
    address_ = std::move(address);
}

void shared_struct_reg::report_problems() {
    if (!is_first_) repeated_ += problems_.size();
    is_first_ = false;
    if (repeated_ > most_repeated) return;
    for (const address_problem& problem : problems_) report(*problem.what, problem.where);
}

struct_entry_type::struct_entry_type(document_services* services, const described_element& xml)
    : node_base_impl_bit_field(services, xml) {
    with_struct_reg(xml, [&](const shared_struct_reg& shared) {
        const described_element& struct_reg = shared.xml();
        const std::optional<Cachable> own_cachable = find_cachable(xml.text(child::Cachable));
        cache_.cachable =
            own_cachable ? *own_cachable
                         : parse_cachable(struct_reg, struct_reg.text(child::Cachable), Cachable::NoCache);
        cache_.endianess = parse_endianess(struct_reg, struct_reg.text(child::Endianess));
        const std::optional<AccessMode> own_mode = GenICam::find_access_mode(xml.text(child::AccessMode));
        set_actual_access_mode(own_mode ? *own_mode
                                        : parse_access_mode(struct_reg, struct_reg.text(child::AccessMode)));
    });
}

void struct_entry_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    with_struct_reg(xml, [&](shared_struct_reg& struct_reg) {
        length_ = resolve_length(doc, struct_reg.xml(), this);
        address_ = struct_reg.resolve_address(doc, this);
        cache_.port = find_register_port(doc, struct_reg.xml());
    });
}

std::error_code struct_entry_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<register_span> span = find_span(flags);
    if (!span) return span.error();
    if (!fits_word(span.assume_value().length)) return make_error_code(index_out_of_range);
    return spread_write(*this, write_field(span.assume_value(), value, flags));
}

result<std::int64_t> struct_entry_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    const result<register_span> span = find_span(flags);
    if (!span) return span.error();
    if (!fits_word(span.assume_value().length)) return make_error_code(index_out_of_range);
    return read_field(span.assume_value(), flags);
}

}  // namespace GenICam
