#include "apps/check/description_check.h"

#include "adapter/interface_key.h"
#include "adapter/item_discovery.h"
#include "inspection/description.h"
#include "inspection/evaluation_guard.h"
#include "inspection/inspect_error.h"
#include "inspection/pages/page_hazards.h"
#include "platform/count_text.h"
#include "simcam/call_text.h"
#include "wire/device_set.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace selvane_check {
namespace {

// No camera has one of that size, and a driver that announces more is not to take the memory of its checker.
constexpr std::uint32_t largest_description = 64U << 20U;

class description_check {
public:
    description_check(driver_watch& driver, finding_book& findings, fetched_descriptions& result)
        : driver_(driver), findings_(findings), result_(result) {}

    /// False where the list ends.
    bool take(std::uint32_t index);

private:
    std::optional<std::uint32_t> ask_size(wire::description_request& request);
    void judge_length(const std::string& which, std::uint32_t announced, DWORD returned);
    void judge_text(const std::string& which, const std::string& text);
    void judge_document(const std::string& which, selvane_inspect::description& loaded);

    driver_watch& driver_;
    finding_book& findings_;
    fetched_descriptions& result_;
};

// A description whose nodes hold their values themselves needs none.
bool uses_ports(const selvane_inspect::description& loaded) {
    const auto& elements = loaded.tree().elements();
    return std::any_of(elements.begin(), elements.end(),
                       [](const auto& element) { return static_cast<bool>(element.xml.child("pPort")); });
}

std::string bytes_text(std::uint32_t count) { return platform::count_text(count, "byte"); }

bool is_whole(std::string_view text) { return text.find("</RegisterDescription") != std::string_view::npos; }

std::optional<std::uint32_t> description_check::ask_size(wire::description_request& request) {
    std::uint32_t size = 0;
    DWORD returned = 0;
    const auto ask = [&] {
        size = returned = 0;
        return driver_.get(wire::device_set, SELVANE_DESCRIPTION_SIZE, &request, sizeof(request), &size,
                           sizeof(size), &returned);
    };
    HRESULT hr = ask();
    if (FAILED(hr) && request.index == 0) {
        request.first_field = 0;
        hr = ask();
    }
    if (FAILED(hr)) {
        if (request.index == 0) {
            findings_.add(fault_kind::no_description,
                          "the size of description 0 is refused with " + simcam::describe_result(hr));
        }
        return std::nullopt;
    }
    if (returned != sizeof(size)) {
        findings_.add(fault_kind::description_size,
                      fmt::format("the size of description {} is answered with {}", request.index,
                                  bytes_text(returned)));
        return std::nullopt;
    }
    if (size > largest_description) {
        findings_.add(fault_kind::description_size,
                      fmt::format("description {} is announced with {}", request.index, bytes_text(size)));
        return std::nullopt;
    }
    return size;
}

void description_check::judge_length(const std::string& which, std::uint32_t announced, DWORD returned) {
    if (returned == announced) return;
    findings_.add(fault_kind::description_length, fmt::format("{} is announced with {} and answered with {}",
                                                              which, bytes_text(announced), returned));
}

bool description_check::take(std::uint32_t index) {
    wire::description_request request = {1, index};
    const std::optional<std::uint32_t> size = ask_size(request);
    if (!size) return false;
    const std::string which = fmt::format("description {}", index);
    std::string text(*size, '\0');
    DWORD returned = 0;
    const HRESULT hr = driver_.get(wire::device_set, SELVANE_DESCRIPTION_DATA, &request, sizeof(request),
                                   text.data(), *size, &returned);
    if (FAILED(hr)) {
        findings_.add(fault_kind::description_refused,
                      which + " is refused with " + simcam::describe_result(hr));
        return false;
    }
    judge_length(which, *size, returned);
    if (returned > *size) return false;
    ++result_.count;
    judge_text(which, text);
    return true;
}

void description_check::judge_text(const std::string& which, const std::string& text) {
    try {
        auto loaded = selvane_inspect::description::from_bytes(which, text);
        if (loaded->document() == nullptr) {
            findings_.add(fault_kind::description_malformed, which + ": " + loaded->why_not_loaded());
            result_.usable = false;
        } else {
            judge_document(which, *loaded);
            result_.registers.add(std::move(loaded));
        }
    } catch (const selvane_inspect::inspect_error& failure) {
        findings_.add(is_whole(text) ? fault_kind::description_malformed : fault_kind::description_cut,
                      failure.what());
        result_.usable = false;
    }
}

void description_check::judge_document(const std::string& which, selvane_inspect::description& loaded) {
    GenICam::IGenICamDoc& document = *loaded.document();
    if (uses_ports(loaded) && document.find_port({}) == nullptr) {
        findings_.add(fault_kind::description_port, which + " has no port named Device");
    }
    GenICam::INode* root = document.find_node("Root");
    const bool has_items = genicam_adapter::node_as<GenICam::ICategory>(root) != nullptr &&
                           !genicam_adapter::collect_items(root).empty();
    if (!has_items)
        findings_.add(fault_kind::description_marks, which + " marks no item on the way from Root");
    if (const auto hazard = selvane_inspect::find_page_hazard(loaded)) {
        findings_.add(fault_kind::description_deadly, which + ": " + *hazard);
        result_.survivable = false;
    }
}

}  // namespace

fetched_descriptions check_descriptions(driver_watch& driver, finding_book& findings) {
    fetched_descriptions result;
    description_check check(driver, findings, result);
    std::uint32_t index = 0;
    while (index < most_descriptions && check.take(index)) ++index;
    if (index == most_descriptions) {
        findings.add(fault_kind::description_endless,
                     fmt::format("{} descriptions are handed out, and no end is seen", index));
        result.usable = false;
    }
    return result;
}

}  // namespace selvane_check
