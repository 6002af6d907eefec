#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

/// A window class of our own over one of the platform's: its windows are the platform's, but their messages
/// come to a procedure of ours first, and each window has room for a pointer of ours. Lives as long as the
/// module.
class Superclass {
public:
    constexpr Superclass(const wchar_t* name, const wchar_t* base_name, WNDPROC procedure) noexcept
        : name_(name), base_name_(base_name), procedure_(procedure) {}
    Superclass(const Superclass&) = delete;
    Superclass& operator=(const Superclass&) = delete;
    /// Takes the class back, so that the module can be loaded again at another address.
    ~Superclass();

    /// Registers the class on first use. False if the platform does not have the base class (yet) or refuses.
    [[nodiscard]] bool Register() noexcept;
    [[nodiscard]] const wchar_t* Name() const noexcept { return name_; }
    /// The platform's procedure; valid once registered.
    [[nodiscard]] WNDPROC BaseProcedure() const noexcept { return base_procedure_; }

    /// The pointer that a window of such a class carries.
    [[nodiscard]] static void* Pointer(HWND window) noexcept;
    static void SetPointer(HWND window, void* pointer) noexcept;

private:
    const wchar_t* name_;
    const wchar_t* base_name_;
    WNDPROC procedure_;
    WNDPROC base_procedure_ = nullptr;
    HINSTANCE module_ = nullptr;
    bool registered_ = false;
};

}  // namespace ZELPropUI::Framework
