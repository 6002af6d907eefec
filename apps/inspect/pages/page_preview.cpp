#include "apps/inspect/pages/page_preview.h"

#include "adapter/genicam_adapter_device.h"
#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/camera/camera_filter.h"
#include "apps/inspect/inspect_error.h"
#include "apps/inspect/pages/page_hazards.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"

#include <algorithm>
#include <map>
#include <utility>

namespace selvane_inspect {
namespace {

simcam::camera_ptr make_camera(description& of, access_path access) {
    simcam::camera_options options;
    options.descriptions.push_back(of.source().bytes());
    options.named_access = access == access_path::named;
    options.camera_control = false;
    options.video_proc_amp = false;
    options.keep_transcript = false;
    simcam::camera_ptr camera = simcam::make_camera(std::move(options));
    camera->memory() = of.memory();
    return camera;
}

drawn_page draw(ZELPropUI::PageName name, IUnknown& filter,
                const std::vector<ZELAdapterHelper::ItemRecord>& described) {
    drawn_page page = {name, false, {}};
    const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(name);
    ZELPropUI::PageSources sources;
    sources.filter = &filter;
    sources.groups = &groups;
    sources.built_in = ZELAdapterHelper::StaticItemTable();
    sources.described = {described.data(), described.size()};
    page.offered = ZELPropUI::PageLayout(sources, nullptr).BuildPage(true);
    preview_canvas canvas(page);
    if (page.offered) ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
    return page;
}

std::vector<drawn_page> draw_all(IKsPropertySet& filter) {
    genicam_adapter::GenICamAdapterDevice adapter(&filter);
    const auto& described = adapter.get_item_table();
    std::vector<drawn_page> pages;
    for (const ZELPropUI::PageName name : ZELPropUI::all_pages)
        pages.push_back(draw(name, filter, described));
    return pages;
}

}  // namespace

std::vector<drawn_page> preview_pages(description& of, access_path access) {
    if (const auto hazard = find_page_hazard(of)) throw refused(*hazard);
    live_camera* const live = camera_behind(of.path());
    if (live == nullptr) return draw_all(*make_camera(of, access)->property_set());
    if (access == access_path::named)
        throw wrong_use("a camera is reached by its registers: named access needs a driver");
    return draw_all(*make_camera_filter(*live));
}

std::vector<drawn_row> rows_of(const drawn_page& page) {
    std::map<int, drawn_row> rows;
    for (const drawn_control& control : page.controls) rows[control.rect.top].push_back(&control);
    std::vector<drawn_row> sorted;
    for (auto& [top, row] : rows) {
        std::stable_sort(row.begin(), row.end(), [](const auto* left, const auto* right) {
            return left->rect.left < right->rect.left;
        });
        sorted.push_back(std::move(row));
    }
    return sorted;
}

std::string_view page_word(ZELPropUI::PageName page) noexcept {
    constexpr std::string_view words[] = {"exposure", "feature", "lens", "color"};
    return words[static_cast<std::size_t>(page)];
}

}  // namespace selvane_inspect
