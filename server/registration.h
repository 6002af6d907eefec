#pragma once

#include "server/page_table.h"

#include <windows.h>

#include <string>

namespace selvane_server {

/// Registers a class under HKEY_CLASSES_ROOT and, if it names a media set, its page there. A registry error
/// comes back as the HRESULT made from it.
[[nodiscard]] HRESULT RegisterPage(const PageRecord& page, const std::wstring& module_path) noexcept;
/// Takes all of that back, as far as it is there.
void UnregisterPage(const PageRecord& page) noexcept;

/// E_NOTIMPL for a zero media set, E_FAIL for a zero class id.
[[nodiscard]] HRESULT RegisterMediaSetPage(const GUID& media_set, const GUID& clsid,
                                           const wchar_t* name) noexcept;
[[nodiscard]] HRESULT UnregisterMediaSetPage(const GUID& media_set, const GUID& clsid) noexcept;

/// Deletes a key with its subkeys; S_OK also for one that is not there, E_FAIL for an empty name.
HRESULT DeleteKeyTree(HKEY parent, const std::wstring& name);

/// The whole table, with the path of this module. E_FAIL if that cannot be found out.
[[nodiscard]] HRESULT RegisterServer() noexcept;
[[nodiscard]] HRESULT UnregisterServer() noexcept;

}  // namespace selvane_server
