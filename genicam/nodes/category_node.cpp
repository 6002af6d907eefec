#include "genicam/nodes/category_node.h"

#include "genicam/core/messages.h"
#include "genicam/genicam_doc.h"

namespace GenICam {

category_type::category_type(document_services* services, const described_element& xml, void* storage)
    : node_base_impl_ignore_dependent(services, xml),
      features_(static_cast<INode**>(storage), xml.count(child::pFeature)) {
    for (INode*& feature : features_) feature = nullptr;
}

void category_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    std::size_t found = 0;
    for (const known_child& feature : xml.known_children()) {
        if (feature.name != child::pFeature) continue;
        const std::string_view name = feature.text();
        if (INode* node = doc->find_node(name)) {
            features_[found++] = node;
        } else {
            report(messages::feature_unresolved, {xml, feature.element}, name);
        }
    }
    features_ = features_.first(found);
}

std::vector<INode*> category_type::get_features() const { return {features_.begin(), features_.end()}; }

}  // namespace GenICam
