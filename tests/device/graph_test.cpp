// The platform's own graph as a client.

#include "apps/host/devices.h"
#include "tests/device/device_fixture.h"
#include "tests/device/registered_devices.h"

#include <control.h>
#include <evcode.h>
#include <qedit.h>
#include <uuids.h>

#include <optional>
#include <thread>

namespace device_test {
namespace {

using namespace selvane_camera;
using platform::com_ptr;

constexpr CLSID sample_grabber = {
    0xC1F400A0, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};
constexpr CLSID null_renderer = {
    0xC1F400A4, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};

template <class Interface>
com_ptr<Interface> Make(const CLSID& clsid) {
    com_ptr<Interface> made;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), made.put_void()),
              S_OK);
    return made;
}

// Counts what comes through a grabber.
class FrameCounter final : public ISampleGrabberCB {
public:
    std::atomic<int> frames{0};
    std::atomic<long> size{0};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool known = iid == IID_IUnknown || iid == __uuidof(ISampleGrabberCB);
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE SampleCB(double, IMediaSample*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BufferCB(double, BYTE*, long length) override {
        size = length;
        ++frames;
        return S_OK;
    }
};

// Camera, grabber and null renderer in a graph, as a capture program builds it.
class CaptureGraph {
public:
    explicit CaptureGraph(const std::string& device)
        : graph(Make<IGraphBuilder>(CLSID_FilterGraph)),
          builder(Make<ICaptureGraphBuilder2>(CLSID_CaptureGraphBuilder2)),
          grabber(Make<IBaseFilter>(sample_grabber)),
          renderer(Make<IBaseFilter>(null_renderer)) {
        selvane_host::open_device(device)->QueryInterface(IID_IBaseFilter, camera.put_void());
    }
    CaptureGraph(const CaptureGraph&) = delete;
    CaptureGraph& operator=(const CaptureGraph&) = delete;
    ~CaptureGraph() {
        if (control) control->Stop();
        const auto frames = ask<ISampleGrabber>(grabber);
        if (frames) frames->SetCallback(nullptr, 1);
    }

    [[nodiscard]] HRESULT Build() {
        HRESULT hr = AddFilters();
        if (SUCCEEDED(hr)) hr = builder->SetFiltergraph(graph.get());
        if (SUCCEEDED(hr)) {
            hr = builder->RenderStream(&PIN_CATEGORY_CAPTURE, &MEDIATYPE_Video, camera.get(), grabber.get(),
                                       renderer.get());
        }
        return hr;
    }

    // Pin to pin, without what a builder may put between.
    [[nodiscard]] HRESULT BuildDirectly() {
        HRESULT hr = AddFilters();
        if (SUCCEEDED(hr))
            hr = graph->ConnectDirect(pin_of(camera).get(), FirstPin(grabber, PINDIR_INPUT).get(), nullptr);
        if (SUCCEEDED(hr)) {
            hr = graph->ConnectDirect(FirstPin(grabber, PINDIR_OUTPUT).get(),
                                      FirstPin(renderer, PINDIR_INPUT).get(), nullptr);
        }
        return hr;
    }

    FrameCounter counter;
    com_ptr<IGraphBuilder> graph;
    com_ptr<ICaptureGraphBuilder2> builder;
    filter_ptr camera;
    filter_ptr grabber;
    filter_ptr renderer;
    com_ptr<IMediaControl> control;

private:
    [[nodiscard]] HRESULT AddFilters() {
        control = ask<IMediaControl>(graph);
        HRESULT hr = graph->AddFilter(camera.get(), L"Camera");
        if (SUCCEEDED(hr)) hr = graph->AddFilter(grabber.get(), L"Grabber");
        if (SUCCEEDED(hr)) hr = graph->AddFilter(renderer.get(), L"Nowhere");
        return SUCCEEDED(hr) ? ask<ISampleGrabber>(grabber)->SetCallback(&counter, 1) : hr;
    }
    [[nodiscard]] static pin_ptr FirstPin(const filter_ptr& filter, PIN_DIRECTION wanted) {
        com_ptr<IEnumPins> pins;
        filter->EnumPins(pins.put());
        pin_ptr pin;
        PIN_DIRECTION direction = wanted;
        while (pins->Next(1, pin.put(), nullptr) == S_OK) {
            if (SUCCEEDED(pin->QueryDirection(&direction)) && direction == wanted) return pin;
        }
        return {};
    }
};

class Graph : public testing::Test {
protected:
    static void SetUpTestSuite() { devices_of_suite.emplace(); }
    static void TearDownTestSuite() { devices_of_suite.reset(); }
    void SetUp() override { ASSERT_TRUE(devices_of_suite->are_there()); }

