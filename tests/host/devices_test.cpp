// Devices as the system enumerates them. A capture filter of the test's own is entered under the category of
// video devices for the time of a test; the filter is a simulated camera behind IBaseFilter.

#include "apps/host/devices.h"

#include "apps/host/host_error.h"
#include "apps/host/page_offer.h"
#include "apps/host/page_server.h"
#include "platform/com_object.h"
#include "platform/text.h"
#include "simcam/simulated_camera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <strmif.h>
#include <uuids.h>

namespace {

using namespace selvane_host;
using platform::com_ptr;
using testing::HasSubstr;
using testing::Not;

constexpr CLSID test_filter = {0x6E6B2A11, 0x7B55, 0x4D0B, {0x9C, 0x53, 0x2C, 0x7B, 0x0D, 0x5E, 0x91, 0x44}};
constexpr const wchar_t* test_name = L"Selvane t\u00E9st device";

// A capture filter that streams nothing.
class CaptureFilter final : public platform::com_object<IBaseFilter> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool filter =
            iid == IID_IUnknown || iid == IID_IPersist || iid == IID_IMediaFilter || iid == IID_IBaseFilter;
        if (!filter) return camera_->QueryInterface(iid, out);
        *out = static_cast<IBaseFilter*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override {
        *clsid = test_filter;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Stop() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* state) override {
        *state = State_Stopped;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR, IPin**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph*, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }

private:
    simcam::camera_ptr camera_ = simcam::make_camera("builtin");
};

class FilterFactory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** out) override {
        const com_ptr<IBaseFilter> filter(new CaptureFilter);
        return filter->QueryInterface(iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

// The entry of a device in the registry, for as long as this lives.
class DeviceEntry {
public:
    DeviceEntry()
        : key_(L"CLSID\\" + platform::format_guid(CLSID_VideoInputDeviceCategory) + L"\\Instance\\" +
               platform::format_guid(test_filter)) {
        Set(L"FriendlyName", test_name);
        Set(L"CLSID", platform::format_guid(test_filter));
    }
    DeviceEntry(const DeviceEntry&) = delete;
    DeviceEntry& operator=(const DeviceEntry&) = delete;
    ~DeviceEntry() { RegDeleteKeyW(HKEY_CLASSES_ROOT, key_.c_str()); }

    [[nodiscard]] bool IsThere() const noexcept { return there_; }

private:
    void Set(const wchar_t* value, const std::wstring& text) {
        const DWORD size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        there_ = RegSetKeyValueW(HKEY_CLASSES_ROOT, key_.c_str(), value, REG_SZ, text.c_str(), size) == 0;
    }

    std::wstring key_;
    bool there_ = false;
};

class Devices : public testing::Test {
protected:
    void SetUp() override {
        if (!entry.IsThere()) GTEST_SKIP() << "no right to enter a device here";
    }

    com_apartment apartment;
    DeviceEntry entry;
    std::string name = platform::narrow(test_name);
};

TEST_F(Devices, AreListedByName) { EXPECT_THAT("\n" + list_devices(), HasSubstr("\n" + name + "\n")); }

TEST_F(Devices, OneIsOpenedByNameAndItsPagesAreShown) {
    FilterFactory factory;
    DWORD cookie = 0;
    ASSERT_EQ(CoRegisterClassObject(test_filter, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
              S_OK);
    {
        const page_server server(page_server_path());
        const com_ptr<IUnknown> filter = open_device(name);
        EXPECT_EQ(willing_pages(ask_pages(*filter)).size(), 4U);
    }
    CoRevokeClassObject(cookie);
    EXPECT_EQ(simcam::simulated_camera::live_cameras(), 0);
}

TEST_F(Devices, OneThatCannotBeMadeIsSaidSo) {
    try {
        static_cast<void>(open_device(name));
        FAIL() << "there is no such class";
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_THAT(failure.what(), HasSubstr("the device \"" + name + "\" cannot be opened: "));
    }
}

TEST_F(Devices, AnUnknownNameIsSaidSo) {
    try {
        static_cast<void>(open_device("Nowhere"));
        FAIL() << "there is no such device";
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_STREQ(failure.what(),
                     "there is no video capture device named \"Nowhere\" (--list names them)");
    }
}

TEST(NoDevice, IsSaidSo) {
    const com_apartment apartment;
    try {
        EXPECT_THAT(list_devices(), Not(HasSubstr(platform::narrow(test_name))));
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_STREQ(failure.what(), "this system has no video capture device");
    }
}

}  // namespace
