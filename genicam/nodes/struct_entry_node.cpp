#include "genicam/nodes/struct_entry_node.h"

#include <string_view>

namespace GenICam {
namespace {

template <class Function>
void with_frame(const described_element& entry, Function fn) {
    if (entry.frame() != nullptr) {
        fn(*entry.frame());
    } else {
        fn(*scanned_element(find_struct_frame(entry)));
    }
}

}  // namespace

pugi::xml_node find_struct_frame(pugi::xml_node entry) {
    for (pugi::xml_node frame = entry.parent(); frame; frame = frame.parent()) {
        if (frame.name() == std::string_view("StructReg")) return frame;
    }
    return entry.parent();
}

struct_entry_type::struct_entry_type(document_services* services, const described_element& xml)
    : node_base_impl_bit_field(services, xml) {
    with_frame(xml, [&](const described_element& frame) {
        const std::optional<Cachable> own_cachable = find_cachable(xml.text(child::Cachable));
        cache_.cachable = own_cachable
                              ? *own_cachable
                              : parse_cachable(frame, frame.text(child::Cachable), Cachable::NoCache);
        cache_.endianess = parse_endianess(frame, frame.text(child::Endianess));
        const std::optional<AccessMode> own_mode = GenICam::find_access_mode(xml.text(child::AccessMode));
        set_actual_access_mode(own_mode ? *own_mode
                                        : parse_access_mode(frame, frame.text(child::AccessMode)));
    });
}

void struct_entry_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    with_frame(xml, [&](const described_element& frame) {
        place_.resolve_references_len(doc, frame, this);
        cache_.port = find_register_port(doc, frame);
    });
}

std::error_code struct_entry_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<register_place> place = place_.get_address_and_length(flags);
    if (!place) return place.error();
    if (!fits_word(place.assume_value().length)) return make_error_code(index_out_of_range);
    return spread_write(*this, write_field(place.assume_value(), value, flags));
}

result<std::int64_t> struct_entry_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    const result<register_place> place = place_.get_address_and_length(flags);
    if (!place) return place.error();
    if (!fits_word(place.assume_value().length)) return make_error_code(index_out_of_range);
    return read_field(place.assume_value(), flags);
}

}  // namespace GenICam
