#include "apps/playground/face/live_page.h"

#include "platform/text.h"
#include "propui/control_logic.h"
#include "propui/page_measures.h"
#include "propui/refresh.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace selvane_playground {
namespace {

using selvane_inspect::control_kind;
using ZELPropUI::CZELItemDataBase;
using ZELPropUI::ISliderController;

// The messages that tell a window its range carry 16 bits of each end.
std::int32_t as_message_word(std::int32_t number) { return static_cast<std::int16_t>(number & 0xFFFF); }

}  // namespace

// Labels at the left margin name an item, those behind them an element.
void live_page::note_label(const selvane_inspect::placed_control& label) {
    const bool names_item = label.rect.left == ScaleX(ZELPropUI::measure::left_margin);
    (names_item ? item_ : element_) = platform::narrow(label.text);
    if (names_item) element_.clear();
}

void live_page::add(const selvane_inspect::placed_control& placed) {
    if (placed.kind == control_kind::label) note_label(placed);
    live_control& control = controls_.emplace_back();
    control.kind = placed.kind;
    control.rect = placed.rect;
    control.text = placed.text;
    control.item = item_;
    control.element = element_;
    const auto feature = features_.find(placed.key);
    if (feature != features_.end()) control.feature = feature->second;
    control.controller = platform::com_ptr<ISliderController>(placed.controller);
    control.owner = platform::com_ptr<CZELItemDataBase>(placed.item);
    control.key = placed.key;
    if (is_positioned(control)) fetch_positions(control);
    if (control.kind == control_kind::combo) {
        for (const auto& entry : ZELPropUI::EntriesOf(*control.owner, control.key))
            control.entries.emplace_back(entry.View());
    }
    update(control);
}

bool live_page::is_positioned(const live_control& control) noexcept {
    return control.kind == control_kind::slider || control.kind == control_kind::spin_button;
}

void live_page::fetch_positions(live_control& control) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    if (!control.controller->GetPositionRange(low, high)) return;
    control.low = as_message_word(low);
    control.high = as_message_word(high);
}

// The order of the questions is that of the windows: a driver sees it.
void live_page::update(live_control& control) {
    using namespace ZELPropUI;
    switch (control.kind) {
        case control_kind::slider:
        case control_kind::spin_button: {
            control.enabled = IsEditable(*control.controller);
            std::int32_t position = 0;
            if (control.controller->GetPosition(position)) control.position = position;
            break;
        }
        case control_kind::edit:
            if (!control.controller->GetText(control.text)) control.text.clear();
            control.enabled = control.controller->IsAvailable();
            control.read_only = control.controller->IsReadOnly();
            break;
        case control_kind::combo:
            control.enabled = IsItemAvailable(*control.owner, control.key);
            if (const auto index = SelectionOf(*control.owner, control.key)) control.selected = *index;
            break;
        case control_kind::check_box:
            control.enabled = IsItemAvailable(*control.owner, control.key);
            control.checked = IsSwitchedOn(*control.owner, control.key);
            break;
        case control_kind::button:
            control.enabled = IsItemAvailable(*control.owner, control.key);
            break;
        case control_kind::label:
            break;
    }
}

void live_page::refresh() {
    ZELPropUI::ElementRefresh element;
    for (live_control& control : controls_) {
        element.TurnTo(control.controller.get());
        update(control);
    }
}

outcome live_page::move(std::size_t number, std::int32_t position) {
    live_control& control = controls_.at(number);
    if (!is_positioned(control)) return outcome::nothing;
    control.position = position;
    control.controller->SetPosition(position);
    return outcome::done;
}

outcome live_page::commit(std::size_t number, std::wstring_view text) {
    live_control& control = controls_.at(number);
    if (control.kind != control_kind::edit) return outcome::nothing;
    control.text = text;
    if (control.controller->SetText(text)) return outcome::done;
    // Where nothing could be typed a refusal is no error of the user's.
    return control.read_only ? outcome::nothing : outcome::refused;
}

outcome live_page::pick(std::size_t number, std::int32_t index) {
    live_control& control = controls_.at(number);
    if (control.kind != control_kind::combo) return outcome::nothing;
    control.selected = index;
    ZELPropUI::SelectEntry(*control.owner, control.key, index);
    return outcome::done;
}

outcome live_page::toggle(std::size_t number) {
    live_control& control = controls_.at(number);
    if (control.kind != control_kind::check_box) return outcome::nothing;
    if (!ZELPropUI::MayToggle(*control.owner, control.key)) return outcome::nothing;
    control.checked = !control.checked;
    ZELPropUI::SetSwitchTo(*control.owner, control.key, control.checked);
    return outcome::done;
}

outcome live_page::push(std::size_t number) {
    live_control& control = controls_.at(number);
    if (control.kind != control_kind::button) return outcome::nothing;
    ZELPropUI::PushButton(*control.owner, control.key);
    return outcome::done;
}

bool live_page::focus(std::size_t number) {
    const live_control& control = controls_.at(number);
    return control.kind == control_kind::edit && ZELPropUI::IsEditable(*control.controller);
}

nlohmann::ordered_json live_page::layout_json() const {
    auto all = nlohmann::ordered_json::array();
    for (const live_control& control : controls_) {
        nlohmann::ordered_json json = {{"kind", selvane_inspect::control_word(control.kind)},
                                       {"left", control.rect.left},
                                       {"top", control.rect.top},
                                       {"width", control.rect.width},
                                       {"height", control.rect.height},
                                       {"item", control.item},
                                       {"element", control.element},
                                       {"feature", control.feature}};
        if (control.kind == control_kind::combo) {
            json["entries"] = nlohmann::ordered_json::array();
            for (const std::wstring& entry : control.entries)
                json["entries"].push_back(platform::narrow(entry));
        }
        if (is_positioned(control)) {
            json["low"] = control.low;
            json["high"] = control.high;
        }
        all.push_back(std::move(json));
    }
    return all;
}

nlohmann::ordered_json live_page::state_json() const {
    auto all = nlohmann::ordered_json::array();
    for (const live_control& control : controls_) {
        nlohmann::ordered_json json = {{"enabled", control.enabled}};
        switch (control.kind) {
            case control_kind::slider:
            case control_kind::spin_button:
                json["position"] = control.position;
                break;
            case control_kind::combo: {
                const auto at = static_cast<std::size_t>(control.selected);
                const bool known = control.selected >= 0 && at < control.entries.size();
                json["selected"] = known ? control.selected : -1;
                json["text"] = known ? platform::narrow(control.entries[at]) : std::string();
                json["text_width"] = known ? selvane_inspect::dialog_text_width(control.entries[at]) : 0;
                break;
            }
            default:
                json["text"] = platform::narrow(control.text);
                json["text_width"] = selvane_inspect::dialog_text_width(control.text);
                if (control.kind == control_kind::edit) json["read_only"] = control.read_only;
                if (control.kind == control_kind::check_box) json["checked"] = control.checked;
        }
        all.push_back(std::move(json));
    }
    return all;
}

}  // namespace selvane_playground
