#pragma once

#include "platform/com_ptr.h"

#include <windows.h>

#include <ocidl.h>

#include <string>
#include <vector>

namespace page_test {

constexpr CLSID exposure_page = {
    0x01F8BA96, 0x06C1, 0x4888, {0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1A}};
constexpr CLSID feature_page = {0x01F8BA96, 0x06C1, 0x4888, {0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1B}};
constexpr CLSID lens_page = {0xC423731D, 0xD4C5, 0x41EE, {0xB1, 0x7D, 0xA3, 0x11, 0xA7, 0xB2, 0x7D, 0xEC}};
constexpr CLSID color_page = {0xA522337D, 0x5324, 0x4123, {0x9D, 0xA4, 0x84, 0xD1, 0x7E, 0xF1, 0xEA, 0xDA}};
constexpr CLSID all_pages[] = {exposure_page, feature_page, lens_page, color_page};

using PagePtr = platform::com_ptr<IPropertyPage>;

/// The DLL, loaded from beside the program for as long as this lives, and its four exports.
class PageServer {
public:
    PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;
    ~PageServer();

    /// Full path of the DLL.
    [[nodiscard]] static std::wstring Path();
    [[nodiscard]] HMODULE Module() const { return module_; }

    HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
        return get_class_object_(clsid, iid, out);
    }
    [[nodiscard]] HRESULT CanUnloadNow() const { return can_unload_(); }
    [[nodiscard]] HRESULT Register() const { return register_(); }
    [[nodiscard]] HRESULT Unregister() const { return unregister_(); }

    [[nodiscard]] platform::com_ptr<IClassFactory> Factory(REFCLSID clsid) const;
    [[nodiscard]] PagePtr MakePage(REFCLSID clsid) const;

private:
    template <class Function>
    void Find(Function& function, const char* name);

    HMODULE module_;
    decltype(&DllGetClassObject) get_class_object_ = nullptr;
    decltype(&DllCanUnloadNow) can_unload_ = nullptr;
    HRESULT(STDAPICALLTYPE* register_)() = nullptr;
    HRESULT(STDAPICALLTYPE* unregister_)() = nullptr;
};

}  // namespace page_test
