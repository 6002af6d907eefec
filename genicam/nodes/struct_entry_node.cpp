#include "genicam/nodes/struct_entry_node.h"

#include "genicam/base/node_link.h"

#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace GenICam {
namespace {

/// What an entry shares; looked up for it alone where nobody did for all.
class struct_reg_of {
public:
    explicit struct_reg_of(const described_element& entry) : shared_(entry.struct_reg()) {
        if (shared_ != nullptr) return;
        const described_element& element = *scanned_.emplace(find_struct_reg(entry));
        shared_ = &alone_.emplace(element);
    }
    struct_reg_of(const struct_reg_of&) = delete;
    struct_reg_of& operator=(const struct_reg_of&) = delete;
    shared_struct_reg* operator->() const noexcept { return shared_; }

private:
    shared_struct_reg* shared_;
    std::optional<scanned_element> scanned_;
    std::optional<shared_struct_reg> alone_;
};

}  // namespace

pugi::xml_node find_struct_reg(pugi::xml_node entry) {
    for (pugi::xml_node struct_reg = entry.parent(); struct_reg; struct_reg = struct_reg.parent()) {
        if (struct_reg.name() == std::string_view("StructReg")) return struct_reg;
    }
    return entry.parent();
}

std::shared_ptr<const address_eval> shared_struct_reg::resolve_address(IGenICamDoc* doc, INode* entry) {
    if (address_ == nullptr) {
        resolve_once(doc);
    } else {
        repeated_ += problems_.size();
    }
    if (repeated_ <= most_repeated) report_all(problems_);
    for (INode* const source : sources_) std::ignore = depend_on(source, entry);
    return address_;
}

void shared_struct_reg::resolve_once(IGenICamDoc* doc) {
    auto address = std::make_shared<address_eval>();
    problems_ = address->resolve_terms(doc, xml_);
    address->for_each_source([this](INode* source) {
        if (sources_.empty() || sources_.back() != source) sources_.push_back(source);
    });
    address_ = std::move(address);
}

struct_entry_type::struct_entry_type(document_services* services, const described_element& xml)
    : node_base_impl_bit_field(services, xml) {
    const struct_reg_of shared(xml);
    const described_element& struct_reg = shared->xml();
    const std::optional<Cachable> own_cachable = find_cachable(xml.text(child::Cachable));
    cache_.cachable = own_cachable
                          ? *own_cachable
                          : parse_cachable(struct_reg, struct_reg.text(child::Cachable), Cachable::NoCache);
    cache_.endianess = parse_endianess(struct_reg, struct_reg.text(child::Endianess));
    const std::optional<AccessMode> own_mode = GenICam::find_access_mode(xml.text(child::AccessMode));
    set_actual_access_mode(own_mode ? *own_mode
                                    : parse_access_mode(struct_reg, struct_reg.text(child::AccessMode)));
}

void struct_entry_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    const struct_reg_of shared(xml);
    length_ = resolve_length(doc, shared->xml(), this);
    address_ = shared->resolve_address(doc, this);
    cache_.port = find_register_port(doc, shared->xml());
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
