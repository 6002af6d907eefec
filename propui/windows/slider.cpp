#include "propui/windows/slider.h"

#include "propui/control_logic.h"

#include <commctrl.h>

#include <algorithm>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50010010;
static_assert(style == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | TBS_NOTICKS));

Framework::Superclass window_class(L"Selvane_msctls_trackbar32", L"msctls_trackbar32",
                                   Framework::SuperclassedWindow::Procedure);

}  // namespace

bool CZELSlider::Create(HWND parent, const RECT& rect, HWND) {
    return CreateChild(window_class, parent, rect, style);
}

void CZELSlider::Init() {
    std::int32_t low = 0;
    std::int32_t high = 0;
    if (Controller().GetPositionRange(low, high)) Send(TBM_SETRANGE, TRUE, MAKELPARAM(low, high));
    Update();
}

// Not every version of the platform holds a position to the range, and one divides by what lies between them.
void CZELSlider::UpdateValue() {
    std::int32_t position = 0;
    if (Controller().GetPosition(position)) {
        const auto low = static_cast<std::int32_t>(Send(TBM_GETRANGEMIN));
        const auto high = static_cast<std::int32_t>(Send(TBM_GETRANGEMAX));
        Send(TBM_SETPOS, TRUE, std::max(low, std::min(high, position)));
    }
    Redraw();
}

bool CZELSlider::OnMessage(UINT message, WPARAM wparam, LPARAM, LRESULT&) {
    if (message != WM_HSCROLL && message != Framework::ocm_base + WM_HSCROLL) return false;
    if (LOWORD(wparam) == TB_ENDTRACK) return true;
    Controller().SetPosition(static_cast<std::int32_t>(Send(TBM_GETPOS)));
    PostUpdateControls();
    return true;
}

}  // namespace ZELPropUI
