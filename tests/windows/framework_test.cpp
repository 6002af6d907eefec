#include "propui/windows/framework/dialog_template.h"
#include "propui/windows/framework/pending_window.h"
#include "propui/windows/framework/reflection.h"
#include "propui/windows/framework/superclass.h"
#include "propui/windows/framework/superclassed_window.h"
#include "propui/windows/framework/window.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <stdexcept>
#include <thread>

namespace ZELPropUI::Framework {
namespace {

/// A window object that does what a test says.
class TestWindow final : public SuperclassedWindow {
public:
    bool Create(Superclass& superclass, HWND parent) {
        return CreateChild(superclass, parent, {0, 0, 50, 20}, WS_CHILD);
    }
    bool OnMessage(UINT message, WPARAM, LPARAM, LRESULT& result) override {
        ++messages;
        if (message == throwing) throw std::runtime_error("from a handler");
        if (message != handled) return false;
        result = 4711;
        return true;
    }
    void Hold() noexcept override { ++holders; }
    void Drop() noexcept override { --holders; }

    UINT handled = WM_APP;
    UINT throwing = 0;
    int messages = 0;
    int holders = 0;
};

WNDCLASSEXW DefinitionOf(HINSTANCE module, const wchar_t* name, bool& found) {
    WNDCLASSEXW definition{};
    definition.cbSize = sizeof definition;
    found = GetClassInfoExW(module, name, &definition) != 0;
    return definition;
}

class FrameworkTest : public testing::Test {
protected:
    FrameworkTest()
        : parent_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr)) {
        InitCommonControls();
    }
    ~FrameworkTest() override { DestroyWindow(parent_); }

    HWND parent_;
    Superclass class_{L"test superclass", L"BUTTON", SuperclassedWindow::Procedure};
};

TEST(PendingWindowTest, HandsOutTheNewestOfTheThreadOnce) {
    TestWindow first;
    TestWindow second;
    EXPECT_EQ(PendingWindow::Take(), nullptr);
    const PendingWindow outer(first);
    {
        const PendingWindow inner(second);
        EXPECT_EQ(PendingWindow::Take(), &second);
        EXPECT_EQ(PendingWindow::Take(), &first);
        EXPECT_EQ(PendingWindow::Take(), nullptr);
    }
    EXPECT_EQ(PendingWindow::Take(), nullptr);
}

TEST(PendingWindowTest, AnAnnouncementEndsWithItsGuard) {
    TestWindow window;
    { const PendingWindow pending(window); }
    EXPECT_EQ(PendingWindow::Take(), nullptr);
}

TEST(PendingWindowTest, ThreadsDoNotSeeEachOthersAnnouncements) {
    TestWindow here;
    TestWindow there;
    const PendingWindow pending(here);
    Window* taken_first = nullptr;
    Window* taken_then = nullptr;
    std::thread([&] {
        taken_first = PendingWindow::Take();
        const PendingWindow own(there);
        taken_then = PendingWindow::Take();
    }).join();
    EXPECT_EQ(taken_first, nullptr);
    EXPECT_EQ(taken_then, &there);
    EXPECT_EQ(PendingWindow::Take(), &here);
}

TEST_F(FrameworkTest, ASuperclassIsThePlatformsClassWithRoomForAPointer) {
    ASSERT_TRUE(class_.Register());
    ASSERT_TRUE(class_.Register()) << "a second time";
    bool found = false;
    const WNDCLASSEXW base = DefinitionOf(nullptr, L"BUTTON", found);
    ASSERT_TRUE(found);
    const WNDCLASSEXW ours = DefinitionOf(GetModuleHandleW(nullptr), class_.Name(), found);
    ASSERT_TRUE(found);
    EXPECT_EQ(class_.BaseProcedure(), base.lpfnWndProc);
    EXPECT_FALSE(ours.style & CS_GLOBALCLASS);
    EXPECT_EQ(ours.style, base.style & ~static_cast<UINT>(CS_GLOBALCLASS));
    EXPECT_GE(ours.cbWndExtra, base.cbWndExtra + static_cast<int>(sizeof(void*)));
    EXPECT_EQ(ours.cbWndExtra % static_cast<int>(sizeof(void*)), 0);
}

