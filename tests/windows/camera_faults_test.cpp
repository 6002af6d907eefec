#include "adapter/hr_exception.h"
#include "tests/windows/built_in_page_fixture.h"
#include "wire/device_set.h"

#include <algorithm>

namespace page_test {
namespace {

using Items = std::vector<PageRows::Item>;

struct CameraAndAccessPath {
    const char* camera;
    bool named;  // by named access alone, or by registers alone
};

using Calls = std::vector<simcam::driver_call>;

simcam::camera_options OptionsOf(const CameraAndAccessPath& wanted) {
    simcam::camera_options options = *simcam::ready_made(wanted.camera);
    options.named_access = wanted.named;
    options.register_access = !wanted.named;
    options.keep_transcript = false;
    return options;
}

bool IsOfDevice(const simcam::driver_call& call) {
    return simcam::is_property_call(call.kind) &&
           (call.set == wire::gate_set || call.set == wire::device_set);
}

// Whether a call is for the camera as a whole, so that its failure may change any item: from the test of its
// kind to the fetching of its descriptions.
bool ConcernsTheCamera(const simcam::driver_call& call) {
    const bool on_a_feature = call.kind != simcam::call_kind::query_supported &&
                              (call.id == SELVANE_NAMED_ACCESS || call.id == SELVANE_REGISTER_ACCESS);
    return IsOfDevice(call) && !on_a_feature;
}

bool Holds(const Items& items, const PageRows::Item& wanted) {
    return std::any_of(items.begin(), items.end(), [&](const PageRows::Item& item) {
        return item.name == wanted.name && item.lines == wanted.lines;
    });
}

std::ptrdiff_t MissingOf(const Items& whole, const Items& items) {
    return std::count_if(whole.begin(), whole.end(),
                         [&](const PageRows::Item& item) { return !Holds(items, item); });
}

/// Every ready-made camera, over an access path to its features. One driver call fails; then the camera is
/// well again and the page refreshed.
class CameraFaultsTest : public PageTest, public testing::WithParamInterface<CameraAndAccessPath> {
protected:
    CameraFaultsTest() { camera_ = simcam::make_camera(OptionsOf(GetParam())); }

    bool TakesTheCamera(IPropertyPage& page) const {
        try {
            return Give(page) == S_OK;
        } catch (const genicam_adapter::hr_exception&) {
            return false;  // no access path, as far as the page can tell
        }
    }

    // Activates a page, whatever it said to the camera: some hosts do. What it shows once the camera is well.
    Items Activated(IPropertyPage& page) const {
        EXPECT_EQ(page.Activate(host_.Handle(), &rect, FALSE), S_OK);
        camera_->clear_faults();
        Items items = Refreshed(GetWindow(host_.Handle(), GW_CHILD));
        EXPECT_EQ(page.Deactivate(), S_OK);
        return items;
    }

    static Items Refreshed(HWND window) {
        SendMessageW(window, 1029, 0, 0);
        return PageRows(window).Items();
    }

    template <class Work>
    Calls CallsOf(Work work) const {
        Calls calls;
        camera_->set_listener([&](const simcam::driver_call& call) { calls.push_back(call); });
        work();
        camera_->set_listener(nullptr);
        return calls;
    }

    // Fails the calls that some work brings about, one after the other. `live` does that work with the struck
    // call at hand.
    template <class Live>
    void StrikeEach(const Calls& calls, Live live) const {
        for (std::size_t at = 0; at < calls.size() && !HasFailure(); ++at) {
            if (!IsVisited(at)) continue;
            SCOPED_TRACE(calls[at].text);
            camera_->add_fault(simcam::fail_nth(at + 1, E_FAIL));
            live(calls[at]);
            camera_->clear_faults();
        }
    }

    // What a whole page shows.
    Items WholePage(REFCLSID clsid) const {
        const PagePtr page = server_.MakePage(clsid);
        (void)TakesTheCamera(*page);
        return Activated(*page);
    }

    void LiveThroughAFailure(REFCLSID clsid, const simcam::driver_call& struck, const Items& whole) const {
        {
            const PagePtr page = server_.MakePage(clsid);
            const bool taken = TakesTheCamera(*page);
            // The items that only measured are gone; what was found out about the camera stays.
            if (IsOfDevice(struck)) {
                const Items items = Activated(*page);
                EXPECT_TRUE(ConcernsTheCamera(struck) || MissingOf(whole, items) <= 1);
            } else {
                EXPECT_TRUE(taken || whole.size() <= 1);
            }
        }
        EXPECT_EQ(camera_->references(), 1);
        EXPECT_EQ(server_.CanUnloadNow(), S_OK);
        EXPECT_TRUE(ChildrenOf(host_.Handle()).empty());
    }

    void StrikeWhileOpen(REFCLSID clsid, const Items& whole) const {
        const PagePtr page = server_.MakePage(clsid);
        if (!TakesTheCamera(*page)) return;
        const HWND window = Open(*page);
        StrikeEach(CallsOf([&] { (void)Refreshed(window); }), [&](const simcam::driver_call&) {
            EXPECT_LE(MissingOf(whole, Refreshed(window)), 1);
            camera_->clear_faults();
            EXPECT_EQ(MissingOf(whole, Refreshed(window)), 0);
        });
        EXPECT_EQ(page->Deactivate(), S_OK);
    }
};

TEST_P(CameraFaultsTest, AFailureWhileAPageIsGivenTheCameraCostsOneItemAtMost) {
    for (const CLSID& clsid : all_pages) {
        const Items whole = WholePage(clsid);
        const Calls calls = CallsOf([&] { (void)TakesTheCamera(*server_.MakePage(clsid)); });
        EXPECT_FALSE(calls.empty());
        StrikeEach(calls,
                   [&](const simcam::driver_call& struck) { LiveThroughAFailure(clsid, struck, whole); });
    }
}

TEST_P(CameraFaultsTest, AFailureWhileAPageIsBuiltCostsOneItemAtMost) {
    for (const CLSID& clsid : all_pages) {
        const PagePtr page = server_.MakePage(clsid);
        (void)TakesTheCamera(*page);
        const Items whole = Activated(*page);
        const std::int32_t references = camera_->references();
        const Calls calls = CallsOf([&] { page->Activate(host_.Handle(), &rect, FALSE); });
        EXPECT_EQ(page->Deactivate(), S_OK);
        StrikeEach(calls, [&](const simcam::driver_call&) {
            EXPECT_LE(MissingOf(whole, Activated(*page)), 1);
            EXPECT_EQ(camera_->references(), references);
            EXPECT_TRUE(ChildrenOf(host_.Handle()).empty());
        });
    }
}

TEST_P(CameraFaultsTest, AFailureWhileAPageIsOpenIsGoneWithTheNextRefresh) {
    for (const CLSID& clsid : all_pages) StrikeWhileOpen(clsid, WholePage(clsid));
}

std::string NameOf(const testing::TestParamInfo<CameraAndAccessPath>& info) {
    return std::string(info.param.camera) + (info.param.named ? "_named" : "_registers");
}

// The description of the full camera is that of the described one, which takes the other access path; one
// that marks nothing is the same over both.
constexpr CameraAndAccessPath cameras[] = {
    {"full", true},    {"described", false}, {"builtin", true}, {"simple", true},  {"simple", false},
    {"oldest", false}, {"colourless", true}, {"empty", true},   {"foreign", true},
};

INSTANTIATE_TEST_SUITE_P(All, CameraFaultsTest, testing::ValuesIn(cameras), NameOf);

}  // namespace
}  // namespace page_test
