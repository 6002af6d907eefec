#pragma once

#include "inspection/pages/dialog_canvas.h"
#include "platform/com_ptr.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace selvane_playground {

/// The names of the features behind the keys of described elements.
using feature_names = std::unordered_map<ZELPropUI::InterfaceKey, std::string>;

/// A control of a page: what it is bound to, and what it shows now.
struct live_control {
    selvane_inspect::control_kind kind;
    ZELPropUI::PageRect rect;
    std::wstring text;    ///< label, caption, contents of an edit
    std::string item;     ///< the labels that it stands behind
    std::string element;  ///< empty on the head row of an item
    std::string feature;  ///< empty for labels and built-in items
    platform::com_ptr<ZELPropUI::ISliderController> controller;
    platform::com_ptr<ZELPropUI::CZELItemDataBase> owner;
    ZELPropUI::InterfaceKey key = 0;
    bool enabled = true;
    bool read_only = false;  ///< of edits
    // Sliders and spin buttons.
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t position = 0;
    // Lists.
    std::vector<std::wstring> entries;
    std::int32_t selected = -1;
    // Check boxes.
    bool checked = false;
};

/// What became of something that a user did.
enum class outcome {
    done,     ///< the page refreshes
    nothing,  ///< the control did not react
    refused,  ///< an edit's text is no value: the box is to be shown
};

/// A page at work: the controls as the windows would be, asking and telling their elements the same things in
/// the same order, for whatever draws them.
class live_page final : public selvane_inspect::dialog_canvas {
public:
    explicit live_page(const feature_names& features) : features_(features) {}

    [[nodiscard]] std::size_t size() const noexcept { return controls_.size(); }
    [[nodiscard]] const live_control& at(std::size_t control) const { return controls_.at(control); }

    // What a user does with a control; out_of_range for a number without one, `nothing` for a deed that its
    // kind does not know. Who gets `done` calls `refresh` next, as the page does behind the posted message.
    [[nodiscard]] outcome move(std::size_t control, std::int32_t position);
    [[nodiscard]] outcome commit(std::size_t control, std::wstring_view text);
    [[nodiscard]] outcome pick(std::size_t control, std::int32_t index);
    [[nodiscard]] outcome toggle(std::size_t control);
    [[nodiscard]] outcome push(std::size_t control);
    /// An edit that gets the focus asks whether it may be changed, to show so.
    [[nodiscard]] bool focus(std::size_t control);

    /// Every control in the page's order.
    void refresh();

    /// The controls with everything that does not change while the page is open.
    [[nodiscard]] nlohmann::ordered_json layout_json() const;
    /// What the controls show now, in the same order.
    [[nodiscard]] nlohmann::ordered_json state_json() const;

private:
    void add(const selvane_inspect::placed_control& placed) override;
    void note_label(const selvane_inspect::placed_control& label);
    [[nodiscard]] static bool is_positioned(const live_control& control) noexcept;
    static void fetch_positions(live_control& control);
    static void update(live_control& control);

    const feature_names& features_;
    std::vector<live_control> controls_;
    std::string item_;
    std::string element_;
};

}  // namespace selvane_playground
