#pragma once

#include "items/unknown.h"
#include "platform/com_ptr.h"
#include "propui/refresh.h"
#include "propui/windows/framework/dialog_window.h"
#include "propui/windows/framework/property_page.h"
#include "propui/windows/window_canvas.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace genicam_adapter {
class GenICamAdapterDevice;
}

namespace uvc_page {

/// A property page that shows the items of a few groups. Lives on the window thread of its host.
class CUVCBasePage : public ZELPropUI::Framework::PropertyPage,
                     public ZELPropUI::Framework::DialogWindow,
                     public ZELAdapterHelper::CUnknown {
public:
    /// `outer` is the object that aggregates the page, or null; `title` a string resource.
    CUVCBasePage(IUnknown* outer, UINT title, std::vector<std::wstring> groups);
    ~CUVCBasePage() override;

    HRESULT NonDelegatingQueryInterface(REFIID iid, void** out) override;
    /// The last one ends the page on the thread of its window, if it has one.
    ULONG NonDelegatingRelease() override;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    /// Creates the window and its controls. S_OK even if that fails: the frame stays empty then.
    HRESULT STDMETHODCALLTYPE Activate(HWND parent, LPCRECT rect, BOOL modal) override;
    HRESULT STDMETHODCALLTYPE Deactivate() override;
    /// Takes the first object that is a camera with something to show on this page. E_NOINTERFACE if there is
    /// none. Throws `hr_exception` when a camera cannot be reached or hands out a malformed description.
    HRESULT STDMETHODCALLTYPE SetObjects(ULONG count, IUnknown** objects) override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;
    void Hold() noexcept override { NonDelegatingAddRef(); }
    void Drop() noexcept override { NonDelegatingRelease(); }
    [[nodiscard]] HWND PageWindow() const noexcept override { return Handle(); }
    void OnEndRequest() override { Deactivate(); }
    void OnDetached() noexcept override;

private:
    struct Camera {
        platform::com_ptr<IKsPropertySet> filter;
        std::shared_ptr<genicam_adapter::GenICamAdapterDevice> adapter;
    };

    [[nodiscard]] bool TakeObject(IUnknown& object, const Objects& all);
    bool BuildPage(const Camera& camera, bool measure_only);
    void CreatePage(HWND parent, LPCRECT rect);
    void UpdateControls();
    void GoOnUpdating();
    void WaitForPause();
    void OnPaint();
    [[nodiscard]] bool EndsWithItsWindow() noexcept;

    platform::com_ptr<IKsPropertySet> filter_;
    std::vector<std::wstring> groups_;
    ZELPropUI::ControlList controls_;
    ZELPropUI::RefreshTurn turn_;
    std::uint64_t refreshes_ = 0;  // begun or gone on with
    int at_work_ = 0;              // of them, one within the other
    std::shared_ptr<genicam_adapter::GenICamAdapterDevice> adapter_;
    HFONT font_ = nullptr;  // the dialog's
    std::atomic<bool> ends_with_window_{false};
};

}  // namespace uvc_page
