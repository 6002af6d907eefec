#include "tests/support/not_empty.h"
#include "tests/windows/creation_watch.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <algorithm>

namespace page_test {
namespace {

/// A window of a page as a test expects it. Rects are those that the window was made with.
struct Expected {
    const wchar_t* window_class;
    DWORD style;
    const wchar_t* text;
    int left, top, width, height;
};

class PageWindowsTest : public AccessPathTest {
protected:
    using AccessPathTest::AccessPathTest;
    ~PageWindowsTest() override { page_->Deactivate(); }

    HWND OpenPage(REFCLSID clsid) {
        page_ = GivenPage(clsid);
        window_ = Open(*page_);
        return window_;
    }

    // A measure at 96 dots per inch on this screen. Places are sums of such measures.
    [[nodiscard]] static int X(int measure) { return MulDiv(measure, Dots(LOGPIXELSX), 96); }
    [[nodiscard]] static int Y(int measure) { return MulDiv(measure, Dots(LOGPIXELSY), 96); }
    [[nodiscard]] static int Dots(int axis) {
        const HDC screen = GetDC(nullptr);
        const int dots = GetDeviceCaps(screen, axis);
        ReleaseDC(nullptr, screen);
        return dots;
    }

    // Measured without the page's help, in the font that the dialog has.
    [[nodiscard]] int TextWidth(const std::wstring& text) const {
        const HDC context = GetDC(window_);
        const HGDIOBJ before =
            SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)));
        SIZE extent{};
        GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &extent);
        SelectObject(context, before);
        ReleaseDC(window_, context);
        return extent.cx;
    }

    void ExpectWindow(HWND window, const Expected& expected) const {
        SCOPED_TRACE(testing::Message()
                     << expected.window_class << " at " << expected.left << ", " << expected.top);
        const auto request = creation_.RequestOf(window);
        EXPECT_EQ(ClassOf(window), expected.window_class);
        EXPECT_EQ(request.style, expected.style);
        EXPECT_EQ(request.extended_style, 0u);
        EXPECT_EQ(TextOf(window), expected.text);
        EXPECT_EQ(request.rect.left, expected.left);
        EXPECT_EQ(request.rect.top, expected.top);
        EXPECT_EQ(request.rect.right - request.rect.left, expected.width);
        EXPECT_EQ(request.rect.bottom - request.rect.top, expected.height);
    }
    void ExpectWindows(const std::vector<Expected>& expected) const {
        const auto children = ChildrenOf(window_);
        ASSERT_EQ(children.size(), expected.size());
        for (std::size_t i = 0; i < children.size(); ++i) ExpectWindow(children[i], expected[i]);
    }

    CreationWatch creation_;
    PagePtr page_;
    HWND window_ = nullptr;
};

constexpr wchar_t slider[] = L"Selvane_msctls_trackbar32";
constexpr wchar_t edit[] = L"Selvane_RICHEDIT50W";
constexpr wchar_t spin[] = L"Selvane_msctls_updown32";
constexpr wchar_t combo[] = L"Selvane_COMBOBOX";
constexpr wchar_t button[] = L"Selvane_BUTTON";
constexpr wchar_t label[] = L"Static";

TEST_P(PageWindowsTest, AFloatWithASwitch) {
    OpenPage(exposure_page);
    const int label_width = std::max(X(110), TextWidth(L"Exposure"));
    const int at_slider = X(20) + label_width + X(5);
    const int at_edit = at_slider + X(140) + X(5);
    ExpectWindows({
        {label, 0x50000200, L"Exposure", X(20), Y(18), label_width, Y(23)},
        {slider, 0x50010010, L"", at_slider, Y(18), X(140), Y(23)},
        {edit, 0x50815000, L"1/100 sec", at_edit, Y(18), X(60), Y(22)},
        {spin, 0x50000000, L"", at_edit + X(60), Y(18), X(10), Y(22)},
        {button, 0x50010002, L"Auto", at_edit + X(60) + X(20), Y(18), TextWidth(L"Auto") + 25, Y(23)},
    });
}

TEST_P(PageWindowsTest, ASwitchWithAButtonAndAList) {
    OpenPage(feature_page);
    const int enable = TextWidth(L"Enable") + 25;
    const int software = TextWidth(L"Software Trigger") + 25;
    const int at_enable = X(20) + X(110) + X(5);
    ExpectWindows({
        {label, 0x50000200, L"Trigger", X(20), Y(18), X(110), Y(23)},
        {button, 0x50010002, L"Enable", at_enable, Y(18), enable, Y(23)},
        {button, 0x50010000, L"Software Trigger", at_enable + enable + X(5), Y(18), software, Y(23)},
        {label, 0x50000200, L"Source", X(40), Y(18) + Y(30), X(110), Y(23)},
        {combo, 0x50210043, L"Software", X(40) + X(110) + X(5), Y(18) + Y(30), X(225), Y(150)},
    });
    const HWND list = PageControls(window_).combos.at(0);
    EXPECT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 2);
    wchar_t entry[32] = {};
    SendMessageW(list, CB_GETLBTEXT, 1, reinterpret_cast<LPARAM>(entry));
    EXPECT_STREQ(entry, L"Line 1");
}

