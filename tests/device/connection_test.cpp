// How the pin comes to terms with the other side.

#include "tests/device/device_fixture.h"

#include <amvideo.h>
#include <uuids.h>
#include <vfwmsgs.h>

namespace device_test {
namespace {

using namespace selvane_camera;
using platform::com_ptr;
using simcam::pixel_format;

com_ptr<IMemAllocator> MakeAllocator() {
    com_ptr<IMemAllocator> made;
    EXPECT_EQ(CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                               made.put_void()),
              S_OK);
    return made;
}

// Gives small buffers, whatever it is asked for.
class StingyAllocator final : public IMemAllocator {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE SetProperties(ALLOCATOR_PROPERTIES*, ALLOCATOR_PROPERTIES* actual) override {
        *actual = {1, 16, 1, 0};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetProperties(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Commit() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Decommit() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetBuffer(IMediaSample**, REFERENCE_TIME*, REFERENCE_TIME*, DWORD) override {
        return E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE ReleaseBuffer(IMediaSample*) override { return E_NOTIMPL; }
};

class Connection : public DeviceTest {
protected:
    void SetUp() override { Open(full_device); }
    [[nodiscard]] bool IsConnected() const {
        pin_ptr other;
        return pin->ConnectedTo(other.put()) == S_OK;
    }
};

TEST_F(Connection, TakesTheFirstFormatThatTheOtherSideAccepts) {
    Connect();
    EXPECT_TRUE(sink.type().get().subtype == MEDIASUBTYPE_RGB24);
    AM_MEDIA_TYPE type{};
    ASSERT_EQ(pin->ConnectionMediaType(&type), S_OK);
    EXPECT_TRUE(type.subtype == MEDIASUBTYPE_RGB24);
    CoTaskMemFree(type.pbFormat);
    EXPECT_EQ(pin->Connect(&sink, nullptr), VFW_E_ALREADY_CONNECTED);
    Disconnect();
    EXPECT_EQ(pin->Disconnect(), S_FALSE);
    EXPECT_EQ(pin->ConnectionMediaType(&type), VFW_E_NOT_CONNECTED);
    sink.accepts = [](const AM_MEDIA_TYPE& offered) { return offered.subtype == MEDIASUBTYPE_YUY2; };
    Connect();
    EXPECT_TRUE(sink.type().get().subtype == MEDIASUBTYPE_YUY2);
    Disconnect();
}

TEST_F(Connection, FillsTheGapsOfAFormat) {
    AM_MEDIA_TYPE wanted{};
    wanted.majortype = MEDIATYPE_Video;
    wanted.subtype = MEDIASUBTYPE_YUY2;
    ASSERT_EQ(pin->Connect(&sink, &wanted), S_OK);
    EXPECT_TRUE(sink.type().get().subtype == MEDIASUBTYPE_YUY2);
    Disconnect();
    wanted.subtype = MEDIASUBTYPE_RGB32;
    EXPECT_EQ(pin->Connect(&sink, &wanted), VFW_E_TYPE_NOT_ACCEPTED);
    wanted.majortype = MEDIATYPE_Audio;
    wanted.subtype = {};
    EXPECT_EQ(pin->Connect(&sink, &wanted), VFW_E_TYPE_NOT_ACCEPTED);
}

TEST_F(Connection, TakesACompleteFormatAsItIs) {
    const media_type wanted(stream_format{{pixel_format::yuy2, 320, 240}, 400000});
    ASSERT_EQ(pin->Connect(&sink, &wanted.get()), S_OK);
    EXPECT_EQ(reinterpret_cast<const VIDEOINFOHEADER*>(sink.type().get().pbFormat)->AvgTimePerFrame, 400000);
    Disconnect();
}

TEST_F(Connection, TakesAFormatThatTheOtherSideNames) {
    const media_type wish(stream_format{{pixel_format::yuy2, 320, 240}, 123456});
    sink.wishes = {wish};
    sink.accepts = [](const AM_MEDIA_TYPE& type) {
        return reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat)->AvgTimePerFrame == 123456;
    };
    Connect();
    Disconnect();
}

TEST_F(Connection, IsRefusedWhereNothingFits) {
    sink.accepts = [](const AM_MEDIA_TYPE&) { return false; };
    EXPECT_EQ(pin->Connect(&sink, nullptr), VFW_E_NO_ACCEPTABLE_TYPES);
    EXPECT_FALSE(IsConnected());
    EXPECT_EQ(pin->Connect(pin.get(), nullptr), VFW_E_INVALID_DIRECTION);
    EXPECT_EQ(pin->ReceiveConnection(&sink, nullptr), E_UNEXPECTED);
}

TEST_F(Connection, UsesTheAllocatorOfTheOtherSide) {
    sink.allocator = MakeAllocator();
    Connect();
    EXPECT_EQ(sink.used_allocator().get(), sink.allocator.get());
    ALLOCATOR_PROPERTIES properties{};
    ASSERT_EQ(sink.allocator->GetProperties(&properties), S_OK);
    EXPECT_EQ(properties.cbBuffer, 640 * 480 * 3);
    EXPECT_GE(properties.cBuffers, 4);
    Disconnect();
}

TEST_F(Connection, BringsAnAllocatorWhereTheOtherSideHasNone) {
    Connect();
    EXPECT_TRUE(sink.used_allocator());
    Disconnect();
    StingyAllocator stingy;
    sink.allocator = com_ptr<IMemAllocator>(&stingy);
    Connect();
    EXPECT_NE(sink.used_allocator().get(), &stingy) << "its buffers are too small";
    Disconnect();
    sink.allocator.reset();
}

TEST_F(Connection, EndsWhereNoAllocatorIsTaken) {
    sink.takes_allocators = false;
    EXPECT_NE(pin->Connect(&sink, nullptr), S_OK);
    EXPECT_FALSE(IsConnected());
    EXPECT_GT(sink.disconnects, 0) << "the other side is told";
}

TEST_F(Connection, IsNotChangedWhileTheFilterStreams) {
    Connect();
    ASSERT_EQ(filter->Run(0), S_OK);
    ASSERT_TRUE(Receives(1));
    EXPECT_EQ(pin->Disconnect(), VFW_E_NOT_STOPPED);
    EXPECT_EQ(pin->Connect(&sink, nullptr), VFW_E_NOT_STOPPED);
    media_type other(stream_format{{pixel_format::rgb24, 320, 240}, 0});
    EXPECT_EQ(ask<IAMStreamConfig>(pin)->SetFormat(&const_cast<AM_MEDIA_TYPE&>(other.get())),
              VFW_E_NOT_STOPPED);
    EXPECT_TRUE(IsConnected());
    EXPECT_EQ(filter->Stop(), S_OK);
    Disconnect();
}

}  // namespace
}  // namespace device_test
