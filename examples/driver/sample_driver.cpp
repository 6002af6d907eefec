// A driver for the property pages in one file: a description with two features, served by name and by
// register, and exposure and gain as vendor properties. Written for a DLL that "selvane_host --driver
// sample_driver.dll" opens; in a real driver the same object is the capture filter. docs/driver.md goes
// through it step by step.
#define SELVANE_DRIVER_GUIDS
#include <windows.h>

#include <strmif.h>

#include "selvane_driver.h"

#include <atomic>
#include <cstring>
#include <new>
#include <string_view>

namespace {

// What the camera says of itself: an item "Lamp" on the feature page, a slider and a check box.
constexpr std::string_view description = R"(<?xml version="1.0" encoding="UTF-8"?>
<RegisterDescription ModelName="Sample" VendorName="Sample" SchemaMajorVersion="1" SchemaMinorVersion="1"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>LampPage</pFeature></Category>
  <Category Name="LampPage"><DisplayName>Special</DisplayName><pFeature>LampItem</pFeature></Category>
  <Category Name="LampItem">
    <Extension><ZELItemGUID>{5E0B1C9A-7C44-4B4E-8E0A-0B2F6B1D7A01}</ZELItemGUID></Extension>
    <DisplayName>Lamp</DisplayName>
    <pFeature>Brightness</pFeature><pFeature>LampOn</pFeature>
  </Category>
  <Integer Name="Brightness">
    <Extension><ZELElementGUID>{B57D3000-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
    <DisplayName>Brightness</DisplayName>
    <pIsLocked>Changeable</pIsLocked><pValue>BrightnessReg</pValue><Min>0</Min><Max>100</Max>
  </Integer>
  <Boolean Name="LampOn">
    <Extension><ZELElementGUID>{B57D3001-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
    <DisplayName>On</DisplayName>
    <pIsLocked>Changeable</pIsLocked><pValue>LampOnReg</pValue><OnValue>1</OnValue><OffValue>0</OffValue>
  </Boolean>
  <Integer Name="Changeable"><Value>1</Value></Integer>
  <IntReg Name="BrightnessReg">
    <Address>0x0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess>
  </IntReg>
  <IntReg Name="LampOnReg">
    <Address>0x4</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess>
  </IntReg>
  <Port Name="Device"/>
</RegisterDescription>
)";

const HRESULT unknown_property = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
const HRESULT too_small = HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);

// The camera behind the driver.
unsigned char registers[8] = {50, 0, 0, 0, 1, 0, 0, 0};
selvane_integer_record exposure = {{}, 100, SELVANE_MANUAL, SELVANE_MANUAL, 1, 40000, 100};
selvane_integer_record gain = {{}, 0, SELVANE_MANUAL, SELVANE_MANUAL, 0, 2400, 0};

HRESULT Give(const void* value, DWORD value_size, void* data, DWORD size, DWORD* returned) {
    if (data == nullptr || size < value_size) return too_small;
    std::memcpy(data, value, value_size);
    *returned = value_size;
    return S_OK;
}

selvane_integer_record* VendorRecord(DWORD id) {
    return id == SELVANE_EXPOSURE_TICKS ? &exposure : id == SELVANE_GAIN ? &gain : nullptr;
}

// The register behind an access; null beyond the registers there are.
unsigned char* Register(const void* instance, DWORD instance_size, DWORD size) {
    std::uint64_t address = 0;
    if (instance_size != sizeof(address)) return nullptr;
    std::memcpy(&address, instance, sizeof(address));
    const bool fits = address <= sizeof(registers) && size <= sizeof(registers) - address;
    return fits ? registers + address : nullptr;
}

// The register of the feature that a path begins with; null for one that the camera does not have.
unsigned char* FeatureRegister(std::string_view path) {
    const std::string_view name = path.substr(0, path.find('/'));
    return name == "Brightness" ? registers : name == "LampOn" ? registers + 4 : nullptr;
}

HRESULT GetNamed(std::string_view path, void* data, DWORD size, DWORD* returned) {
    const unsigned char* value = FeatureRegister(path);
    if (value == nullptr) return unknown_property;
    const std::string_view asked = path.substr(path.find('/'));
    std::int64_t answer = 0;
    if (asked == SELVANE_PATH_VALUE) {
        std::memcpy(&answer, value, 4);
    } else if (asked == SELVANE_PATH_MAX) {
        answer = 100;
    } else if (asked == SELVANE_PATH_IS_LOCKED || asked == SELVANE_PATH_IS_IMPLEMENTED) {
        answer = 1;  // may be changed, and is there
    } else if (asked != SELVANE_PATH_MIN) {
        return unknown_property;
    }
    return Give(&answer, sizeof(answer), data, size, returned);
}

HRESULT SetNamed(std::string_view path, const void* data, DWORD size) {
    unsigned char* value = FeatureRegister(path);
    if (value == nullptr || path.substr(path.find('/')) != SELVANE_PATH_VALUE) return unknown_property;
    if (size != SELVANE_NAMED_VALUE_SIZE) return E_INVALIDARG;
    std::memcpy(value, data, 4);
    return S_OK;
}

class SampleDriver final : public IKsPropertySet {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = iid == IID_IUnknown || iid == IID_IKsPropertySet ? this : nullptr;
        if (*out != nullptr) AddRef();
        return *out != nullptr ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
        const bool gate = set == selvane_gate_set && id == SELVANE_GATE_PROPERTY;
        const bool device =
            set == selvane_device_set && id >= SELVANE_DESCRIPTION_SIZE && id <= SELVANE_NAMED_ACCESS;
        const bool vendor = set == selvane_vendor_set && VendorRecord(id) != nullptr;
        if (!gate && !device && !vendor) return unknown_property;
        const bool writable = vendor || (device && id >= SELVANE_REGISTER_ACCESS);
        *support = writable ? SELVANE_SUPPORT_GET | SELVANE_SUPPORT_SET : SELVANE_SUPPORT_GET;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                                  DWORD size, DWORD* returned) override {
        if (set == selvane_gate_set && id == SELVANE_GATE_PROPERTY) {
            const selvane_device_kind_query kind = {SELVANE_DEVICE_KIND, {}};
            return Give(&kind, sizeof(kind), data, size, returned);
        }
        if (set == selvane_vendor_set && VendorRecord(id) != nullptr) {
            return Give(VendorRecord(id), sizeof(selvane_integer_record), data, size, returned);
        }
        if (set != selvane_device_set) return unknown_property;
        switch (id) {
            case SELVANE_DESCRIPTION_SIZE:
            case SELVANE_DESCRIPTION_DATA: {
                selvane_description_request request = {};
                if (instance_size != sizeof(request)) return E_INVALIDARG;
                std::memcpy(&request, instance, sizeof(request));
                if (request.index != 0) return unknown_property;  // there is one description
                const auto bytes = static_cast<DWORD>(description.size());
                return id == SELVANE_DESCRIPTION_SIZE ? Give(&bytes, sizeof(bytes), data, size, returned)
                                                      : Give(description.data(), bytes, data, size, returned);
            }
            case SELVANE_REGISTER_ACCESS: {
                const unsigned char* value = Register(instance, instance_size, size);
                return value != nullptr ? Give(value, size, data, size, returned) : E_INVALIDARG;
            }
            case SELVANE_NAMED_ACCESS: {
                const char* path = selvane_read_named_request(instance, instance_size);
                return path != nullptr ? GetNamed(path, data, size, returned) : E_INVALIDARG;
            }
            default:
                return unknown_property;
        }
    }

    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                                  DWORD size) override {
        if (set == selvane_vendor_set && VendorRecord(id) != nullptr) {
            if (size < sizeof(selvane_integer_record)) return too_small;
            VendorRecord(id)->value = static_cast<selvane_integer_record*>(data)->value;  // the rest is zero
            return S_OK;
        }
        if (set == selvane_device_set && id == SELVANE_REGISTER_ACCESS) {
            unsigned char* value = Register(instance, instance_size, size);
            if (value != nullptr) std::memcpy(value, data, size);
            return value != nullptr ? S_OK : E_INVALIDARG;
        }
        if (set != selvane_device_set || id != SELVANE_NAMED_ACCESS) return unknown_property;
        const char* path = selvane_read_named_request(instance, instance_size);
        return path != nullptr ? SetNamed(path, data, size) : E_INVALIDARG;
    }

private:
    ~SampleDriver() = default;
    std::atomic<ULONG> references_{1};
};

}  // namespace

// What selvane_host asks a DLL for: a new object, with a reference for the caller.
extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE SelvaneCreateDriver(IUnknown** driver) {
    *driver = new (std::nothrow) SampleDriver;
    return *driver != nullptr ? S_OK : E_OUTOFMEMORY;
}
