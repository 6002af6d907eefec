#include "propui/windows/uvc_base_page.h"

#include "adapter/genicam_adapter_device.h"
#include "platform/windows/com_edge.h"
#include "propui/page_layout.h"
#include "propui/resource_ids.h"
#include "propui/windows/framework/process_lock.h"
#include "propui/windows/framework/reflection.h"
#include "propui/windows/framework/superclassed_window.h"
#include "propui/windows/framework/system_library.h"

#include <commctrl.h>
#include <gsl/util>

#include <algorithm>
#include <chrono>
#include <new>
#include <tuple>
#include <utility>

namespace uvc_page {
namespace {

using platform::at_com_edge;
using ZELPropUI::Framework::LoadSystemLibrary;

// By address: an import of the common controls would be looked for beside the host first.
void InitCommonControlClasses() noexcept {
    const FARPROC found = GetProcAddress(LoadSystemLibrary(L"COMCTL32.DLL"), "InitCommonControls");
    if (found != nullptr) reinterpret_cast<decltype(&InitCommonControls)>(reinterpret_cast<void*>(found))();
}

// The libraries of the rich edit. A page on another thread waits here until they are there.
void LoadEditLibraries() noexcept {
    static bool loaded = false;
    const ZELPropUI::Framework::ProcessLock lock;
    if (loaded) return;
    LoadLibraryExA("RICHED20.DLL", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    LoadSystemLibrary(L"Msftedit.dll");
    loaded = true;
}

ZELPropUI::Framework::PageResources ResourcesOf(UINT title) noexcept {
    ZELPropUI::Framework::PageResources resources;
    resources.title = title;
    resources.dialog = SELVANE_DIALOG_PAGE;
    return resources;
}

LRESULT OnStyleChanging(WPARAM which, LPARAM lparam) noexcept {
    if (static_cast<int>(which) != GWL_EXSTYLE) return 1;
    // The tab key is to find its way through the page into the frame and back.
    reinterpret_cast<STYLESTRUCT*>(lparam)->styleNew |= WS_EX_CONTROLPARENT;
    return 0;
}

// The handler above sees changes only, and nobody else makes one.
void ChangeStyleOnce(HWND page) noexcept {
    SetWindowLongPtrW(page, GWL_EXSTYLE, GetWindowLongPtrW(page, GWL_EXSTYLE));
}

// The window whose tab order the page is a part of.
HWND TabOrderOwner(HWND page) noexcept {
    HWND owner = page;
    while ((GetWindowLongPtrW(owner, GWL_STYLE) & WS_CHILD) != 0 &&
           (GetWindowLongPtrW(owner, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0) {
        owner = GetParent(owner);
    }
    return owner;
}

// An edit asks its parent for the next control, which may be one of the frame. False if that moved nothing:
// the owner is no dialog, or the page has none.
bool MoveFocusInFrame(HWND page, WPARAM wparam, LPARAM lparam) noexcept {
    const HWND owner = TabOrderOwner(page);
    if (owner == page) return false;
    const HWND before = GetFocus();
    SendMessageW(owner, WM_NEXTDLGCTL, wparam, lparam);
    return GetFocus() != before;
}

// Looking into the queue lets the program's end be taken out of it.
void DropWaitingRefreshes(HWND page) noexcept {
    constexpr UINT refresh = ZELPropUI::WM_UPDATE_CONTROLS;
    MSG message;
    while (PeekMessageW(&message, page, refresh, refresh, PM_REMOVE | PM_QS_POSTMESSAGE) != 0) {
        if (message.message != WM_QUIT) continue;
        PostQuitMessage(static_cast<int>(message.wParam));
        return;
    }
}

bool Waits(UINT first, UINT last) noexcept {
    MSG message;
    return PeekMessageW(&message, nullptr, first, last, PM_NOREMOVE) != 0 && message.message >= first &&
           message.message <= last;
}

bool InputWaits() noexcept { return Waits(WM_MOUSEFIRST, WM_MOUSELAST) || Waits(WM_KEYFIRST, WM_KEYLAST); }

}  // namespace

CUVCBasePage::CUVCBasePage(IUnknown* outer, UINT title, std::vector<std::wstring> groups)
    : PropertyPage(ResourcesOf(title)), CUnknown(outer), groups_(std::move(groups)) {}

// A page that was never opened may end without a reference, and none may come and go then.
CUVCBasePage::~CUVCBasePage() {
    if (Handle() != nullptr) Deactivate();
}

HRESULT CUVCBasePage::NonDelegatingQueryInterface(REFIID iid, void** out) {
    if (iid == platform::null_guid) return S_OK;  // and `out` stays as it is
    if (iid != IID_IPropertyPage) return CUnknown::NonDelegatingQueryInterface(iid, out);
    if (out == nullptr) return E_POINTER;
    *out = static_cast<IPropertyPage*>(this);
    AddRef();
    return S_OK;
}

HRESULT CUVCBasePage::QueryInterface(REFIID iid, void** out) { return GetOwner()->QueryInterface(iid, out); }

ULONG CUVCBasePage::AddRef() { return GetOwner()->AddRef(); }

ULONG CUVCBasePage::Release() { return GetOwner()->Release(); }

ULONG CUVCBasePage::NonDelegatingRelease() {
    const ULONG left = GiveUpReference();
    if (left == 0 && !EndsWithItsWindow()) delete this;
    return left;
}

// A window of another thread may be at work for this object at any moment until it ends, so the last
// reference goes over to it.
bool CUVCBasePage::EndsWithItsWindow() noexcept {
    const HWND window = Handle();
    if (!LivesElsewhere()) return false;
    ends_with_window_ = true;
    if (Handle() == nullptr && ends_with_window_.exchange(false)) return false;  // it ended just now
    RequestEnd(window);
    return true;
}

void CUVCBasePage::OnDetached() noexcept {
    if (ends_with_window_.exchange(false)) NonDelegatingRelease();
}

// Whatever ends in the driver may come back to the host, which may let go of the page: it stays until the
// call is done.
HRESULT CUVCBasePage::Activate(HWND parent, LPCRECT rect, BOOL) {
    const Holder hold(*this);
    std::ignore = at_com_edge([&] {
        Deactivate();  // a host may have lost count
        InitCommonControlClasses();
        LoadEditLibraries();
        CreatePage(parent, rect);
        return S_OK;
    });
    return S_OK;
}

void CUVCBasePage::CreatePage(HWND parent, LPCRECT rect) {
    if (!CreateFromResource(Resources().dialog, parent)) return;
    ChangeStyleOnce(Handle());
    if (rect != nullptr) {
        Move(rect);
        RecordSize(*rect);
    }
    BuildPage({filter_, adapter_}, false);
}

// The list is empty before the first control ends, whatever its end brings about; the page may even be
// activated again from there.
HRESULT CUVCBasePage::Deactivate() {
    const Holder hold(*this);
    if (LivesElsewhere()) {
        RequestEnd(Handle());
        return S_OK;
    }
    const ZELPropUI::ControlList gone = std::exchange(controls_, {});
    turn_ = {};
    DestroyDialog();
    return S_OK;
}

HRESULT CUVCBasePage::SetObjects(ULONG count, IUnknown** objects) {
    if (objects == nullptr) return E_POINTER;
    const Holder hold(*this);
    try {
        Objects given;
        given.reserve(count);
        for (ULONG i = 0; i < count; ++i) given.emplace_back(objects[i]);
        const bool taken = std::any_of(given.begin(), given.end(), [&](const auto& object) {
            return object && TakeObject(*object, given);
        });
        return taken ? S_OK : E_NOINTERFACE;
    } catch (const genicam_adapter::hr_exception&) {
        throw;  // hosts are told of an unreachable camera in this way
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

// A driver that runs messages lets the host hand over another camera meanwhile, and the page stays with the
// one that came last.
bool CUVCBasePage::TakeObject(IUnknown& object, const Objects& all) {
    const Camera before{filter_, adapter_};
    const auto filter = platform::query<IKsPropertySet>(&object);
    if (!filter || !genicam_adapter::is_adapter_device(filter.get())) return false;
    const Camera camera{filter, std::make_shared<genicam_adapter::GenICamAdapterDevice>(filter.get())};
    if (adapter_ == before.adapter) {
        filter_ = camera.filter;
        adapter_ = camera.adapter;
    }
    const bool shown = BuildPage(camera, true);
    if (shown && adapter_ == camera.adapter) KeepObjects(all);
    return shown;
}

bool CUVCBasePage::BuildPage(const Camera& camera, bool measure_only) {
    const HWND window = Handle();
    ZELPropUI::PageSources sources;
    sources.filter = camera.filter.get();
    sources.groups = &groups_;
    sources.built_in = ZELAdapterHelper::StaticItemTable();
    if (camera.adapter) {
        const auto& table = camera.adapter->get_item_table();
        sources.described = {table.data(), table.size()};
    }
    if (measure_only) return ZELPropUI::PageLayout(sources, nullptr).BuildPage(true);
    // The host may have closed the page while the table was made, and even opened it again.
    if (window == nullptr || Handle() != window) return false;
    font_ = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font_), TRUE);
    ZELPropUI::WindowCanvas canvas(window, controls_, camera.adapter);
    return ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
}

bool CUVCBasePage::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    switch (message) {
        case ZELPropUI::WM_UPDATE_CONTROLS:
            UpdateControls();
            result = 1;
            return true;
        case WM_PAINT:
            if (!turn_.IsWaiting()) return false;
            OnPaint();
            result = 0;
            return true;
        case WM_DESTROY:
            ZELPropUI::Framework::SuperclassedWindow::SaveBusyChildren(Handle());
            return false;
        case WM_STYLECHANGING:
            result = OnStyleChanging(wparam, lparam);
            return true;
        case WM_NEXTDLGCTL:
            result = 0;
            return MoveFocusInFrame(Handle(), wparam, lparam);
        default:
            return ZELPropUI::Framework::Reflect(Handle(), message, wparam, lparam, result);
    }
}

// One refresh answers for all that wait. One that is at work may be in the midst of an element, whose
// controls are to be shown together.
void CUVCBasePage::UpdateControls() {
    DropWaitingRefreshes(Handle());
    if (at_work_ > 0) turn_ = {};
    turn_.Require(controls_.size());
    GoOnUpdating();
}

// Over a copy: a driver that runs messages lets the host deactivate the page meanwhile, or open it anew.
void CUVCBasePage::GoOnUpdating() {
    const HWND window = Handle();
    const ZELPropUI::ControlList controls = controls_;
    const std::uint64_t mine = ++refreshes_;
    const auto is_mine = [&] { return window != nullptr && Handle() == window && refreshes_ == mine; };
    ++at_work_;
    const auto done = gsl::finally([this] { --at_work_; });
    ZELPropUI::ElementRefresh element;
    turn_.GoOn(std::chrono::steady_clock::now());
    while (is_mine() && !turn_.IsOver()) {
        ZELPropUI::CZELControlBase& control = *controls[turn_.Next()];
        ZELPropUI::ISliderController* const controller = control.SharedController();
        if (!element.Covers(controller)) {
            element.TurnTo(controller);
            // Who looks into the queue is sent what other threads have for the window.
            const bool gives_way = turn_.MayWait() && IsWindowVisible(window) != 0 && InputWaits();
            if (!is_mine()) break;
            if (gives_way) return WaitForPause();
        }
        turn_.Take(controls.size());
        control.Update();
    }
    // Another refresh came within a call of the driver, and the control at work then may show what that call
    // brought, which is older.
    if (window != nullptr && Handle() == window && refreshes_ != mine) {
        PostMessageW(window, ZELPropUI::WM_UPDATE_CONTROLS, 0, 0);
    }
}

// Posted messages go before input. A request to paint comes after it: so the refresh goes on when the user
// pauses, or with the next change. No such request reaches a page that nobody sees.
void CUVCBasePage::WaitForPause() {
    turn_.Wait(std::chrono::steady_clock::now());
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INTERNALPAINT);
}

void CUVCBasePage::OnPaint() {
    PAINTSTRUCT paint;
    BeginPaint(Handle(), &paint);
    EndPaint(Handle(), &paint);
    GoOnUpdating();
}

}  // namespace uvc_page
