#include "apps/host/picture.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "platform/com_ptr.h"

#include <wincodec.h>

#include <cstdint>
#include <string>
#include <vector>

namespace selvane_host {
namespace {

using platform::com_ptr;

// Rows from the top, four bytes a pixel: blue, green, red and one that means nothing.
struct pixels {
    UINT width = 0;
    UINT height = 0;
    std::vector<std::uint8_t> bytes;
};

class window_context {
public:
    explicit window_context(HWND window) noexcept : window_(window), context_(GetDC(window)) {}
    window_context(const window_context&) = delete;
    window_context& operator=(const window_context&) = delete;
    ~window_context() { ReleaseDC(window_, context_); }
    [[nodiscard]] HDC get() const noexcept { return context_; }

private:
    HWND window_;
    HDC context_;
};

class memory_bitmap {
public:
    memory_bitmap(HDC like, int width, int height) noexcept
        : context_(CreateCompatibleDC(like)),
          bitmap_(CreateCompatibleBitmap(like, width, height)),
          before_(SelectObject(context_, bitmap_)) {}
    memory_bitmap(const memory_bitmap&) = delete;
    memory_bitmap& operator=(const memory_bitmap&) = delete;
    ~memory_bitmap() {
        SelectObject(context_, before_);
        DeleteObject(bitmap_);
        DeleteDC(context_);
    }
    [[nodiscard]] HDC context() const noexcept { return context_; }

    /// False if the system refuses.
    [[nodiscard]] bool read(pixels& into) noexcept {
        SelectObject(context_, before_);
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = static_cast<LONG>(into.width);
        info.bmiHeader.biHeight = -static_cast<LONG>(into.height);  // from the top
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        return GetDIBits(context_, bitmap_, 0, into.height, into.bytes.data(), &info, DIB_RGB_COLORS) != 0;
    }

private:
    HDC context_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
};

pixels copy_window(HWND window) {
    RECT rect{};
    GetClientRect(window, &rect);
    pixels copy;
    copy.width = static_cast<UINT>(rect.right);
    copy.height = static_cast<UINT>(rect.bottom);
    copy.bytes.resize(std::size_t{4} * copy.width * copy.height);
    const window_context source(window);
    memory_bitmap bitmap(source.get(), static_cast<int>(copy.width), static_cast<int>(copy.height));
    const BOOL copied = BitBlt(bitmap.context(), 0, 0, static_cast<int>(copy.width),
                               static_cast<int>(copy.height), source.get(), 0, 0, SRCCOPY);
    if (copied == 0 || !bitmap.read(copy)) throw wrong_use("the window's picture cannot be taken");
    return copy;
}

HRESULT create_frame(IWICImagingFactory& factory, const std::filesystem::path& file,
                     com_ptr<IWICBitmapEncoder>& encoder, com_ptr<IWICBitmapFrameEncode>& frame) {
    com_ptr<IWICStream> stream;
    HRESULT hr = factory.CreateStream(stream.put());
    if (SUCCEEDED(hr)) hr = stream->InitializeFromFilename(file.c_str(), GENERIC_WRITE);
    if (SUCCEEDED(hr)) hr = factory.CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.put());
    if (SUCCEEDED(hr)) hr = encoder->Initialize(stream.get(), WICBitmapEncoderNoCache);
    if (SUCCEEDED(hr)) hr = encoder->CreateNewFrame(frame.put(), nullptr);
    if (SUCCEEDED(hr)) hr = frame->Initialize(nullptr);
    return hr;
}

// The source takes the alpha-less form of the pixels, which the encoder's own form may differ from.
HRESULT write_pixels(IWICImagingFactory& factory, IWICBitmapFrameEncode& frame, pixels& copy) {
    com_ptr<IWICBitmap> bitmap;
    HRESULT hr =
        factory.CreateBitmapFromMemory(copy.width, copy.height, GUID_WICPixelFormat32bppBGR, copy.width * 4,
                                       static_cast<UINT>(copy.bytes.size()), copy.bytes.data(), bitmap.put());
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    if (SUCCEEDED(hr)) hr = frame.SetSize(copy.width, copy.height);
    if (SUCCEEDED(hr)) hr = frame.SetPixelFormat(&format);
    com_ptr<IWICBitmapSource> converted;
    if (SUCCEEDED(hr)) hr = WICConvertBitmapSource(format, bitmap.get(), converted.put());
    if (SUCCEEDED(hr)) hr = frame.WriteSource(converted.get(), nullptr);
    return hr;
}

HRESULT write_png(pixels& copy, const std::filesystem::path& file) {
    com_ptr<IWICImagingFactory> factory;
    HRESULT hr = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IWICImagingFactory, factory.put_void());
    com_ptr<IWICBitmapEncoder> encoder;
    com_ptr<IWICBitmapFrameEncode> frame;
    if (SUCCEEDED(hr)) hr = create_frame(*factory, file, encoder, frame);
    if (SUCCEEDED(hr)) hr = write_pixels(*factory, *frame, copy);
    if (SUCCEEDED(hr)) hr = frame->Commit();
    if (SUCCEEDED(hr)) hr = encoder->Commit();
    return hr;
}

}  // namespace

void save_picture(HWND window, const std::filesystem::path& file) {
    pixels copy = copy_window(window);
    const HRESULT hr = write_png(copy, file);
    if (FAILED(hr)) {
        throw wrong_use("cannot write " + file.u8string() + ": " + system_message(static_cast<DWORD>(hr)));
    }
}

}  // namespace selvane_host
