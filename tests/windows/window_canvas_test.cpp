#include "propui/windows/window_canvas.h"
#include "tests/support/fake_item.h"
#include "tests/windows/control_fixture.h"
#include "tests/windows/naming_service.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <map>

namespace ZELPropUI {
namespace {

class WindowCanvasTest : public ControllerControlTest {
protected:
    WindowCanvasTest() {
        InitCommonControls();
        LoadLibraryW(L"Msftedit.dll");
        parent_.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    }
    ~WindowCanvasTest() override { controls_.clear(); }

    [[nodiscard]] static std::wstring ClassOf(HWND window) {
        wchar_t name[64] = {};
        GetClassNameW(window, name, 64);
        return name;
    }
    [[nodiscard]] std::vector<HWND> Children() const {
        std::vector<HWND> children;
        EnumChildWindows(
            parent_.Handle(),
            [](HWND child, LPARAM list) -> BOOL {
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&children));
        return children;
    }

    ControlList controls_;
    std::shared_ptr<int> source_ = std::make_shared<int>(0);
    WindowCanvas canvas_{parent_.Handle(), controls_, source_};
};

TEST_F(WindowCanvasTest, MeasuresTextInTheFontOfThePage) {
    EXPECT_EQ(canvas_.TextWidth(L""), 0);
    const int narrow = canvas_.TextWidth(L"iii");
    const int wide = canvas_.TextWidth(L"WWW");
    EXPECT_GT(narrow, 0);
    EXPECT_GT(wide, narrow);
    EXPECT_EQ(canvas_.TextWidth(std::wstring_view(L"WWWiii", 3)), wide) << "not beyond the view";
    parent_.font = CreateFontW(-40, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    EXPECT_GT(canvas_.TextWidth(L"WWW"), 2 * wide);
    DeleteObject(parent_.font);
}

TEST_F(WindowCanvasTest, ScalesToTheScreen) {
    const HDC screen = GetDC(nullptr);
    const int x = GetDeviceCaps(screen, LOGPIXELSX);
    const int y = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    for (const int measure : {0, 1, 5, 18, 110, 140}) {
        EXPECT_EQ(canvas_.ScaleX(measure), MulDiv(measure, x, 96));
        EXPECT_EQ(canvas_.ScaleY(measure), MulDiv(measure, y, 96));
    }
}

TEST_F(WindowCanvasTest, QueriesLeaveNoDeviceContextBehind) {
    const int width = canvas_.TextWidth(L"Exposure");
    // More than a process may hold.
    for (int round = 0; round < 10000; ++round) ASSERT_EQ(canvas_.ScaleX(96), canvas_.ScaleX(96)) << round;
    for (int round = 0; round < 18000; ++round) ASSERT_EQ(canvas_.TextWidth(L"Exposure"), width) << round;
}

TEST_F(WindowCanvasTest, EveryWindowHasAnIdInTheOrderOfCreation) {
    const auto controller = platform::com_ptr<FakeController>::attach(new FakeController(script_));
    canvas_.AddLabel({20, 18, 110, 23}, L"Exposure");
    canvas_.AddSlider({0, 0, 140, 23}, *controller);
    canvas_.AddEdit({145, 0, 60, 22}, *controller);
    canvas_.AddSpinButton({205, 0, 10, 22}, *controller);
    canvas_.AddLabel({20, 48, 110, 23}, L"Gain");
    const auto children = Children();
    ASSERT_EQ(children.size(), 5u);
    for (std::size_t at = 0; at < children.size(); ++at) {
        EXPECT_EQ(GetDlgCtrlID(children[at]), 1000 + static_cast<int>(at));
        EXPECT_EQ(GetDlgItem(parent_.Handle(), 1000 + static_cast<int>(at)), children[at]);
    }
    EXPECT_EQ(GetDlgItem(parent_.Handle(), 0), nullptr);
}

TEST_F(WindowCanvasTest, EditsAndSpinButtonsHaveTheNameOfTheirElement) {
    page_test::NamingService service;
    const auto controller = platform::com_ptr<FakeController>::attach(new FakeController(script_));
    canvas_.BeginElement(L"Exposure", L"Auto Reference");
    canvas_.AddSlider({0, 0, 140, 23}, *controller);
    canvas_.AddEdit({145, 0, 60, 22}, *controller);
    canvas_.AddSpinButton({205, 0, 10, 22}, *controller);
    const auto children = Children();
    ASSERT_EQ(children.size(), 3u);
    using Names = std::map<HWND, std::wstring>;
    EXPECT_EQ(service.names,
              (Names{{children[1], L"Exposure Auto Reference"}, {children[2], L"Exposure Auto Reference"}}));
    controls_.erase(controls_.begin() + 1);
    EXPECT_EQ(service.names, (Names{{children[2], L"Exposure Auto Reference"}})) << "one that is dropped";
    parent_.Destroy();
    EXPECT_TRUE(service.names.empty()) << "one whose window goes";
}

TEST_F(WindowCanvasTest, ALabelIsAStaticTextInTheFontOfThePage) {
    canvas_.AddLabel({20, 18, 110, 23}, std::wstring_view(L"Exposure Time", 8));
    ASSERT_EQ(Children().size(), 1u);
    const HWND label = Children().front();
    EXPECT_EQ(ClassOf(label), L"Static");
    EXPECT_EQ(TextOf(label), L"Exposure");
    EXPECT_EQ(FirstStyleOf(label), 0x50000200u);
    EXPECT_EQ(FontOf(label), parent_.font);
    const RECT edges = RectOf(label);
    EXPECT_EQ(edges.left, 20);
    EXPECT_EQ(edges.top, 18);
    EXPECT_EQ(edges.right, 130);
    EXPECT_EQ(edges.bottom, 41);
    EXPECT_TRUE(controls_.empty()) << "nothing to refresh";
}

TEST_F(WindowCanvasTest, ControlsComeInTheOrderOfTheCallsAndAreCurrent) {
    const auto controller = platform::com_ptr<FakeController>::attach(new FakeController(script_));
    script_.text = L"12";
    script_.position = 12;
    canvas_.AddSlider({0, 0, 140, 23}, *controller);
    EXPECT_EQ(script_.TakeLog().front(), "GetPositionRange");
    canvas_.AddEdit({145, 0, 60, 22}, *controller);
    EXPECT_EQ(script_.TakeLog().front(), "GetText");
    canvas_.AddSpinButton({205, 0, 10, 22}, *controller);
    EXPECT_EQ(controls_.size(), 3u);
    const auto children = Children();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_THAT(ClassOf(children[0]), testing::EndsWith(L"msctls_trackbar32"));
    EXPECT_THAT(ClassOf(children[1]), testing::EndsWith(L"RICHEDIT50W"));
    EXPECT_THAT(ClassOf(children[2]), testing::EndsWith(L"msctls_updown32"));
    EXPECT_EQ(TextOf(children[1]), L"12");
    EXPECT_EQ(SendMessageW(children[0], TBM_GETPOS, 0, 0), 12);
    EXPECT_EQ(SendMessageW(children[2], UDM_GETBUDDY, 0, 0), reinterpret_cast<LRESULT>(children[1]));
}

TEST_F(WindowCanvasTest, ControlsKeepTheirItemAndWhatItNeeds) {
    test_support::FakeScript script;
    script.interfaces[3] = {};
    {
        const auto item =
            platform::com_ptr<test_support::FakeItem>::attach(new test_support::FakeItem(script));
        canvas_.AddCombo({0, 0, 225, 150}, *item, 3);
        canvas_.AddSwitch({0, 30, 60, 23}, *item, 3, L"Auto");
        canvas_.AddButton({70, 30, 60, 23}, *item, 3, L"One Push");
    }
    EXPECT_EQ(script.living_items, 1);
    EXPECT_EQ(source_.use_count(), 5) << "the test, the canvas and three controls";
    const auto children = Children();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_THAT(ClassOf(children[0]), testing::EndsWith(L"COMBOBOX"));
    EXPECT_EQ(TextOf(children[1]), L"Auto");
    EXPECT_EQ(TextOf(children[2]), L"One Push");
    controls_.clear();
    EXPECT_EQ(script.living_items, 0);
    EXPECT_EQ(source_.use_count(), 2);
    EXPECT_TRUE(Children().empty());
}

}  // namespace
}  // namespace ZELPropUI
