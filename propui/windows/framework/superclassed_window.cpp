#include "propui/windows/framework/superclassed_window.h"

#include "propui/windows/framework/module.h"
#include "propui/windows/framework/pending_window.h"

#include <utility>

namespace ZELPropUI::Framework {

class SuperclassedWindow::Visit {
public:
    explicit Visit(SuperclassedWindow& window) noexcept : hold_(window), window_(window) {
        ++window_.visits_;
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit() {
        if (--window_.visits_ == 0 && std::exchange(window_.outlives_parent_, false)) window_.Close();
    }

private:
    Holder hold_;
    SuperclassedWindow& window_;
};

SuperclassedWindow::~SuperclassedWindow() {
    if (Handle() == nullptr) return;
    Superclass::SetPointer(Handle(), nullptr);  // the parent hears of the end and must not find this any more
    SetWindowLongPtrW(Handle(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(base_procedure_));
    DestroyWindow(Handle());
}

bool SuperclassedWindow::CreateChild(Superclass& superclass, HWND parent, const RECT& rect, DWORD style) {
    if (!superclass.Register()) return false;
    base_procedure_ = superclass.BaseProcedure();
    const PendingWindow pending(*this);
    return CreateWindowExW(0, superclass.Name(), nullptr, style, rect.left, rect.top, rect.right - rect.left,
                           rect.bottom - rect.top, parent, nullptr, ModuleHandle(), nullptr) != nullptr;
}

void SuperclassedWindow::Close() noexcept {
    if (Handle() != nullptr) DestroyWindow(Handle());
}

void SuperclassedWindow::SaveBusyChildren(HWND parent) noexcept {
    HWND next = nullptr;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = next) {
        next = GetWindow(child, GW_HWNDNEXT);
        SuperclassedWindow* const own = FromHandle(child);
        if (own == nullptr || own->visits_ == 0) continue;
        own->outlives_parent_ = true;
        SetParent(child, HWND_MESSAGE);
    }
}

LRESULT SuperclassedWindow::CallBase(UINT message, WPARAM wparam, LPARAM lparam) const {
    return Handle() != nullptr ? CallWindowProcW(base_procedure_, Handle(), message, wparam, lparam) : 0;
}

SuperclassedWindow* SuperclassedWindow::FromHandle(HWND handle) noexcept {
    const auto procedure = reinterpret_cast<WNDPROC>(GetClassLongPtrW(handle, GCLP_WNDPROC));
    return procedure == Procedure ? static_cast<SuperclassedWindow*>(Superclass::Pointer(handle)) : nullptr;
}

bool SuperclassedWindow::SendReflected(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    const Visit visit(*this);
    result = SendMessageW(Handle(), message, wparam, lparam);
    return HandledLast();
}

LRESULT CALLBACK SuperclassedWindow::Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* window = static_cast<SuperclassedWindow*>(Superclass::Pointer(handle));
    if (window == nullptr) {
        // Messages after the last one that the object saw find no announcement either.
        window = static_cast<SuperclassedWindow*>(PendingWindow::Take());
        if (window == nullptr) return DefWindowProcW(handle, message, wparam, lparam);
        window->Attach(handle);
        Superclass::SetPointer(handle, window);
    }
    const Visit visit(*window);
    LRESULT result = 0;
    if (window->Dispatch(message, wparam, lparam, result)) return result;
    result = window->CallBase(message, wparam, lparam);
    if (message == WM_NCDESTROY) {
        Superclass::SetPointer(handle, nullptr);
        window->Detach(handle);
    }
    return result;
}

}  // namespace ZELPropUI::Framework
