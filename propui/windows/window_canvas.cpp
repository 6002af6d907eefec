#include "propui/windows/window_canvas.h"

#include "propui/windows/button.h"
#include "propui/windows/combo.h"
#include "propui/windows/edit.h"
#include "propui/windows/framework/device_context.h"
#include "propui/windows/framework/module.h"
#include "propui/windows/slider.h"
#include "propui/windows/spin_button.h"
#include "propui/windows/switch.h"

#include <utility>

namespace ZELPropUI {
namespace {

constexpr DWORD label_style = 0x50000200;
static_assert(label_style == (WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE));

// Above the ids that a dialog takes for its own buttons.
constexpr LONG_PTR first_id = 1000;

}  // namespace

WindowCanvas::WindowCanvas(HWND page, ControlList& controls, std::shared_ptr<const void> source)
    : page_(page), controls_(controls), source_(std::move(source)), next_id_(first_id) {}

int WindowCanvas::TextWidth(std::wstring_view text) {
    const Framework::DeviceContext context(page_);
    const Framework::SelectedFont selected(context.Get(), PageFont());
    SIZE extent{};
    GetTextExtentPoint32W(context.Get(), text.data(), static_cast<int>(text.size()), &extent);
    return static_cast<int>(extent.cx);
}

int WindowCanvas::ScaleX(int measure) { return MulDiv(measure, DotsPerInch(LOGPIXELSX), 96); }

int WindowCanvas::ScaleY(int measure) { return MulDiv(measure, DotsPerInch(LOGPIXELSY), 96); }

void WindowCanvas::AddLabel(const PageRect& rect, std::wstring_view text) {
    const HWND label =
        CreateWindowExW(0, L"STATIC", std::wstring(text).c_str(), label_style, rect.left, rect.top,
                        rect.width, rect.height, page_, nullptr, Framework::ModuleHandle(), nullptr);
    GiveId(label);
    SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(PageFont()), TRUE);
}

void WindowCanvas::BeginElement(std::wstring_view item, std::wstring_view element) {
    element_name_ = item;
    element_name_ += L' ';
    element_name_ += element;
}

void WindowCanvas::GiveId(HWND window) { SetWindowLongPtrW(window, GWLP_ID, next_id_++); }

std::shared_ptr<CControlWindow> WindowCanvas::Add(const PageRect& rect, HWND extra,
                                                  std::unique_ptr<CControlWindow> made) {
    const RECT edges{rect.left, rect.top, rect.left + rect.width, rect.top + rect.height};
    const std::shared_ptr<CControlWindow> control(made.release(), [source = source_](CControlWindow* end) {
        end->Close();
        delete end;
    });
    if (IsGone()) return control;
    control->Create(page_, edges, extra);
    GiveId(control->Handle());
    control->Init();
    if (!IsGone()) controls_.push_back(control);
    return control;
}

HWND WindowCanvas::AddNamed(const PageRect& rect, HWND extra, std::unique_ptr<CControllerControl> made) {
    CControllerControl& control = *made;
    const auto kept = Add(rect, extra, std::move(made));
    control.SetName(element_name_);
    return control.Handle();
}

void WindowCanvas::AddSlider(const PageRect& rect, ISliderController& controller) {
    Add(rect, nullptr, std::make_unique<CZELSlider>(&controller));
}

void WindowCanvas::AddEdit(const PageRect& rect, ISliderController& controller) {
    edit_ = AddNamed(rect, nullptr, std::make_unique<CZELEdit>(&controller));
}

void WindowCanvas::AddSpinButton(const PageRect& rect, ISliderController& controller) {
    AddNamed(rect, edit_, std::make_unique<CZELSpinButton>(&controller));
}

void WindowCanvas::AddCombo(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key) {
    Add(rect, nullptr, std::make_unique<CZELCombo>(&item, key));
}

void WindowCanvas::AddSwitch(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                             std::wstring_view caption) {
    Add(rect, nullptr, std::make_unique<CZELSwitch>(&item, key, std::wstring(caption)));
}

void WindowCanvas::AddButton(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                             std::wstring_view caption) {
    Add(rect, nullptr, std::make_unique<CZELButton>(&item, key, std::wstring(caption)));
}

HFONT WindowCanvas::PageFont() const {
    return reinterpret_cast<HFONT>(SendMessageW(page_, WM_GETFONT, 0, 0));
}

int WindowCanvas::DotsPerInch(int direction) const {
    return GetDeviceCaps(Framework::DeviceContext(page_).Get(), direction);
}

}  // namespace ZELPropUI
