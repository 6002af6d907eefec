#include "tests/windows/page_fixture.h"

#include "tests/support/sweep.h"

namespace page_test {

PageTest::~PageTest() {
    host_.Destroy();
    RunMessages();
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
    EXPECT_EQ(camera_->references(), 1);
}

HRESULT PageTest::Give(IPropertyPage& page) const { return Give(page, {camera_.get()}); }

HRESULT PageTest::Give(IPropertyPage& page, const std::vector<IUnknown*>& objects) const {
    std::vector<IUnknown*> given = objects;
    return page.SetObjects(static_cast<ULONG>(given.size()), given.data());
}

PagePtr PageTest::GivenPage(REFCLSID clsid) const {
    PagePtr page = server_.MakePage(clsid);
    EXPECT_EQ(Give(*page), S_OK);
    return page;
}

HWND PageTest::Open(IPropertyPage& page) const {
    EXPECT_EQ(page.Activate(host_.Handle(), &rect, FALSE), S_OK);
    EXPECT_EQ(page.Show(SW_SHOW), S_OK);
    return GetWindow(host_.Handle(), GW_CHILD);
}

Transcript PageTest::TakeTranscript() const {
    Transcript taken = camera_->transcript();
    camera_->clear_transcript();
    return taken;
}

void PageTest::Settle() const {
    RunMessages();
    camera_->clear_transcript();
}

AccessPathTest::AccessPathTest(simcam::camera_options options) : PageTest(std::move(options)) {
    WatchTheAccessPath();
}

void AccessPathTest::UseCamera(simcam::camera_options options) {
    camera_ = simcam::make_camera(std::move(options));
    WatchTheAccessPath();
}

void AccessPathTest::UseCamera(const std::string& name) {
    UseCamera(name == "simple" ? SimpleCamera(GetParam()) : CameraOn(GetParam(), name));
}

void AccessPathTest::WatchTheAccessPath() {
    camera_->set_listener([access_path = GetParam()](const simcam::driver_call& call) {
        EXPECT_TRUE(IsOnAccessPath(access_path, call)) << call.text;
    });
}

bool IsVisited(std::uint64_t position) {
    constexpr std::uint64_t first_ones = 12;
    return position < first_ones || position % test_support::by_sweep(8U, 5U, 1U) == 0;
}

void AccessPathTest::StrikeCalls(const std::function<void()>& life, const FaultAt& fault) {
    const std::uint64_t before = camera_->call_count();
    life();
    const std::uint64_t calls = camera_->call_count() - before;
    ASSERT_GT(calls, 10u);
    for (std::uint64_t n = 1; n <= calls; ++n) {
        if (!IsVisited(n)) continue;
        SCOPED_TRACE(n);
        camera_->clear_transcript();
        camera_->add_fault(fault(n));
        life();
        camera_->clear_faults();
        ASSERT_EQ(camera_->references(), 1);
        ASSERT_EQ(server_.CanUnloadNow(), S_OK);
        ASSERT_TRUE(ChildrenOf(host_.Handle()).empty());
    }
}

OpenPageTest::~OpenPageTest() {
    if (page_) page_->Deactivate();
}

PageControls OpenPageTest::OpenPage(REFCLSID clsid) {
    page_ = GivenPage(clsid);
    window_ = Open(*page_);
    Settle();
    return PageControls(window_);
}

Transcript OpenPageTest::Seen() const {
    RunMessages();
    return TakeTranscript();
}

std::string AccessPathName(const testing::TestParamInfo<AccessPath>& access_path) {
    return NameOf(access_path.param);
}

PageControls::PageControls(HWND page) {
    for (const HWND child : ChildrenOf(page)) {
        const std::wstring name = ClassOf(child);
        const auto is = [&name](const wchar_t* base) { return name == std::wstring(L"Selvane_") + base; };
        if (name == L"Static") labels.push_back(child);
        if (is(L"msctls_trackbar32")) sliders.push_back(child);
        if (is(L"RICHEDIT50W")) edits.push_back(child);
        if (is(L"msctls_updown32")) spins.push_back(child);
        if (is(L"COMBOBOX")) combos.push_back(child);
        if (!is(L"BUTTON")) continue;
        const bool check = (GetWindowLongPtrW(child, GWL_STYLE) & BS_TYPEMASK) == BS_CHECKBOX;
        (check ? switches : buttons).push_back(child);
    }
}

}  // namespace page_test
