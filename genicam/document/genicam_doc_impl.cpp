#include "genicam/document/genicam_doc_impl.h"

#include "genicam/base/node_state.h"
#include "genicam/base/xml_words.h"
#include "genicam/core/log.h"
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

constexpr std::string_view default_port_name = "Device";

// Eight bytes of a name as a number, in the order of the names.
std::uint64_t key_of(std::string_view name, std::size_t from) noexcept {
    std::uint64_t key = 0;
    for (std::size_t at = from; at < from + sizeof(key); ++at) {
        key = key << 8 | (at < name.size() ? static_cast<unsigned char>(name[at]) : 0U);
    }
    return key;
}

/// A name with its first bytes, in which most names differ.
struct name_order {
    std::uint64_t first;
    std::uint64_t second;
    std::string_view name;
    std::size_t position;  // of the element in the description

    [[nodiscard]] bool operator<(const name_order& other) const noexcept {
        if (first != other.first) return first < other.first;
        return second != other.second ? second < other.second : name < other.name;
    }
};

/// Where a name stands among all names, and whether it is the first of equal ones.
struct name_position {
    std::uint32_t number;
    bool is_first;
};

// Of the elements in the order of the description.
std::vector<name_position> sort_names(const std::vector<taken_element>& taken) {
    std::vector<name_order> order;
    order.reserve(taken.size());
    for (const taken_element& one : taken) {
        const std::string_view name = one.element.node_name();
        order.push_back({key_of(name, 0), key_of(name, sizeof(std::uint64_t)), name, order.size()});
    }
    std::sort(order.begin(), order.end());
    std::vector<name_position> positions(order.size());
    for (std::size_t at = 0; at < order.size(); ++at) {
        const bool is_first = at == 0 || order[at - 1] < order[at];
        positions[order[at].position] = {static_cast<std::uint32_t>(at), is_first};
    }
    return positions;
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

// The first of that name, or the end; of nodes in the order of their names.
std::vector<node_base_data*>::const_iterator first_of(const std::vector<node_base_data*>& nodes,
                                                      std::string_view name) {
    const auto found = std::lower_bound(
        nodes.begin(), nodes.end(), name,
        [](const node_base_data* node, std::string_view wanted) { return node->find_name() < wanted; });
    return found != nodes.end() && (*found)->find_name() == name ? found : nodes.end();
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
    make_nodes(taken);
    resolve_nodes(taken);
    const bool are_closed = close_lists();
    loading_.reset();
    return are_closed;
}

// In the order of the description; each goes to its position by name, which is its number.
void genicam_doc::make_nodes(const std::vector<taken_element>& taken) {
    const std::vector<name_position> positions = sort_names(taken);
    nodes_.resize(taken.size());
    dependents_.begin({nodes_.data(), nodes_.size()});
    loading_ = std::make_unique<loading>(dependents_, taken.size());
    loading_->described.reserve(taken.size());
    for (std::size_t at = 0; at < taken.size(); ++at) {
        INode* made = taken[at].chosen->construct(allocator_, this, taken[at].element);
        auto* node = static_cast<node_base_data*>(made->get_eval());
        node->set_number(positions[at].number);
        nodes_[positions[at].number] = node;
        loading_->described.push_back(node);
        if (!positions[at].is_first || !loading_->is_indexed) continue;
        loading_->is_indexed = loading_->index.add(node->find_name(), static_cast<std::uint32_t>(at));
    }
    for (node_base_data* node : nodes_) {
        if (node->get_node()->get_node_type() == node_type::port) ports_.push_back(node);
    }
}

// Messages come in the order of the names, and what is left for expressions is shared out in it. All else is
// resolved where it stands, beside what it mostly refers to.
void genicam_doc::resolve_nodes(const std::vector<taken_element>& taken) {
    const std::vector<node_base_data*>& described = loading_->described;
    default_port_ = find_port(default_port_name);
    const auto resolve = [&](std::size_t at) {
        loading_->closing.begin_turn(described[at]->number());
        described[at]->resolve_described(this, taken[at].element);
    };
    const bool is_heard = log_enabled(log_failure);
    std::vector<std::size_t> by_name;
    const dependent_closing& closing = loading_->closing;
    for (std::size_t at = 0; at < described.size() && !closing.is_exhausted(); ++at) {
        if (is_heard || taken[at].element.has(child::Expression)) {
            by_name.push_back(at);
        } else {
            resolve(at);
        }
    }
    std::sort(by_name.begin(), by_name.end(), [&described](std::size_t left, std::size_t right) {
        return described[left]->number() < described[right]->number();
    });
    for (const std::size_t at : by_name) {
        if (!closing.is_exhausted()) resolve(at);
    }
    formulas_.close();
}

bool genicam_doc::close_lists() {
    dependent_closing& closing = loading_->closing;
    bool is_exhausted = closing.is_exhausted();
    if (!is_exhausted) closing.begin();
    for (auto at = nodes_.begin(); at != nodes_.end() && !is_exhausted; ++at) {
        if ((*at)->states_streamable() && (*at)->get_node()->get_streamable())
            streamable_nodes_.push_back((*at)->get_node());
        (*at)->close_dependents();
        is_exhausted = closing.is_exhausted();
    }
    if (is_exhausted) {
        report(messages::too_many_dependents, {}, root().name(), get_model_name(),
               std::uint64_t{dependent_closing::most_entries});
        return false;
    }
    dependents_.close();
    return true;
}

// The first node of that name, or the end.
std::vector<node_base_data*>::const_iterator genicam_doc::find_first(std::string_view name) const {
    if (loading_ != nullptr && loading_->is_indexed) {
        const std::vector<node_base_data*>& described = loading_->described;
        const std::uint32_t position = loading_->index.find(
            name, [&](std::uint32_t at) { return is_same_text(described[at]->find_name(), name); });
        return position != name_index::not_found ? nodes_.begin() + described[position]->number()
                                                 : nodes_.end();
    }
    return first_of(nodes_, name);
}

INode* genicam_doc::find_node(std::string_view name) {
    if (name.empty()) return nullptr;
    const auto found = find_first(name);
    return found != nodes_.end() ? (*found)->get_node() : nullptr;
}

// Of several nodes with the name, one may be a port without being the first.
INode* genicam_doc::find_port(std::string_view name) {
    if (name.empty()) return default_port_;
    const auto found = first_of(ports_, name);
    return found != ports_.end() ? (*found)->get_node() : nullptr;
}

void genicam_doc::for_each_node(std::function<void(INode*)> fn) {
    for (node_base_data* node : nodes_) fn(node->get_node());
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
    for (node_base_data* node : nodes_) listing.add(node->find_name(), node->get_dependent_count());
    return listing.text();
}

void genicam_doc::add_callback(INode* node, std::function<void(INode*)>&& callback) {
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

// Entries of enumerations stand in no list of nodes, and get their numbers when they first depend on
// something.
std::uint32_t genicam_doc::number_of(IEval* node) {
    auto* base = static_cast<node_base_data*>(node);
    if (base->number() == node_base_data::no_number) base->set_number(dependents_.add_node(base));
    return base->number();
}

void genicam_doc::add_dependent(IEval* owner, IEval* dependent) {
    if (dependent == owner || !takes_dependents()) return;
    loading_->closing.add(number_of(owner), number_of(dependent));
}

bool genicam_doc::takes_dependents() const {
    assert(loading_ != nullptr && "dependents are added while a description is loaded, and never later");
    return loading_ != nullptr;
}

// What nodes without a value of their own were told is put into the lists of others while the description is
// loaded, and nothing is kept of it.
gsl::span<IEval* const> genicam_doc::get_dependents(IEval*) { return {}; }

}  // namespace GenICam
