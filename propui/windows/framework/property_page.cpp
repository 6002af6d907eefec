#include "propui/windows/framework/property_page.h"

#include "platform/windows/com_edge.h"
#include "propui/windows/framework/dialog_template.h"
#include "propui/windows/framework/module.h"

#include <objbase.h>
#include <olectl.h>

#include <cstring>
#include <string>

namespace ZELPropUI::Framework {
namespace {

// Empty for an id without a resource. With no buffer the platform hands out its own, which is not terminated.
std::wstring ResourceText(UINT id) {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(ModuleHandle(), id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

// The caller frees it; null without memory.
wchar_t* TaskMemoryText(const std::wstring& text) {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc(size));
    if (copy != nullptr) std::memcpy(copy, text.c_str(), size);
    return copy;
}

// The last numbers of the platform's headers depend on the version that they are asked for.
bool IsDialogInput(UINT message) noexcept {
    return (message >= WM_KEYFIRST && message <= 265) || (message >= WM_MOUSEFIRST && message <= 526);
}

}  // namespace

HRESULT PropertyPage::SetPageSite(IPropertyPageSite* site) {
    if (site != nullptr && site_) return E_UNEXPECTED;
    site_ = platform::com_ptr<IPropertyPageSite>(site);
    return S_OK;
}

HRESULT PropertyPage::GetPageInfo(PROPPAGEINFO* info) {
    if (info == nullptr) return E_POINTER;
    return platform::at_com_edge([this, info] {
        const auto dialog = ReadDialogTemplate(ModuleHandle(), resources_.dialog);
        if (!dialog) return E_UNEXPECTED;
        const std::wstring title = ResourceText(resources_.title);
        const std::wstring help_file = ResourceText(resources_.help_file);
        const std::wstring doc_string = ResourceText(resources_.doc_string);
        size_ = PageSize(*dialog);
        info->cb = sizeof *info;  // what came in it is any host's guess
        info->pszTitle = TaskMemoryText(title);
        info->size = size_;
        info->pszHelpFile = TaskMemoryText(help_file);
        info->pszDocString = TaskMemoryText(doc_string);
        info->dwHelpContext = resources_.help_context;
        return S_OK;
    });
}

HRESULT PropertyPage::Show(UINT command) {
    if (PageWindow() == nullptr) return E_UNEXPECTED;
    ShowWindow(PageWindow(), static_cast<int>(command));
    return S_OK;
}

HRESULT PropertyPage::Move(LPCRECT rect) {
    if (PageWindow() == nullptr) return E_UNEXPECTED;
    if (rect == nullptr) return E_POINTER;
    MoveWindow(PageWindow(), rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, TRUE);
    return S_OK;
}

HRESULT PropertyPage::IsPageDirty() { return dirty_ ? S_OK : S_FALSE; }

HRESULT PropertyPage::Apply() {
    if (!dirty_) return S_OK;
    dirty_ = false;
    if (site_) site_->OnStatusChange(PROPPAGESTATUS_CLEAN);
    return S_OK;
}

HRESULT PropertyPage::Help(LPCOLESTR directory) {
    return platform::at_com_edge([this, directory] {
        const std::wstring file =
            std::wstring(directory != nullptr ? directory : L"") + L"\\" + ResourceText(resources_.help_file);
        WinHelpW(PageWindow(), file.c_str(), HELP_CONTEXTPOPUP, 0);
        return S_OK;
    });
}

HRESULT PropertyPage::TranslateAccelerator(MSG* message) {
    if (message == nullptr) return E_POINTER;
    if (PageWindow() == nullptr || !IsDialogInput(message->message)) return S_FALSE;
    return IsDialogMessageW(PageWindow(), message) != 0 ? S_OK : S_FALSE;
}

void PropertyPage::RecordSize(const RECT& rect) noexcept {
    size_ = {rect.right - rect.left, rect.bottom - rect.top};
}

}  // namespace ZELPropUI::Framework
