#pragma once

#include "propui/page_canvas.h"
#include "propui/page_groups.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

enum class control_kind { label, slider, edit, spin_button, combo, check_box, button };
[[nodiscard]] std::string_view control_word(control_kind kind) noexcept;

/// One thing on a page, as it would show itself when the page opens. Texts are UTF-8.
struct drawn_control {
    control_kind kind;
    ZELPropUI::PageRect place;
    std::string text;  ///< label, caption, contents of an edit, selected string of a combo
    bool enabled = true;
    std::string feature;  ///< the node behind it; empty for labels
    // Sliders, edits and spin buttons.
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> step;  ///< of integers alone
    std::string unit;
    // Sliders and spin buttons.
    std::optional<int> lowest_position;
    std::optional<int> highest_position;
    std::optional<int> position;
    // Combos.
    std::vector<std::string> strings;
    // Check boxes.
    bool checked = false;
};

struct drawn_page {
    ZELPropUI::PageName name;
    bool offered = false;  ///< whether the page has anything to show
    std::vector<drawn_control> controls;
};

/// The room of a page at 96 dots per inch; what lies outside is cut off.
constexpr int page_width = 428;
constexpr int page_height = 457;

/// Whether a page cuts it off. The list of a combo drops down over everything.
[[nodiscard]] bool is_beyond_edge(const drawn_control& control) noexcept;

/// A canvas at 96 dots per inch that keeps what it is told, together with what each control would show.
class preview_canvas final : public ZELPropUI::IPageCanvas {
public:
    explicit preview_canvas(drawn_page& page) : page_(page) {}

    int TextWidth(std::wstring_view text) override;
    int ScaleX(int measure) override;
    int ScaleY(int measure) override;
    void AddLabel(const ZELPropUI::PageRect& place, std::wstring_view text) override;
    void AddSlider(const ZELPropUI::PageRect& place, ZELPropUI::ISliderController& controller) override;
    void AddEdit(const ZELPropUI::PageRect& place, ZELPropUI::ISliderController& controller) override;
    void AddSpinButton(const ZELPropUI::PageRect& place, ZELPropUI::ISliderController& controller) override;
    void AddCombo(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                  ZELPropUI::InterfaceKey key) override;
    void AddSwitch(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) override;
    void AddButton(const ZELPropUI::PageRect& place, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) override;

private:
    drawn_control& add(control_kind kind, const ZELPropUI::PageRect& place, std::wstring_view text);
    drawn_control& add_on(control_kind kind, const ZELPropUI::PageRect& place,
                          ZELPropUI::ISliderController& controller);
    drawn_control& add_for(control_kind kind, const ZELPropUI::PageRect& place,
                           ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key,
                           std::wstring_view text);

    drawn_page& page_;
};

}  // namespace selvane_inspect
