#include "inspection/pages/page_preview.h"

#include "adapter/genicam_adapter_device.h"
#include "adapter/interface_key.h"
#include "inspection/inspect_error.h"
#include "inspection/pages/page_hazards.h"
#include "platform/text.h"
#include "propui/control_logic.h"
#include "propui/guarded_item.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"

#include <algorithm>
#include <map>
#include <utility>

namespace selvane_inspect {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;
using ZELPropUI::CZELItemDataBase;
using ZELPropUI::GuardedItem;
using ZELPropUI::InterfaceKey;
using ZELPropUI::ISliderController;

simcam::camera_ptr make_camera(description& of, access_path access) {
    simcam::camera_options options;
    options.descriptions.push_back(of.source().bytes());
    options.named_access = access == access_path::named;
    options.camera_control = false;
    options.video_proc_amp = false;
    options.keep_transcript = false;
    options.registers = &of.port();
    return simcam::make_camera(std::move(options));
}

// The pages' own items have the address of the node for a key; there are no others here.
std::string feature_of(InterfaceKey key) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    return node != nullptr ? std::string(node->get_name()) : std::string();
}

// Over named access an item answers either question with the 8 bytes that the driver has, so that the kind of
// the feature decides which one is asked, as it does on a page. A page shows the units of physical values
// alone.
void add_limits(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    GenICam::INode* node = genicam_adapter::node_of(key);
    if (node != nullptr && node->get_node_type() == GenICam::node_type::floating) {
        AbsRangeInfo real;
        if (SUCCEEDED(GuardedItem(item).GetAbsRange(key, real))) {
            control.minimum = real.min;
            control.maximum = real.max;
        }
        SharedString unit;
        std::int32_t scale = ZELAdapterHelper::scale_linear;
        if (SUCCEEDED(GuardedItem(item).GetAbsUnit(key, unit, scale)))
            control.unit = platform::narrow(unit.View());
    } else {
        RangeInfo range;
        if (SUCCEEDED(GuardedItem(item).GetRange(key, range))) {
            control.minimum = range.min;
            control.maximum = range.max;
            control.step = range.step;
        }
    }
}

void show_number(ISliderController& controller, drawn_control& control) {
    control.enabled = ZELPropUI::IsEditable(controller);
    add_limits(controller.GetItem(), controller.GetKey(), control);
    if (control.kind == control_kind::slider) {
        std::int32_t low = 0;
        std::int32_t high = 0;
        std::int32_t position = 0;
        if (controller.GetPositionRange(low, high)) {
            control.lowest_position = low;
            control.highest_position = high;
        }
        if (controller.GetPosition(position)) control.position = position;
    } else if (control.kind == control_kind::edit) {
        std::wstring text;
        if (controller.GetText(text)) control.text = platform::narrow(text);
    }
}

void show_entries(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    for (const SharedString& entry : ZELPropUI::EntriesOf(item, key))
        control.strings.push_back(platform::narrow(entry.View()));
    const auto selected = ZELPropUI::SelectionOf(item, key);
    if (!selected || *selected < 0) return;
    const auto at = static_cast<std::size_t>(*selected);
    if (at < control.strings.size()) control.text = control.strings[at];
}

void show_item(CZELItemDataBase& item, InterfaceKey key, drawn_control& control) {
    control.enabled = ZELPropUI::IsItemAvailable(item, key);
    if (control.kind == control_kind::combo) show_entries(item, key, control);
    if (control.kind == control_kind::check_box) control.checked = ZELPropUI::IsSwitchedOn(item, key);
}

/// Keeps what it is told, together with what each control would show.
class preview_canvas final : public dialog_canvas {
public:
    explicit preview_canvas(drawn_page& page) : page_(page) {}

private:
    void add(const placed_control& placed) override;

    drawn_page& page_;
};

void preview_canvas::add(const placed_control& placed) {
    drawn_control& control = page_.controls.emplace_back();
    control.kind = placed.kind;
    control.rect = placed.rect;
    control.text = platform::narrow(placed.text);
    control.feature = feature_of(placed.key);
    if (placed.controller != nullptr) show_number(*placed.controller, control);
    if (placed.item != nullptr) show_item(*placed.item, placed.key, control);
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

bool is_beyond_edge(const drawn_control& control) noexcept {
    const int height = control.kind == control_kind::combo ? 0 : control.rect.height;
    return control.rect.left + control.rect.width > page_width || control.rect.top + height > page_height;
}

std::vector<drawn_page> preview_pages(description& of, access_path access) {
    if (const auto hazard = find_page_hazard(of)) throw refused(*hazard);
    if (access == access_path::named && of.port().is_live())
        throw wrong_use("a camera is reached by its registers: named access needs a driver");
    return draw_all(*make_camera(of, access)->property_set());
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
