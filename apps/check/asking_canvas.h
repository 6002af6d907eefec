#pragma once

#include "apps/check/driver_watch.h"
#include "inspection/pages/dialog_canvas.h"

#include <cstddef>

namespace selvane_check {

/// A page without a window: asks for each control what the control would ask when it is shown. For described
/// items it looks at the answers as well, and writes values back where that is wanted.
class asking_canvas final : public selvane_inspect::dialog_canvas {
public:
    /// Without a watch the items are built-in ones.
    asking_canvas(finding_book& findings, const driver_watch* described, bool write)
        : findings_(findings), described_(described), write_(write) {}

    /// Sliders with their edits, boxes, check boxes and buttons so far.
    [[nodiscard]] std::size_t controls() const noexcept { return controls_; }

private:
    void add(const selvane_inspect::placed_control& control) override;
    static void ask_slider(ZELPropUI::ISliderController& controller);
    void ask_edit(ZELPropUI::ISliderController& controller);
    void ask_box(ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key);
    void ask_switch(ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key);
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