    static std::optional<registered_devices> devices_of_suite;
    selvane_host::com_apartment apartment;
};

std::optional<registered_devices> Graph::devices_of_suite;

TEST_F(Graph, IsBuiltAndStreams) {
    CaptureGraph capture(device_name(full_device));
    ASSERT_EQ(capture.Build(), S_OK);
    ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
    EXPECT_TRUE(wait_for([&] { return capture.counter.frames >= 5; }));
    EXPECT_EQ(capture.counter.size, 640 * 480 * 3);
    OAFilterState state = State_Stopped;
    EXPECT_EQ(capture.control->GetState(1000, &state), S_OK);
    EXPECT_EQ(state, State_Running);
    EXPECT_EQ(capture.control->Stop(), S_OK);
    const int then = capture.counter.frames;
    Sleep(100);
    EXPECT_EQ(capture.counter.frames, then);
}

TEST_F(Graph, PausesAndGoesOn) {
    CaptureGraph capture(device_name(builtin_device));
    ASSERT_EQ(capture.Build(), S_OK);
    ASSERT_TRUE(SUCCEEDED(capture.control->Pause()));
    OAFilterState state = State_Stopped;
    EXPECT_EQ(capture.control->GetState(100, &state), static_cast<HRESULT>(0x00040268)) << "cannot cue";
    EXPECT_EQ(state, State_Paused);
    EXPECT_EQ(capture.counter.frames, 0);
    ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
    EXPECT_TRUE(wait_for([&] { return capture.counter.frames >= 2; }));
}

TEST_F(Graph, ConnectsAnewWhereAnotherFormatIsChosen) {
    CaptureGraph capture(device_name(full_device));
    ASSERT_EQ(capture.BuildDirectly(), S_OK);
    const auto config = ask<IAMStreamConfig>(pin_of(capture.camera));
    media_type small(stream_format{{simcam::pixel_format::rgb24, 320, 240}, 0});
    ASSERT_EQ(config->SetFormat(&const_cast<AM_MEDIA_TYPE&>(small.get())), S_OK);
    ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
    EXPECT_TRUE(wait_for([&] { return capture.counter.frames >= 2; }));
    EXPECT_EQ(capture.counter.size, 320 * 240 * 3);
}

TEST_F(Graph, StopsUnderLoadAgainAndAgain) {
    CaptureGraph capture(device_name(full_device));
    ASSERT_EQ(capture.Build(), S_OK);
    ASSERT_EQ(set_feature(*capture.camera, "FrameRate", 60.0), S_OK);
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
        ASSERT_TRUE(wait_for([&] { return capture.counter.frames > round; }));
        ASSERT_EQ(capture.control->Stop(), S_OK);
    }
}

TEST_F(Graph, StreamsBesideOthers) {
    CaptureGraph first(device_name(full_device));
    CaptureGraph second(device_name(full_device));
    CaptureGraph third(device_name(builtin_device));
    for (CaptureGraph* each : {&first, &second, &third}) {
        ASSERT_EQ(each->Build(), S_OK);
        ASSERT_TRUE(SUCCEEDED(each->control->Run()));
    }
    for (CaptureGraph* each : {&first, &second, &third})
        EXPECT_TRUE(wait_for([&] { return each->counter.frames >= 3; }));
}

// Whether a graph takes a filter out while it streams is the platform's choice.
TEST_F(Graph, IsToLoseItsCameraWhileItStreams) {
    CaptureGraph capture(device_name(full_device));
    ASSERT_EQ(capture.Build(), S_OK);
    ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
    ASSERT_TRUE(wait_for([&] { return capture.counter.frames >= 1; }));
    const HRESULT removed = capture.graph->RemoveFilter(capture.camera.get());
    EXPECT_EQ(capture.control->Stop(), S_OK);
    if (FAILED(removed)) {
        EXPECT_EQ(removed, static_cast<HRESULT>(0x80040224)) << "not stopped";
        EXPECT_EQ(capture.graph->RemoveFilter(capture.camera.get()), S_OK);
    }
    FILTER_STATE state = State_Running;
    EXPECT_EQ(capture.camera->GetState(0, &state), S_OK);
    EXPECT_EQ(state, State_Stopped);
    FILTER_INFO info{};
    EXPECT_EQ(capture.camera->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(info.pGraph, nullptr);
}

TEST_F(Graph, IsLeftWhileItStreams) {
    CaptureGraph capture(device_name(full_device));
    ASSERT_EQ(capture.Build(), S_OK);
    ASSERT_TRUE(SUCCEEDED(capture.control->Run()));
    ASSERT_TRUE(wait_for([&] { return capture.counter.frames >= 1; }));
}

}  // namespace
}  // namespace device_test