TEST_F(FrameworkTest, ASuperclassTakesItsClassBack) {
    bool found = false;
    {
        Superclass temporary(L"temporary superclass", L"BUTTON", SuperclassedWindow::Procedure);
        ASSERT_TRUE(temporary.Register());
        DefinitionOf(GetModuleHandleW(nullptr), L"temporary superclass", found);
        EXPECT_TRUE(found);
    }
    DefinitionOf(GetModuleHandleW(nullptr), L"temporary superclass", found);
    EXPECT_FALSE(found);
}

TEST_F(FrameworkTest, ThereIsNoSuperclassOfNothing) {
    Superclass odd(L"superclass of nothing", L"no such class", SuperclassedWindow::Procedure);
    TestWindow window;
    EXPECT_FALSE(window.Create(odd, parent_));
    EXPECT_EQ(window.Handle(), nullptr);
    EXPECT_EQ(PendingWindow::Take(), nullptr);
}

TEST_F(FrameworkTest, AWindowWithoutAParentIsNotCreated) {
    TestWindow window;
    EXPECT_FALSE(window.Create(class_, nullptr));
    EXPECT_EQ(window.Handle(), nullptr);
    EXPECT_EQ(PendingWindow::Take(), nullptr);
}

TEST_F(FrameworkTest, MessagesComeToTheObjectFirstAndThenToThePlatform) {
    TestWindow window;
    ASSERT_TRUE(window.Create(class_, parent_));
    EXPECT_EQ(SuperclassedWindow::FromHandle(window.Handle()), &window);
    EXPECT_EQ(SendMessageW(window.Handle(), WM_APP, 0, 0), 4711);
    SetWindowTextW(window.Handle(), L"still a button");
    wchar_t text[32] = {};
    GetWindowTextW(window.Handle(), text, 32);
    EXPECT_STREQ(text, L"still a button");
    EXPECT_EQ(window.holders, 0);
}

TEST_F(FrameworkTest, AnExceptionOfAHandlerStopsAtTheWindow) {
    TestWindow window;
    ASSERT_TRUE(window.Create(class_, parent_));
    window.throwing = WM_GETTEXTLENGTH;
    SetWindowTextW(window.Handle(), L"four");
    EXPECT_EQ(SendMessageW(window.Handle(), WM_GETTEXTLENGTH, 0, 0), 4) << "the platform answers";
    EXPECT_EQ(window.holders, 0);
}

TEST_F(FrameworkTest, TheHandleGoesWithTheWindow) {
    TestWindow window;
    ASSERT_TRUE(window.Create(class_, parent_));
    const HWND handle = window.Handle();
    DestroyWindow(parent_);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(window.Handle(), nullptr);
}

