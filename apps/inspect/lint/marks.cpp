#include "apps/inspect/lint/marks.h"

#include "adapter/item_discovery.h"

namespace selvane_inspect {

using GenICam::INode;

GUID mark_of(INode& node, const char* mark) { return genicam_adapter::read_extension_guid(&node, mark); }

bool is_marked(INode& node, const char* mark) { return mark_of(node, mark) != platform::null_guid; }

text_position position_of_mark(const lint_context& context, INode& node, const char* mark) {
    const auto element = context.tree().find(node);
    if (!element) return {};
    const pugi::xml_node xml = context.tree().at(*element).xml;
    const pugi::xml_node extension = xml.child("Extension").child(mark);
    return context.tree().position_of(extension ? extension : xml);
}

void for_each_marked_element(lint_context& context, const std::function<void(INode&)>& visit) {
    if (!context.is_loaded()) return;
    context.subject().document()->for_each_node([&](INode* node) {
        if (is_marked(*node, element_mark)) visit(*node);
    });
}

}  // namespace selvane_inspect
