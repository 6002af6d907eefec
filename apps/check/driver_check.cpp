#include "apps/check/driver_check.h"

#include "adapter/genicam_adapter_device.h"
#include "apps/check/asking_canvas.h"
#include "apps/check/description_check.h"
#include "apps/check/driver_watch.h"
#include "apps/check/feature_survey.h"
#include "apps/check/vendor_check.h"
#include "propui/page_groups.h"
#include "propui/page_layout.h"
#include "simcam/call_text.h"
#include "wire/device_set.h"

#include <chrono>

#include <fmt/format.h>

namespace selvane_check {
namespace {

using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::RecordSpan;

std::uint64_t system_clock_now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

void check_gate(driver_watch& driver, finding_book& findings) {
    DWORD support = 0;
    HRESULT hr = driver.query(wire::gate_set, SELVANE_GATE_PROPERTY, &support);
    if (FAILED(hr)) {
        findings.add(fault_kind::gate_refused,
                     "QuerySupported of the gate is refused with " + simcam::describe_result(hr));
        return;
    }
    if ((support & SELVANE_SUPPORT_GET) == 0) {
        findings.add(fault_kind::gate_refused,
                     fmt::format("QuerySupported of the gate answers 0x{:X}, without Get", support));
        return;
    }
    wire::device_kind_query block = {};
    DWORD returned = 0;
    hr = driver.get(wire::gate_set, SELVANE_GATE_PROPERTY, &block, sizeof(block), &block, sizeof(block),
                    &returned);
    if (FAILED(hr)) {
        findings.add(fault_kind::gate_refused,
                     "Get of the gate is refused with " + simcam::describe_result(hr));
        return;
    }
    if (returned < sizeof(block)) {
        findings.add(fault_kind::gate_short,
                     fmt::format("the gate is answered with {} of {} bytes", returned, sizeof(block)));
    }
    if (block.device_kind != SELVANE_DEVICE_KIND) {
        findings.add(fault_kind::gate_kind,
                     fmt::format("the gate tells the device kind {}", block.device_kind));
    }
}

bool is_supported(driver_watch& driver, DWORD id) {
    DWORD support = 0;
    return SUCCEEDED(driver.query(wire::device_set, id, &support)) && support != 0;
}

// Lays out the four pages over one of the two tables.
void open_pages(driver_watch& driver, RecordSpan<ItemRecord> built_in, RecordSpan<ItemRecord> described,
                asking_canvas& canvas) {
    for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
        const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(page);
        ZELPropUI::PageSources sources;
        sources.filter = &driver;
        sources.groups = &groups;
        sources.built_in = built_in;
        sources.described = described;
        ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
    }
}

// Beside names, which the pages prefer; other programs may not.
void survey_registers(driver_watch& driver, finding_book& findings, const register_names& registers) {
    driver.show_named_access(false);
    genicam_adapter::GenICamAdapterDevice adapter(driver.property_set());
    survey_features(driver, findings, adapter, registers);
    driver.show_named_access(true);
}

void check_described_items(driver_watch& driver, finding_book& findings, const check_options& options,
                           driver_report& report) {
    const fetched_descriptions descriptions = check_descriptions(driver, findings);
    report.descriptions = descriptions.count;
    const bool survivable = descriptions.survivable || report.named_access;
    if (!descriptions.usable || !survivable) return;
    report.registers_asked = report.register_access && descriptions.survivable;
    genicam_adapter::GenICamAdapterDevice adapter(driver.property_set());
    const std::vector<ItemRecord>& table = adapter.get_item_table();
    survey_features(driver, findings, adapter, descriptions.registers);
    asking_canvas canvas(findings, &driver, options.write);
    open_pages(driver, {}, {table.data(), table.size()}, canvas);
    report.controls += canvas.controls();
    if (report.named_access && report.registers_asked) {
        survey_registers(driver, findings, descriptions.registers);
    }
}

void check_built_in_items(driver_watch& driver, finding_book& findings, driver_report& report) {
    check_vendor_properties(driver, findings);
    asking_canvas canvas(findings, nullptr, false);
    open_pages(driver, ZELAdapterHelper::StaticItemTable(), {}, canvas);
    report.controls += canvas.controls();
}

}  // namespace

driver_report check_driver(IUnknown& driver, const check_options& options) {
    finding_book findings;
    driver_report report;
    driver_watch watch(driver, findings, options.clock ? options.clock : system_clock_now);
    if (watch.property_set() == nullptr) {
        findings.add(fault_kind::no_property_set, "the object has no IKsPropertySet");
    } else {
        check_gate(watch, findings);
        report.named_access = is_supported(watch, SELVANE_NAMED_ACCESS);
        report.register_access = is_supported(watch, SELVANE_REGISTER_ACCESS);
        if (report.named_access || report.register_access) {
            check_described_items(watch, findings, options, report);
        } else {
            findings.add(fault_kind::no_access, "neither id 3 nor id 4 of the device set is supported");
        }
        check_built_in_items(watch, findings, report);
    }
    report.calls = watch.calls();
    report.findings = findings.all();
    return report;
}

}  // namespace selvane_check
