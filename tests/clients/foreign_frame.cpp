#include "tests/clients/foreign_frame.h"

#include "apps/host/frame_window.h"
#include "apps/host/page_control.h"
#include "tests/device/camera_module.h"

#include <commctrl.h>

#include <cwchar>

namespace clients_test {
namespace {

BOOL CALLBACK take_tabs(HWND window, LPARAM found) {
    if (_wcsicmp(selvane_host::class_name(window).c_str(), WC_TABCONTROLW) != 0) return TRUE;
    *reinterpret_cast<bool*>(found) = true;
    return FALSE;
}

BOOL CALLBACK take_frame(HWND window, LPARAM found) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    bool has_tabs = false;
    if (IsWindowVisible(window) == 0 || process == GetCurrentProcessId()) return TRUE;
    EnumChildWindows(window, take_tabs, reinterpret_cast<LPARAM>(&has_tabs));
    if (!has_tabs) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

void send(INPUT input) { SendInput(1, &input, sizeof(input)); }

void send_key(WORD key, wchar_t character, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = character;
    input.ki.dwFlags = flags;
    send(input);
    input.ki.dwFlags = flags | KEYEVENTF_KEYUP;
    send(input);
}

}  // namespace

std::optional<foreign_frame> foreign_frame::wait() {
    HWND frame = nullptr;
    const bool shown = device_test::wait_for([&] {
        EnumWindows(take_frame, reinterpret_cast<LPARAM>(&frame));
        // The page is there once its controls are.
        return frame != nullptr && !selvane_host::find_controls(frame).empty() &&
               SetForegroundWindow(frame) != 0;
    });
    if (!shown) return std::nullopt;
    return foreign_frame(frame);
}

void foreign_frame::click(HWND control) const {
    RECT rect{};
    GetWindowRect(control, &rect);
    SetCursorPos((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    INPUT input{};
    input.type = INPUT_MOUSE;
    for (const auto step : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
        input.mi.dwFlags = static_cast<DWORD>(step);
        send(input);
    }
}

void foreign_frame::press(WORD key, int times) const {
    for (int time = 0; time < times; ++time) send_key(key, 0, 0);
}

void foreign_frame::type(const std::wstring& text) const {
    for (const wchar_t character : text) send_key(0, character, KEYEVENTF_UNICODE);
}

void foreign_frame::close() const { PostMessageW(frame_, WM_CLOSE, 0, 0); }

}  // namespace clients_test
