#include "apps/host/page_layout_text.h"

#include "apps/host/page_control.h"
#include "platform/visible_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace selvane_host {
namespace {

using controls = std::vector<page_control>;
using platform::quoted_text;

// The window of the shown page: the one that its controls stand on, while the frame's own buttons stand on
// the frame.
HWND page_window(const frame_window& frame, const controls& all) {
    for (const page_control& control : all) {
        const HWND parent = GetParent(control.window);
        if (parent != frame.handle()) return parent;
    }
    return nullptr;
}

LONG outermost_label(const controls& all) {
    LONG left = 0;
    bool found = false;
    for (const page_control& control : all) {
        if (control.kind != control_kind::label) continue;
        left = found ? std::min(left, control.rect.left) : control.rect.left;
        found = true;
    }
    return left;
}

// The last label in front of a control in its row; null for none.
const page_control* label_of(const page_control& control, const controls& all) {
    const page_control* nearest = nullptr;
    for (const page_control& label : all) {
        if (label.kind != control_kind::label || label.rect.top != control.rect.top) continue;
        if (label.rect.left >= control.rect.left) continue;
        if (nearest == nullptr || label.rect.left > nearest->rect.left) nearest = &label;
    }
    return nearest;
}

// The last item label that is not below a control; null for none.
const page_control* item_of(const page_control& control, const controls& all, LONG item_left) {
    const page_control* nearest = nullptr;
    for (const page_control& label : all) {
        if (label.kind != control_kind::label || label.rect.left != item_left) continue;
        if (label.rect.top > control.rect.top) continue;
        if (nearest == nullptr || label.rect.top > nearest->rect.top) nearest = &label;
    }
    return nearest;
}

std::string name_of(const page_control& control, const controls& all) {
    const bool has_caption = control.kind == control_kind::check_box || control.kind == control_kind::button;
    if (has_caption) return control.text;
    const page_control* label = label_of(control, all);
    return label != nullptr ? label->text : std::string();
}

std::string control_lines(const page_control& control, const controls& all, LONG item_left) {
    if (control.kind == control_kind::label) {
        return fmt::format("label {} {}\n", quoted_text(control.text), rect_text(control.rect));
    }
    const page_control* item = item_of(control, all, item_left);
    const std::string state = control_state(control);
    const std::string name = quoted_text(name_of(control, all));
    std::string lines = fmt::format(
        "{} {} of {} {} {}{}{}\n", kind_word(control.kind), name,
        quoted_text(item != nullptr ? item->text : std::string()), rect_text(control.rect),
        IsWindowEnabled(control.window) != 0 ? "enabled" : "disabled", state.empty() ? "" : " ", state);
    for (const open_entry& entry : open_entries(control)) {
        lines += fmt::format("entry {} of {} {}\n", quoted_text(entry.text), name, rect_text(entry.rect));
    }
    return lines;
}

RECT rect_of(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

RECT inner_rect_of(HWND window) {
    RECT rect{};
    GetClientRect(window, &rect);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

std::string frame_lines(const frame_window& frame, const controls& all) {
    std::string text = fmt::format("frame {} {}\n", quoted_text(window_text(frame.handle())),
                                   rect_text(inner_rect_of(frame.handle())));
    for (const page_control& control : all) {
        if (control.kind != control_kind::button || GetParent(control.window) != frame.handle()) continue;
        text += fmt::format("command {} {}\n", quoted_text(control.text), rect_text(control.rect));
    }
    return text;
}

std::string page_lines(const frame_window& frame, HWND page) {
    const int shown = frame.shown_page();
    std::string text = fmt::format("page {} of {} {} {}\n", shown + 1, frame.page_count(),
                                   quoted_text(frame.page_title(shown)), rect_text(rect_of(page)));
    for (int tab = 0; tab < frame.page_count(); ++tab) {
        text += fmt::format("tab {} {} {}\n", tab + 1, quoted_text(frame.page_title(tab)),
                            rect_text(frame.tab_rect(tab)));
    }
    return text;
}

struct thread_boxes {
    HWND frame;
    std::vector<HWND> windows;
};

BOOL CALLBACK take_box(HWND window, LPARAM found) {
    auto& boxes = *reinterpret_cast<thread_boxes*>(found);
    const bool is_box =
        window != boxes.frame && IsWindowVisible(window) != 0 && class_name(window) == L"#32770";
    if (is_box) boxes.windows.push_back(window);
    return TRUE;
}

// The text of a box stands on its labels, of which the one with the picture has none.
std::string box_lines(HWND box) {
    const std::string caption = quoted_text(window_text(box));
    std::string text;
    std::string answers;
    for (const page_control& control : find_controls(box)) {
        if (control.kind == control_kind::label && !control.text.empty())
            text += (text.empty() ? "" : " ") + control.text;
        if (control.kind == control_kind::button)
            answers += fmt::format("answer {} of {} {}\n", quoted_text(control.text), caption,
                                   rect_text(control.rect));
    }
    return fmt::format("box {} {} {}\n{}", caption, quoted_text(text), rect_text(rect_of(box)), answers);
}

std::string all_box_lines(const frame_window& frame) {
    thread_boxes boxes{frame.handle(), {}};
    EnumThreadWindows(GetCurrentThreadId(), take_box, reinterpret_cast<LPARAM>(&boxes));
    std::string text;
    for (const HWND box : boxes.windows) text += box_lines(box);
    return text;
}

}  // namespace

std::string describe_layout(const frame_window& frame) {
    const controls everything = find_controls(frame.handle());
    const HWND page = page_window(frame, everything);
    if (frame.shown_page() < 0 || page == nullptr) return {};
    std::string text = frame_lines(frame, everything) + page_lines(frame, page);
    const controls all = find_controls(page);
    const LONG item_left = outermost_label(all);
    for (const page_control& control : all) text += control_lines(control, all, item_left);
    return text + all_box_lines(frame) + "end\n";
}

}  // namespace selvane_host
