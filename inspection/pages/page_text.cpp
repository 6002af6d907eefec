#include "inspection/feature_value.h"
#include "inspection/pages/page_preview.h"
#include "platform/text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

std::string range_text(const drawn_control& control) {
    if (!control.minimum || !control.maximum) return "without a range";
    std::string text = number_text(*control.minimum) + " to " + number_text(*control.maximum);
    if (!control.unit.empty()) text += " " + control.unit;
    if (control.step && *control.step != 1) text += " by " + number_text(*control.step);
    return text;
}

std::string strings_text(const drawn_control& control) {
    std::string text;
    for (const std::string& one : control.strings) text += (text.empty() ? "" : ", ") + one;
    return text;
}

std::string control_text(const drawn_control& control) {
    std::string word(control_word(control.kind));
    switch (control.kind) {
        case control_kind::label:
            return control.text;
        case control_kind::slider:
            return word + " " + range_text(control);
        case control_kind::spin_button:
            return word;
        case control_kind::combo:
            return word + " " + quoted_text(control.text) + " of " + strings_text(control);
        case control_kind::check_box:
            return word + (control.checked ? " [x] " : " [ ] ") + control.text;
        case control_kind::edit:
        case control_kind::button:
            break;
    }
    return word + " " + quoted_text(control.text);
}

bool tells_state(control_kind kind) {
    return kind != control_kind::edit && kind != control_kind::spin_button;
}

// "Label: control, control; Label: control". What an edit and its spin button have in common with the slider
// before them is told there.
std::string row_text(const drawn_row& row) {
    constexpr int pixels_a_blank = 10;
    std::string text(static_cast<std::size_t>(row.front()->rect.left / pixels_a_blank), ' ');
    std::string_view separator;
    bool cut_off = false;
    for (const drawn_control* control : row) {
        const bool is_label = control->kind == control_kind::label;
        text += is_label && !separator.empty() ? "; " : separator;
        text += control_text(*control);
        if (is_label) text += ":";
        if (!control->enabled && tells_state(control->kind)) text += " (grey)";
        cut_off = cut_off || is_beyond_edge(*control);
        separator = is_label ? " " : ", ";
    }
    return visible_text(text) + (cut_off ? " -- beyond the edge of the page\n" : "\n");
}

std::vector<std::string> groups_of(ZELPropUI::PageName page) {
    std::vector<std::string> groups;
    for (const std::wstring& group : ZELPropUI::GroupsOf(page)) groups.push_back(platform::narrow(group));
    return groups;
}

nlohmann::ordered_json control_json(const drawn_control& control) {
    nlohmann::ordered_json json = {
        {"kind", control_word(control.kind)}, {"left", control.rect.left},     {"top", control.rect.top},
        {"width", control.rect.width},        {"height", control.rect.height}, {"text", control.text}};
    if (control.kind == control_kind::label) return json;
    json["feature"] = control.feature;
    json["enabled"] = control.enabled;
    const auto put = [&](const char* key, const auto& value) {
        if (value) json[key] = *value;
    };
    put("min", control.minimum);
    put("max", control.maximum);
    put("step", control.step);
    if (!control.unit.empty()) json["unit"] = control.unit;
    put("lowest_position", control.lowest_position);
    put("highest_position", control.highest_position);
    put("position", control.position);
    if (control.kind == control_kind::combo) json["strings"] = control.strings;
    if (control.kind == control_kind::check_box) json["checked"] = control.checked;
    return json;
}

}  // namespace

std::string page_text(const drawn_page& page) {
    std::string text =
        fmt::format("{} (groups {})\n", TitleOf(page.name), fmt::join(groups_of(page.name), ", "));
    if (!page.offered) return text + "  nothing to show: the page does not appear\n";
    for (const drawn_row& row : rows_of(page)) text += row_text(row);
    return text;
}

nlohmann::ordered_json page_json(const drawn_page& page) {
    nlohmann::ordered_json json = {{"page", page_word(page.name)},
                                   {"title", TitleOf(page.name)},
                                   {"groups", groups_of(page.name)},
                                   {"offered", page.offered},
                                   {"width", page_width},
                                   {"height", page_height},
                                   {"controls", nlohmann::ordered_json::array()}};
    for (const drawn_control& control : page.controls) json["controls"].push_back(control_json(control));
    return json;
}

}  // namespace selvane_inspect
