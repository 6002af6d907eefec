#pragma once

#include "apps/check/driver_watch.h"
#include "propui/page_canvas.h"

#include <cstddef>

namespace selvane_check {

/// A page without a window: asks for each control what the control would ask when it is shown. For described
/// items it looks at the answers as well, and writes values back where that is wanted.
class asking_canvas final : public ZELPropUI::IPageCanvas {
public:
    /// Without a watch the items are built-in ones.
    asking_canvas(finding_book& findings, const driver_watch* described, bool write)
        : findings_(findings), described_(described), write_(write) {}

    /// Sliders with their edits, boxes, check boxes and buttons so far.
    [[nodiscard]] std::size_t controls() const noexcept { return controls_; }

    int TextWidth(std::wstring_view text) override;
    int ScaleX(int measure) override { return measure; }
    int ScaleY(int measure) override { return measure; }
    void AddLabel(const ZELPropUI::PageRect&, std::wstring_view) override {}
    void AddSlider(const ZELPropUI::PageRect& place, ZELPropUI::ISliderController& controller) override;
    void AddEdit(const ZELPropUI::PageRect& place, ZELPropUI::ISliderController& controller) override;
    void AddSpinButton(const ZELPropUI::PageRect&, ZELPropUI::ISliderController&) override {}
    void AddCombo(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                  ZELPropUI::InterfaceKey key) override;
    void AddSwitch(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) override;
    void AddButton(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) override;

private:
    [[nodiscard]] bool may_write(ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key) const;
    void judge_write(ZELPropUI::InterfaceKey key, HRESULT result);
    void write_back(ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key);
    void judge_entry(ZELPropUI::InterfaceKey key, bool selected);

    finding_book& findings_;
    const driver_watch* described_;
    bool write_;
    std::size_t controls_ = 0;
};

}  // namespace selvane_check
