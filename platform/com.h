#pragma once

// The COM and DirectShow interfaces that portable code talks to: the system's own on Windows; elsewhere the
// same interfaces, slot by slot, with the types that their operations need.

#include "platform/guid.h"
#include "platform/hresult.h"

#ifdef _WIN32

#include <strmif.h>
#include <unknwn.h>

#else

#define STDMETHODCALLTYPE

using BOOL = int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LPVOID = void*;

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IKsPropertySet : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                          LPVOID data, DWORD data_size) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                          LPVOID data, DWORD data_size, DWORD* returned) = 0;
    virtual HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) = 0;

protected:
    ~IKsPropertySet() = default;
};

struct IAMCameraControl : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetRange(LONG property, LONG* min, LONG* max, LONG* step,
                                               LONG* default_value, LONG* flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Set(LONG property, LONG value, LONG flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get(LONG property, LONG* value, LONG* flags) = 0;

protected:
    ~IAMCameraControl() = default;
};

struct IAMVideoProcAmp : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetRange(LONG property, LONG* min, LONG* max, LONG* step,
                                               LONG* default_value, LONG* flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Set(LONG property, LONG value, LONG flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get(LONG property, LONG* value, LONG* flags) = 0;

protected:
    ~IAMVideoProcAmp() = default;
};

#endif

namespace platform {

constexpr GUID null_guid = {};
constexpr GUID iid_unknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr GUID iid_property_set = {
    0x31EFAC30, 0x515C, 0x11D0, {0xA9, 0xAA, 0x00, 0xAA, 0x00, 0x61, 0xBE, 0x93}};
constexpr GUID iid_camera_control = {
    0xC6E13370, 0x30AC, 0x11D0, {0xA1, 0x8C, 0x00, 0xA0, 0xC9, 0x11, 0x89, 0x56}};
constexpr GUID iid_video_proc_amp = {
    0xC6E13360, 0x30AC, 0x11D0, {0xA1, 0x8C, 0x00, 0xA0, 0xC9, 0x11, 0x89, 0x56}};

template <class Interface>
struct interface_id;
template <>
struct interface_id<IKsPropertySet> {
    static constexpr const GUID& value = iid_property_set;
};
template <>
struct interface_id<IAMCameraControl> {
    static constexpr const GUID& value = iid_camera_control;
};
template <>
struct interface_id<IAMVideoProcAmp> {
    static constexpr const GUID& value = iid_video_proc_amp;
};

}  // namespace platform
