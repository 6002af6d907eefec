// What happens once in a process. Each host runs as this program with the name of one test, in a process that
// has loaded nothing yet.

#include "platform/windows/owned.h"
#include "tests/host/host_process.h"
#include "tests/windows/page_fixture.h"
#include "tests/windows/redirected_import.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <thread>

namespace page_test {
namespace {

namespace fs = std::filesystem;

std::wstring FileOf(HMODULE module) {
    wchar_t file[MAX_PATH] = {};
    GetModuleFileNameW(module, file, MAX_PATH);
    return file;
}

void ExpectHostPasses(const fs::path& program, const std::string& name) {
    const HostWindow first;  // the desktop starts with the first window and would keep the pipes of the host
    const host_test::ProcessEnd end = host_test::RunProgram(
        program, {"--gtest_also_run_disabled_tests", "--gtest_filter=*.DISABLED_" + name});
    EXPECT_EQ(end.code, 0u) << end.output << end.errors;
    EXPECT_THAT(end.output, testing::HasSubstr("[  PASSED  ] 1 test"));
}

/// Runs in a process of its own.
class FreshHost : public PageTest {};

TEST_F(FreshHost, DISABLED_LoadsFromTheSystemFolderAlone) {
    const PagePtr page = GivenPage(exposure_page);
    PageInfo info;
    EXPECT_EQ(page->GetPageInfo(&info), S_OK);
    EXPECT_FALSE(PageControls(Open(*page)).edits.empty());
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    for (const wchar_t* name : {L"RICHED20.DLL", L"Msftedit.dll", L"COMCTL32.DLL"}) {
        const HMODULE library = GetModuleHandleW(name);
        ASSERT_NE(library, nullptr) << testing::PrintToString(name);
        const fs::path folder = fs::path(FileOf(library)).parent_path();
        EXPECT_EQ(lstrcmpiW(folder.c_str(), system), 0) << folder;
    }
    page->Deactivate();
}

// The two threads of the next test meet where the first one loads the first library of the rich edit, the one
// with a narrow name.
std::function<void()> before_a_library;

void MeetOnce() {
    if (const auto meet = std::exchange(before_a_library, nullptr)) meet();
}
HMODULE WINAPI LoadByNarrowName(const char* name, HANDLE file, DWORD flags) {
    MeetOnce();
    return LoadLibraryExA(name, file, flags);
}
HMODULE WINAPI LoadAnywhereByNarrowName(const char* name) { return LoadByNarrowName(name, nullptr, 0); }

TEST_F(FreshHost, DISABLED_ShowsEditsOnTwoThreadsAtOnce) {
    const RedirectedImport plain(server_.Module(), "LoadLibraryA",
                                 reinterpret_cast<void*>(LoadAnywhereByNarrowName));
    const RedirectedImport narrow(server_.Module(), "LoadLibraryExA",
                                  reinterpret_cast<void*>(LoadByNarrowName));
    const platform::kernel_handle loading(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const platform::kernel_handle opened(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::size_t edits = 0;
    std::thread other([&] {
        HostWindow host;
        const auto camera = simcam::make_camera("simple");
        const PagePtr page = server_.MakePage(exposure_page);
        IUnknown* object = camera.get();
        EXPECT_EQ(page->SetObjects(1, &object), S_OK);
        WaitForSingleObject(loading.get(), INFINITE);
        page->Activate(host.Handle(), &rect, FALSE);
        edits = PageControls(GetWindow(host.Handle(), GW_CHILD)).edits.size();
        SetEvent(opened.get());
        page->Deactivate();
    });
    // The other page either comes to its end meanwhile, without an edit, or waits for this one to be done.
    before_a_library = [&] {
        SetEvent(loading.get());
        WaitForSingleObject(opened.get(), 1000);
    };
    const PagePtr page = GivenPage(exposure_page);
    EXPECT_EQ(page->Activate(host_.Handle(), &rect, FALSE), S_OK);
    other.join();
    EXPECT_EQ(edits, 1u);
    page->Deactivate();
}

TEST(FreshProcessTest, FalseLibrariesBesideAHostAreLeftAlone) {
    const host_test::ScratchFolder folder;
    const fs::path program = folder.Path() / "host.exe";
    fs::copy_file(FileOf(nullptr), program);
    fs::copy_file(PageServer::Path(), folder.Path() / "selvane_page.dll");
    for (const char* name : {"riched20.dll", "msftedit.dll", "comctl32.dll"}) {
        fs::copy_file(PageServer::Path(), folder.Path() / name);
    }
    ExpectHostPasses(program, "LoadsFromTheSystemFolderAlone");
}

TEST(FreshProcessTest, TheFirstPagesOnTwoThreadsHaveTheirEdits) {
    ExpectHostPasses(FileOf(nullptr), "ShowsEditsOnTwoThreadsAtOnce");
}

}  // namespace
}  // namespace page_test
