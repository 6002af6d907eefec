#include "server/registration.h"

#include "platform/text.h"
#include "platform/windows/com_edge.h"
#include "platform/windows/owned.h"
#include "propui/windows/framework/module.h"

#include <tuple>

namespace selvane_server {
namespace {

using platform::at_com_edge;
using platform::registry_key;

constexpr DWORD module_path_size = 520;
constexpr DWORD key_name_size = 260;
constexpr REGSAM all_access = 0xF003F;
static_assert(all_access == KEY_ALL_ACCESS);

DWORD SizeInBytes(const std::wstring& text) noexcept {
    return static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
}

LSTATUS SetDefaultValue(HKEY key, const std::wstring& text) noexcept {
    return RegSetValueW(key, nullptr, REG_SZ, text.c_str(), SizeInBytes(text));
}

LSTATUS SetNamedValue(HKEY key, const wchar_t* name, const std::wstring& text) noexcept {
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          SizeInBytes(text));
}

std::wstring ClassKeyName(const GUID& clsid) { return L"CLSID\\" + platform::format_guid(clsid); }

std::wstring MediaSetKeyName(const GUID& media_set) {
    return L"System\\CurrentControlSet\\Control\\MediaSets\\" + platform::format_guid(media_set);
}

LSTATUS WriteClassKey(const PageRecord& page, const std::wstring& module_path) {
    registry_key class_key;
    LSTATUS status = RegCreateKeyW(HKEY_CLASSES_ROOT, ClassKeyName(page.clsid).c_str(), class_key.put());
    if (status != ERROR_SUCCESS) return status;
    status = SetDefaultValue(class_key.get(), page.name);
    if (status != ERROR_SUCCESS) return status;
    registry_key server_key;
    status = RegCreateKeyW(class_key.get(), L"InprocServer32", server_key.put());
    if (status != ERROR_SUCCESS) return status;
    status = SetDefaultValue(server_key.get(), module_path);
    if (status != ERROR_SUCCESS) return status;
    return SetNamedValue(server_key.get(), L"ThreadingModel", L"Both");
}

LSTATUS WriteMediaSetKey(const GUID& media_set, const GUID& clsid, const wchar_t* name) {
    const std::wstring path =
        MediaSetKeyName(media_set) + L"\\PropertyPages\\" + platform::format_guid(clsid);
    registry_key key;
    const LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, all_access, nullptr, key.put(), nullptr);
    return status != ERROR_SUCCESS ? status : SetDefaultValue(key.get(), name);
}

std::wstring FirstSubkey(HKEY key) {
    wchar_t name[key_name_size] = {};
    DWORD length = key_name_size;
    const LSTATUS status = RegEnumKeyExW(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr);
    return status == ERROR_SUCCESS ? std::wstring(name) : std::wstring();
}

// Empty if the platform does not tell or the path is longer than it could be.
std::wstring ModulePath() {
    wchar_t path[module_path_size] = {};
    const DWORD length = GetModuleFileNameW(ZELPropUI::Framework::ModuleHandle(), path, module_path_size);
    return length < module_path_size ? std::wstring(path, length) : std::wstring();
}

}  // namespace

HRESULT DeleteKeyTree(HKEY parent, const std::wstring& name) {
    if (name.empty()) return E_FAIL;
    {
        registry_key key;
        if (RegOpenKeyExW(parent, name.c_str(), 0, MAXIMUM_ALLOWED, key.put()) != ERROR_SUCCESS) return S_OK;
        std::wstring before;
        for (std::wstring subkey = FirstSubkey(key.get()); !subkey.empty(); subkey = FirstSubkey(key.get())) {
            if (subkey == before) break;  // it could not be deleted, and would come first forever
            std::ignore = DeleteKeyTree(key.get(), subkey);
            before = std::move(subkey);
        }
    }
    RegDeleteKeyW(parent, name.c_str());
    return S_OK;
}

HRESULT RegisterMediaSetPage(const GUID& media_set, const GUID& clsid, const wchar_t* name) noexcept {
    if (media_set == platform::null_guid) return E_NOTIMPL;
    if (clsid == platform::null_guid) return E_FAIL;
    return at_com_edge([&] { return HRESULT_FROM_WIN32(WriteMediaSetKey(media_set, clsid, name)); });
}

HRESULT UnregisterMediaSetPage(const GUID& media_set, const GUID& clsid) noexcept {
    if (media_set == platform::null_guid) return E_NOTIMPL;
    if (clsid == platform::null_guid) return E_FAIL;
    return at_com_edge([&] { return DeleteKeyTree(HKEY_LOCAL_MACHINE, MediaSetKeyName(media_set)); });
}

HRESULT RegisterPage(const PageRecord& page, const std::wstring& module_path) noexcept {
    const HRESULT hr = at_com_edge([&] { return HRESULT_FROM_WIN32(WriteClassKey(page, module_path)); });
    if (FAILED(hr) || page.media_set == platform::null_guid) return hr;
    return RegisterMediaSetPage(page.media_set, page.clsid, page.name);
}

void UnregisterPage(const PageRecord& page) noexcept {
    std::ignore = at_com_edge([&] { return DeleteKeyTree(HKEY_CLASSES_ROOT, ClassKeyName(page.clsid)); });
    if (page.media_set != platform::null_guid)
        std::ignore = UnregisterMediaSetPage(page.media_set, page.clsid);
}

HRESULT RegisterServer() noexcept {
    return at_com_edge([] {
        const std::wstring path = ModulePath();
        if (path.empty()) return E_FAIL;
        for (const PageRecord& page : PageTable()) {
            const HRESULT hr = RegisterPage(page, path);
            if (FAILED(hr)) return hr;
        }
        return S_OK;
    });
}

HRESULT UnregisterServer() noexcept {
    return at_com_edge([] {
        if (ModulePath().empty()) return E_FAIL;
        for (const PageRecord& page : PageTable()) UnregisterPage(page);
        return S_OK;
    });
}

}  // namespace selvane_server
