#pragma once

#include "adapter/genicam_adapter_device.h"
#include "propui/page_groups.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"
#include "tests/support/recorder_canvas.h"

#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace simcam_test {

/// The same camera with one access path to its features.
[[nodiscard]] inline simcam::camera_options over_one_access_path(simcam::camera_options options, bool named) {
    options.named_access = named;
    options.register_access = !named;
    return options;
}

/// What the controls of a page ask when they show the present state.
inline void refresh(const test_support::RecorderCanvas& canvas) {
    ZELPropUI::ElementRefresh element;
    for (const auto& one : canvas.placed) {
        bool flag = false;
        std::int32_t value = 0;
        std::wstring text;
        element.TurnTo(one.controller.get());
        if (one.controller) {
            (void)one.controller->IsAvailable();
            (void)one.controller->IsReadOnly();
            if (one.kind == "edit") {
                (void)one.controller->GetText(text);
            } else {
                (void)one.controller->GetPosition(value);
            }
        } else if (one.item) {
            (void)one.item->IsAvailable(one.key, flag);
            if (one.kind == "switch") (void)one.item->GetSwitch(one.key, flag);
            if (one.kind == "combo") (void)one.item->GetValue(one.key, value);
        }
    }
}

/// What the controls show of their values. The limits behind a position are asked for once.
[[nodiscard]] inline std::vector<std::string> shown_on(const test_support::RecorderCanvas& canvas) {
    std::vector<std::string> all;
    for (const auto& one : canvas.placed) {
        std::int32_t number = -1;
        bool on = false;
        std::wstring text = one.text;
        if (one.controller) {
            std::ignore = one.controller->GetPosition(number);  // which learns the unit
            number = -1;
            std::ignore = one.controller->GetText(text);
        } else if (one.item) {
            std::ignore = one.item->GetValue(one.key, number);
            std::ignore = one.item->GetSwitch(one.key, on);
        }
        all.push_back(one.kind + " " + std::to_string(number) + (on ? " on " : " ") + platform::narrow(text));
    }
    return all;
}

inline void work_controller(ZELPropUI::ISliderController& controller) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::wstring text;
    std::ignore = controller.GetPositionRange(low, high);
    std::ignore = controller.SetPosition(high);
    std::ignore = controller.GetPosition(low);
    std::ignore = controller.GetText(text);
    std::ignore = controller.SetText(text);
    std::ignore = controller.IsAvailable();
    std::ignore = controller.IsReadOnly();
}

inline void work_item(ZELPropUI::CZELItemDataBase& item, ZELPropUI::InterfaceKey key) {
    std::vector<ZELAdapterHelper::SharedString> strings;
    ZELAdapterHelper::RangeInfo range;
    std::int32_t value = 0;
    bool on = false;
    std::ignore = item.GetMapStrings(key, strings);
    std::ignore = item.GetRange(key, range);
    std::ignore = item.GetValue(key, value);
    std::ignore = item.SetValue(key, range.max);
    std::ignore = item.GetSwitch(key, on);
    std::ignore = item.SetSwitch(key, !on);
    std::ignore = item.Push(key);
    std::ignore = item.Refresh(key);
}

/// What users do to everything on a page.
inline void work(const test_support::RecorderCanvas& canvas) {
    for (std::size_t at = 0; at < canvas.placed.size(); ++at) {
        const test_support::RecorderCanvas::Placed one = canvas.placed[at];  // rows may be added meanwhile
        if (one.controller) work_controller(*one.controller);
        if (one.item) work_item(*one.item, one.key);
    }
}

/// A camera as the pages reach it.
struct camera_on_pages {
    explicit camera_on_pages(simcam::camera_options options)
        : camera_on_pages(simcam::make_camera(std::move(options))) {}
    explicit camera_on_pages(simcam::camera_ptr shown)
        : camera(std::move(shown)),
          adapter(std::make_unique<genicam_adapter::GenICamAdapterDevice>(camera->property_set())) {}

    /// What a page shows of it; false for a page without anything.
    bool build(ZELPropUI::PageName page, test_support::RecorderCanvas& canvas) {
        const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(page);
        const auto& table = adapter->get_item_table();
        ZELPropUI::PageSources sources;
        sources.filter = camera.get();
        sources.groups = &groups;
        sources.built_in = ZELAdapterHelper::StaticItemTable();
        sources.described = {table.data(), table.size()};
        return ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
    }

    simcam::camera_ptr camera;
    std::unique_ptr<genicam_adapter::GenICamAdapterDevice> adapter;
};

}  // namespace simcam_test
