#include "genicam/base/node_link.h"

#include "genicam/genicam_doc.h"

namespace GenICam {

bool depend_on(INode* source, INode* self) {
    if (source == nullptr) return false;
    source->get_eval()->add_dependent(self);
    return true;
}

bool node_link::resolve(IGenICamDoc* doc, const described_element& xml, child name, node_base_data& owner,
                        const message<>& unresolved) {
    node_ = doc->find_node(xml.text(name));
    const bool is_there = depend_on(node_, owner.get_node());
    if (!is_there) report(unresolved, {xml, name});
    return is_there;
}

}  // namespace GenICam
