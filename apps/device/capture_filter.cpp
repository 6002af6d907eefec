#include "apps/device/capture_filter.h"

#include "apps/device/camera_source.h"
#include "apps/device/capture_pin.h"
#include "apps/device/driver_edge.h"
#include "apps/device/enumerators.h"
#include "apps/device/locks.h"
#include "apps/device/module_object.h"
#include "platform/com_part.h"
#include "platform/text.h"
#include "wire/page_classes.h"

#include <ocidl.h>
#include <vfwmsgs.h>

#include <atomic>
#include <cwchar>
#include <mutex>
#include <utility>

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_part;
using platform::com_ptr;

LPWSTR give_text(const std::wstring& text) noexcept {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    auto* given = static_cast<LPWSTR>(CoTaskMemAlloc(size));
    if (given != nullptr) std::wcscpy(given, text.c_str());
    return given;
}

class page_list final : public com_part<ISpecifyPropertyPages> {
public:
    using com_part::com_part;
    HRESULT STDMETHODCALLTYPE GetPages(CAUUID* pages) override {
        if (pages == nullptr) return E_POINTER;
        *pages = {};
        const std::size_t count = wire::page_classes.size();
        pages->pElems = static_cast<GUID*>(CoTaskMemAlloc(count * sizeof(GUID)));
        if (pages->pElems == nullptr) return E_OUTOFMEMORY;
        std::copy(wire::page_classes.begin(), wire::page_classes.end(), pages->pElems);
        pages->cElems = static_cast<ULONG>(count);
        return S_OK;
    }
};

class source_flags final : public com_part<IAMFilterMiscFlags> {
public:
    using com_part::com_part;
    ULONG STDMETHODCALLTYPE GetMiscFlags() override { return AM_FILTER_MISC_FLAGS_IS_SOURCE; }
};

// The system hands over the settings of the device when an application opens it.
class device_settings final : public com_part<IPersistPropertyBag> {
public:
    device_settings(IUnknown& whole, const CLSID& clsid) noexcept : com_part(whole), clsid_(clsid) {}

    [[nodiscard]] std::wstring description_file() {
        const std::lock_guard<plain_lock> guard(lock_);
        return description_file_;
    }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* out) override {
        if (out == nullptr) return E_POINTER;
        *out = clsid_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* settings, IErrorLog* log) override {
        if (settings == nullptr) return E_POINTER;
        return at_com_edge([&] {
            VARIANT value;
            VariantInit(&value);
            value.vt = VT_BSTR;
            if (SUCCEEDED(settings->Read(description_setting, &value, log)) && value.vt == VT_BSTR) {
                const std::lock_guard<plain_lock> guard(lock_);
                description_file_.assign(value.bstrVal, SysStringLen(value.bstrVal));
            }
            VariantClear(&value);
            return S_OK;  // a device without settings of its own is as good
        });
    }
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag*, BOOL, BOOL) override { return E_NOTIMPL; }

private:
    const CLSID& clsid_;
    plain_lock lock_;
    std::wstring description_file_;
};

class capture_filter final : public module_object<IBaseFilter>, private pin_owner {
public:
    explicit capture_filter(const device_record& device)
        : device_(device),
          settings_(*this, device.clsid),
          pages_(*this),
          flags_(*this),
          edge_(
              [](void* self) -> simcam::simulated_camera& {
                  return static_cast<capture_filter*>(self)->camera();
              },
              this),
          faces_(*this, edge_),
          pin_(*this) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        const bool filter =
            iid == IID_IUnknown || iid == IID_IPersist || iid == IID_IMediaFilter || iid == IID_IBaseFilter;
        if (filter) *out = static_cast<IBaseFilter*>(this);
        if (iid == IID_IPersistPropertyBag) *out = static_cast<IPersistPropertyBag*>(&settings_);
        if (iid == IID_ISpecifyPropertyPages) *out = static_cast<ISpecifyPropertyPages*>(&pages_);
        if (iid == IID_IAMFilterMiscFlags) *out = static_cast<IAMFilterMiscFlags*>(&flags_);
        if (iid == platform::iid_property_set) *out = faces_.property_set();
        if (iid == platform::iid_camera_control) *out = faces_.camera_control();
        if (iid == platform::iid_video_proc_amp) *out = faces_.video_proc_amp();
        if (*out == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* out) override { return settings_.GetClassID(out); }

