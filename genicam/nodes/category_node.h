#pragma once

#include "genicam/base/node_state.h"
#include "genicam/nodes/node_classes.h"

namespace GenICam {

/// `Category`: a plain list of features.
class category_type final : public node_base_impl_ignore_dependent,
                            public implement_inode<category_type, ICategory> {
public:
    /// `storage` has room for one pointer per `pFeature` child.
    category_type(document_services* services, const described_element& xml, void* storage);
    INode* get_node() override { return this; }
    [[nodiscard]] node_type get_node_type() const override { return node_type::category; }
    void _resolve_references(IGenICamDoc* doc, const described_element& xml) override;
    [[nodiscard]] std::vector<INode*> get_features() const override;

private:
    gsl::span<INode*> features_;
};

}  // namespace GenICam
