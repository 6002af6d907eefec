#include "genicam/base/node_base.h"

#include "genicam/base/node_link.h"
#include "genicam/base/value_links.h"
#include "genicam/base/xml_words.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <new>
#include <utility>

namespace GenICam {
namespace {

// A link that is not there answers with its default.
std::error_code evaluate_flag(INode* link, bool& value, std::uint32_t flags) {
    const result<bool> evaluated = get_eval_bool(link, flags);
    if (!evaluated) return evaluated.error();
    value = evaluated.assume_value();
    return {};
}

bool has_truth_value(const INode& node) {
    switch (node.get_node_type()) {
        case node_type::integer:
        case node_type::floating:
        case node_type::enumeration:
        case node_type::boolean:
            return true;
        default:
            return false;
    }
}

}  // namespace

node_base_data::node_base_data(document_services* services, const described_element& xml)
    : xml_(xml),
      name_(xml.node_name()),
      services_(services),
      imposed_access_mode_(parse_imposed_access_mode(xml, xml.text(child::ImposedAccessMode))),
      has_callbacks_(false),
      has_extension_(xml.has(child::Extension)),
      has_imposed_mode_(xml.has(child::ImposedAccessMode)),
      has_streamable_(xml.has(child::Streamable)) {}

void node_base_data::resolve_references(IGenICamDoc* doc) { resolve_described(doc, *scanned_element(xml_)); }

void node_base_data::resolve_described(IGenICamDoc* doc, const described_element& xml) {
    if (has_access_links(xml)) resolve_access_links(doc, xml);
    if (xml.has(child::pInvalidator)) resolve_invalidators(doc, xml);
    _resolve_references(doc, xml);
}

void node_base_data::resolve_access_links(IGenICamDoc* doc, const described_element& xml) {
    if (links_ == nullptr) links_ = ::new (take_room(sizeof(access_links))) access_links();
    links_->is_implemented = resolve_access_link(doc, xml, child::pIsImplemented);
    links_->is_available = resolve_access_link(doc, xml, child::pIsAvailable);
    links_->is_locked = resolve_access_link(doc, xml, child::pIsLocked);
}

INode* node_base_data::resolve_access_link(IGenICamDoc* doc, const described_element& xml, child name) {
    if (!xml.has(name)) return nullptr;
    INode* node = doc->find_node(xml.text(name));
    const bool decides = node != nullptr && has_truth_value(*node) && depend_on(node, get_node());
    return decides ? node : nullptr;
}

void node_base_data::resolve_invalidators(IGenICamDoc* doc, const described_element& xml) {
    for (const known_child& listed : xml.known_children()) {
        if (listed.name != child::pInvalidator) continue;
        if (!depend_on(doc->find_node(listed.text()), get_node()))
            report(messages::invalidator_unresolved, {xml_, listed.element});
    }
}

void node_base_data::invalidate() { notify_changed(); }

std::error_code node_base_data::check_links(std::uint32_t flags) const {
    bool implemented = true;
    const std::error_code failure = test_implemented(implemented, flags);
    if (!failure && !implemented) return make_error_code(not_implemented);
    bool available = true;
    if (test_available(available, flags) || !available) return make_error_code(node_not_available);
    return {};
}

void node_base_data::set_actual_access_mode(AccessMode mode) {
    if (imposed_access_mode_ == AccessMode::RW) imposed_access_mode_ = mode;
    if (mode == imposed_access_mode_ || mode == AccessMode::RW) return;
    const bool is_read_only = imposed_access_mode_ == AccessMode::RO;
    report(messages::access_mode_turned, origin(child::ImposedAccessMode), is_read_only ? "RO" : "WO",
           is_read_only ? "WO" : "RO");
}

INode* node_base_data::resolve_node(const char* element) const {
    const std::string_view text = child_text(xml_, element);
    if (text.empty()) return nullptr;
    INode* node = services_->find_node(text);
    if (node == nullptr) report(messages::node_unresolved, {xml_, element}, element, text);
    return node;
}

std::vector<INode*> node_base_data::resolve_node_list(const char* element) const {
    std::vector<INode*> nodes;
    for (const pugi::xml_node listed : xml_.children(element)) {
        const std::string_view text = listed.child_value();
        if (INode* node = services_->find_node(text)) {
            nodes.push_back(node);
        } else {
            report(messages::listed_node_unresolved, {xml_, listed}, element, text);
        }
    }
    return nodes;
}

std::vector<INode::extension> node_base_data::find_extensions() const {
    std::vector<INode::extension> extensions;
    for (const pugi::xml_node key : xml_.child("Extension")) {
        if (key.type() == pugi::node_element) extensions.emplace_back(key.name(), key.child_value());
    }
    return extensions;
}

std::string_view node_base_data::find_extension(std::string_view key) const {
    if (!has_extension_) return {};
    for (const pugi::xml_node candidate : xml_.child("Extension")) {
        if (key == candidate.name()) return candidate.child_value();
    }
    return {};
}

std::error_code node_base_data::test_implemented(bool& value, std::uint32_t flags) const {
    value = true;
    INode* link = find_link(&access_links::is_implemented);
    return link == nullptr ? std::error_code() : evaluate_flag(link, value, flags);
}

std::error_code node_base_data::test_available(bool& value, std::uint32_t flags) const {
    value = true;
    INode* link = find_link(&access_links::is_available);
    return link == nullptr ? std::error_code() : evaluate_flag(link, value, flags);
}

bool node_base_data::seems(std::error_code (node_base_data::*test)(bool&, std::uint32_t) const) const {
    bool value = true;
    return static_cast<bool>((this->*test)(value, access_flags::none)) || value;
}

std::error_code node_base_data::test_locked(bool& value, std::uint32_t flags) {
    value = find_access_mode() == AccessMode::RO;
    INode* link = find_link(&access_links::is_locked);
    return value || link == nullptr ? std::error_code() : evaluate_flag(link, value, flags);
}

bool node_base_data::is_locked_by_link() const {
    bool locked = false;
    INode* link = find_link(&access_links::is_locked);
    return link != nullptr && !evaluate_flag(link, locked, access_flags::none) && locked;
}

std::string_view node_base_data::find_display_name() const {
    const std::string_view text = child_text(xml_, "DisplayName");
    return text.empty() ? name_ : text;
}

AccessMode node_base_data::find_access_mode() {
    if (!has_imposed_mode_) {
        if (INode* source = get_access_source()) return source->get_access_mode();
    }
    return imposed_access_mode_;
}

void node_base_data::add_callback(INode::callback&& fn) {
    services_->add_callback(get_node(), std::move(fn));
    has_callbacks_ = true;
}

void node_base_data::clear_callbacks() {
    services_->clear_callbacks(get_node());
    has_callbacks_ = false;
}

std::optional<std::uint64_t> node_base_data::find_event_id() const {
    std::uint64_t id = 0;
    if (parse_hex(child_text(xml_, "EventID"), id) == 0) return std::nullopt;
    return id;
}

}  // namespace GenICam
