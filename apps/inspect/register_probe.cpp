#include "apps/inspect/register_probe.h"

#include "apps/inspect/engine_messages.h"
#include "apps/inspect/feature_reader.h"
#include "genicam/document/node_facts.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <string_view>

namespace selvane_inspect {
namespace {

using namespace GenICam;

constexpr std::string_view register_elements[] = {"IntReg",    "FloatReg",     "Register",
                                                  "StringReg", "MaskedIntReg", "StructEntry"};

bool is_register(pugi::xml_node element) {
    const std::string_view name = element.name();
    return std::find(std::begin(register_elements), std::end(register_elements), name) !=
           std::end(register_elements);
}

void read_past_everything(INode& node) {
    constexpr std::uint32_t flags = access_flags::bypass_cache | access_flags::skip_access_check;
    switch (node.get_node_type()) {
        case node_type::integer:
            static_cast<void>(static_cast<IInteger&>(node).get_val(flags));
            break;
        case node_type::floating:
            static_cast<void>(static_cast<IFloat&>(node).get_val(flags));
            break;
        case node_type::string:
            static_cast<void>(static_cast<IString&>(node).get_val(flags));
            break;
        case node_type::register_block: {
            auto& block = static_cast<IRegister&>(node);
            const result<std::int64_t> length = block.get_length(flags);
            if (!length || length.assume_value() < 1 || length.assume_value() > longest_block) break;
            simcam::bytes bytes(static_cast<std::size_t>(length.assume_value()));
            static_cast<void>(block.read(bytes.data(), length.assume_value(), flags));
            break;
        }
        default:
            break;
    }
}

std::optional<std::uint64_t> mask_of(pugi::xml_node element, std::size_t length) {
    const std::string_view name = element.name();
    const bool is_field = name == "MaskedIntReg" || name == "StructEntry";
    if (!is_field || length == 0 || length > sizeof(std::uint64_t)) return std::nullopt;
    return field_bits_of(element, static_cast<std::int64_t>(length));
}

std::string_view byte_order_word(pugi::xml_node element, std::size_t length) {
    const std::string_view name = element.name();
    if (length < 2 || name == "StringReg" || name == "Register") return {};
    return byte_order_of(element) == Endianess::LittleEndian ? "LittleEndian" : "BigEndian";
}

}  // namespace

// The node's own access is the last one: those before it belong to its address.
std::optional<register_state> probe_register(description& in, evaluation_guard& guard, INode& node) {
    const auto element = in.tree().find(node);
    if (!element || !is_register(in.tree().at(*element).xml)) return std::nullopt;
    if (guard.find({*element, operation::value}) != nullptr) return std::nullopt;
    const silence quiet;
    static_cast<void>(in.port().take());
    try {
        read_past_everything(node);
    } catch (const std::exception&) {
        return std::nullopt;  // a length that no memory has room for
    }
    const std::vector<port_access> accesses = in.port().take();
    if (accesses.empty()) return std::nullopt;
    const port_access& own = accesses.back();
    const pugi::xml_node xml = in.tree().at(*element).xml;
    return register_state{own.address, own.data, mask_of(xml, own.data.size()),
                          byte_order_word(xml, own.data.size())};
}

std::string port_defect(description& in, element_index element) {
    const pugi::xml_node xml = in.tree().at(element).xml;
    if (!is_register(xml)) return {};
    const std::string_view stated = register_element_of(xml).child_value("pPort");
    const std::string name(stated.empty() ? "Device" : stated);
    INode* const port = in.document()->find_port(name);
    if (port == nullptr) return "port " + name + ": there is none";
    return static_cast<IPort*>(port)->is_bound() ? "" : "port " + name + ": nothing is behind it here";
}

}  // namespace selvane_inspect
