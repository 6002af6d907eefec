#include "simcam/feature_server.h"

#include "genicam/inode.h"
#include "simcam/vendor_driver.h"
#include "wire/device_set.h"

#include <pugixml.hpp>

#include <cstring>

namespace simcam {
namespace {

using namespace GenICam;

constexpr std::uint32_t fresh = access_flags::bypass_cache;
constexpr std::uint32_t forced = fresh | access_flags::skip_access_check | access_flags::skip_range_check;

// "Feature/Value" in its parts, and "Enumeration/Entry/IsImplemented" with the entry between them.
struct parts {
    std::string_view feature;
    std::string_view entry;
    std::string_view suffix;  // with its slash
};

parts split(std::string_view path) noexcept {
    const std::size_t first = path.find('/');
    const std::size_t last = path.rfind('/');
    if (first == std::string_view::npos || last == first + 1) return {path, {}, {}};
    const std::string_view entry =
        first == last ? std::string_view() : path.substr(first + 1, last - first - 1);
    return {path.substr(0, first), entry, path.substr(last)};
}

std::uint64_t raw_of(double value) noexcept {
    std::uint64_t raw = 0;
    std::memcpy(&raw, &value, sizeof(raw));
    return raw;
}
std::uint64_t raw_of(std::int64_t value) noexcept { return static_cast<std::uint64_t>(value); }
std::uint64_t raw_of(bool value) noexcept { return value ? 1 : 0; }

double real_of(std::uint64_t raw) noexcept {
    double value = 0;
    std::memcpy(&value, &raw, sizeof(value));
    return value;
}

template <class T>
HRESULT give(const result<T>& answer, std::uint64_t& raw) {
    if (!answer) return to_hresult(answer.error());
    raw = raw_of(answer.value());
    return S_OK;
}

// What integer and float features have in common.
template <class Number>
HRESULT get_number(Number& node, std::string_view suffix, std::uint64_t& raw) {
    if (suffix == wire::path_suffix::value) return give(node.get_val(fresh), raw);
    if (suffix == wire::path_suffix::min) return give(node.get_min(fresh), raw);
    if (suffix == wire::path_suffix::max) return give(node.get_max(fresh), raw);
    if (suffix == wire::path_suffix::inc) return give(node.get_inc(fresh), raw);
    if (suffix == wire::path_suffix::default_value) return give(node.get_default(fresh), raw);
    return property_unknown;
}

HRESULT get_boolean(IBoolean& node, std::string_view suffix, std::uint64_t& raw) {
    if (suffix == wire::path_suffix::value) return give(node.get_val(fresh), raw);
    if (suffix == wire::path_suffix::default_value) return give(node.get_default(fresh), raw);
    return property_unknown;
}

HRESULT get_enumeration(IEnumeration& node, std::string_view suffix, std::uint64_t& raw) {
    if (suffix != wire::path_suffix::value) return property_unknown;
    const result<IEnumEntry*> entry = node.get_selected_entry(fresh);
    if (!entry) return to_hresult(entry.error());
    raw = raw_of(entry.value()->get_value());
    return S_OK;
}

HRESULT give_implemented(INode& node, std::uint64_t& raw) {
    bool implemented = false;
    if (const std::error_code failed = node.is_implemented(implemented, fresh)) return to_hresult(failed);
    raw = raw_of(implemented);
    return S_OK;
}

HRESULT get_entry_state(INode& node, std::string_view name, std::string_view suffix, std::uint64_t& raw) {
    if (node.get_node_type() != node_type::enumeration || suffix != wire::path_suffix::is_implemented) {
        return property_unknown;
    }
    IEnumEntry* entry = static_cast<IEnumeration&>(node).find_entry(name);
    return entry == nullptr ? property_unknown : give_implemented(*entry, raw);
}

template <class Node>
void write_default_of(Node& node) {
    const auto stated = node.get_default(fresh);
    if (stated) static_cast<void>(node.set_val(stated.value(), forced));
}

// The nodes behind `pIsLocked`, by the names of the features that state one.
class lock_collector final : public pugi::xml_tree_walker {
public:
    explicit lock_collector(std::map<std::string, std::string, std::less<>>& locks) : locks_(locks) {}
    bool for_each(pugi::xml_node& element) override {
        const char* lock = element.child_value("pIsLocked");
        if (*lock != 0) locks_.emplace(element.attribute("Name").value(), lock);
        return true;
    }

private:
    std::map<std::string, std::string, std::less<>>& locks_;
};

bool reads_true(INode& node) {
    switch (node.get_node_type()) {
        case node_type::integer: {
            const result<std::int64_t> value = static_cast<IInteger&>(node).get_val(fresh);
            return value && value.value() != 0;
        }
        case node_type::boolean: {
            const result<bool> value = static_cast<IBoolean&>(node).get_val(fresh);
            return value && value.value();
        }
        default:
            return false;
    }
}

}  // namespace

void write_default(INode& node) {
    if (node.get_access_mode() == AccessMode::RO) return;
    switch (node.get_node_type()) {
        case node_type::integer:
            write_default_of(static_cast<IInteger&>(node));
            break;
        case node_type::floating:
            write_default_of(static_cast<IFloat&>(node));
            break;
        case node_type::boolean:
            write_default_of(static_cast<IBoolean&>(node));
            break;
        default:
            break;
    }
}

void feature_server::add(std::string_view description, IDevicePort& device) {
    load_options options;
    options.keep_debug_properties = true;
    documents_.emplace_back(load_genicam_doc(description.data(), description.size(), options));
    IGenICamDoc* document = documents_.back().get();
    if (document == nullptr) return;
    if (INode* port = document->find_port({})) {
        static_cast<void>(static_cast<IPort*>(port)->bind(&device));
    }
    pugi::xml_document xml;
    if (!xml.load_buffer(description.data(), description.size())) return;
    lock_collector collector(locks_);
    xml.traverse(collector);
}

INode* feature_server::find_node(std::string_view name) const {
    for (const auto& document : documents_) {
        INode* found = document != nullptr ? document->find_node(name) : nullptr;
        if (found != nullptr) return found;
    }
    return nullptr;
}

value_form feature_server::form_of(std::string_view path) const {
    const parts asked = split(path);
    if (asked.suffix == wire::path_suffix::selected_entry) return value_form::text;
    INode* node = find_node(asked.feature);
    if (node == nullptr) return value_form::integer;
    const bool state =
        asked.suffix == wire::path_suffix::is_locked || asked.suffix == wire::path_suffix::is_implemented;
    if (node->get_node_type() == node_type::string && !state) return value_form::text;
    return node->get_node_type() == node_type::floating && !state ? value_form::real : value_form::integer;
}

bool feature_server::is_changeable(INode& node) const {
    const auto lock = locks_.find(node.get_name());
    if (lock != locks_.end()) {
        INode* link = find_node(lock->second);
        return link != nullptr && reads_true(*link);
    }
    bool available = false;
    bool locked = true;
    if (node.is_available(available, fresh) || node.is_locked(locked, fresh)) return false;
    return available && !locked;
}

HRESULT feature_server::get(std::string_view path, std::uint64_t& raw) const {
    const parts asked = split(path);
    INode* node = find_node(asked.feature);
    if (node == nullptr) return property_unknown;
    if (!asked.entry.empty()) return get_entry_state(*node, asked.entry, asked.suffix, raw);
    if (asked.suffix == wire::path_suffix::is_implemented) return give_implemented(*node, raw);
    if (asked.suffix == wire::path_suffix::is_locked) {
        raw = raw_of(is_changeable(*node));
        return S_OK;
    }
    switch (node->get_node_type()) {
        case node_type::integer:
            return get_number(static_cast<IInteger&>(*node), asked.suffix, raw);
        case node_type::floating:
            return get_number(static_cast<IFloat&>(*node), asked.suffix, raw);
        case node_type::boolean:
            return get_boolean(static_cast<IBoolean&>(*node), asked.suffix, raw);
        case node_type::enumeration:
            return get_enumeration(static_cast<IEnumeration&>(*node), asked.suffix, raw);
        default:
            return property_unknown;
    }
}

HRESULT feature_server::set(std::string_view path, std::uint64_t raw) const {
    const parts asked = split(path);
    INode* node = find_node(asked.feature);
    if (node == nullptr || !asked.entry.empty()) return property_unknown;
    if (asked.suffix == wire::path_suffix::execute && node->get_node_type() == node_type::command) {
        return raw == 0 ? E_INVALIDARG : to_hresult(static_cast<ICommand&>(*node).execute(fresh));
    }
    if (asked.suffix != wire::path_suffix::value) return property_unknown;
    switch (node->get_node_type()) {
        case node_type::integer:
            return to_hresult(static_cast<IInteger&>(*node).set_val(static_cast<std::int64_t>(raw), fresh));
        case node_type::floating:
            return to_hresult(static_cast<IFloat&>(*node).set_val(real_of(raw), fresh));
        case node_type::boolean:
            return to_hresult(static_cast<IBoolean&>(*node).set_val(raw != 0, fresh));
        case node_type::enumeration: {
            auto& enumeration = static_cast<IEnumeration&>(*node);
            IEnumEntry* entry = enumeration.find_entry(static_cast<std::int64_t>(raw));
            return to_hresult(enumeration.set_selected_entry(entry, fresh));
        }
        default:
            return property_unknown;
    }
}

HRESULT feature_server::get_text(std::string_view path, std::string& text) const {
    const parts asked = split(path);
    INode* node = find_node(asked.feature);
    if (node == nullptr || !asked.entry.empty()) return property_unknown;
    if (asked.suffix == wire::path_suffix::selected_entry &&
        node->get_node_type() == node_type::enumeration) {
        const result<IEnumEntry*> entry = static_cast<IEnumeration&>(*node).get_selected_entry(fresh);
        if (!entry) return to_hresult(entry.error());
        text = entry.value()->get_name();
        return S_OK;
    }
    if (asked.suffix == wire::path_suffix::value && node->get_node_type() == node_type::string) {
        const result<std::string> value = static_cast<IString&>(*node).get_val(fresh);
        if (!value) return to_hresult(value.error());
        text = value.value().substr(0, value.value().find('\0'));
        return S_OK;
    }
    return property_unknown;
}

HRESULT feature_server::set_text(std::string_view path, std::string_view text) const {
    const parts asked = split(path);
    INode* node = find_node(asked.feature);
    if (node == nullptr || !asked.entry.empty()) return property_unknown;
    if (asked.suffix == wire::path_suffix::selected_entry &&
        node->get_node_type() == node_type::enumeration) {
        auto& enumeration = static_cast<IEnumeration&>(*node);
        return to_hresult(enumeration.set_selected_entry(enumeration.find_entry(text), fresh));
    }
    if (asked.suffix == wire::path_suffix::value && node->get_node_type() == node_type::string) {
        return to_hresult(static_cast<IString&>(*node).set_val(text, fresh));
    }
    return property_unknown;
}

void feature_server::write_defaults() const {
    for (const auto& document : documents_) {
        if (document != nullptr) document->for_each_node([](INode* node) { write_default(*node); });
    }
}

}  // namespace simcam