TEST_F(FrameworkTest, TheWindowGoesWithTheObject) {
    HWND handle = nullptr;
    {
        TestWindow window;
        ASSERT_TRUE(window.Create(class_, parent_));
        handle = window.Handle();
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST_F(FrameworkTest, AWindowOfOurClassThatNobodyAnnouncedIsHarmless) {
    ASSERT_TRUE(class_.Register());
    const HWND stray = CreateWindowExW(0, class_.Name(), L"stray", WS_CHILD, 0, 0, 10, 10, parent_, nullptr,
                                       GetModuleHandleW(nullptr), nullptr);
    EXPECT_NE(stray, nullptr);
    EXPECT_EQ(SuperclassedWindow::FromHandle(stray), nullptr);
    EXPECT_EQ(SuperclassedWindow::FromHandle(parent_), nullptr) << "another class";
    EXPECT_EQ(SuperclassedWindow::FromHandle(nullptr), nullptr);
}

class ReflectionTest : public FrameworkTest {
protected:
    ReflectionTest() {
        EXPECT_TRUE(window_.Create(class_, parent_));
        SetWindowLongPtrW(window_.Handle(), GWLP_ID, 33);
    }
    [[nodiscard]] LPARAM Child() const { return reinterpret_cast<LPARAM>(window_.Handle()); }
    [[nodiscard]] HWND Sender(UINT message, WPARAM wparam, LPARAM lparam) const {
        return SenderOf(parent_, message, wparam, lparam);
    }

    TestWindow window_;
};

TEST_F(ReflectionTest, FindsTheSenderInTheLastParameter) {
    for (const int message : {WM_COMMAND, WM_HSCROLL, WM_VSCROLL, WM_VKEYTOITEM, WM_CHARTOITEM,
                              WM_CTLCOLORMSGBOX, WM_CTLCOLOREDIT, WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN,
                              WM_CTLCOLORDLG, WM_CTLCOLORSCROLLBAR, WM_CTLCOLORSTATIC}) {
        EXPECT_EQ(Sender(static_cast<UINT>(message), 0, Child()), window_.Handle()) << message;
        EXPECT_EQ(Sender(static_cast<UINT>(message), 0, 0), nullptr) << message;
    }
}

TEST_F(ReflectionTest, FindsTheSenderInARecord) {
    NMHDR notification{window_.Handle(), 33, 0};
    EXPECT_EQ(Sender(WM_NOTIFY, 33, reinterpret_cast<LPARAM>(&notification)), window_.Handle());
    DRAWITEMSTRUCT draw{};
    draw.hwndItem = window_.Handle();
    EXPECT_EQ(Sender(WM_DRAWITEM, 33, reinterpret_cast<LPARAM>(&draw)), window_.Handle());
    EXPECT_EQ(Sender(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&draw)), nullptr) << "a menu's";
    COMPAREITEMSTRUCT compare{};
    compare.hwndItem = window_.Handle();
    EXPECT_EQ(Sender(WM_COMPAREITEM, 33, reinterpret_cast<LPARAM>(&compare)), window_.Handle());
    DELETEITEMSTRUCT remove{};
    remove.hwndItem = window_.Handle();
    EXPECT_EQ(Sender(WM_DELETEITEM, 33, reinterpret_cast<LPARAM>(&remove)), window_.Handle());
    MEASUREITEMSTRUCT measure{};
    measure.CtlID = 33;
    EXPECT_EQ(Sender(WM_MEASUREITEM, 33, reinterpret_cast<LPARAM>(&measure)), window_.Handle());
}

TEST_F(ReflectionTest, FindsTheSenderOfAParentNotify) {
    EXPECT_EQ(Sender(WM_PARENTNOTIFY, MAKEWPARAM(WM_CREATE, 33), Child()), window_.Handle());
    EXPECT_EQ(Sender(WM_PARENTNOTIFY, MAKEWPARAM(WM_DESTROY, 33), Child()), window_.Handle());
    EXPECT_EQ(Sender(WM_PARENTNOTIFY, MAKEWPARAM(WM_LBUTTONDOWN, 33), 0), window_.Handle());
    EXPECT_EQ(Sender(WM_PARENTNOTIFY, MAKEWPARAM(WM_LBUTTONDOWN, 34), 0), nullptr);
}

TEST_F(ReflectionTest, OtherMessagesHaveNoSender) {
    for (const int message : {WM_SIZE, WM_PAINT, WM_TIMER, WM_USER, WM_CLOSE, WM_KEYDOWN}) {
        EXPECT_EQ(Sender(static_cast<UINT>(message), 0, Child()), nullptr) << message;
    }
}

TEST_F(ReflectionTest, StopsOnlyIfTheChildHandledIt) {
    LRESULT result = 0;
    EXPECT_FALSE(Reflect(parent_, WM_COMMAND, 0, Child(), result));
    window_.handled = ocm_base + WM_COMMAND;
    EXPECT_TRUE(Reflect(parent_, WM_COMMAND, 0, Child(), result));
    EXPECT_EQ(result, 4711);
    window_.handled = 0;
    window_.throwing = ocm_base + WM_COMMAND;
    EXPECT_FALSE(Reflect(parent_, WM_COMMAND, 0, Child(), result));
}

TEST_F(ReflectionTest, NothingGoesToAWindowThatIsNoChild) {
    window_.handled = ocm_base + WM_COMMAND;
    const HWND elsewhere = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr,
                                           nullptr, GetModuleHandleW(nullptr), nullptr);
    const int before = window_.messages;
    LRESULT result = 0;
    EXPECT_FALSE(Reflect(elsewhere, WM_COMMAND, 0, Child(), result));
    EXPECT_EQ(window_.messages, before);
    EXPECT_FALSE(Reflect(parent_, WM_COMMAND, 0, reinterpret_cast<LPARAM>(parent_), result));
    EXPECT_FALSE(Reflect(parent_, WM_COMMAND, 0, 0x7FFF1234, result)) << "no window at all";
    DestroyWindow(elsewhere);
}

