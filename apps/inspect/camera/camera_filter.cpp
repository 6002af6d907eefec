#include "apps/inspect/camera/camera_filter.h"

#include "genicam/core/error.h"
#include "platform/com_object.h"
#include "wire/device_set.h"

#include <cstring>

namespace selvane_inspect {
namespace {

// Copies an answer that fits, and tells its size.
HRESULT hand_out(const void* answer, std::size_t size, void* data, DWORD data_size, DWORD* returned) {
    if (data == nullptr || returned == nullptr || data_size < size) return E_INVALIDARG;
    std::memcpy(data, answer, size);
    *returned = static_cast<DWORD>(size);
    return S_OK;
}

class camera_filter final : public platform::com_object<IKsPropertySet> {
public:
    explicit camera_filter(live_camera& camera) : camera_(camera) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        if (iid != platform::iid_unknown && iid != platform::iid_property_set) return E_NOINTERFACE;
        *out = static_cast<IKsPropertySet*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;

private:
    HRESULT get_description(DWORD id, const void* instance, DWORD instance_size, void* data, DWORD data_size,
                            DWORD* returned) const;

    live_camera& camera_;
};

bool take_address(const void* instance, DWORD instance_size, std::uint64_t& address) {
    if (instance == nullptr || instance_size != sizeof(address)) return false;
    std::memcpy(&address, instance, sizeof(address));
    return true;
}

HRESULT camera_filter::Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                           DWORD data_size) {
    std::uint64_t address = 0;
    if (set != wire::device_set || id != SELVANE_REGISTER_ACCESS) return E_NOTIMPL;
    if (!take_address(instance, instance_size, address)) return E_INVALIDARG;
    const std::error_code failure = camera_.write(address, data, data_size, 0);
    return failure ? GenICam::to_hresult(failure) : S_OK;
}

HRESULT camera_filter::get_description(DWORD id, const void* instance, DWORD instance_size, void* data,
                                       DWORD data_size, DWORD* returned) const {
    wire::description_request request = {};
    if (instance == nullptr || instance_size != sizeof(request)) return E_INVALIDARG;
    std::memcpy(&request, instance, sizeof(request));
    if (request.index != 0) return E_INVALIDARG;
    const std::string_view text = camera_.description();
    if (id == SELVANE_DESCRIPTION_DATA) return hand_out(text.data(), text.size(), data, data_size, returned);
    const auto size = static_cast<std::uint32_t>(text.size());
    return hand_out(&size, sizeof(size), data, data_size, returned);
}

HRESULT camera_filter::Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                           DWORD data_size, DWORD* returned) {
    if (set == wire::gate_set) {
        const wire::device_kind_query kind = {SELVANE_DEVICE_KIND, {}};
        return hand_out(&kind, sizeof(kind), data, data_size, returned);
    }
    if (set != wire::device_set || returned == nullptr) return E_NOTIMPL;
    if (id == SELVANE_DESCRIPTION_SIZE || id == SELVANE_DESCRIPTION_DATA)
        return get_description(id, instance, instance_size, data, data_size, returned);
    std::uint64_t address = 0;
    if (id != SELVANE_REGISTER_ACCESS) return E_NOTIMPL;
    if (!take_address(instance, instance_size, address)) return E_INVALIDARG;
    const std::error_code failure = camera_.read(address, data, data_size, 0);
    if (failure) return GenICam::to_hresult(failure);
    *returned = data_size;
    return S_OK;
}

HRESULT camera_filter::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
    if (support == nullptr) return E_POINTER;
    *support = 0;
    if (set == wire::gate_set) *support = SELVANE_SUPPORT_GET;
    if (set == wire::device_set && id != SELVANE_NAMED_ACCESS) *support = SELVANE_SUPPORT_GET;
    if (set == wire::device_set && id == SELVANE_REGISTER_ACCESS) *support |= SELVANE_SUPPORT_SET;
    return *support != 0 ? S_OK : E_NOTIMPL;
}

}  // namespace

platform::com_ptr<IKsPropertySet> make_camera_filter(live_camera& camera) {
    return platform::com_ptr<IKsPropertySet>(new camera_filter(camera));
}

}  // namespace selvane_inspect
