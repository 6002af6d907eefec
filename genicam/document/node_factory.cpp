#include "genicam/document/node_factory.h"

#include "genicam/base/xml_words.h"
#include "genicam/core/children.h"
#include "genicam/core/name_table.h"
#include "genicam/core/number_parser.h"
#include "genicam/nodes/boolean_nodes.h"
#include "genicam/nodes/category_node.h"
#include "genicam/nodes/command_nodes.h"
#include "genicam/nodes/converter_nodes.h"
#include "genicam/nodes/enumeration_nodes.h"
#include "genicam/nodes/float_nodes.h"
#include "genicam/nodes/float_reg_nodes.h"
#include "genicam/nodes/int_reg_nodes.h"
#include "genicam/nodes/integer_nodes.h"
#include "genicam/nodes/masked_int_reg_nodes.h"
#include "genicam/nodes/port_nodes.h"
#include "genicam/nodes/register_node.h"
#include "genicam/nodes/string_nodes.h"
#include "genicam/nodes/swissknife_nodes.h"

#include <iterator>
#include <new>

namespace GenICam {
namespace {

constexpr std::uint64_t alignment = 8;

template <class T>
constexpr bool is_enumeration =
    std::is_same_v<T, enumeration_Value_type> || std::is_same_v<T, enumeration_pValue_type>;

template <class T>
constexpr bool has_formulas =
    std::is_same_v<T, int_swissknife_type> || std::is_same_v<T, float_swissknife_type> ||
    std::is_same_v<T, int_converter_type> || std::is_same_v<T, float_converter_type>;

void reserve_links(alloc_itf& allocator, const described_element& element) {
    if (has_access_links(element)) allocator.reserve(sizeof(access_links), 1, alignment, false);
}

// What a node, and some classes of them, keep beside themselves in the arena.
template <class T>
void reserve_node(alloc_itf& allocator, const described_element& element, bool has_destructor) {
    allocator.reserve(sizeof(T), 1, alignment, has_destructor);
    reserve_links(allocator, element);
    if constexpr (std::is_same_v<T, category_type>) {
        // NOLINTNEXTLINE(bugprone-sizeof-expression): pointers are what is listed
        allocator.reserve(sizeof(INode*), element.count(child::pFeature), alignment, false);
    } else if constexpr (is_enumeration<T>) {
        allocator.reserve(sizeof(enum_entry_type), element.count(child::EnumEntry), alignment, false);
        allocator.reserve(sizeof(std::uint32_t), enum_entries::numbers_for(element.entries().size()),
                          alignment, false);
        for (const described_element& entry : element.entries()) reserve_links(allocator, entry);
    } else if constexpr (has_formulas<T>) {
        allocator.reserve(sizeof(variable_source), element.count(child::pVariable), alignment, false);
    }
}

template <class T>
T* construct_node(alloc_itf& allocator, document_services* services, const described_element& element) {
    void* storage = allocator.allocate(sizeof(T), alignment);
    if constexpr (std::is_same_v<T, category_type>) {
        return ::new (storage)
            T(services, element,
              // NOLINTNEXTLINE(bugprone-sizeof-expression): pointers are what is listed
              allocator.allocate_array(sizeof(INode*), element.count(child::pFeature), alignment));
    } else if constexpr (is_enumeration<T>) {
        return ::new (storage)
            T(services, element,
              allocator.allocate_array(sizeof(enum_entry_type), element.count(child::EnumEntry), alignment));
    } else {
        return ::new (storage) T(services, element);
    }
}

template <class T, bool owns_memory>
constexpr node_class make_class(std::string_view name) {
    static_assert(alignof(T) <= alignment);
    static_assert(owns_memory || std::is_trivially_destructible_v<T>);
    constexpr bool has_destructor = !std::is_trivially_destructible_v<T>;
    return {
        name, sizeof(T), owns_memory,
        [](alloc_itf& allocator, const described_element& element) {
            reserve_node<T>(allocator, element, has_destructor);
        },
        [](alloc_itf& allocator, document_services* services, const described_element& element) -> INode* {
            T* node = construct_node<T>(allocator, services, element);
            if constexpr (has_destructor) {
                allocator.add_destructor(
                    {[](void* object) noexcept { static_cast<T*>(object)->~T(); }, node});
            }
            return node->get_node();
        }};
}

struct decision_rule {
    std::string_view element;
    bool (*holds)(const described_element& element);
    node_class made;
    bool has_address_formulas;  // each direct child IntSwissKnife of the element is a node as well
};

bool always(const described_element&) { return true; }

template <child... Names>
bool has_all(const described_element& element) {
    return (element.has(Names) && ...);
}

template <child... Names>
bool has_any(const described_element& element) {
    return element.present().has_any(Names...);
}

bool has_read_only_value(const described_element& element) {
    return element.has(child::Value) && element.text(child::ImposedAccessMode) == "RO";
}

bool has_constant_address(const described_element& element) {
    return element.has(child::Address) &&
           !element.present().has_any(child::pAddress, child::IntSwissKnife, child::pIndex);
}

bool has_constant_span(const described_element& element) {
    return has_constant_address(element) && element.has(child::Length) && !element.has(child::pLength);
}

#define NODE(element, condition, type, owns_memory, has_address_formulas, ...) \
    {element, condition, make_class<type, owns_memory>(#type), has_address_formulas},
constexpr decision_rule decision_list[] = {
#include "genicam/nodes/node_rows.inc"
};
#undef NODE

constexpr std::size_t rule_count = std::size(decision_list);

constexpr std::size_t count_elements() {
    std::size_t count = 1;
    for (std::size_t at = 1; at < rule_count; ++at)
        count += decision_list[at].element != decision_list[at - 1].element;
    return count;
}

constexpr std::size_t element_count = count_elements();

// The names that rules are about, and where the rules of each begin.
struct element_index {
    std::array<std::string_view, element_count> names{};
    std::array<std::size_t, element_count + 1> first_rule{};
};

constexpr element_index make_element_index() {
    element_index index;
    std::size_t name = 0;
    for (std::size_t at = 0; at < rule_count; ++at) {
        if (at != 0 && decision_list[at].element == decision_list[at - 1].element) continue;
        index.names[name] = decision_list[at].element;
        index.first_rule[name] = at;
        ++name;
    }
    index.first_rule[element_count] = rule_count;
    return index;
}

constexpr element_index elements = make_element_index();
constexpr name_table<element_count> element_names(elements.names);

const decision_rule* find_rule(std::size_t name, const described_element& element) {
    for (std::size_t at = elements.first_rule[name]; at < elements.first_rule[name + 1]; ++at) {
        if (decision_list[at].holds(element)) return &decision_list[at];
    }
    return nullptr;
}

constexpr std::array<node_class, rule_count> make_class_list() {
    std::array<node_class, rule_count> classes{};
    for (std::size_t at = 0; at < rule_count; ++at) classes[at] = decision_list[at].made;
    return classes;
}

constexpr std::array<node_class, rule_count> class_list = make_class_list();

constexpr std::array<std::string_view, 2> container_list = {"Group", "StructReg"};
constexpr name_table<container_list.size()> containers(container_list);

bool is_debug_property(const described_element& element) {
    if (!element.has(child::Extension)) return false;
    std::int64_t is_debug = 0;
    return parse_int(child_text(element.child("Extension"), "ZELIsDebugProperty"), is_debug) != 0 &&
           is_debug != 0;
}

bool is_container(pugi::xml_node element) { return containers.find(element.name()) != no_such_name; }

}  // namespace

gsl::span<const node_class> all_node_classes() noexcept { return class_list; }

element_walk::element_walk(pugi::xml_node root, const load_options& options)
    : root_(root), at_(root.first_child()), keep_debug_properties_(options.keep_debug_properties) {
    open(root);
}

void element_walk::open(pugi::xml_node container) {
    open_container opened;
    opened.xml = container;
    opened.is_struct = container.name() == std::string_view("StructReg");
    opened.sharing = containers_.size();
    // Entries in a group share with the StructReg around it, if there is one.
    if (!opened.is_struct && !containers_.empty()) {
        const std::size_t outer = containers_.back().sharing;
        if (containers_[outer].is_struct) opened.sharing = outer;
    }
    containers_.push_back(opened);
}

// In document order: into containers, past everything else, and back up where a container ends.
void element_walk::advance() {
    if (is_container(at_) && at_.first_child()) {
        open(at_);
        at_ = at_.first_child();
        return;
    }
    while (at_ && !at_.next_sibling()) {
        at_ = at_.parent();
        containers_.pop_back();
        if (at_ == root_) at_ = pugi::xml_node();
    }
    if (at_) at_ = at_.next_sibling();
}

shared_struct_reg* element_walk::find_shared_struct_reg() {
    open_container& shared = containers_[containers_.back().sharing];
    if (shared.struct_reg == nullptr) {
        shared.struct_reg = &struct_regs_.emplace_back(
            scanner_.describe(shared.xml, shared_struct_reg::first_of, shared_struct_reg::all_of));
    }
    return shared.struct_reg;
}

bool element_walk::take(pugi::xml_node xml) {
    const std::size_t name = element_names.find(xml.name());
    if (name == no_such_name) return false;
    described_element& element = taken_.element;
    element = scanner_.describe(xml);
    const decision_rule* rule = find_rule(name, element);
    if (rule != nullptr && rule->has_address_formulas && element.has(child::IntSwissKnife)) {
        embedded_ = xml.child("IntSwissKnife");
    }
    if (rule == nullptr || (!keep_debug_properties_ && is_debug_property(element))) return false;
    taken_.chosen = &rule->made;
    if (rule->element == "StructEntry") element.set_struct_reg(find_shared_struct_reg());
    return true;
}

bool element_walk::next() {
    while (at_ || embedded_) {
        bool is_taken = false;
        if (embedded_) {
            const pugi::xml_node candidate = embedded_;
            embedded_ = embedded_.next_sibling("IntSwissKnife");
            is_taken = take(candidate);
        } else {
            is_taken = take(at_);
            advance();
        }
        if (is_taken) return true;
    }
    return false;
}

}  // namespace GenICam