TEST(DialogTemplateTest, ReadsThePlatformsPropertySheet) {
    const auto sheet = ReadDialogTemplate(LoadLibraryW(L"COMCTL32.DLL"), 1006);
    ASSERT_TRUE(sheet.has_value());
    EXPECT_GT(sheet->size.cx, 0);
    EXPECT_GT(sheet->size.cy, 0);
    EXPECT_EQ(sheet->points, 8);
    EXPECT_EQ(sheet->typeface, L"MS Shell Dlg");
}

TEST(DialogTemplateTest, ThereIsNoTemplateWithoutAResource) {
    EXPECT_FALSE(ReadDialogTemplate(GetModuleHandleW(nullptr), 4711).has_value());
}

// The platform's own conversion between dialog units and pixels, for the font of a template.
SIZE MappedByThePlatform(const wchar_t* face, WORD points, SIZE units) {
    std::vector<WORD> raw{
        LOWORD(DS_SETFONT | WS_POPUP), HIWORD(DS_SETFONT | WS_POPUP), 0, 0, 0, 0, 0, 10, 10, 0, 0, 0};
    raw.push_back(points);
    for (const wchar_t* unit = face; *unit != 0; ++unit) raw.push_back(*unit);
    raw.push_back(0);
    const HWND dialog = CreateDialogIndirectParamW(
        GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(raw.data()), nullptr,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    RECT edges{0, 0, units.cx, units.cy};
    EXPECT_TRUE(MapDialogRect(dialog, &edges));
    DestroyWindow(dialog);
    return {edges.right, edges.bottom};
}

TEST(DialogTemplateTest, APageInTheFontOfTheSheetIsWhatThePlatformMakesOfIt) {
    DialogTemplate page;
    page.size = {285, 281};
    page.points = 8;
    page.typeface = L"MS Shell Dlg";
    const SIZE size = PageSize(page);
    const SIZE mapped = MappedByThePlatform(L"MS Shell Dlg", 8, page.size);
    EXPECT_EQ(size.cx, mapped.cx);
    EXPECT_EQ(size.cy, mapped.cy);
}

TEST(DialogTemplateTest, APageInALargerFontIsHigherByTheRatioOfTheHeights) {
    DialogTemplate page;
    page.size = {100, 160};
    page.points = 8;
    page.typeface = L"MS Shell Dlg";
    const SIZE small = PageSize(page);
    page.points = 16;
    const SIZE large = PageSize(page);
    EXPECT_EQ(large.cx, small.cx) << "the width follows the font of the sheet";
    EXPECT_GT(large.cy, small.cy * 3 / 2);
    EXPECT_LT(large.cy, small.cy * 5 / 2);
}

TEST(DialogTemplateTest, MeasuringLeavesNoDeviceContextBehind) {
    DialogTemplate page;
    page.size = {285, 281};
    page.points = 8;
    page.typeface = L"MS Shell Dlg";
    const SIZE first = PageSize(page);
    // Four objects a round, more than a process may hold.
    for (int round = 0; round < 5000; ++round) ASSERT_EQ(PageSize(page).cx, first.cx) << round;
}

}  // namespace
}  // namespace ZELPropUI::Framework
