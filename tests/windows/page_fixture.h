#pragma once

#include "simcam/simulated_camera.h"
#include "tests/windows/access_path.h"
#include "tests/windows/host_window.h"
#include "tests/windows/page_server.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace page_test {

using Transcript = std::vector<std::string>;

/// The children of a page by class, in the order of the controls.
struct PageControls {
    explicit PageControls(HWND page);
    std::vector<HWND> labels, sliders, edits, spins, combos, switches, buttons;
};

/// What a page tells of itself. Owns the texts.
struct PageInfo : PROPPAGEINFO {
    PageInfo() : PROPPAGEINFO{} {}
    PageInfo(const PageInfo&) = delete;
    PageInfo& operator=(const PageInfo&) = delete;
    ~PageInfo() {
        for (wchar_t* text : {pszTitle, pszHelpFile, pszDocString}) CoTaskMemFree(text);
    }
};

/// A camera, the DLL and a host's window. At the end the DLL must be free to go, and go, and the camera with
/// it.
class PageTest : public testing::Test {
protected:
    static constexpr RECT rect{5, 7, 433, 464};

    explicit PageTest(const char* camera_name = "simple") : PageTest(*simcam::ready_made(camera_name)) {}
    explicit PageTest(simcam::camera_options options) : camera_(simcam::make_camera(std::move(options))) {}
    ~PageTest() override;

    /// What `SetObjects` says to the camera.
    HRESULT Give(IPropertyPage& page) const;
    HRESULT Give(IPropertyPage& page, const std::vector<IUnknown*>& objects) const;
    /// A page that was given the camera.
    [[nodiscard]] PagePtr GivenPage(REFCLSID clsid) const;
    /// The same, activated and shown. Its window.
    HWND Open(IPropertyPage& page) const;

    [[nodiscard]] Transcript TakeTranscript() const;
    /// Lets the queue run dry and then forgets what that brought about.
    void Settle() const;

    PageServer server_;
    simcam::camera_ptr camera_;
    HostWindow host_;
};

/// Whether a sweep over the calls or allocations of a page's life visits the one at this position: each if it
/// is a sweep over all, else the first twelve and a sample of the others.
[[nodiscard]] bool IsVisited(std::uint64_t position);

/// A test that runs on either access path. Whatever it does, the driver must see no access by the other one.
class AccessPathTest : public PageTest, public testing::WithParamInterface<AccessPath> {
protected:
    AccessPathTest() : AccessPathTest(SimpleCamera(GetParam())) {}
    explicit AccessPathTest(simcam::camera_options options);
    ~AccessPathTest() override { camera_->set_listener(nullptr); }

    void UseCamera(simcam::camera_options options);
    /// A ready-made one, or the simple one, on the access path of the test.
    void UseCamera(const std::string& name);

    using FaultAt = std::function<simcam::fault(std::uint64_t call)>;
    /// Repeats a life with pages for the driver calls that it makes, each time with a fault at another of
    /// them. What is shown may be anything; what is left is nothing.
    void StrikeCalls(const std::function<void()>& life, const FaultAt& fault);

    const AccessPathLines lines_{GetParam()};

private:
    void WatchTheAccessPath();
};

std::string AccessPathName(const testing::TestParamInfo<AccessPath>& access_path);

/// One page that is open and quiet. What a test does reaches the driver, and that is all there is to see of
/// it.
class OpenPageTest : public AccessPathTest {
protected:
    ~OpenPageTest() override;

    PageControls OpenPage(REFCLSID clsid);
    /// What the driver saw until the queue was dry.
    [[nodiscard]] Transcript Seen() const;

    PagePtr page_;
    HWND window_ = nullptr;
};

}  // namespace page_test
