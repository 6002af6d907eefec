#include "tests/windows/page_rows.h"

#include "tests/windows/host_window.h"

#include <commctrl.h>

#include <algorithm>

namespace page_test {
namespace {

constexpr int item_margin = 20;

constexpr wchar_t label_class[] = L"Static";
constexpr wchar_t slider_class[] = L"Selvane_msctls_trackbar32";
constexpr wchar_t edit_class[] = L"Selvane_RICHEDIT50W";
constexpr wchar_t spin_class[] = L"Selvane_msctls_updown32";
constexpr wchar_t list_class[] = L"Selvane_COMBOBOX";
constexpr wchar_t button_class[] = L"Selvane_BUTTON";

bool IsEnabled(HWND window) { return IsWindowEnabled(window) != 0; }

LONG_PTR StyleOf(HWND window) { return GetWindowLongPtrW(window, GWL_STYLE); }

// The mark of a slider, its edit and its up-down control.
std::wstring ValueMark(HWND slider, HWND edit, HWND spin) {
    const bool can_change = IsEnabled(slider) && IsEnabled(spin);
    const bool cannot_change = !IsEnabled(slider) && !IsEnabled(spin);
    const bool read_only = (StyleOf(edit) & ES_READONLY) != 0;
    if (can_change && IsEnabled(edit) && !read_only) return L"";
    if (cannot_change && !IsEnabled(edit)) return L"~";
    if (cannot_change && read_only) return L"=";
    return L"?";
}

std::wstring ButtonText(HWND button) {
    const std::wstring mark = IsEnabled(button) ? L"" : L"~";
    if ((StyleOf(button) & BS_TYPEMASK) != BS_CHECKBOX) return mark + L"<" + TextOf(button) + L">";
    const bool checked = SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
    return mark + (checked ? L"[x] " : L"[ ] ") + TextOf(button);
}

// The words of the window at `at` of a row, which steps over what belongs to it.
std::wstring WordsAt(const std::vector<HWND>& windows, std::size_t& at) {
    const HWND window = windows[at++];
    const std::wstring name = ClassOf(window);
    if (name == label_class) return TextOf(window);
    if (name == list_class) return (IsEnabled(window) ? L"{" : L"~{") + TextOf(window) + L"}";
    if (name == button_class) return ButtonText(window);
    const bool whole = name == slider_class && at + 1 < windows.size() &&
                       ClassOf(windows[at]) == edit_class && ClassOf(windows[at + 1]) == spin_class;
    if (!whole) return L"?" + name;
    const HWND edit = windows[at];
    const HWND spin = windows[at + 1];
    at += 2;
    return ValueMark(window, edit, spin) + L"(" + TextOf(edit) + L")";
}

}  // namespace

PageRows::PageRows(HWND page) {
    for (const HWND child : ChildrenOf(page)) Add(child);
    std::stable_sort(rows_.begin(), rows_.end(),
                     [](const Row& one, const Row& other) { return one.top < other.top; });
    std::wstring item;
    for (Row& row : rows_) {
        std::stable_sort(row.windows.begin(), row.windows.end(),
                         [](HWND one, HWND other) { return RectOf(one).left < RectOf(other).left; });
        const HWND first = row.windows.front();
        row.label = ClassOf(first) == label_class ? TextOf(first) : std::wstring();
        row.is_head = RectOf(first).left == item_margin;
        if (row.is_head) item = row.label;
        row.item = item;
    }
}

void PageRows::Add(HWND window) {
    const int top = RectOf(window).top;
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [top](const Row& row) { return row.top == top; });
    if (found != rows_.end()) {
        found->windows.push_back(window);
        return;
    }
    rows_.emplace_back();
    rows_.back().top = top;
    rows_.back().windows.push_back(window);
}

std::wstring PageRows::LineOf(const Row& row) {
    std::wstring line = row.is_head ? L"" : L" ";
    for (std::size_t at = 0; at < row.windows.size();) {
        line += (line.empty() ? L"" : L" ") + WordsAt(row.windows, at);
    }
    return line;
}

std::vector<std::wstring> PageRows::Lines() const {
    std::vector<std::wstring> lines;
    for (const Row& row : rows_) lines.push_back(LineOf(row));
    return lines;
}

std::vector<PageRows::Item> PageRows::Items() const {
    std::vector<Item> items;
    for (const Row& row : rows_) {
        if (row.is_head) items.push_back({row.item, {}});
        if (!items.empty()) items.back().lines.push_back(LineOf(row));
    }
    return items;
}

std::vector<std::wstring> PageRows::LinesOf(const std::wstring& item) const {
    for (const Item& one : Items()) {
        if (one.name == item) return one.lines;
    }
    return {};
}

std::vector<int> PageRows::Tops() const {
    std::vector<int> tops;
    for (const Row& row : rows_) tops.push_back(row.top);
    return tops;
}

HWND PageRows::Find(const std::wstring& window_class, const std::wstring& item,
                    const std::wstring& element) const {
    for (const Row& row : rows_) {
        if (row.item != item || row.label != element) continue;
        for (const HWND window : row.windows) {
            if (ClassOf(window) == window_class) return window;
        }
    }
    return nullptr;
}

HWND PageRows::Slider(const std::wstring& item, const std::wstring& element) const {
    return Find(slider_class, item, element);
}

HWND PageRows::Edit(const std::wstring& item, const std::wstring& element) const {
    return Find(edit_class, item, element);
}

HWND PageRows::Spin(const std::wstring& item, const std::wstring& element) const {
    return Find(spin_class, item, element);
}

HWND PageRows::List(const std::wstring& item, const std::wstring& element) const {
    return Find(list_class, item, element);
}

HWND PageRows::Button(const std::wstring& item, const std::wstring& caption, int n) const {
    for (const Row& row : rows_) {
        if (row.item != item) continue;
        for (const HWND window : row.windows) {
            if (ClassOf(window) == button_class && TextOf(window) == caption && n-- == 0) return window;
        }
    }
    return nullptr;
}

}  // namespace page_test
