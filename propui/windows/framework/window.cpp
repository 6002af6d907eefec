#include "propui/windows/framework/window.h"

namespace ZELPropUI::Framework {

bool Window::Dispatch(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) noexcept {
    bool handled = false;
    try {
        handled = OnMessage(message, wparam, lparam, result);
    } catch (...) {
        handled = false;  // the platform calls us through frames that no exception may cross
    }
    handled_last_ = handled;
    return handled;
}

}  // namespace ZELPropUI::Framework
