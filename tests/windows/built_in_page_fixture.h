#pragma once

#include "tests/windows/page_fixture.h"
#include "tests/windows/page_rows.h"
#include "wire/vendor_set.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace page_test {

using Lines = std::vector<std::wstring>;

/// The line of a write of a vendor property: a record of zeros but for value and flags.
[[nodiscard]] std::string VendorWrite(std::uint32_t id, const char* value, const char* flags = "0x2");
[[nodiscard]] std::string VendorWrite(std::uint32_t id, int value);

/// One page of a camera, open. What a user does to it is followed by the page's own refresh.
class BuiltInPageTest : public PageTest {
protected:
    using PageTest::PageTest;
    BuiltInPageTest() : PageTest("builtin") {}
    ~BuiltInPageTest() override { Close(); }

    /// Another camera instead, before a page is opened.
    void UseCamera(simcam::camera_options options) { camera_ = simcam::make_camera(std::move(options)); }

    /// The camera with every fixed driver property but some.
    void UseCameraWithout(const std::vector<DWORD>& properties);

    /// Opens a page; what it shows.
    Lines OpenPage(REFCLSID clsid);
    void Close();
    [[nodiscard]] Lines Shown() const { return PageRows(window_).Lines(); }
    /// The lines of one item.
    [[nodiscard]] Lines Shown(const std::wstring& item) const { return Rows().LinesOf(item); }
    [[nodiscard]] PageRows Rows() const { return PageRows(window_); }

    // What a user does.
    void Click(const std::wstring& item, const std::wstring& caption, int n = 0) const;
    void Slide(const std::wstring& item, const std::wstring& element, int position) const;
    void Type(const std::wstring& item, const std::wstring& element, const std::wstring& text) const;
    void Pick(const std::wstring& item, const std::wstring& element, int index) const;
    [[nodiscard]] Lines EntriesOf(const std::wstring& item, const std::wstring& element) const;

    /// The writes that reached the driver since the last look.
    [[nodiscard]] Transcript Written() const;

private:
    PagePtr page_;
    HWND window_ = nullptr;
};

}  // namespace page_test
