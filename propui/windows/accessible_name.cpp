#include "propui/windows/accessible_name.h"

#include "platform/com_ptr.h"

#include <objbase.h>

#include <initguid.h>
#include <oleacc.h>

namespace ZELPropUI {
namespace {

// Made anew each time: a host may end COM before it lets go of its pages.
platform::com_ptr<IAccPropServices> Services() noexcept {
    IAccPropServices* made = nullptr;
    CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                     reinterpret_cast<void**>(&made));
    return platform::com_ptr<IAccPropServices>::attach(made);
}

constexpr DWORD window_itself = static_cast<DWORD>(OBJID_CLIENT);

}  // namespace

bool SetAccessibleName(HWND window, const std::wstring& name) noexcept {
    if (window == nullptr) return false;
    const auto services = Services();
    return services && SUCCEEDED(services->SetHwndPropStr(window, window_itself, CHILDID_SELF,
                                                          PROPID_ACC_NAME, name.c_str()));
}

void ClearAccessibleName(HWND window) noexcept {
    const auto services = Services();
    MSAAPROPID name = PROPID_ACC_NAME;
    if (services) services->ClearHwndProps(window, window_itself, CHILDID_SELF, &name, 1);
}

}  // namespace ZELPropUI
