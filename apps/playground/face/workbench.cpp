#include "apps/playground/face/workbench.h"

#include "adapter/interface_key.h"
#include "inspection/description_tree.h"
#include "simcam/camera_options.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

namespace selvane_playground {
namespace {

using selvane_inspect::access_path;
using ZELPropUI::PageName;

simcam::camera_options options_of(std::string description, const camera_settings& settings) {
    simcam::camera_options options;
    if (settings.simulated) options = *simcam::ready_made("described");
    options.start_from_defaults = !settings.registers;
    options.descriptions = {std::move(description)};
    if (settings.registers) options.memory = *settings.registers;
    options.named_access = settings.access == access_path::named;
    options.register_access = !options.named_access;
    return options;
}

void refuse_malformed(const std::string& description) {
    const selvane_inspect::source_text source(description);
    const selvane_inspect::description_tree tree(source);
    if (const auto& defect = tree.malformed()) throw malformed_text(defect->about, defect->at);
}

}  // namespace

workbench::workbench(std::string description, const camera_settings& settings)
    : camera_(simcam::make_camera(options_of(std::move(description), settings))) {
    if (camera_->document(0) == nullptr) refuse_malformed(camera_->options().descriptions.front());
}

workbench::page& workbench::at(PageName name) { return pages_.at(static_cast<std::size_t>(name)); }

// What a page does when a host hands it the camera.
void workbench::hand_over(page& to, PageName name) {
    to.has_something = false;
    IKsPropertySet* filter = camera_->property_set();
    if (!genicam_adapter::is_adapter_device(filter)) return;
    to.adapter = std::make_unique<genicam_adapter::GenICamAdapterDevice>(filter);
    to.groups = ZELPropUI::GroupsOf(name);
    to.has_something = ZELPropUI::PageLayout(sources_of(to), nullptr).BuildPage(true);
    if (!*to.has_something || nothing_marked_) return;
    for (const auto& record : to.adapter->get_item_table()) {
        for (const auto& element : ZELAdapterHelper::ElementsOf(record)) {
            for (const auto& entry : ZELAdapterHelper::InterfacesOf(element)) {
                to.features[entry.key] = genicam_adapter::node_of(entry.key)->get_name();
            }
        }
    }
}

ZELPropUI::PageSources workbench::sources_of(page& of) {
    ZELPropUI::PageSources sources;
    sources.filter = camera_->property_set();
    sources.groups = &of.groups;
    sources.built_in = ZELAdapterHelper::StaticItemTable();
    // A table without items would be fetched again at each question, with the description read anew.
    if (nothing_marked_) return sources;
    const auto& table = of.adapter->get_item_table();
    nothing_marked_ = table.empty();
    sources.described = {table.data(), table.size()};
    return sources;
}

bool workbench::offer(PageName name) {
    page& to = at(name);
    if (!to.has_something) hand_over(to, name);
    return *to.has_something;
}

std::optional<bool> workbench::answer_of(PageName name) const {
    return pages_.at(static_cast<std::size_t>(name)).has_something;
}

live_page& workbench::show(PageName name) {
    page& shown = at(name);
    if (!offer(name)) throw std::out_of_range("the page has nothing to show");
    if (!shown.controls) {
        shown.controls = std::make_unique<live_page>(shown.features);
        ZELPropUI::PageLayout(sources_of(shown), shown.controls.get()).BuildPage(false);
    }
    return *shown.controls;
}

std::vector<std::string> workbench::take_calls() {
    std::vector<std::string> lines = camera_->transcript();
    camera_->clear_transcript();
    return lines;
}

std::string workbench::lines_of(const simcam::register_memory& memory) {
    constexpr std::size_t bytes_a_line = 16;
    std::string lines;
    for (const std::uint64_t start : memory.written_pages()) {
        for (std::size_t at = 0; at < simcam::register_memory::page_size; at += bytes_a_line) {
            fmt::format_to(std::back_inserter(lines), "0x{:08X}:", start + at);
            for (const std::uint8_t byte : memory.peek(start + at, bytes_a_line))
                fmt::format_to(std::back_inserter(lines), " {:02X}", byte);
            lines += '\n';
        }
    }
    return lines;
}

}  // namespace selvane_playground
