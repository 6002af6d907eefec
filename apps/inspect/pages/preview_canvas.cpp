#include "apps/inspect/pages/preview_canvas.h"

#include "adapter/interface_key.h"
#include "platform/text.h"
#include "propui/control_logic.h"
#include "propui/guarded_item.h"

namespace selvane_inspect {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;
using ZELPropUI::CZELItemDataBase;
using ZELPropUI::GuardedItem;
using ZELPropUI::InterfaceKey;
using ZELPropUI::ISliderController;

// The pages' own items have the address of the node for a key; there are no others here.
std::string feature_of(InterfaceKey key) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    return node != nullptr ? std::string(node->get_name()) : std::string();
}

// Over named access an item answers either question with the 8 bytes that the driver has, so that the kind of
// the feature decides which one is asked, as it does on a page. A page shows the units of physical values
// alone.
void add_limits(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    if (node != nullptr && node->get_node_type() == GenICam::node_type::floating) {
        AbsRangeInfo real;
        if (SUCCEEDED(GuardedItem(item).GetAbsRange(key, real))) {
            control.minimum = real.min;
            control.maximum = real.max;
        }
        SharedString unit;
        std::int32_t scale = ZELAdapterHelper::scale_linear;
        if (SUCCEEDED(GuardedItem(item).GetAbsUnit(key, unit, scale)))
            control.unit = platform::narrow(unit.View());
    } else {
        RangeInfo range;
        if (SUCCEEDED(GuardedItem(item).GetRange(key, range))) {
            control.minimum = range.min;
            control.maximum = range.max;
            control.step = range.step;
        }
    }
}

void show_number(ISliderController& controller, drawn_control& control) {
    control.enabled = ZELPropUI::IsEditable(controller);
    if (CZELItemDataBase* item = controller.GetItem()) add_limits(*item, controller.GetKey(), control);
    if (control.kind == control_kind::slider) {
        std::int32_t low = 0;
        std::int32_t high = 0;
        std::int32_t position = 0;
        if (controller.GetPositionRange(low, high)) {
            control.lowest_position = low;
            control.highest_position = high;
        }
        if (controller.GetPosition(position)) control.position = position;
    } else if (control.kind == control_kind::edit) {
        std::wstring text;
        if (controller.GetText(text)) control.text = platform::narrow(text);
    }
}

void show_entries(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    for (const SharedString& entry : ZELPropUI::EntriesOf(item, key))
        control.strings.push_back(platform::narrow(entry.View()));
    const auto selected = ZELPropUI::SelectionOf(item, key);
    if (!selected || *selected < 0) return;
    const auto at = static_cast<std::size_t>(*selected);
    if (at < control.strings.size()) control.text = control.strings[at];
}

void show_item(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    control.enabled = ZELPropUI::IsItemAvailable(item, key);
    if (control.kind == control_kind::combo) show_entries(item, key, control);
    if (control.kind == control_kind::check_box) control.checked = ZELPropUI::IsSwitchedOn(item, key);
}

}  // namespace

bool is_beyond_edge(const drawn_control& control) noexcept {
    const int height = control.kind == control_kind::combo ? 0 : control.rect.height;
    return control.rect.left + control.rect.width > page_width || control.rect.top + height > page_height;
}

void preview_canvas::add(const placed_control& placed) {
    drawn_control& control = page_.controls.emplace_back();
    control.kind = placed.kind;
    control.rect = placed.rect;
    control.text = platform::narrow(placed.text);
    control.feature = feature_of(placed.key);
    if (placed.controller != nullptr) show_number(*placed.controller, control);
    if (placed.item != nullptr) show_item(*placed.item, placed.key, control);
}

}  // namespace selvane_inspect
