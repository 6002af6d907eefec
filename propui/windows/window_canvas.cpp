#include "propui/windows/window_canvas.h"

#include "propui/windows/button.h"
#include "propui/windows/combo.h"
#include "propui/windows/edit.h"
#include "propui/windows/framework/device_context.h"
#include "propui/windows/framework/module.h"
#include "propui/windows/slider.h"
#include "propui/windows/spin_button.h"
#include "propui/windows/switch.h"

#include <string>

namespace ZELPropUI {
namespace {

constexpr DWORD label_style = 0x50000200;
static_assert(label_style == (WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE));

}  // namespace

int WindowCanvas::TextWidth(std::wstring_view text) {
    const Framework::DeviceContext context(page_);
    const Framework::SelectedFont selected(context.Get(), PageFont());
    SIZE extent{};
    GetTextExtentPoint32W(context.Get(), text.data(), static_cast<int>(text.size()), &extent);
    return static_cast<int>(extent.cx);
}

int WindowCanvas::ScaleX(int measure) { return MulDiv(measure, DotsPerInch(LOGPIXELSX), 96); }

int WindowCanvas::ScaleY(int measure) { return MulDiv(measure, DotsPerInch(LOGPIXELSY), 96); }

void WindowCanvas::AddLabel(const PageRect& place, std::wstring_view text) {
    const HWND label =
        CreateWindowExW(0, L"STATIC", std::wstring(text).c_str(), label_style, place.left, place.top,
                        place.width, place.height, page_, nullptr, Framework::ModuleHandle(), nullptr);
    SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(PageFont()), TRUE);
}

template <class Control, class... Arguments>
HWND WindowCanvas::Add(const PageRect& place, HWND extra, Arguments&&... arguments) {
    if (IsGone()) return nullptr;
    const RECT edges{place.left, place.top, place.left + place.width, place.top + place.height};
    const std::shared_ptr<Control> control(new Control(std::forward<Arguments>(arguments)...),
                                           [source = source_](Control* end) {
                                               end->Close();
                                               delete end;
                                           });
    control->Create(page_, edges, extra);
    control->Init();
    if (!IsGone()) controls_.push_back(control);
    return control->Handle();
}

void WindowCanvas::AddSlider(const PageRect& place, ISliderController& controller) {
    Add<CZELSlider>(place, nullptr, &controller);
}

void WindowCanvas::AddEdit(const PageRect& place, ISliderController& controller) {
    edit_ = Add<CZELEdit>(place, nullptr, &controller);
}

void WindowCanvas::AddSpinButton(const PageRect& place, ISliderController& controller) {
    Add<CZELSpinButton>(place, edit_, &controller);
}

void WindowCanvas::AddCombo(const PageRect& place, CZELItemDataBase& item, InterfaceKey key) {
    Add<CZELCombo>(place, nullptr, &item, key);
}

void WindowCanvas::AddSwitch(const PageRect& place, CZELItemDataBase& item, InterfaceKey key,
                             std::wstring_view caption) {
    Add<CZELSwitch>(place, nullptr, &item, key, std::wstring(caption));
}

void WindowCanvas::AddButton(const PageRect& place, CZELItemDataBase& item, InterfaceKey key,
                             std::wstring_view caption) {
    Add<CZELButton>(place, nullptr, &item, key, std::wstring(caption));
}

HFONT WindowCanvas::PageFont() const {
    return reinterpret_cast<HFONT>(SendMessageW(page_, WM_GETFONT, 0, 0));
}

int WindowCanvas::DotsPerInch(int direction) const {
    return GetDeviceCaps(Framework::DeviceContext(page_).Get(), direction);
}

}  // namespace ZELPropUI
