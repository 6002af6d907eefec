#include "genicam/nodes/struct_entry_node.h"

#include <string_view>

namespace GenICam {
namespace {

template <class Function>
void with_struct_reg(const described_element& entry, Function fn) {
    if (entry.struct_reg() != nullptr) {
        fn(*entry.struct_reg());
    } else {
        fn(*scanned_element(find_struct_reg(entry)));
    }
}

}  // namespace

pugi::xml_node find_struct_reg(pugi::xml_node entry) {
    for (pugi::xml_node struct_reg = entry.parent(); struct_reg; struct_reg = struct_reg.parent()) {
        if (struct_reg.name() == std::string_view("StructReg")) return struct_reg;
    }
    return entry.parent();
}

struct_entry_type::struct_entry_type(document_services* services, const described_element& xml)
    : node_base_impl_bit_field(services, xml) {
    with_struct_reg(xml, [&](const described_element& struct_reg) {
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
    with_struct_reg(xml, [&](const described_element& struct_reg) {
        address_.resolve_references_len(doc, struct_reg, this);
        cache_.port = find_register_port(doc, struct_reg);
    });
}

std::error_code struct_entry_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    if (!fits_word(span.assume_value().length)) return make_error_code(index_out_of_range);
    return spread_write(*this, write_field(span.assume_value(), value, flags));
}

result<std::int64_t> struct_entry_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    if (!fits_word(span.assume_value().length)) return make_error_code(index_out_of_range);
    return read_field(span.assume_value(), flags);
}

}  // namespace GenICam
