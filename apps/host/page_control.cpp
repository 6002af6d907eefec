#include "apps/host/page_control.h"

#include "apps/host/frame_window.h"
#include "platform/text.h"
#include "platform/visible_text.h"

#include <commctrl.h>
#include <fmt/format.h>

#include <cwchar>
#include <optional>

namespace selvane_host {
namespace {

struct kind_row {
    control_kind kind;
    const char* word;
    const wchar_t* base_class;  // a class made from one of the platform's ends in its name
};

constexpr kind_row kinds[] = {
    {control_kind::label, "label", L"STATIC"},    {control_kind::slider, "slider", L"msctls_trackbar32"},
    {control_kind::edit, "edit", L"RICHEDIT50W"}, {control_kind::spin_button, "spin", L"msctls_updown32"},
    {control_kind::combo, "combo", L"COMBOBOX"},  {control_kind::button, "button", L"BUTTON"},
    {control_kind::check_box, "switch", nullptr},
};

bool is_made_from(const std::wstring& name, const wchar_t* base) {
    const std::size_t length = std::wcslen(base);
    return name.size() >= length && _wcsicmp(name.c_str() + (name.size() - length), base) == 0;
}

bool is_check_box(HWND button) {
    const LONG_PTR type = GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK;
    return type == BS_CHECKBOX || type == BS_AUTOCHECKBOX;
}

std::optional<control_kind> kind_of(HWND window) {
    const std::wstring name = class_name(window);
    for (const kind_row& row : kinds) {
        if (row.base_class == nullptr || !is_made_from(name, row.base_class)) continue;
        return row.kind == control_kind::button && is_check_box(window) ? control_kind::check_box : row.kind;
    }
    return std::nullopt;
}

BOOL CALLBACK take_control(HWND window, LPARAM list) {
    const std::optional<control_kind> kind = kind_of(window);
    if (!kind || IsWindowVisible(window) == 0) return TRUE;
    page_control control{window, *kind, {}, window_text(window)};
    GetWindowRect(window, &control.rect);
    reinterpret_cast<std::vector<page_control>*>(list)->push_back(std::move(control));
    return TRUE;
}

LRESULT ask(HWND window, UINT message, WPARAM wparam = 0) { return SendMessageW(window, message, wparam, 0); }

std::string slider_state(HWND slider) {
    RECT thumb{};
    SendMessageW(slider, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    MapWindowPoints(slider, nullptr, reinterpret_cast<POINT*>(&thumb), 2);
    return fmt::format("position {} of {}..{} thumb {}", ask(slider, TBM_GETPOS),
                       ask(slider, TBM_GETRANGEMIN), ask(slider, TBM_GETRANGEMAX), rect_text(thumb));
}

std::string entry_text(HWND combo, WPARAM entry) {
    const LRESULT length = ask(combo, CB_GETLBTEXTLEN, entry);
    if (length < 0) return {};
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(combo, CB_GETLBTEXT, entry, reinterpret_cast<LPARAM>(text.data()));
    return platform::narrow(text.c_str());
}

std::string combo_state(HWND combo) {
    const LRESULT chosen = ask(combo, CB_GETCURSEL);
    std::string state =
        chosen < 0 ? "nothing" : platform::quoted_text(entry_text(combo, static_cast<WPARAM>(chosen)));
    state += " of";
    const LRESULT count = ask(combo, CB_GETCOUNT);
    for (LRESULT entry = 0; entry < count; ++entry) {
        state += " " + platform::quoted_text(entry_text(combo, static_cast<WPARAM>(entry)));
    }
    return state;
}

}  // namespace

std::vector<page_control> find_controls(HWND parent) {
    std::vector<page_control> controls;
    EnumChildWindows(parent, take_control, reinterpret_cast<LPARAM>(&controls));
    return controls;
}

const char* kind_word(control_kind kind) noexcept {
    for (const kind_row& row : kinds) {
        if (row.kind == kind) return row.word;
    }
    return "";
}

std::string control_state(const page_control& control) {
    switch (control.kind) {
        case control_kind::slider:
            return slider_state(control.window);
        case control_kind::edit:
            return "text " + platform::quoted_text(control.text);
        case control_kind::spin_button:
            return fmt::format("position {}", static_cast<short>(LOWORD(ask(control.window, UDM_GETPOS))));
        case control_kind::combo:
            return combo_state(control.window);
        case control_kind::check_box:
            return ask(control.window, BM_GETCHECK) == BST_CHECKED ? "checked" : "unchecked";
        default:
            return {};
    }
}

std::vector<open_entry> open_entries(const page_control& control) {
    std::vector<open_entry> entries;
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    if (control.kind != control_kind::combo || ask(control.window, CB_GETDROPPEDSTATE) == 0) return entries;
    if (GetComboBoxInfo(control.window, &info) == 0) return entries;
    const LRESULT count = ask(control.window, CB_GETCOUNT);
    for (LRESULT at = 0; at < count; ++at) {
        const auto entry = static_cast<WPARAM>(at);
        RECT rect{};
        SendMessageW(info.hwndList, LB_GETITEMRECT, entry, reinterpret_cast<LPARAM>(&rect));
        MapWindowPoints(info.hwndList, nullptr, reinterpret_cast<POINT*>(&rect), 2);
        entries.push_back({entry_text(control.window, entry), rect});
    }
    return entries;
}

std::string rect_text(const RECT& rect) {
    return fmt::format("{},{} {}x{}", rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
}

}  // namespace selvane_host
