#include "genicam/nodes/command_nodes.h"

#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

namespace GenICam {
namespace {

void resolve_command_value(IGenICamDoc* doc, const described_element& xml, node_base_data& owner,
                           integer_pair& command_value, const message<>& lacks_number) {
    const link_or_value resolved =
        resolve_link_or_value_(doc, xml, child::CommandValue, child::pCommandValue);
    if (!resolved.valid) report(lacks_number, owner.origin(child::CommandValue));
    command_value.store(resolved, owner.get_node());
}

}  // namespace

void command_Value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    if (parse_int(child_text(xml, child::Value), value_) == 0) {
        report(messages::command_value_invalid, origin(child::Value));
    }
    resolve_command_value(doc, xml, *this, command_value_, messages::command_value_lacks_number);
}

std::error_code command_Value_type::execute(std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    const result<std::int64_t> number = command_value_.evaluate(flags);
    if (!number) return number.error();
    store_value(value_, number.assume_value());
    return {};
}

result<bool> command_Value_type::is_done(std::uint32_t flags) {
    if (check_access(false, flags)) return true;
    const result<std::int64_t> number = command_value_.evaluate(flags);
    if (!number) return number.error();
    return value_ != number.assume_value();
}

void command_pValue_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    value_.resolve(doc, xml, child::pValue, *this, messages::command_link_unresolved);
    resolve_command_value(doc, xml, *this, command_value_, messages::command_link_lacks_number);
}

std::error_code command_pValue_type::execute(std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    const result<std::int64_t> number = command_value_.evaluate(flags);
    if (!number) return number.error();
    return value_.set(number.assume_value(), flags);
}

result<bool> command_pValue_type::is_done(std::uint32_t flags) {
    if (check_access(false, flags)) return true;
    const result<std::int64_t> number = command_value_.evaluate(flags);
    if (!number) return number.error();
    const result<std::int64_t> present = value_.get<std::int64_t>(flags);
    if (!present) return present.error();
    return present.assume_value() != number.assume_value();
}

}  // namespace GenICam
