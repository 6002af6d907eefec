#include "propui/page_layout.h"

#include "propui/guarded_item.h"
#include "propui/item_choice.h"
#include "propui/page_measures.h"

#include <algorithm>

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceEntry;
using ZELAdapterHelper::ItemRecord;
using ElementList = std::vector<const ElementRecord*>;

// What stands on an item's head row, in this order.
constexpr const GUID* head_elements[] = {&ZELAdapterHelper::element_value,
                                         &ZELAdapterHelper::element_automatic,
                                         &ZELAdapterHelper::element_one_push};

bool BelongsToHeadRow(const GUID& id) {
    return std::any_of(std::begin(head_elements), std::end(head_elements),
                       [&](const GUID* head) { return *head == id; });
}

const ElementRecord* Find(const ElementList& elements, const GUID& id) {
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const auto* e) { return e->id == id; });
    return found != elements.end() ? *found : nullptr;
}

ElementList VisibleElements(const ItemRecord& record, CZELItemDataBase& item) {
    ElementList visible;
    for (const ElementRecord& element : ZELAdapterHelper::ElementsOf(record)) {
        for (const InterfaceEntry& entry : ZELAdapterHelper::InterfacesOf(element)) {
            if (!GuardedItem(item).SupportsInterface(entry.key)) continue;
            if (element.level < 1) visible.push_back(&element);
            break;
        }
    }
    return visible;
}

// The colour gains of a white balance stand on rows of their own and leave no place for a common value.
bool LacksCommonValue(const ItemRecord& record, const ElementList& elements) {
    return record.id == ZELAdapterHelper::item_white_balance &&
           Find(elements, ZELAdapterHelper::element_white_balance_blue) != nullptr;
}

bool IsLinked(const ElementRecord& element, const GUID& previous) {
    return previous != platform::null_guid &&
           (previous == element.linked[0] || previous == element.linked[1]);
}

}  // namespace

bool PageLayout::BuildPage(bool measure_only) {
    int y = measure_only ? measure::page_top : canvas_->ScaleY(measure::page_top);
    bool shown = false;
    for (const ItemRecord* record : ChooseItems(sources_)) {
        if (canvas_ != nullptr && canvas_->IsGone()) break;
        const GuardedItem item = GuardedItem::Make(*record, sources_.filter);
        if (item && LayoutItem(measure_only, *record, *item.get(), y)) shown = true;
    }
    return shown;
}

bool PageLayout::LayoutItem(bool measure_only, const ItemRecord& record, CZELItemDataBase& item, int& y) {
    const ElementList elements = VisibleElements(record, item);
    if (elements.empty() || measure_only) return !elements.empty();

    int x = PlaceHeadRow(record, elements, item, y);
    y += canvas_->ScaleY(measure::row_pitch);
    GUID previous = ZELAdapterHelper::element_value;
    for (const ElementRecord* element : elements) {
        if (canvas_->IsGone()) break;
        if (BelongsToHeadRow(element->id)) continue;
        const bool linked = IsLinked(*element, previous);
        if (!linked) x = canvas_->ScaleX(measure::element_indent);
        const int top = linked ? y - canvas_->ScaleY(measure::row_pitch) : y;
        const bool placed = CreateElementControls(record, *element, item, x, top, element->name);
        if (placed && !linked) y += canvas_->ScaleY(measure::row_pitch);
        previous = element->id;
    }
    return true;
}

int PageLayout::PlaceHeadRow(const ItemRecord& record, const ElementList& elements, CZELItemDataBase& item,
                             int y) {
    int x = canvas_->ScaleX(measure::left_margin);
    PlaceLabel(record.name, x, y);
    for (const GUID* id : head_elements) {
        const ElementRecord* element = Find(elements, *id);
        if (element == nullptr) continue;
        if (*id == ZELAdapterHelper::element_value && LacksCommonValue(record, elements)) continue;
        CreateElementControls(record, *element, item, x, y, {});
    }
    return x;
}

void PageLayout::PlaceLabel(std::wstring_view text, int& x, int y) {
    const int width = std::max(canvas_->TextWidth(text), canvas_->ScaleX(measure::label_min_width));
    canvas_->AddLabel({x, y, width, canvas_->ScaleY(measure::row_height)}, text);
    x += width + canvas_->ScaleX(measure::gap);
}

}  // namespace ZELPropUI
