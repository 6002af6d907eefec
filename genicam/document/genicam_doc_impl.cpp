#include "genicam/document/genicam_doc_impl.h"

#include "genicam/base/node_state.h"
#include "genicam/base/xml_words.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/core/text_words.h"
#include "genicam/document/node_factory.h"
#include "genicam/document/statistics.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <memory>
#include <utility>

namespace GenICam {
namespace {

// Somewhat less than real descriptions spend on each node.
constexpr std::size_t bytes_per_node = 240;

// How many nodes before their turn elements are fetched into the processor's cache.
constexpr std::size_t ahead = 4;

constexpr std::string_view default_port_name = "Device";

// The first bytes of a name as a number, in the order of the names.
std::uint64_t prefix_of(std::string_view name) noexcept {
    std::uint64_t prefix = 0;
    for (std::size_t at = 0; at < sizeof(prefix); ++at) {
        prefix = prefix << 8 | (at < name.size() ? static_cast<unsigned char>(name[at]) : 0U);
    }
    return prefix;
}

// How much of the bytes is worth a copy: a driver may announce far more than it fills. The parser reads
// nothing behind a NUL, and four aligned zero bytes hold one in every encoding. They stay, for it to end
// there.
std::size_t size_of_text(const char* data, std::size_t size) noexcept {
    if (size == 0 || data[size - 1] != 0) return size;
    constexpr std::size_t widest = 4;
    constexpr char end[widest] = {};
    const char* at = data;
    while (const void* zero = std::memchr(at, 0, size - static_cast<std::size_t>(at - data))) {
        const auto offset = static_cast<std::size_t>(static_cast<const char*>(zero) - data) / widest * widest;
        if (size - offset < widest) break;
        if (std::memcmp(data + offset, end, widest) == 0) return offset + widest;
        at = data + offset + widest;
    }
    return size;
}

}  // namespace

IGenICamDoc* load_genicam_doc(const char* data, std::uint64_t size, load_options options) {
    auto doc = std::make_unique<genicam_doc>(options);
    return doc->load(data, size) ? doc.release() : nullptr;
}

bool genicam_doc::load(const char* data, std::uint64_t size) {
    xml_buffer_.assign(data, data + size_of_text(data, size));
    const pugi::xml_parse_result parsed = xml_.load_buffer_inplace(xml_buffer_.data(), xml_buffer_.size());
    if (!parsed) {
        report(messages::malformed_xml, {}, parsed.description(), std::int64_t{parsed.offset});
        return false;
    }
    return build_nodes();
}

bool genicam_doc::build_nodes() {
    std::vector<taken_element> taken;
    element_walk walk(root(), options_);
    // Room enough for real descriptions, as growing copies.
    taken.reserve(xml_buffer_.size() / bytes_per_node);
    while (walk.next()) {
        walk.taken().chosen->reserve(allocator_, walk.taken().element);
        taken.push_back(walk.taken());
    }
    allocator_.make_arena();
    std::vector<INode*> made;
    made.reserve(taken.size());
    for (const taken_element& one : taken)
        made.push_back(one.chosen->construct(allocator_, this, one.element));

    const std::vector<name_order> order = sort_names(taken);
    nodes_.reserve(order.size());
    for (const name_order& at : order)
        nodes_.push_back({taken[at.place].element.node_name(), made[at.place]});
    return resolve_nodes(taken, order);
}

std::vector<genicam_doc::name_order> genicam_doc::sort_names(const std::vector<taken_element>& taken) {
    std::vector<name_order> order;
    order.reserve(taken.size());
    for (const taken_element& one : taken)
        order.push_back({prefix_of(one.element.node_name()), order.size()});
    std::sort(order.begin(), order.end(), [&taken](const name_order& left, const name_order& right) {
        if (left.prefix != right.prefix) return left.prefix < right.prefix;
        return taken[left.place].element.node_name() < taken[right.place].element.node_name();
    });
    return order;
}

bool genicam_doc::resolve_nodes(const std::vector<taken_element>& taken,
                                const std::vector<name_order>& order) {
    name_index index(nodes_.size());
    if (fill(index)) index_ = &index;
    default_port_ = find_port(default_port_name);
    for (std::size_t at = 0; at < nodes_.size(); ++at) {
        // What follows by name stands anywhere in the description.
        if (at + ahead < nodes_.size()) __builtin_prefetch(&taken[order[at + ahead].place]);
        INode* node = nodes_[at].node;
        static_cast<node_base_data*>(node->get_eval())
            ->resolve_described(this, taken[order[at].place].element);
        if (node->get_streamable()) streamable_nodes_.push_back(node);
    }
    formulas_.close();
    index_ = nullptr;
    dependents_.close();
    const bool are_closed = close_dependents();
    dependents_ = {};
    is_loading_ = false;
    return are_closed;
}

bool genicam_doc::close_dependents() {
    for (const named_node& named : nodes_) {
        named.node->get_eval()->close_dependents();
        if (!shared_lists_.is_exhausted()) continue;
        report(messages::too_many_dependents, {}, root().name(), get_model_name(),
               std::uint64_t{dependent_lists::most_entries});
        return false;
    }
    return true;
}

// The first node of that name, or the end.
std::vector<genicam_doc::named_node>::const_iterator genicam_doc::find_first(std::string_view name) const {
    if (index_ != nullptr) {
        const std::uint32_t place =
            index_->find(name, [&](std::uint32_t at) { return is_same_text(nodes_[at].name, name); });
        return place != name_index::not_found ? nodes_.begin() + place : nodes_.end();
    }
    const auto found =
        std::lower_bound(nodes_.begin(), nodes_.end(), name,
                         [](const named_node& node, std::string_view wanted) { return node.name < wanted; });
    return found != nodes_.end() && found->name == name ? found : nodes_.end();
}

// Of equal names the first.
bool genicam_doc::fill(name_index& index) const {
    for (std::size_t at = 0; at < nodes_.size(); ++at) {
        const bool is_first = at == 0 || !is_same_text(nodes_[at].name, nodes_[at - 1].name);
        if (is_first && !index.add(nodes_[at].name, static_cast<std::uint32_t>(at))) return false;
    }
    return true;
}

INode* genicam_doc::find_node(std::string_view name) {
    if (name.empty()) return nullptr;
    const auto found = find_first(name);
    return found != nodes_.end() ? found->node : nullptr;
}

INode* genicam_doc::find_port(std::string_view name) {
    if (name.empty()) return default_port_;
    // Of several nodes with the name, one may be a port without being the first.
    for (auto found = find_first(name); found != nodes_.end() && is_same_text(found->name, name); ++found) {
        if (found->node->get_node_type() == node_type::port) return found->node;
    }
    return nullptr;
}

void genicam_doc::for_each_node(std::function<void(INode*)> fn) {
    for (const named_node& named : nodes_) fn(named.node);
}

void genicam_doc::for_each_streamable_node(std::function<void(INode*)> fn) {
    for (INode* node : streamable_nodes_) fn(node);
}

std::string_view genicam_doc::get_model_name() { return root().attribute("ModelName").value(); }

std::string_view genicam_doc::get_vendor_name() { return root().attribute("VendorName").value(); }

std::string_view genicam_doc::get_tooltip() { return root().attribute("ToolTip").value(); }

StandardNameSpace genicam_doc::get_standard_name_space() { return parse_standard_name_space(root()); }

std::uint64_t genicam_doc::get_version(const char* attribute) const {
    std::int64_t version = 0;
    if (parse_int(root().attribute(attribute).value(), version) == 0 || version < 0) return 0;
    return static_cast<std::uint64_t>(version);
}

std::uint64_t genicam_doc::get_major_version() { return get_version("MajorVersion"); }

std::uint64_t genicam_doc::get_minor_version() { return get_version("MinorVersion"); }

std::uint64_t genicam_doc::get_subminor_version() { return get_version("SubMinorVersion"); }

std::string genicam_doc::dump(std::int32_t mode) {
    switch (mode) {
        case 0:
            return count_elements(root(), options_);
        case 1:
            return list_nodes();
        default:
            return {};
    }
}

std::string genicam_doc::list_nodes() const {
    node_listing listing;
    for (const named_node& named : nodes_)
        listing.add(named.name, named.node->get_eval()->get_dependent_count());
    return listing.text();
}

void genicam_doc::add_callback(INode* node, std::function<void(INode*)> callback) {
    callbacks_[node].functions.push_back(std::move(callback));
}

void genicam_doc::clear_callbacks(INode* node) {
    const auto found = callbacks_.find(node);
    if (found == callbacks_.end()) return;
    found->second.functions.clear();
    ++found->second.clearings;
}

// Those that are there now, as long as nobody clears them: what a callback registers waits for the next
// change, or one that registers itself would never come back. The entry stays where it is when others come.
void genicam_doc::fire_callbacks(INode* node) {
    const auto found = callbacks_.find(node);
    if (found == callbacks_.end()) return;
    const node_callbacks& registered = found->second;
    const std::size_t count = registered.functions.size();
    const std::uint64_t clearings = registered.clearings;
    for (std::size_t at = 0; at < count && registered.clearings == clearings; ++at) {
        const std::function<void(INode*)> callback = registered.functions[at];
        callback(node);
    }
}

void genicam_doc::add_dependent(IEval* owner, IEval* dependent) {
    if (!takes_dependents()) return;
    dependents_.add(*static_cast<node_base_data*>(owner), dependent);
}

bool genicam_doc::takes_dependents() const {
    assert(is_loading_ && "dependents are added while a description is loaded, and never later");
    return is_loading_;
}

gsl::span<IEval* const> genicam_doc::get_dependents(IEval* owner) {
    return dependents_[*static_cast<const node_base_data*>(owner)];
}

}  // namespace GenICam
