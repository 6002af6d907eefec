#include "genicam/base/node_link.h"

#include "genicam/genicam_doc.h"

namespace GenICam {

bool node_link::resolve(IGenICamDoc* doc, const described_element& xml, child name, node_base_data& owner,
                        const message<>& unresolved) {
    node_ = doc->find_node(xml.text(name));
    if (node_ != nullptr) {
        node_->get_eval()->add_dependent(owner.get_node());
    } else {
        report(unresolved, {xml, name});
    }
    return node_ != nullptr;
}

}  // namespace GenICam
