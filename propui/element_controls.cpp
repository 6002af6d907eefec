#include "propui/control_logic.h"
#include "propui/guarded_item.h"
#include "propui/number_text.h"
#include "propui/page_layout.h"
#include "propui/page_measures.h"

#include <algorithm>

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceEntry;
using ZELAdapterHelper::InterfaceType;
using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::SharedString;
using ControllerPtr = platform::com_ptr<ISliderController>;

constexpr std::wstring_view seconds = L"sec";

const InterfaceEntry* RichestInterface(const ElementRecord& element, CZELItemDataBase& item) {
    const InterfaceEntry* chosen = nullptr;
    for (const InterfaceEntry& entry : ZELAdapterHelper::InterfacesOf(element)) {
        if (chosen != nullptr && entry.type <= chosen->type) continue;
        const bool supported = GuardedItem(item).SupportsInterface(entry.key);
        if (supported && entry.type <= InterfaceType::AbsoluteValue) chosen = &entry;
    }
    return chosen;
}

// An item that tells limits and no unit is shown without one.
SharedString UnitOf(CZELItemDataBase& item, InterfaceKey key) {
    SharedString unit;
    std::int32_t scale = ZELAdapterHelper::scale_linear;
    const HRESULT result = GuardedItem(item).GetAbsUnit(key, unit, scale);
    return SUCCEEDED(result) ? unit : SharedString();
}

ControllerPtr MakeAbsValController(const ItemRecord& record, CZELItemDataBase& item, InterfaceKey key,
                                   std::wstring_view unit) {
    const bool exposure = record.id == ZELAdapterHelper::item_exposure && unit == seconds;
    if (exposure) return ControllerPtr::attach(new CAbsValExposureSliderController(&item, key));
    return ControllerPtr::attach(new CAbsValSliderController(&item, key));
}

}  // namespace

bool PageLayout::CreateElementControls(const ItemRecord& record, const ElementRecord& element,
                                       CZELItemDataBase& item, int& x, int y, std::wstring_view label) {
    const InterfaceEntry* chosen = RichestInterface(element, item);
    if (chosen == nullptr) return false;
    canvas_->BeginElement(record.name, element.name);
    switch (chosen->type) {
        case InterfaceType::AbsoluteValue:
            return PlaceAbsoluteValue(record, item, chosen->key, x, y, label);
        case InterfaceType::MapStrings:
            PlaceCombo(item, chosen->key, x, y, label);
            break;
        case InterfaceType::Range:
            PlaceRange(item, chosen->key, x, y, label);
            break;
        case InterfaceType::Button:
            canvas_->AddButton(PlaceForCaption(element.name, x, y), item, chosen->key, element.name);
            break;
        case InterfaceType::Switch:
            canvas_->AddSwitch(PlaceForCaption(element.name, x, y), item, chosen->key, element.name);
            break;
    }
    return true;
}

bool PageLayout::PlaceAbsoluteValue(const ItemRecord& record, CZELItemDataBase& item, InterfaceKey key,
                                    int& x, int y, std::wstring_view label) {
    AbsRangeInfo range;
    const HRESULT result = GuardedItem(item).GetAbsRange(key, range);
    if (FAILED(result)) return false;
    const SharedString unit = UnitOf(item, key);
    const ControllerPtr controller = MakeAbsValController(record, item, key, unit.View());

    int widest = 0;
    for (const double value : {range.min, range.max, (range.max + range.min) * 0.5}) {
        widest = std::max(widest, canvas_->TextWidth(FormatLimit(value, unit.View())));
    }
    PlaceSlider(*controller, widest + canvas_->ScaleX(measure::text_margin), x, y, label);
    return true;
}

void PageLayout::PlaceRange(CZELItemDataBase& item, InterfaceKey key, int& x, int y,
                            std::wstring_view label) {
    const auto controller = ControllerPtr::attach(new CRangeSliderController(&item, key));
    PlaceSlider(*controller, 0, x, y, label);
}

void PageLayout::PlaceSlider(ISliderController& controller, int text_width, int& x, int y,
                             std::wstring_view label) {
    const int usual_edit_width = canvas_->ScaleX(measure::edit_width);
    const int edit_width = std::max(usual_edit_width, text_width);
    // A wide edit takes its room from the slider.
    const int slider_width = canvas_->ScaleX(measure::slider_width) - (edit_width - usual_edit_width);
    const int edit_height = canvas_->ScaleY(measure::edit_height);

    if (!label.empty()) PlaceLabel(label, x, y);
    const ElementRefresh refresh(controller);
    canvas_->AddSlider({x, y, slider_width, canvas_->ScaleY(measure::row_height)}, controller);
    x += slider_width + canvas_->ScaleX(measure::gap);
    canvas_->AddEdit({x, y, edit_width, edit_height}, controller);
    x += edit_width;
    canvas_->AddSpinButton({x, y, canvas_->ScaleX(measure::spin_width), edit_height}, controller);
    x += canvas_->ScaleX(measure::spin_advance);
}

void PageLayout::PlaceCombo(CZELItemDataBase& item, InterfaceKey key, int& x, int y,
                            std::wstring_view label) {
    int width = canvas_->ScaleX(measure::combo_extra) + canvas_->ScaleX(measure::edit_width) +
                canvas_->ScaleX(measure::slider_width);
    for (const SharedString& text : EntriesOf(item, key))
        width = std::max(width, canvas_->TextWidth(text.View()));

    if (!label.empty()) PlaceLabel(label, x, y);
    canvas_->AddCombo({x, y, width, canvas_->ScaleY(measure::combo_height)}, item, key);
    x += width + canvas_->ScaleX(measure::gap);
}

PageRect PageLayout::PlaceForCaption(std::wstring_view caption, int& x, int y) {
    const int width = canvas_->TextWidth(caption) + measure::caption_margin;
    const PageRect rect{x, y, width, canvas_->ScaleY(measure::row_height)};
    x += width + canvas_->ScaleX(measure::gap);
    return rect;
}

}  // namespace ZELPropUI
