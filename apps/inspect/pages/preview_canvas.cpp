#include "apps/inspect/pages/preview_canvas.h"

#include "adapter/interface_key.h"
#include "apps/inspect/pages/dialog_font.h"
#include "platform/text.h"
#include "propui/control_logic.h"
#include "propui/guarded_item.h"
#include "propui/scale_measure.h"

#include <utility>

namespace selvane_inspect {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;
using ZELPropUI::CZELItemDataBase;
using ZELPropUI::GuardedItem;
using ZELPropUI::InterfaceKey;
using ZELPropUI::ISliderController;
using ZELPropUI::PageRect;

constexpr int dots_per_inch = 96;
constexpr std::string_view control_words[] = {"label", "slider",    "edit",  "spin button",
                                              "combo", "check box", "button"};

// The pages' own items have the address of the node for a key; there are no others here.
std::string feature_of(InterfaceKey key) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    return node != nullptr ? std::string(node->get_name()) : std::string();
}

// Over named access an item answers either question with the 8 bytes that the driver has, so that the kind of
// the feature decides which one is asked, as it does on a page.
void add_limits(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    if (node != nullptr && node->get_node_type() == GenICam::node_type::floating) {
        AbsRangeInfo real;
        if (SUCCEEDED(GuardedItem(item).GetAbsRange(key, real))) {
            control.minimum = real.min;
            control.maximum = real.max;
        }
    } else {
        RangeInfo range;
        if (SUCCEEDED(GuardedItem(item).GetRange(key, range))) {
            control.minimum = range.min;
            control.maximum = range.max;
            control.step = range.step;
        }
    }
    SharedString unit;
    std::int32_t scale = ZELAdapterHelper::scale_linear;
    if (SUCCEEDED(GuardedItem(item).GetAbsUnit(key, unit, scale))) {
        control.unit = platform::narrow(unit.View());
    }
}

}  // namespace

std::string_view control_word(control_kind kind) noexcept {
    return control_words[static_cast<std::size_t>(kind)];
}

bool is_beyond_edge(const drawn_control& control) noexcept {
    const int height = control.kind == control_kind::combo ? 0 : control.place.height;
    return control.place.left + control.place.width > page_width || control.place.top + height > page_height;
}

int preview_canvas::TextWidth(std::wstring_view text) { return dialog_text_width(text); }

int preview_canvas::ScaleX(int measure) { return ZELPropUI::ScaleMeasure(measure, dots_per_inch); }

int preview_canvas::ScaleY(int measure) { return ZELPropUI::ScaleMeasure(measure, dots_per_inch); }

drawn_control& preview_canvas::add(control_kind kind, const PageRect& place, std::wstring_view text) {
    drawn_control& control = page_.controls.emplace_back();
    control.kind = kind;
    control.place = place;
    control.text = platform::narrow(text);
    return control;
}

drawn_control& preview_canvas::add_on(control_kind kind, const PageRect& place,
                                      ISliderController& controller) {
    drawn_control& control = add(kind, place, {});
    control.enabled = ZELPropUI::IsEditable(controller);
    control.feature = feature_of(controller.GetKey());
    if (CZELItemDataBase* item = controller.GetItem()) add_limits(*item, controller.GetKey(), control);
    return control;
}

drawn_control& preview_canvas::add_for(control_kind kind, const PageRect& place, CZELItemDataBase& item,
                                       InterfaceKey key, std::wstring_view text) {
    drawn_control& control = add(kind, place, text);
    control.enabled = ZELPropUI::IsItemAvailable(item, key);
    control.feature = feature_of(key);
    return control;
}

void preview_canvas::AddLabel(const PageRect& place, std::wstring_view text) {
    add(control_kind::label, place, text);
}

void preview_canvas::AddSlider(const PageRect& place, ISliderController& controller) {
    drawn_control& control = add_on(control_kind::slider, place, controller);
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t position = 0;
    if (controller.GetPositionRange(low, high)) {
        control.lowest_position = low;
        control.highest_position = high;
    }
    if (controller.GetPosition(position)) control.position = position;
}

void preview_canvas::AddEdit(const PageRect& place, ISliderController& controller) {
    drawn_control& control = add_on(control_kind::edit, place, controller);
    std::wstring text;
    if (controller.GetText(text)) control.text = platform::narrow(text);
}

void preview_canvas::AddSpinButton(const PageRect& place, ISliderController& controller) {
    add_on(control_kind::spin_button, place, controller);
}

void preview_canvas::AddCombo(const PageRect& place, CZELItemDataBase& item, InterfaceKey key) {
    drawn_control& control = add_for(control_kind::combo, place, item, key, {});
    for (const SharedString& entry : ZELPropUI::EntriesOf(item, key))
        control.strings.push_back(platform::narrow(entry.View()));
    const auto selected = ZELPropUI::SelectionOf(item, key);
    if (!selected || *selected < 0) return;
    const auto at = static_cast<std::size_t>(*selected);
    if (at < control.strings.size()) control.text = control.strings[at];
}

void preview_canvas::AddSwitch(const PageRect& place, CZELItemDataBase& item, InterfaceKey key,
                               std::wstring_view caption) {
    drawn_control& control = add_for(control_kind::check_box, place, item, key, caption);
    control.checked = ZELPropUI::IsSwitchedOn(item, key);
}

void preview_canvas::AddButton(const PageRect& place, CZELItemDataBase& item, InterfaceKey key,
                               std::wstring_view caption) {
    add_for(control_kind::button, place, item, key, caption);
}

}  // namespace selvane_inspect
