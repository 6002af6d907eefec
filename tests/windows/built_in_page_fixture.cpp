#include "tests/windows/built_in_page_fixture.h"

#include <commctrl.h>

#include <algorithm>

namespace page_test {

std::string VendorWrite(std::uint32_t id, const char* value, const char* flags) {
    return "Set vendor " + std::to_string(id) + " <- value=" + value + " flags=" + flags +
           " caps=0x0 min=0 max=0 default=0, ok";
}

std::string VendorWrite(std::uint32_t id, int value) {
    return VendorWrite(id, std::to_string(value).c_str());
}

void BuiltInPageTest::UseCameraWithout(const std::vector<DWORD>& properties) {
    simcam::camera_options options = *simcam::ready_made("builtin");
    for (const DWORD id : properties) options.vendor.remove(id);
    UseCamera(std::move(options));
}

Lines BuiltInPageTest::OpenPage(REFCLSID clsid) {
    Close();
    page_ = GivenPage(clsid);
    window_ = Open(*page_);
    Settle();
    return Shown();
}

void BuiltInPageTest::Close() {
    if (page_) page_->Deactivate();
    page_.reset();
    window_ = nullptr;
}

void BuiltInPageTest::Click(const std::wstring& item, const std::wstring& caption, int n) const {
    const HWND button = Rows().Button(item, caption, n);
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(IsWindowEnabled(button));
    SendMessageW(button, BM_CLICK, 0, 0);
    RunMessages();
}

void BuiltInPageTest::Slide(const std::wstring& item, const std::wstring& element, int position) const {
    const HWND slider = Rows().Slider(item, element);
    ASSERT_NE(slider, nullptr);
    SendMessageW(slider, TBM_SETPOS, TRUE, position);
    SendMessageW(window_, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, 0), reinterpret_cast<LPARAM>(slider));
    RunMessages();
}

void BuiltInPageTest::Type(const std::wstring& item, const std::wstring& element,
                           const std::wstring& text) const {
    const HWND edit = Rows().Edit(item, element);
    ASSERT_NE(edit, nullptr);
    SetFocus(edit);
    SetWindowTextW(edit, L"");
    for (const wchar_t character : text) SendMessageW(edit, WM_CHAR, character, 1);
    ASSERT_EQ(TextOf(edit), text);
    SetFocus(Rows().Slider(item, element));
    RunMessages();
}

void BuiltInPageTest::Pick(const std::wstring& item, const std::wstring& element, int index) const {
    const HWND list = Rows().List(item, element);
    ASSERT_NE(list, nullptr);
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    RunMessages();
}

Lines BuiltInPageTest::EntriesOf(const std::wstring& item, const std::wstring& element) const {
    const HWND list = Rows().List(item, element);
    Lines entries;
    const LRESULT count = SendMessageW(list, CB_GETCOUNT, 0, 0);
    for (LRESULT at = 0; at < count; ++at) {
        wchar_t entry[64] = {};
        SendMessageW(list, CB_GETLBTEXT, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(entry));
        entries.emplace_back(entry);
    }
    return entries;
}

Transcript BuiltInPageTest::Written() const {
    Transcript lines = TakeTranscript();
    const auto is_read = [](const std::string& line) {
        return line.rfind("Set ", 0) != 0 && line.find(" Set ") == std::string::npos;
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), is_read), lines.end());
    return lines;
}

}  // namespace page_test
