#include "inspection/description_tree.h"

#include "genicam/document/node_facts.h"

namespace selvane_inspect {

description_tree::description_tree(const source_text& source) : source_(source) {
    const std::string_view text = source.utf8();
    const pugi::xml_parse_result parsed =
        xml_.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (parsed) {
        collect();
    } else {
        const auto offset = static_cast<std::size_t>(parsed.offset);
        malformed_ = defect{parsed.description(), source.position_of(offset)};
    }
}

void description_tree::collect() {
    GenICam::document_allocator allocator;
    for (GenICam::element_walk walk(root(), page_options); walk.next();) {
        const GenICam::taken_element& taken = walk.taken();
        taken.chosen->reserve(allocator, taken.element);
        node_element& element = add(taken.element, taken.chosen);
        if (taken.element.struct_reg() != nullptr) element.structure = taken.element.struct_reg()->xml();
    }
    arena_bytes_ = allocator.reserved_bytes();
    const std::size_t nodes = elements_.size();
    for (element_index index = 0; index < nodes; ++index) {
        const pugi::xml_node xml = elements_[index].xml;
        if (std::string_view(xml.name()) != "Enumeration") continue;
        for (const pugi::xml_node entry : xml.children("EnumEntry")) add(entry, nullptr);
    }
}

node_element& description_tree::add(pugi::xml_node xml, const GenICam::node_class* made) {
    const std::string_view name = xml.attribute("Name").value();
    by_offset_.emplace(xml.offset_debug(), elements_.size());
    if (made != nullptr && !name.empty()) by_name_[name].push_back(elements_.size());
    return elements_.emplace_back(node_element{xml, name, made});
}

const std::vector<element_index>& description_tree::find(std::string_view name) const {
    static const std::vector<element_index> none;
    const auto found = by_name_.find(name);
    return found != by_name_.end() ? found->second : none;
}

std::optional<element_index> description_tree::find(pugi::xml_node xml) const {
    const auto found = by_offset_.find(xml.offset_debug());
    if (found == by_offset_.end()) return std::nullopt;
    return found->second;
}

// Both trees are made of the same text, so that an element stands at the same index in both.
std::optional<element_index> description_tree::find(GenICam::INode& node) const {
    return find(GenICam::element_of(node));
}

text_position description_tree::position_of(pugi::xml_node xml) const {
    const std::ptrdiff_t offset = xml.offset_debug();
    if (offset < 1) return {};
    return source_.position_of(static_cast<std::size_t>(offset) - 1);  // the bracket before the name
}

text_position description_tree::position_of(pugi::xml_node xml, pugi::xml_attribute attribute) const {
    const std::ptrdiff_t offset = xml.offset_debug();
    if (offset < 1 || !attribute) return position_of(xml);
    // Names of elements and attributes lie in the same copy of the text.
    return source_.position_of(static_cast<std::size_t>(offset + (attribute.name() - xml.name())));
}

}  // namespace selvane_inspect
