#pragma once

#include "tests/windows/page_fixture.h"

#include <olectl.h>

#include <string>
#include <vector>

namespace page_test {

/// The platform's own frame, with the factories of the DLL known to COM for the time of a test.
class FrameTest : public AccessPathTest {
protected:
    FrameTest() {
        CoInitialize(nullptr);
        for (const CLSID& clsid : all_pages) {
            DWORD cookie = 0;
            EXPECT_EQ(CoRegisterClassObject(clsid, server_.Factory(clsid).get(), CLSCTX_INPROC_SERVER,
                                            REGCLS_MULTIPLEUSE, &cookie),
                      S_OK);
            cookies_.push_back(cookie);
        }
    }
    ~FrameTest() override {
        for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
        CoUninitialize();
    }

    // The frame runs its own loop; a timer looks for it and works it from inside.
    using Worker = void (*)(HWND sheet);
    HRESULT RunFrame(simcam::simulated_camera& camera, Worker worker) {
        worker_ = worker;
        IUnknown* object = &camera;
        CLSID pages[] = {exposure_page, feature_page, lens_page, color_page};
        const UINT_PTR timer = SetTimer(nullptr, 0, 50, Tick);
        const HRESULT hr = OleCreatePropertyFrame(host_.Handle(), 10, 10, L"Camera", 1, &object, 4, pages,
                                                  LOCALE_USER_DEFAULT, 0, nullptr);
        KillTimer(nullptr, timer);
        return hr;
    }

    static std::vector<HWND> OpenPages(HWND sheet) {
        std::vector<HWND> pages;
        EnumChildWindows(
            sheet,
            [](HWND child, LPARAM list) -> BOOL {
                const bool page = ClassOf(child) == L"#32770" && !PageControls(child).labels.empty();
                if (page) reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&pages));
        return pages;
    }

private:
    static void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD) {
        HWND sheet = nullptr;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND window, LPARAM found) -> BOOL {
                if (ClassOf(window) == L"#32770" && TextOf(window).find(L"Camera") != std::wstring::npos) {
                    *reinterpret_cast<HWND*>(found) = window;
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&sheet));
        if (sheet == nullptr || IsWindowVisible(sheet) == 0) return;
        KillTimer(nullptr, timer);
        worker_(sheet);
        PostMessageW(sheet, WM_COMMAND, IDCANCEL, 0);
    }

    static inline Worker worker_ = nullptr;
    std::vector<DWORD> cookies_;
};

}  // namespace page_test
