#include "apps/check/feature_survey.h"

#include "adapter/interface_key.h"
#include "adapter/named_access.h"
#include "platform/visible_text.h"

#include <gsl/util>

#include <algorithm>
#include <cmath>
#include <optional>
#include <type_traits>

#include <fmt/format.h>

namespace selvane_check {
namespace {

using GenICam::INode;
using GenICam::access_flags::none;
using genicam_adapter::node_as;

template <class Number>
struct feature_numbers {
    std::optional<Number> min;
    std::optional<Number> max;
    std::optional<Number> value;
};

template <class Number>
std::optional<Number> taken(const GenICam::result<Number>& answer) {
    return answer ? std::optional<Number>(answer.assume_value()) : std::nullopt;
}

template <class Number>
std::optional<Number> asked_by_name(driver_watch& driver, const INode& node, std::string_view suffix) {
    Number number = 0;
    const HRESULT hr =
        genicam_adapter::get_named_value(driver.property_set(), {node.get_name(), suffix}, number);
    return SUCCEEDED(hr) ? std::optional<Number>(number) : std::nullopt;
}

// Limits may be computed, and so may the value: what their arithmetic loses is no fault.
bool is_outside(double value, double min, double max) {
    const double slack = 1e-5 + 1e-6 * std::max(std::fabs(min), std::fabs(max));
    return value < min - slack || value > max + slack;
}

class feature_survey {
public:
    feature_survey(driver_watch& driver, finding_book& findings, const register_names& registers,
                   bool by_name)
        : driver_(driver), findings_(findings), registers_(registers), by_name_(by_name) {}

    void ask(INode& node);

private:
    template <class Number, class Interface>
    feature_numbers<Number> numbers_of(Interface& node);
    void ask_others(INode& node);
    void judge(const INode& node, const feature_numbers<std::int64_t>& numbers);
    void judge(const INode& node, const feature_numbers<double>& numbers);
    void judge_step(INode& node, GenICam::IInteger& integer);
    void tell(const INode& node, const std::string& what);
    template <class Number>
    void judge_limits(const INode& node, const feature_numbers<Number>& numbers);

    driver_watch& driver_;
    finding_book& findings_;
    const register_names& registers_;
    bool by_name_;
};

void feature_survey::tell(const INode& node, const std::string& what) {
    findings_.add(fault_kind::value_range,
                  fmt::format("{} over {}: {}", platform::visible_text(node.get_name()),
                              by_name_ ? "names" : "registers", what));
}

template <class Number>
void feature_survey::judge_limits(const INode& node, const feature_numbers<Number>& numbers) {
    if (!numbers.min || !numbers.max || !(*numbers.max < *numbers.min)) return;
    tell(node, fmt::format("Max {} is below Min {}", *numbers.max, *numbers.min));
}

void feature_survey::judge(const INode& node, const feature_numbers<std::int64_t>& numbers) {
    judge_limits(node, numbers);
    const auto& [min, max, value] = numbers;
    if (value && min && max && *min <= *max && (*value < *min || *value > *max))
        tell(node, fmt::format("the value {} is outside {} to {}", *value, *min, *max));
}

void feature_survey::judge_step(INode& node, GenICam::IInteger& integer) {
    const std::optional<std::int64_t> step =
        by_name_ ? asked_by_name<std::int64_t>(driver_, node, wire::path_suffix::inc)
                 : taken(integer.get_inc(none));
    if (step && *step == 0) tell(node, "Inc is 0");
}

void feature_survey::judge(const INode& node, const feature_numbers<double>& numbers) {
    const auto& [min, max, value] = numbers;
    const char* const hint = by_name_ ? ": is it a double?" : "";
    if (min && std::isnan(*min)) tell(node, "Min is not a number");
    if (max && std::isnan(*max)) tell(node, "Max is not a number");
    judge_limits(node, numbers);
    if (!value) return;
    if (std::isnan(*value)) {
        tell(node, "the value is not a number");
    } else if (std::fpclassify(*value) == FP_SUBNORMAL) {
        // An integer of usual size is one, looked at as a double.
        tell(node, fmt::format("the value {} is next to nothing{}", *value, hint));
    } else if (min && max && *min <= *max && is_outside(*value, *min, *max)) {
        tell(node, fmt::format("the value {} is outside {} to {}{}", *value, *min, *max, hint));
    }
}

template <class Number, class Interface>
feature_numbers<Number> feature_survey::numbers_of(Interface& node) {
    if (!by_name_) return {taken(node.get_min(none)), taken(node.get_max(none)), taken(node.get_val(none))};
    return {asked_by_name<Number>(driver_, node, wire::path_suffix::min),
            asked_by_name<Number>(driver_, node, wire::path_suffix::max),
            asked_by_name<Number>(driver_, node, wire::path_suffix::value)};
}

// By name the pages' own questions tell all there is.
void feature_survey::ask_others(INode& node) {
    if (by_name_) return;
    if (auto* const toggle = node_as<GenICam::IBoolean>(&node)) static_cast<void>(toggle->get_val(none));
    auto* const box = node_as<GenICam::IEnumeration>(&node);
    if (box == nullptr) return;
    const auto entry = box->get_selected_entry(none);
    if (entry || entry.error() != GenICam::make_error_code(GenICam::index_out_of_range)) return;
    findings_.add(fault_kind::entry_unknown,
                  fmt::format("the value of {} over registers is that of none of its entries",
                              platform::visible_text(node.get_name())));
}

void feature_survey::ask(INode& node) {
    driver_.attend([&](std::uint64_t address) {
        const std::string_view name = registers_.find(node.get_name(), address);
        return fmt::format(" ({}{}for {})", platform::visible_text(name), name.empty() ? "" : ", ",
                           platform::visible_text(node.get_name()));
    });
    const auto done = gsl::finally([this] { driver_.attend({}); });
    if (!by_name_) static_cast<void>(node.is_locked());
    if (auto* const integer = node_as<GenICam::IInteger>(&node)) {
        judge(node, numbers_of<std::int64_t>(*integer));
        judge_step(node, *integer);
    } else if (auto* const real = node_as<GenICam::IFloat>(&node)) {
        judge(node, numbers_of<double>(*real));
    } else {
        ask_others(node);
    }
}

}  // namespace

void survey_features(driver_watch& driver, finding_book& findings,
                     genicam_adapter::GenICamAdapterDevice& adapter, const register_names& registers) {
    const auto& table = adapter.get_item_table();
    feature_survey survey(driver, findings, registers, adapter.has_named_access());
    for (const ZELAdapterHelper::ItemRecord& item : table) {
        for (const ZELAdapterHelper::ElementRecord& element : ZELAdapterHelper::ElementsOf(item)) {
            const auto bindings = ZELAdapterHelper::InterfacesOf(element);
            if (bindings.count != 0) survey.ask(*genicam_adapter::node_of(bindings.first->key));
        }
    }
}

}  // namespace selvane_check
