#pragma once

#include "platform/com_ptr.h"

#include <windows.h>

#include <ocidl.h>

#include <vector>

namespace ZELPropUI::Framework {

static_assert(sizeof(PROPPAGEINFO) == 48);

/// String resources that describe a page, 0 for none, and the template of its dialog.
struct PageResources {
    UINT title = 0;
    UINT help_file = 0;
    UINT doc_string = 0;
    DWORD help_context = 0;
    int dialog = 0;
};

/// What a property page does for its host whatever it shows.
class PropertyPage : public IPropertyPage {
public:
    PropertyPage(const PropertyPage&) = delete;
    PropertyPage& operator=(const PropertyPage&) = delete;

    HRESULT STDMETHODCALLTYPE SetPageSite(IPropertyPageSite* site) override;
    HRESULT STDMETHODCALLTYPE GetPageInfo(PROPPAGEINFO* info) override;
    HRESULT STDMETHODCALLTYPE Show(UINT command) override;
    HRESULT STDMETHODCALLTYPE Move(LPCRECT rect) override;
    HRESULT STDMETHODCALLTYPE IsPageDirty() override;
    HRESULT STDMETHODCALLTYPE Apply() override;
    HRESULT STDMETHODCALLTYPE Help(LPCOLESTR directory) override;
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) override;

protected:
    explicit PropertyPage(const PageResources& resources) noexcept : resources_(resources) {}
    ~PropertyPage() = default;

    /// The window of the page; null while it has none.
    [[nodiscard]] virtual HWND PageWindow() const noexcept = 0;
    using Objects = std::vector<platform::com_ptr<IUnknown>>;
    /// Keeps the objects in the place of earlier ones.
    void KeepObjects(Objects objects) noexcept { objects_.swap(objects); }
    void RecordSize(const RECT& rect) noexcept;
    [[nodiscard]] const PageResources& Resources() const noexcept { return resources_; }

private:
    platform::com_ptr<IPropertyPageSite> site_;
    Objects objects_;
    SIZE size_{};
    PageResources resources_;
    bool dirty_ = false;  // no control sets it: changes reach the device at once
};

}  // namespace ZELPropUI::Framework
