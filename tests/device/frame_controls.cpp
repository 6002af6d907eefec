#include "tests/device/frame_controls.h"

#include <algorithm>
#include <cstdlib>

namespace device_test {
namespace {

using selvane_host::control_kind;
using selvane_host::page_control;

LONG middle(const RECT& rect) noexcept { return (rect.top + rect.bottom) / 2; }

template <class Condition>
const page_control* find(const std::vector<page_control>& controls, Condition fits) {
    const auto found = std::find_if(controls.begin(), controls.end(), fits);
    return found == controls.end() ? nullptr : &*found;
}

const page_control* find_captioned(const std::vector<page_control>& controls, const std::string& caption,
                                   control_kind kind) {
    return find(controls,
                [&](const page_control& control) { return control.kind == kind && control.text == caption; });
}

HWND window_of(const page_control* control) { return control != nullptr ? control->window : nullptr; }

}  // namespace

HWND control_in_row(HWND frame, const std::string& label, control_kind kind) {
    const std::vector<page_control> controls = selvane_host::find_controls(frame);
    const page_control* row = find_captioned(controls, label, control_kind::label);
    if (row == nullptr) return nullptr;
    const LONG reach = (row->rect.bottom - row->rect.top) / 2;
    return window_of(find(controls, [&](const page_control& control) {
        return control.kind == kind && std::abs(middle(control.rect) - middle(row->rect)) <= reach;
    }));
}

HWND control_captioned(HWND frame, const std::string& caption, control_kind kind) {
    const std::vector<page_control> controls = selvane_host::find_controls(frame);
    return window_of(find_captioned(controls, caption, kind));
}

}  // namespace device_test