TEST_P(PageWindowsTest, AnInteger) {
    OpenPage(lens_page);
    const int at_slider = X(20) + X(110) + X(5);
    const int at_edit = at_slider + X(140) + X(5);
    ExpectWindows({
        {label, 0x50000200, L"Zoom", X(20), Y(18), X(110), Y(23)},
        {slider, 0x50010010, L"", at_slider, Y(18), X(140), Y(23)},
        {edit, 0x50815000, L"200", at_edit, Y(18), X(60), Y(22)},
        {spin, 0x50000000, L"", at_edit + X(60), Y(18), X(10), Y(22)},
    });
    const PageControls controls(window_);
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETRANGEMAX, 0, 0), 100);
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), 20);
    EXPECT_EQ(SendMessageW(controls.spins[0], UDM_GETRANGE, 0, 0), MAKELPARAM(100, 0));
    EXPECT_EQ(SendMessageW(controls.spins[0], UDM_GETBUDDY, 0, 0),
              reinterpret_cast<LRESULT>(controls.edits[0]));
}

TEST_P(PageWindowsTest, AllTextIsInTheFontOfTheDialog) {
    OpenPage(feature_page);
    const LRESULT font = SendMessageW(window_, WM_GETFONT, 0, 0);
    EXPECT_NE(font, 0);
    for (const HWND child : test_support::NotEmpty(ChildrenOf(window_))) {
        if (ClassOf(child) == slider) continue;
        EXPECT_EQ(SendMessageW(child, WM_GETFONT, 0, 0), font) << TextOf(child);
    }
}

/// The camera with everything.
class FullPageTest : public PageWindowsTest {
protected:
    FullPageTest() : PageWindowsTest(CameraOn(GetParam(), "full")) {}
};

TEST_P(FullPageTest, EachPageHasRowsThatDoNotOverlap) {
    for (const CLSID& clsid : all_pages) {
        OpenPage(clsid);
        const auto children = ChildrenOf(window_);
        EXPECT_GE(children.size(), 4u);
        for (std::size_t i = 0; i < children.size(); ++i) {
            for (std::size_t k = i + 1; k < children.size(); ++k) {
                const RECT one = RectOf(children[i]);
                const RECT other = RectOf(children[k]);
                RECT common{};
                // The up-down control is wider than it was asked to be and may touch what follows.
                EXPECT_FALSE(IntersectRect(&common, &one, &other))
                    << TextOf(children[i]) << " " << TextOf(children[k]);
            }
        }
        page_->Deactivate();
    }
}

TEST_P(FullPageTest, ARectangleLargerThanThePageIsFine) {
    page_ = GivenPage(exposure_page);
    const RECT large{0, 0, 3000, 2000};
    EXPECT_EQ(page_->Activate(host_.Handle(), &large, FALSE), S_OK);
    const HWND window = GetWindow(host_.Handle(), GW_CHILD);
    EXPECT_EQ(RectOf(window).right, 3000);
    EXPECT_GE(ChildrenOf(window).size(), 4u);
}

TEST_P(FullPageTest, AnEmptyOrInvertedRectangleIsFine) {
    page_ = GivenPage(exposure_page);
    for (const RECT& odd : {RECT{0, 0, 0, 0}, RECT{50, 50, 10, 10}, RECT{-100, -100, -50, -50}}) {
        EXPECT_EQ(page_->Activate(host_.Handle(), &odd, FALSE), S_OK);
        EXPECT_GE(ChildrenOf(GetWindow(host_.Handle(), GW_CHILD)).size(), 4u);
    }
}

TEST_P(FullPageTest, ARectangleBeyondAllScreensIsFine) {
    page_ = GivenPage(exposure_page);
    for (const RECT& huge : {RECT{0, 0, LONG_MAX, LONG_MAX}, RECT{LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX},
                             RECT{LONG_MAX, LONG_MAX, LONG_MIN, LONG_MIN}}) {
        EXPECT_EQ(page_->Activate(host_.Handle(), &huge, FALSE), S_OK);
        EXPECT_EQ(page_->Show(SW_SHOW), S_OK);
        EXPECT_GE(ChildrenOf(GetWindow(host_.Handle(), GW_CHILD)).size(), 4u);
        EXPECT_EQ(page_->Move(&huge), S_OK);
        RunMessages();
        EXPECT_EQ(page_->Deactivate(), S_OK);
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, PageWindowsTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

INSTANTIATE_TEST_SUITE_P(AccessPaths, FullPageTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

}  // namespace
}  // namespace page_test
