// The filter and its pin at rest.

#include "tests/device/device_fixture.h"
#include "wire/device_set.h"
#include "wire/page_classes.h"

#include <amvideo.h>
#include <ocidl.h>
#include <uuids.h>
#include <vfwmsgs.h>

#include <cwchar>

namespace device_test {
namespace {

using namespace selvane_camera;
using platform::com_ptr;
using simcam::pixel_format;

class Filter : public DeviceTest {
protected:
    void SetUp() override { Open(full_device); }

    [[nodiscard]] std::vector<media_type> Types() const {
        com_ptr<IEnumMediaTypes> all;
        EXPECT_EQ(pin->EnumMediaTypes(all.put()), S_OK);
        std::vector<media_type> types;
        AM_MEDIA_TYPE* type = nullptr;
        while (all->Next(1, &type, nullptr) == S_OK) types.push_back(Take(type));
        return types;
    }
    // Takes over what the pin has given.
    [[nodiscard]] static media_type Take(AM_MEDIA_TYPE* given) {
        media_type taken(*given);
        CoTaskMemFree(given->pbFormat);
        CoTaskMemFree(given);
        return taken;
    }
    [[nodiscard]] static VIDEOINFOHEADER Info(const media_type& type) {
        return *reinterpret_cast<const VIDEOINFOHEADER*>(type.get().pbFormat);
    }
};

TEST_F(Filter, IsMadeForEachDeviceAndForNothingElse) {
    for (const device_record& device : devices) {
        com_ptr<IPersist> made = ask<IPersist>(module.make_filter(device));
        CLSID clsid{};
        ASSERT_TRUE(made);
        EXPECT_EQ(made->GetClassID(&clsid), S_OK);
        EXPECT_TRUE(clsid == device.clsid);
    }
    com_ptr<IClassFactory> factory;
    EXPECT_EQ(module.get_class(IID_IUnknown, IID_IClassFactory, factory.put_void()),
              CLASS_E_CLASSNOTAVAILABLE);
    ASSERT_EQ(module.get_class(full_device.clsid, IID_IClassFactory, factory.put_void()), S_OK);
    com_ptr<IUnknown> refused;
    EXPECT_EQ(factory->CreateInstance(filter.get(), IID_IUnknown, refused.put_void()), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPin, refused.put_void()), E_NOINTERFACE);
}

TEST_F(Filter, KeepsItsModuleLoaded) {
    EXPECT_FALSE(module.can_unload());
    ReleaseAll();
    EXPECT_TRUE(module.can_unload());
    com_ptr<IClassFactory> factory;
    ASSERT_EQ(module.get_class(full_device.clsid, IID_IClassFactory, factory.put_void()), S_OK);
    factory->LockServer(TRUE);
    com_ptr<IClassFactory> kept = factory;
    factory.reset();
    EXPECT_FALSE(module.can_unload());
    kept->LockServer(FALSE);
    kept.reset();
    EXPECT_TRUE(module.can_unload());
}

TEST_F(Filter, IsOneObjectWithAllItsInterfaces) {
    const com_ptr<IUnknown> identity = ask<IUnknown>(filter);
    const IID interfaces[] = {IID_IPersist,
                              IID_IMediaFilter,
                              IID_IBaseFilter,
                              IID_IPersistPropertyBag,
                              IID_ISpecifyPropertyPages,
                              IID_IAMFilterMiscFlags,
                              platform::iid_property_set,
                              platform::iid_camera_control,
                              platform::iid_video_proc_amp};
    for (const IID& iid : interfaces) {
        com_ptr<IUnknown> face;
        ASSERT_EQ(filter->QueryInterface(iid, face.put_void()), S_OK);
        EXPECT_EQ(ask<IUnknown>(face).get(), identity.get());
    }
    EXPECT_EQ(filter->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    com_ptr<IUnknown> none;
    EXPECT_EQ(filter->QueryInterface(IID_IPin, none.put_void()), E_NOINTERFACE);
    EXPECT_EQ(ask<IAMFilterMiscFlags>(filter)->GetMiscFlags(), 2U) << "a source";
}

TEST_F(Filter, HasOnePinForCapture) {
    com_ptr<IEnumPins> pins;
    ASSERT_EQ(filter->EnumPins(pins.put()), S_OK);
    IPin* both[2] = {};
    ULONG fetched = 7;
    EXPECT_EQ(pins->Next(2, both, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(pin_ptr::attach(both[0]).get(), pin.get());
    EXPECT_EQ(pins->Next(1, both, &fetched), S_FALSE);
    EXPECT_EQ(pins->Next(2, both, nullptr), E_INVALIDARG);
    EXPECT_EQ(pins->Reset(), S_OK);
    com_ptr<IEnumPins> clone;
    ASSERT_EQ(pins->Clone(clone.put()), S_OK);
    EXPECT_EQ(pins->Skip(1), S_OK);
    EXPECT_EQ(pins->Skip(1), S_FALSE);
    EXPECT_EQ(clone->Next(1, both, nullptr), S_OK) << "stands where the other stood";
    both[0]->Release();
    pin_ptr none;
    EXPECT_EQ(filter->FindPin(L"Preview", none.put()), VFW_E_NOT_FOUND);
    PIN_INFO info{};
    ASSERT_EQ(pin->QueryPinInfo(&info), S_OK);
    EXPECT_EQ(filter_ptr::attach(info.pFilter).get(), filter.get());
    EXPECT_EQ(info.dir, PINDIR_OUTPUT);
    EXPECT_STREQ(info.achName, L"Capture");
    LPWSTR id = nullptr;
    ASSERT_EQ(pin->QueryId(&id), S_OK);
    EXPECT_STREQ(id, L"Capture");
    CoTaskMemFree(id);
}

TEST_F(Filter, TellsThatItsPinIsForCapture) {
    const auto category = ask<IKsPropertySet>(pin);
    ASSERT_TRUE(category);
    GUID told{};
    DWORD returned = 0;
    EXPECT_EQ(
        category->Get(AMPROPSETID_Pin, AMPROPERTY_PIN_CATEGORY, nullptr, 0, &told, sizeof told, &returned),
        S_OK);
    EXPECT_TRUE(told == PIN_CATEGORY_CAPTURE);
    EXPECT_EQ(returned, sizeof(GUID));
    DWORD support = 0;
    EXPECT_EQ(category->QuerySupported(AMPROPSETID_Pin, AMPROPERTY_PIN_CATEGORY, &support), S_OK);
    EXPECT_EQ(support, 1U);
    EXPECT_EQ(category->Get(AMPROPSETID_Pin, 9, nullptr, 0, &told, sizeof told, &returned),
              static_cast<HRESULT>(0x80070490));
    EXPECT_EQ(category->Get(full_device.clsid, 0, nullptr, 0, &told, sizeof told, &returned),
              static_cast<HRESULT>(0x80070492));
    EXPECT_EQ(category->Get(AMPROPSETID_Pin, 0, nullptr, 0, &told, 3, &returned), E_UNEXPECTED);
    EXPECT_EQ(ask<IUnknown>(category).get(), ask<IUnknown>(pin).get());
}

TEST_F(Filter, NamesThePagesOfTheComponent) {
    CAUUID pages{};
    ASSERT_EQ(ask<ISpecifyPropertyPages>(filter)->GetPages(&pages), S_OK);
    ASSERT_EQ(pages.cElems, 4U);
    for (std::size_t at = 0; at < 4; ++at) EXPECT_TRUE(pages.pElems[at] == wire::page_classes.at(at));
    CoTaskMemFree(pages.pElems);
}

TEST_F(Filter, OffersTwoFormatsInThreeSizes) {
    const std::vector<media_type> types = Types();
    ASSERT_EQ(types.size(), 6U);
    const simcam::frame_format expected[] = {
        {pixel_format::rgb24, 640, 480}, {pixel_format::rgb24, 320, 240}, {pixel_format::rgb24, 1280, 720},
        {pixel_format::yuy2, 640, 480},  {pixel_format::yuy2, 320, 240},  {pixel_format::yuy2, 1280, 720}};
    for (std::size_t at = 0; at < types.size(); ++at) {
        const VIDEOINFOHEADER info = Info(types[at]);
        const bool rgb = expected[at].pixels == pixel_format::rgb24;
        EXPECT_TRUE(types[at].get().subtype == (rgb ? MEDIASUBTYPE_RGB24 : MEDIASUBTYPE_YUY2));
        EXPECT_EQ(info.bmiHeader.biWidth, expected[at].width);
        EXPECT_EQ(info.bmiHeader.biHeight, expected[at].height);
        EXPECT_EQ(info.bmiHeader.biSizeImage, simcam::frame_size(expected[at]));
        EXPECT_EQ(info.AvgTimePerFrame, 333333);
        EXPECT_EQ(pin->QueryAccept(&types[at].get()), S_OK);
    }
}

TEST_F(Filter, TellsTheFrameRateOfTheCameraInItsFormats) {
    ASSERT_EQ(set_feature(*filter, "FrameRate", 12.5), S_OK);
    EXPECT_EQ(Info(Types().front()).AvgTimePerFrame, 800000);
}

TEST_F(Filter, AcceptsNothingElse) {
    const media_type good = Types().front();
    AM_MEDIA_TYPE changed = good.get();
    changed.subtype = MEDIASUBTYPE_RGB32;
    EXPECT_EQ(pin->QueryAccept(&changed), S_FALSE);
    changed = good.get();
    changed.majortype = MEDIATYPE_Audio;
    EXPECT_EQ(pin->QueryAccept(&changed), S_FALSE);
    changed = good.get();
    changed.cbFormat = 20;
    EXPECT_EQ(pin->QueryAccept(&changed), S_FALSE) << "cut off";
    changed = good.get();
    changed.formattype = FORMAT_VideoInfo2;
    EXPECT_EQ(pin->QueryAccept(&changed), S_FALSE);
    for (const auto& [width, height] : {std::pair{641, 480}, {640, -480}, {0, 0}, {MAXLONG, MAXLONG}}) {
        VIDEOINFOHEADER info = Info(good);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = height;
        changed = good.get();
        changed.pbFormat = reinterpret_cast<BYTE*>(&info);
        EXPECT_EQ(pin->QueryAccept(&changed), S_FALSE) << width << "x" << height;
    }
    EXPECT_EQ(pin->QueryAccept(nullptr), E_POINTER);
}

TEST_F(Filter, OffersAChosenFormatAlone) {
    const auto config = ask<IAMStreamConfig>(pin);
    ASSERT_TRUE(config);
    media_type wanted(stream_format{{pixel_format::yuy2, 1280, 720}, 1000000});
    EXPECT_EQ(config->SetFormat(&const_cast<AM_MEDIA_TYPE&>(wanted.get())), S_OK);
    const std::vector<media_type> types = Types();
    ASSERT_EQ(types.size(), 1U);
    EXPECT_EQ(Info(types[0]).bmiHeader.biWidth, 1280);
    EXPECT_EQ(Info(types[0]).AvgTimePerFrame, 1000000);
    double rate = 0;
    EXPECT_EQ(get_feature(*filter, "FrameRate", rate), S_OK);
    EXPECT_NEAR(rate, 10, 1e-3) << "the camera's own feature has it";
    AM_MEDIA_TYPE* now = nullptr;
    ASSERT_EQ(config->GetFormat(&now), S_OK);
    EXPECT_EQ(Info(Take(now)).bmiHeader.biWidth, 1280);
    AM_MEDIA_TYPE odd = wanted.get();
    odd.subtype = MEDIASUBTYPE_UYVY;
    EXPECT_EQ(config->SetFormat(&odd), VFW_E_INVALIDMEDIATYPE);
    EXPECT_EQ(config->SetFormat(nullptr), E_POINTER);
}

TEST_F(Filter, GivesTheCameraTheNearestRateThatItCanDo) {
    const auto config = ask<IAMStreamConfig>(pin);
    media_type wanted(stream_format{{pixel_format::rgb24, 640, 480}, 10});
    EXPECT_EQ(config->SetFormat(&const_cast<AM_MEDIA_TYPE&>(wanted.get())), S_OK);
    EXPECT_EQ(Info(Types().front()).AvgTimePerFrame, 166666);
}

TEST_F(Filter, DescribesItsCapabilities) {
    const auto config = ask<IAMStreamConfig>(pin);
    int count = 0;
    int size = 0;
    ASSERT_EQ(config->GetNumberOfCapabilities(&count, &size), S_OK);
    EXPECT_EQ(count, 6);
    ASSERT_EQ(size, static_cast<int>(sizeof(VIDEO_STREAM_CONFIG_CAPS)));
    for (int index = 0; index < count; ++index) {
        VIDEO_STREAM_CONFIG_CAPS caps{};
        AM_MEDIA_TYPE* given = nullptr;
        ASSERT_EQ(config->GetStreamCaps(index, &given, reinterpret_cast<BYTE*>(&caps)), S_OK);
        const VIDEOINFOHEADER info = Info(Take(given));
        EXPECT_EQ(caps.MinOutputSize.cx, info.bmiHeader.biWidth);
        EXPECT_EQ(caps.MaxOutputSize.cy, info.bmiHeader.biHeight);
        EXPECT_EQ(caps.MinFrameInterval, 166666);
        EXPECT_EQ(caps.MaxFrameInterval, 10000000);
        EXPECT_GT(caps.MaxBitsPerSecond, caps.MinBitsPerSecond);
    }
    AM_MEDIA_TYPE* none = nullptr;
    VIDEO_STREAM_CONFIG_CAPS caps{};
    EXPECT_EQ(config->GetStreamCaps(6, &none, reinterpret_cast<BYTE*>(&caps)), S_FALSE);
    EXPECT_EQ(config->GetStreamCaps(-1, &none, reinterpret_cast<BYTE*>(&caps)), E_INVALIDARG);
}

TEST_F(Filter, PassesCallsOfTheDriverToTheCamera) {
    const auto control = ask<IAMCameraControl>(filter);
    constexpr LONG focus = 6;
    LONG value = 0;
    LONG flags = 0;
    EXPECT_EQ(control->Set(focus, 300, 2), S_OK);
    EXPECT_EQ(control->Get(focus, &value, &flags), S_OK);
    EXPECT_EQ(value, 300);
    LONG min = 0, max = 0, step = 0, usual = 0;
    EXPECT_EQ(control->GetRange(focus, &min, &max, &step, &usual, &flags), S_OK);
    EXPECT_EQ(max, 1023);
    const auto amp = ask<IAMVideoProcAmp>(filter);
    constexpr LONG white_balance = 7;
    EXPECT_EQ(amp->Set(white_balance, 5000, 2), S_OK);
    EXPECT_EQ(amp->Get(white_balance, &value, &flags), S_OK);
    EXPECT_EQ(value, 5000);
    EXPECT_EQ(amp->GetRange(white_balance, &min, &max, &step, &usual, nullptr), E_POINTER);
}

DWORD AccessPaths(const filter_ptr& filter) {
    const auto driver = ask<IKsPropertySet>(filter);
    DWORD access_paths = 0;
    for (const DWORD id : {3U, 4U}) {
        DWORD support = 0;
        if (SUCCEEDED(driver->QuerySupported(wire::device_set, id, &support))) access_paths |= 1U << id;
    }
    return access_paths;
}

TEST_F(Filter, ReachesFeaturesByTheAccessPathsOfItsDevice) {
    EXPECT_EQ(AccessPaths(filter), 0x18U);
    EXPECT_EQ(AccessPaths(module.make_filter(registers_device)), 0x08U);
}

TEST_F(Filter, SharesItsCameraWithTheFiltersOfTheSameDevice) {
    const filter_ptr second = module.make_filter(full_device);
    const filter_ptr other = module.make_filter(builtin_device);
    constexpr LONG focus = 6;
    EXPECT_EQ(ask<IAMCameraControl>(filter)->Set(focus, 123, 2), S_OK);
    LONG value = 0;
    LONG flags = 0;
    EXPECT_EQ(ask<IAMCameraControl>(second)->Get(focus, &value, &flags), S_OK);
    EXPECT_EQ(value, 123);
    EXPECT_EQ(ask<IAMCameraControl>(other)->Get(focus, &value, &flags), S_OK);
    EXPECT_NE(value, 123);
}

TEST_F(Filter, KnowsItsGraphWithoutHoldingIt) {
    com_ptr<IGraphBuilder> graph;
    ASSERT_EQ(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                               graph.put_void()),
              S_OK);
    graph->AddRef();
    const ULONG before = graph->Release();
    ASSERT_EQ(filter->JoinFilterGraph(graph.get(), L"the camera"), S_OK);
    graph->AddRef();
    EXPECT_EQ(graph->Release(), before);
    FILTER_INFO info{};
    ASSERT_EQ(filter->QueryFilterInfo(&info), S_OK);
    EXPECT_STREQ(info.achName, L"the camera");
    EXPECT_EQ(com_ptr<IFilterGraph>::attach(info.pGraph).get(), graph.get());
    EXPECT_EQ(filter->JoinFilterGraph(nullptr, nullptr), S_OK);
    ASSERT_EQ(filter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(info.pGraph, nullptr);
    LPWSTR about = nullptr;
    ASSERT_EQ(filter->QueryVendorInfo(&about), S_OK);
    EXPECT_STREQ(about, L"SIM1203C");
    CoTaskMemFree(about);
}

TEST_F(Filter, RunsAndStopsWithoutAConnection) {
    EXPECT_EQ(filter->Run(0), S_OK);
    FILTER_STATE state = State_Stopped;
    EXPECT_EQ(filter->GetState(0, &state), S_OK);
    EXPECT_EQ(state, State_Running);
    EXPECT_EQ(filter->Pause(), S_OK);
    EXPECT_EQ(filter->GetState(0, &state), VFW_S_CANT_CUE);
    EXPECT_EQ(state, State_Paused);
    EXPECT_EQ(filter->Stop(), S_OK);
    EXPECT_EQ(filter->GetState(0, &state), S_OK);
    EXPECT_EQ(state, State_Stopped);
}

TEST_F(Filter, RefusesNullEverywhere) {
    EXPECT_EQ(filter->EnumPins(nullptr), E_POINTER);
    EXPECT_EQ(filter->FindPin(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(filter->QueryFilterInfo(nullptr), E_POINTER);
    EXPECT_EQ(filter->QueryVendorInfo(nullptr), E_POINTER);
    EXPECT_EQ(filter->GetState(0, nullptr), E_POINTER);
    EXPECT_EQ(filter->GetSyncSource(nullptr), E_POINTER);
    EXPECT_EQ(filter->GetClassID(nullptr), E_POINTER);
    EXPECT_EQ(pin->Connect(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(pin->ConnectedTo(nullptr), E_POINTER);
    EXPECT_EQ(pin->ConnectionMediaType(nullptr), E_POINTER);
    EXPECT_EQ(pin->QueryPinInfo(nullptr), E_POINTER);
    EXPECT_EQ(pin->QueryId(nullptr), E_POINTER);
    EXPECT_EQ(pin->QueryDirection(nullptr), E_POINTER);
    EXPECT_EQ(pin->EnumMediaTypes(nullptr), E_POINTER);
    EXPECT_EQ(ask<ISpecifyPropertyPages>(filter)->GetPages(nullptr), E_POINTER);
    EXPECT_EQ(ask<IPersistPropertyBag>(filter)->Load(nullptr, nullptr), E_POINTER);
}

}  // namespace
}  // namespace device_test
