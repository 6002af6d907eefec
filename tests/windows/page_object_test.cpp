#include "adapter/hr_exception.h"
#include "tests/windows/com_fakes.h"
#include "tests/windows/page_fixture.h"

#include <gmock/gmock.h>
#include <olectl.h>

#include <exception>
#include <string>

namespace page_test {
namespace {

class PageObjectTest : public AccessPathTest {};

TEST_P(PageObjectTest, OneSiteAtATime) {
    const auto page = server_.MakePage(exposure_page);
    CountingSite first;
    CountingSite second;
    EXPECT_EQ(page->SetPageSite(&first), S_OK);
    EXPECT_EQ(first.references, 1);
    EXPECT_EQ(page->SetPageSite(&second), E_UNEXPECTED);
    EXPECT_EQ(page->SetPageSite(&first), E_UNEXPECTED);
    EXPECT_EQ(second.references, 0);
    EXPECT_EQ(page->SetPageSite(nullptr), S_OK);
    EXPECT_EQ(first.references, 0);
    EXPECT_EQ(page->SetPageSite(nullptr), S_OK);
    EXPECT_EQ(page->SetPageSite(&second), S_OK);
    EXPECT_EQ(second.references, 1);
    EXPECT_EQ(page->SetPageSite(nullptr), S_OK);
}

TEST_P(PageObjectTest, TheLastReleaseLetsGoOfTheSiteAndTheObjects) {
    CountingSite site;
    {
        const auto page = GivenPage(exposure_page);
        page->SetPageSite(&site);
        EXPECT_GT(camera_->references(), 1);
    }
    EXPECT_EQ(site.references, 0);
    EXPECT_EQ(camera_->references(), 1);
}

TEST_P(PageObjectTest, TellsAboutItself) {
    const wchar_t* const titles[] = {L"Selvane Exposure Controls", L"Selvane Feature Controls",
                                     L"Selvane Lens Controls", L"Selvane Color Controls"};
    for (int i = 0; i < 4; ++i) {
        PROPPAGEINFO info;
        memset(&info, 0xCD, sizeof info);
        ASSERT_EQ(server_.MakePage(all_pages[i])->GetPageInfo(&info), S_OK);
        EXPECT_EQ(info.cb, 48u);
        EXPECT_STREQ(info.pszTitle, titles[i]);
        EXPECT_STREQ(info.pszHelpFile, L"");
        EXPECT_STREQ(info.pszDocString, L"");
        EXPECT_EQ(info.dwHelpContext, 0u);
        CoTaskMemFree(info.pszTitle);
        CoTaskMemFree(info.pszHelpFile);
        CoTaskMemFree(info.pszDocString);
    }
    EXPECT_EQ(server_.MakePage(exposure_page)->GetPageInfo(nullptr), E_POINTER);
}

TEST_P(PageObjectTest, ItsSizeIsThatOfItsDialog) {
    PageInfo info;
    info.cb = 4711;  // a host's guess
    ASSERT_EQ(server_.MakePage(lens_page)->GetPageInfo(&info), S_OK);
    // The platform's property sheet has the same font as the page, so the page's own units must agree.
    const HWND dialog = CreateDialogParamW(
        server_.Module(), MAKEINTRESOURCEW(105), host_.Handle(),
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    RECT units{0, 0, 285, 281};
    ASSERT_TRUE(MapDialogRect(dialog, &units));
    EXPECT_EQ(info.size.cx, units.right);
    EXPECT_EQ(info.size.cy, units.bottom);
    DestroyWindow(dialog);
}

TEST_P(PageObjectTest, SetObjectsWantsAnArray) {
    const auto page = server_.MakePage(exposure_page);
    IUnknown* objects[] = {camera_.get()};
    EXPECT_EQ(page->SetObjects(1, nullptr), E_POINTER);
    EXPECT_EQ(page->SetObjects(0, nullptr), E_POINTER);
    EXPECT_EQ(page->SetObjects(0, objects), E_NOINTERFACE);
    EXPECT_TRUE(TakeTranscript().empty());
}

TEST_P(PageObjectTest, SetObjectsTakesTheFirstCamera) {
    PlainObject plain;
    const auto page = server_.MakePage(exposure_page);
    const auto foreign = simcam::make_camera("foreign");
    EXPECT_EQ(Give(*page, {nullptr, &plain, foreign.get(), camera_.get(), foreign.get()}), S_OK);
    EXPECT_THAT(foreign->transcript(),
                testing::ElementsAre("QuerySupported gate 0 -> 0x1, ok", "Get gate 0 -> 3, ok"))
        << "asked once for its kind, and never again behind the camera";
    EXPECT_EQ(plain.references, 1) << "all objects are kept";
    EXPECT_EQ(foreign->references(), 3);
    page->Deactivate();
}

TEST_P(PageObjectTest, SetObjectsRefusesWhatIsNoCamera) {
    PlainObject plain;
    const auto page = server_.MakePage(exposure_page);
    EXPECT_EQ(Give(*page, {&plain}), E_NOINTERFACE);
    EXPECT_EQ(Give(*page, {nullptr}), E_NOINTERFACE);
    EXPECT_EQ(plain.references, 0);
    UseCamera("foreign");
    EXPECT_EQ(Give(*page), E_NOINTERFACE);
    auto options = SimpleCamera(GetParam());
    options.gate_set = false;
    UseCamera(options);
    EXPECT_EQ(Give(*page), E_NOINTERFACE);
    options.gate_set = true;
    options.property_set = false;
    UseCamera(options);
    EXPECT_EQ(Give(*page), E_NOINTERFACE);
    EXPECT_EQ(camera_->references(), 1) << "nothing is kept of a refused object";
}

TEST_P(PageObjectTest, SetObjectsRefusesACameraWithNothingToShow) {
    UseCamera("empty");
    {
        const auto page = server_.MakePage(exposure_page);
        EXPECT_EQ(Give(*page), E_NOINTERFACE);
        EXPECT_GT(camera_->references(), 1) << "the adapter stays in the page";
    }
    UseCamera("colourless");
    EXPECT_EQ(Give(*server_.MakePage(color_page)), E_NOINTERFACE);
    EXPECT_EQ(Give(*server_.MakePage(exposure_page)), S_OK);
}

// What leaves `SetObjects`; empty if nothing does.
std::string ThrownBy(IPropertyPage& page, IUnknown* object, HRESULT& result) {
    try {
        result = page.SetObjects(1, &object);
        return {};
    } catch (const genicam_adapter::hr_exception& exception) {
        result = exception.hr();
        return exception.what();
    }
}

TEST_P(PageObjectTest, AnUnreachableCameraLeavesSetObjectsAsAnException) {
    auto options = SimpleCamera(GetParam());
    options.named_access = false;
    options.register_access = false;
    UseCamera(options);
    const auto page = server_.MakePage(exposure_page);
    HRESULT result = S_OK;
    EXPECT_EQ(ThrownBy(*page, camera_.get(), result), "Failed to access GenICam data");
    EXPECT_EQ(result, E_FAIL);
    EXPECT_EQ(camera_->references(), 1);
    EXPECT_EQ(ReferencesOf(*page.get()), 1u);
}

TEST_P(PageObjectTest, AMalformedDescriptionLeavesSetObjectsAsAnException) {
    auto options = SimpleCamera(GetParam());
    options.descriptions = {"<RegisterDescription"};
    UseCamera(options);
    const auto page = server_.MakePage(exposure_page);
    HRESULT result = S_OK;
    EXPECT_EQ(ThrownBy(*page, camera_.get(), result), "Failed to parse GenICam data");
    EXPECT_EQ(result, E_FAIL);
    EXPECT_EQ(page->Activate(host_.Handle(), &rect, FALSE), S_OK) << "and nothing else throws";
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(PageObjectTest, WhatADriverThrowsDoesNotLeaveSetObjects) {
    for (std::uint64_t n = 1; n < 20; ++n) {
        UseCamera("simple");
        camera_->add_fault(simcam::throw_at(n));
        const auto page = server_.MakePage(exposure_page);
        HRESULT result = S_OK;
        EXPECT_EQ(ThrownBy(*page, camera_.get(), result), "") << n;
    }
}

TEST_P(PageObjectTest, ALaterSuccessReplacesTheObjects) {
    const auto first = simcam::make_camera("simple");
    const auto page = server_.MakePage(exposure_page);
    EXPECT_EQ(Give(*page, {first.get()}), S_OK);
    EXPECT_GT(first->references(), 1);
    EXPECT_EQ(Give(*page), S_OK);
    EXPECT_EQ(first->references(), 1);
}

TEST_P(PageObjectTest, ShowAndMoveNeedAWindow) {
    const auto page = GivenPage(exposure_page);
    EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
    EXPECT_EQ(page->Move(&rect), E_UNEXPECTED);
    EXPECT_EQ(page->Move(nullptr), E_UNEXPECTED);
    EXPECT_EQ(page->Deactivate(), S_OK) << "no window is fine";
}

TEST_P(PageObjectTest, ActivateMakesAChildAtTheRect) {
    const auto page = GivenPage(exposure_page);
    EXPECT_EQ(page->Activate(host_.Handle(), &rect, TRUE), S_OK);
    const HWND window = GetWindow(host_.Handle(), GW_CHILD);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(ClassOf(window), L"#32770");
    EXPECT_EQ(GetParent(window), host_.Handle());
    EXPECT_FALSE(IsWindowVisible(window)) << "until shown";
    const RECT at = RectOf(window);
    EXPECT_EQ(at.left, rect.left);
    EXPECT_EQ(at.top, rect.top);
    EXPECT_EQ(at.right, rect.right);
    EXPECT_EQ(at.bottom, rect.bottom);
    EXPECT_EQ(page->Show(SW_SHOWNORMAL), S_OK);
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(page->Show(SW_HIDE), S_OK);
    EXPECT_FALSE(IsWindowVisible(window));
    const RECT other{1, 2, 301, 402};
    EXPECT_EQ(page->Move(nullptr), E_POINTER);
    EXPECT_EQ(page->Move(&other), S_OK);
    EXPECT_EQ(RectOf(window).right, other.right);
    EXPECT_EQ(page->Deactivate(), S_OK);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
}

TEST_P(PageObjectTest, ActivateSaysYesWhateverHappens) {
    const auto page = GivenPage(exposure_page);
    EXPECT_EQ(page->Activate(nullptr, &rect, FALSE), S_OK);
    EXPECT_EQ(page->Activate(reinterpret_cast<HWND>(0x12345), &rect, FALSE), S_OK);
    EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
    EXPECT_EQ(page->Activate(host_.Handle(), nullptr, FALSE), S_OK);
    EXPECT_EQ(page->Show(SW_SHOW), S_OK);
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(PageObjectTest, ASecondActivationBuildsTheControlsAnew) {
    const auto page = GivenPage(exposure_page);
    const HWND first = Open(*page);
    const auto controls = ChildrenOf(first).size();
    EXPECT_EQ(page->Deactivate(), S_OK);
    Settle();
    const HWND second = Open(*page);
    EXPECT_EQ(ChildrenOf(second).size(), controls);
    EXPECT_THAT(TakeTranscript(), testing::Not(testing::Contains(testing::StartsWith("Get device 1"))))
        << "from the same adapter";
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(PageObjectTest, ActivatingTwiceLeavesOneWindow) {
    const auto page = GivenPage(exposure_page);
    const HWND first = Open(*page);
    const HWND second = Open(*page);
    EXPECT_FALSE(IsWindow(first));
    EXPECT_EQ(ChildrenOf(host_.Handle()).size(), 1u);
    EXPECT_EQ(ChildrenOf(host_.Handle()).front(), second);
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(PageObjectTest, NothingMakesItDirty) {
    CountingSite site;
    const auto page = GivenPage(exposure_page);
    page->SetPageSite(&site);
    EXPECT_EQ(page->IsPageDirty(), S_FALSE);
    EXPECT_EQ(page->Apply(), S_OK);
    const HWND window = Open(*page);
    const PageControls controls(window);
    SendMessageW(controls.switches.at(0), BM_CLICK, 0, 0);
    SendMessageW(controls.sliders.at(0), WM_HSCROLL, 5, 0);
    RunMessages();
    EXPECT_EQ(page->IsPageDirty(), S_FALSE);
    Settle();
    EXPECT_EQ(page->Apply(), S_OK);
    EXPECT_TRUE(TakeTranscript().empty());
    EXPECT_EQ(page->IsPageDirty(), S_FALSE);
    EXPECT_EQ(site.calls, 0);
    page->Deactivate();
    page->SetPageSite(nullptr);
}

TEST_P(PageObjectTest, TranslatesInputOfItsOwnDialog) {
    const auto page = GivenPage(exposure_page);
    MSG message{};
    message.message = WM_KEYDOWN;
    message.wParam = VK_TAB;
    EXPECT_EQ(page->TranslateAccelerator(&message), S_FALSE) << "no window";
    EXPECT_EQ(page->TranslateAccelerator(nullptr), E_POINTER);
    const HWND window = Open(*page);
    const PageControls controls(window);
    SetFocus(controls.sliders.at(0));
    message.hwnd = controls.sliders.at(0);
    EXPECT_EQ(page->TranslateAccelerator(&message), S_OK) << "the tab key is the dialog's";
    EXPECT_EQ(GetFocus(), controls.edits.at(0));
    message.hwnd = host_.Handle();
    EXPECT_EQ(page->TranslateAccelerator(&message), S_FALSE) << "not its window";
    page->Deactivate();
}

TEST_P(PageObjectTest, OnlyInputIsOfferedToTheDialog) {
    const auto page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    // The dialog takes any message for one of its windows; only keyboard and mouse get so far.
    const PageControls controls(window);
    MSG message{};
    message.hwnd = controls.switches.at(0);
    const auto offered = [&](UINT number) {
        message.message = number;
        return page->TranslateAccelerator(&message);
    };
    for (const UINT number :
         {255u, 266u, 511u, 527u, static_cast<UINT>(WM_TIMER), static_cast<UINT>(WM_COMMAND)}) {
        EXPECT_EQ(offered(number), S_FALSE) << number;
    }
    for (const UINT number : {265u, 512u, 526u, static_cast<UINT>(WM_KEYUP)})
        EXPECT_EQ(offered(number), S_OK) << number;
    page->Deactivate();
}

TEST_P(PageObjectTest, PutsControlParentIntoItsExtendedStyle) {
    const auto page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    const LONG_PTR before = GetWindowLongPtrW(window, GWL_EXSTYLE);
    SetWindowLongPtrW(window, GWL_EXSTYLE, before & ~WS_EX_CONTROLPARENT);
    EXPECT_TRUE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    STYLESTRUCT styles{0, WS_EX_CLIENTEDGE};
    EXPECT_EQ(SendMessageW(window, WM_STYLECHANGING, static_cast<WPARAM>(GWL_EXSTYLE),
                           reinterpret_cast<LPARAM>(&styles)),
              0);
    EXPECT_EQ(styles.styleNew, static_cast<DWORD>(WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT));
    EXPECT_EQ(SendMessageW(window, WM_STYLECHANGING, static_cast<WPARAM>(GWL_STYLE),
                           reinterpret_cast<LPARAM>(&styles)),
              1);
    EXPECT_EQ(styles.styleNew, static_cast<DWORD>(WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT));
    page->Deactivate();
}

TEST_P(PageObjectTest, AnAggregatedPageWorksLikeAnyOther) {
    Outer outer;
    ASSERT_EQ(server_.Factory(exposure_page)->CreateInstance(&outer, IID_IUnknown, outer.inner.put_void()),
              S_OK);
    platform::com_ptr<IPropertyPage> page;
    ASSERT_EQ(outer.QueryInterface(IID_IPropertyPage, page.put_void()), S_OK);
    EXPECT_EQ(Give(*page), S_OK);
    const HWND window = Open(*page);
    SendMessageW(PageControls(window).sliders.at(0), WM_HSCROLL, 5, 0);
    RunMessages();
    EXPECT_EQ(outer.references, 1);
    page->Deactivate();
    page.reset();
    outer.inner.reset();
    EXPECT_EQ(outer.references, 0);
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, PageObjectTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