    HRESULT STDMETHODCALLTYPE Stop() override {
        // An application that ends the stream from within a frame: its thread cannot wait for itself.
        if (stream_.is_own_thread()) {
            state_ = State_Stopped;
            stream_.stop();
            return S_OK;
        }
        const std::lock_guard<plain_lock> transition(transition_);
        state_ = State_Stopped;
        stream_.stop();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Pause() override {
        if (stream_.is_own_thread()) return VFW_E_WRONG_STATE;
        const std::lock_guard<plain_lock> transition(transition_);
        return at_com_edge([&] { return pause(); });
    }

    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override {
        if (stream_.is_own_thread()) return VFW_E_WRONG_STATE;
        const std::lock_guard<plain_lock> transition(transition_);
        return at_com_edge([&] {
            const HRESULT hr = state_ == State_Stopped ? pause() : S_OK;
            if (FAILED(hr)) return hr;
            stream_.run(clock(), start);
            state_ = State_Running;
            return S_OK;
        });
    }

    // A camera has no picture to show while it is paused.
    HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* out) override {
        if (out == nullptr) return E_POINTER;
        *out = state_;
        return *out == State_Paused ? VFW_S_CANT_CUE : S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override {
        com_ptr<IReferenceClock> old(clock);  // which is let go of outside the lock
        const std::lock_guard<plain_lock> guard(lock_);
        std::swap(clock_, old);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** out) override {
        if (out == nullptr) return E_POINTER;
        *out = clock().detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        return at_com_edge([&] {
            *out = enumerate_pins({com_ptr<IPin>(&pin_)}).detach();
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** out) override {
        if (id == nullptr || out == nullptr) return E_POINTER;
        *out = nullptr;
        if (std::wcscmp(id, capture_pin::name) != 0) return VFW_E_NOT_FOUND;
        *out = com_ptr<IPin>(&pin_).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override {
        if (info == nullptr) return E_POINTER;
        const std::lock_guard<plain_lock> guard(lock_);
        *info = {};
        std::wcsncpy(info->achName, name_.c_str(), std::size(info->achName) - 1);
        info->pGraph = graph_;
        if (graph_ != nullptr) graph_->AddRef();
        return S_OK;
    }

    // A graph holds its filters, so that they hold it without a reference. A filter that is taken out of a
    // running graph has nobody who would stop it.
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override {
        if (graph == nullptr && !is_stopped()) Stop();
        return at_com_edge([&] {
            std::wstring copy = name != nullptr ? name : L"";
            const std::lock_guard<plain_lock> guard(lock_);
            graph_ = graph;
            name_.swap(copy);
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        return at_com_edge([&] {
            *out = give_text(platform::widen(source()->about));
            return *out != nullptr ? S_OK : E_OUTOFMEMORY;
        });
    }

private:
    ~capture_filter() override { stream_.stop(); }

    IBaseFilter& filter() noexcept override { return *this; }
    bool is_stopped() noexcept override { return state_ == State_Stopped; }
    IFilterGraph* graph() noexcept override {
        const std::lock_guard<plain_lock> guard(lock_);
        return graph_;
    }
    simcam::simulated_camera& camera() override { return *source()->camera; }

    [[nodiscard]] com_ptr<IReferenceClock> clock() {
        const std::lock_guard<plain_lock> guard(lock_);
        return clock_;
    }

    // The camera is made when somebody asks for it first: by then the device has its settings.
    [[nodiscard]] source_ptr source() {
        const std::lock_guard<plain_lock> guard(source_lock_);
        if (source_ == nullptr)
            source_ = open_camera(device_, choose_description(settings_.description_file()));
        return source_;
    }

    [[nodiscard]] HRESULT pause() {
        if (state_ == State_Running) stream_.pause();
        HRESULT hr = S_OK;
        if (state_ == State_Stopped) {
            std::optional<frame_target> target = pin_.target();
            if (target) hr = stream_.start(std::move(*target), source());
        }
        if (SUCCEEDED(hr)) state_ = State_Paused;
        return hr;
    }

    const device_record& device_;
    device_settings settings_;
    page_list pages_;
    source_flags flags_;
    driver_edge edge_;
    simcam::driver_faces<driver_edge> faces_;

    plain_lock source_lock_;
    source_ptr source_;

    plain_lock transition_;  // held while the state changes, and then by nothing that a frame may call
    std::atomic<FILTER_STATE> state_{State_Stopped};
    frame_stream stream_;

    plain_lock lock_;  // of the next three
    com_ptr<IReferenceClock> clock_;
    IFilterGraph* graph_ = nullptr;
    std::wstring name_;

    capture_pin pin_;
};

}  // namespace

com_ptr<IBaseFilter> make_capture_filter(const device_record& device) {
    return com_ptr<IBaseFilter>(new capture_filter(device));
}

}  // namespace selvane_camera
