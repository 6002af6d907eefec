#include "propui/windows/uvc_base_page.h"

#include "adapter/genicam_adapter_device.h"
#include "propui/page_layout.h"
#include "propui/windows/framework/com_edge.h"
#include "propui/windows/framework/reflection.h"
#include "propui/windows/resource_ids.h"

#include <commctrl.h>

#include <atomic>
#include <new>
#include <tuple>
#include <utility>

namespace uvc_page {
namespace {

using ZELPropUI::Framework::AtComEdge;

// The libraries of the rich edit; they stay for the life of the process.
void LoadEditLibraries() noexcept {
    static std::atomic<bool> loaded{false};
    if (loaded.exchange(true)) return;
    LoadLibraryA("RICHED20.DLL");
    LoadLibraryW(L"Msftedit.dll");
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

}  // namespace

CUVCBasePage::CUVCBasePage(IUnknown* outer, UINT title, std::vector<std::wstring> groups)
    : PropertyPage(ResourcesOf(title)), CUnknown(outer), groups_(std::move(groups)) {}

CUVCBasePage::~CUVCBasePage() { Deactivate(); }

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

HRESULT CUVCBasePage::Activate(HWND parent, LPCRECT place, BOOL) {
    std::ignore = AtComEdge([&] {
        Deactivate();  // a host may have lost count
        InitCommonControls();
        LoadEditLibraries();
        CreatePage(parent, place);
        return S_OK;
    });
    return S_OK;
}

void CUVCBasePage::CreatePage(HWND parent, LPCRECT place) {
    if (!CreateFromResource(Resources().dialog, parent)) return;
    if (place != nullptr) {
        Move(place);
        RecordSize(*place);
    }
    BuildPage(false);
}

// The list is empty before the first control ends, whatever its end brings about.
HRESULT CUVCBasePage::Deactivate() {
    DestroyDialog();
    const ZELPropUI::ControlList gone = std::exchange(controls_, {});
    return S_OK;
}

HRESULT CUVCBasePage::SetObjects(ULONG count, IUnknown** objects) {
    if (objects == nullptr) return E_POINTER;
    try {
        for (ULONG i = 0; i < count; ++i) {
            if (objects[i] == nullptr || !TakeObject(*objects[i])) continue;
            KeepObjects(count, objects);
            return S_OK;
        }
        return E_NOINTERFACE;
    } catch (const genicam_adapter::hr_exception&) {
        throw;  // hosts are told of an unreachable camera in this way
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

bool CUVCBasePage::TakeObject(IUnknown& object) {
    const auto filter = platform::query<IKsPropertySet>(&object);
    if (!filter || !genicam_adapter::is_adapter_device(filter.get())) return false;
    adapter_ = std::make_shared<genicam_adapter::GenICamAdapterDevice>(filter.get());
    filter_ = filter;
    return BuildPage(true);
}

bool CUVCBasePage::BuildPage(bool measure_only) {
    // A driver that runs messages lets the host hand over another camera meanwhile.
    const auto filter = filter_;
    const auto adapter = adapter_;
    ZELPropUI::PageSources sources;
    sources.filter = filter.get();
    sources.groups = &groups_;
    sources.built_in = ZELAdapterHelper::StaticItemTable();
    if (adapter) {
        const auto& table = adapter->get_item_table();
        sources.described = {table.data(), table.size()};
    }
    if (measure_only) return ZELPropUI::PageLayout(sources, nullptr).BuildPage(true);
    font_ = reinterpret_cast<HFONT>(SendMessageW(Handle(), WM_GETFONT, 0, 0));
    SendMessageW(Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font_), TRUE);
    ZELPropUI::WindowCanvas canvas(Handle(), controls_, adapter);
    return ZELPropUI::PageLayout(sources, &canvas).BuildPage(false);
}

bool CUVCBasePage::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    switch (message) {
        case ZELPropUI::WM_UPDATE_CONTROLS:
            UpdateControls();
            result = 1;
            return true;
        case WM_STYLECHANGING:
            result = OnStyleChanging(wparam, lparam);
            return true;
        default:
            return ZELPropUI::Framework::Reflect(Handle(), message, wparam, lparam, result);
    }
}

// Over a copy: a driver that runs messages lets the host deactivate the page meanwhile.
void CUVCBasePage::UpdateControls() {
    const ZELPropUI::ControlList controls = controls_;
    for (const auto& control : controls) {
        if (Handle() == nullptr) break;
        control->Update();
    }
}

}  // namespace uvc_page
