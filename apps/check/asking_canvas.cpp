#include "apps/check/asking_canvas.h"

#include "adapter/interface_key.h"
#include "platform/visible_text.h"
#include "propui/guarded_item.h"
#include "simcam/call_text.h"

#include <string>
#include <vector>

#include <fmt/format.h>

namespace selvane_check {

using genicam_adapter::node_as;
using genicam_adapter::node_of;
using selvane_inspect::control_kind;
using ZELAdapterHelper::SharedString;
using ZELPropUI::CZELItemDataBase;
using ZELPropUI::GuardedItem;
using ZELPropUI::InterfaceKey;
using ZELPropUI::ISliderController;

namespace {

bool is_available(CZELItemDataBase& item, InterfaceKey key) {
    bool available = false;
    return SUCCEEDED(GuardedItem(item).IsAvailable(key, available)) && available;
}

}  // namespace

bool asking_canvas::may_write(CZELItemDataBase& item, InterfaceKey key) const {
    return write_ && described_ != nullptr && is_available(item, key);
}

void asking_canvas::judge_write(InterfaceKey key, HRESULT result) {
    if (SUCCEEDED(result)) return;
    findings_.add(fault_kind::write_refused, fmt::format("{} refuses the value that it has, with {}",
                                                         platform::visible_text(node_of(key)->get_name()),
                                                         simcam::describe_result(result)));
}

// A value that cannot be read has been told of by whoever was asked.
void asking_canvas::write_back(CZELItemDataBase& item, InterfaceKey key) {
    if (!may_write(item, key)) return;
    if (node_as<GenICam::IFloat>(key) != nullptr) {
        double value = 0;
        if (FAILED(GuardedItem(item).GetAbsValue(key, value))) return;
        judge_write(key, GuardedItem(item).SetAbsValue(key, value));
    } else {
        std::int32_t value = 0;
        if (FAILED(GuardedItem(item).GetValue(key, value))) return;
        judge_write(key, GuardedItem(item).SetValue(key, value));
    }
}

void asking_canvas::ask_slider(ISliderController& controller) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t position = 0;
    static_cast<void>(controller.IsAvailable());
    static_cast<void>(controller.GetPositionRange(low, high));
    static_cast<void>(controller.GetPosition(position));
}

void asking_canvas::ask_edit(ISliderController& controller) {
    std::wstring text;
    static_cast<void>(controller.IsAvailable());
    static_cast<void>(controller.GetText(text));
    write_back(controller.GetItem(), controller.GetKey());
}

void asking_canvas::judge_entry(InterfaceKey key, bool selected) {
    auto* enumeration = node_as<GenICam::IEnumeration>(key);
    if (enumeration == nullptr || selected) return;
    const std::string* named = described_->selected_entry(std::string(enumeration->get_name()));
    if (named == nullptr) return;
    const char* const why = enumeration->find_entry(*named) == nullptr
                                ? "which is none of its entries"
                                : "which is said not to be implemented";
    findings_.add(fault_kind::entry_unknown, fmt::format("the selected entry of {} is {}, {}",
                                                         platform::visible_text(enumeration->get_name()),
                                                         platform::quoted_text(*named), why));
}

void asking_canvas::ask_box(CZELItemDataBase& item, InterfaceKey key) {
    std::vector<SharedString> strings;
    static_cast<void>(GuardedItem(item).GetMapStrings(key, strings));
    static_cast<void>(is_available(item, key));
    std::int32_t index = -1;
    const bool selected = SUCCEEDED(GuardedItem(item).GetValue(key, index));
    if (described_ == nullptr) return;
    judge_entry(key, selected);
    // Over registers a box is read by values and written by indices.
    if (described_->selected_entry(std::string(node_of(key)->get_name())) != nullptr) write_back(item, key);
}

void asking_canvas::ask_switch(CZELItemDataBase& item, InterfaceKey key) {
    bool on = false;
    static_cast<void>(is_available(item, key));
    if (FAILED(GuardedItem(item).GetSwitch(key, on)) || !may_write(item, key)) return;
    judge_write(key, GuardedItem(item).SetSwitch(key, on));
}

// An edit with its spin button belongs to the slider before it.
void asking_canvas::add(const selvane_inspect::placed_control& control) {
    switch (control.kind) {
        case control_kind::label:
        case control_kind::spin_button:
            return;
        case control_kind::edit:
            return ask_edit(*control.controller);
        case control_kind::slider:
            ask_slider(*control.controller);
            break;
        case control_kind::combo:
            ask_box(*control.item, control.key);
            break;
        case control_kind::check_box:
            ask_switch(*control.item, control.key);
            break;
        case control_kind::button:
            static_cast<void>(is_available(*control.item, control.key));
            break;
    }
    ++controls_;
}

}  // namespace selvane_check
