#pragma once

#include "adapter/genicam_adapter_device.h"
#include "propui/page_groups.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"
#include "tests/support/recorder_canvas.h"

#include <memory>
#include <string>
#include <vector>

namespace simcam_test {

/// The same camera with one road to its features.
[[nodiscard]] inline simcam::camera_options on_one_road(simcam::camera_options options, bool named) {
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

/// A camera as the pages reach it.
struct camera_on_pages {
    explicit camera_on_pages(simcam::camera_options options)
        : camera(simcam::make_camera(std::move(options))),
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
