#pragma once

#include "items/item_contract.h"
#include "propui/page_canvas.h"

#include <string>
#include <string_view>
#include <vector>

namespace ZELPropUI {

/// Where a page's items come from. Everything is borrowed for the time of the layout.
struct PageSources {
    IUnknown* filter = nullptr;
    const std::vector<std::wstring>* groups = nullptr;  ///< an empty list lets every item through
    ZELAdapterHelper::RecordSpan<ZELAdapterHelper::ItemRecord> built_in;
    ZELAdapterHelper::RecordSpan<ZELAdapterHelper::ItemRecord> described;
};

/// Turns item records into rows of controls on a canvas.
class PageLayout {
public:
    /// The canvas is not needed, and may be null, where the page is only measured.
    PageLayout(const PageSources& sources, IPageCanvas* canvas) : sources_(sources), canvas_(canvas) {}

    /// True if at least one item has something to show; that is all that a measuring run finds out.
    bool BuildPage(bool measure_only);

    /// The rows of one item; advances `y`. True if the item has a supported, visible element.
    bool LayoutItem(bool measure_only, const ZELAdapterHelper::ItemRecord& record, CZELItemDataBase& item,
                    int& y);

    /// The controls of one element; advances `x`. True if it made any.
    bool CreateElementControls(const ZELAdapterHelper::ItemRecord& record,
                               const ZELAdapterHelper::ElementRecord& element, CZELItemDataBase& item, int& x,
                               int y, std::wstring_view label);

private:
    using ItemRecord = ZELAdapterHelper::ItemRecord;
    using ElementRecord = ZELAdapterHelper::ElementRecord;

    // Each places one thing at `x`, `y` and moves `x` behind it.
    void PlaceLabel(std::wstring_view text, int& x, int y);
    bool PlaceAbsoluteValue(const ItemRecord& record, CZELItemDataBase& item, InterfaceKey key, int& x, int y,
                            std::wstring_view label);
    void PlaceRange(CZELItemDataBase& item, InterfaceKey key, int& x, int y, std::wstring_view label);
    void PlaceSlider(ISliderController& controller, int text_width, int& x, int y, std::wstring_view label);
    void PlaceCombo(CZELItemDataBase& item, InterfaceKey key, int& x, int y, std::wstring_view label);
    [[nodiscard]] PageRect PlaceForCaption(std::wstring_view caption, int& x, int y);
    // The label and the head elements of an item; gives where the row ends.
    [[nodiscard]] int PlaceHeadRow(const ItemRecord& record,
                                   const std::vector<const ElementRecord*>& elements, CZELItemDataBase& item,
                                   int y);

    PageSources sources_;
    IPageCanvas* canvas_;
};

}  // namespace ZELPropUI
