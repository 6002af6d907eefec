// The calls that docs/driver.md shows are those that a driver gets: of a page that is offered, opened, and
// changed by one key on its slider.

#include "apps/host/camera_setup.h"
#include "apps/host/frame.h"
#include "apps/host/page_control.h"
#include "apps/host/page_server.h"
#include "apps/host/trace_filter.h"
#include "data_paths.h"
#include "platform/count_text.h"
#include "tests/host/host_process.h"
#include "wire/page_classes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

using namespace selvane_host;
using host_test::Lines;
using testing::HasSubstr;

using CallLines = std::vector<std::string>;

// The listings of the section, without the times behind their lines.
std::vector<CallLines> Listings(const std::string& section) {
    std::vector<CallLines> listings;
    bool inside = false;
    for (const std::string& line : Lines(section)) {
        if (line == "```") {
            inside = !inside;
            if (inside) listings.emplace_back();
        } else if (inside) {
            const bool timed = line.size() > 3 && line.substr(line.size() - 3) == " us";
            listings.back().push_back(timed ? line.substr(0, line.rfind(", ")) : line);
        }
    }
    return listings;
}

// A listing may end in "..." for calls that it leaves out.
void ExpectListed(const CallLines& made, CallLines listed) {
    ASSERT_FALSE(listed.empty());
    CallLines shown = made;
    if (listed.back().rfind("...", 0) == 0) {
        listed.pop_back();
        ASSERT_GT(shown.size(), listed.size());
        shown.resize(listed.size());
    }
    EXPECT_EQ(shown, listed);
}

class DocumentedCalls : public testing::Test {
protected:
    DocumentedCalls() {
        const std::string document = host_test::ReadFile(SELVANE_SOURCE_DIR "/docs/driver.md");
        const std::size_t begin = document.find("## Which calls come when");
        section_ = document.substr(begin, document.find("\n## ", begin + 1) - begin);
        host_options options;
        options.descriptions = {SELVANE_SOURCE_DIR "/descriptions/first_page.xml"};
        filter_ = make_trace_filter(*make_wanted_camera(options), [this](std::string_view line) {
            calls_.emplace_back(line.substr(0, line.rfind(", ")));
        });
    }

    CallLines Take() { return std::exchange(calls_, {}); }
    void ExpectCounted(const char* before, std::size_t count) const {
        EXPECT_THAT(section_, HasSubstr(before + platform::count_text(count, "call")));
    }

    com_apartment apartment_;
    page_server server_{page_server_path()};
    std::string section_;
    CallLines calls_;
    platform::com_ptr<IUnknown> filter_;
};

CallLines OfTheDevice(CallLines calls) {
    const auto is_other = [](const std::string& call) { return call.find(" device ") == std::string::npos; };
    calls.erase(std::remove_if(calls.begin(), calls.end(), is_other), calls.end());
    return calls;
}

void PressKey(const frame_window& frame, WPARAM key) {
    for (const page_control& control : find_controls(frame.handle())) {
        if (control.kind != control_kind::slider) continue;
        SendMessageW(control.window, WM_KEYDOWN, key, 0);
        SendMessageW(control.window, WM_KEYUP, key, 0);
        return;
    }
    ADD_FAILURE() << "there is no slider";
}

TEST_F(DocumentedCalls, AreThoseOfADriver) {
    platform::com_ptr<IPropertyPage> page;
    ASSERT_EQ(CoCreateInstance(wire::feature_page, nullptr, CLSCTX_INPROC_SERVER, IID_IPropertyPage,
                               page.put_void()),
              S_OK);
    IUnknown* camera = filter_.get();
    ASSERT_EQ(page->SetObjects(1, &camera), S_OK);
    const CallLines offered = Take();

    CallLines opened;
    CallLines changed;
    std::size_t known = 0;
    show_frame("", *filter_, {wire::feature_page}, [&](const frame_window& frame) {
        const bool settled = calls_.size() == known;
        known = calls_.size();
        if (!settled) return;
        if (opened.empty()) {
            opened = Take();
            known = 0;
            return PressKey(frame, VK_RIGHT);
        }
        changed = Take();
        frame.close();
    });
    // The frame offers the page first.
    ASSERT_GT(opened.size(), offered.size());
    EXPECT_TRUE(std::equal(offered.begin(), offered.end(), opened.begin()));
    opened.erase(opened.begin(), opened.begin() + static_cast<std::ptrdiff_t>(offered.size()));

    const std::vector<CallLines> listings = Listings(section_);
    ASSERT_EQ(listings.size(), 3U);
    ExpectListed(offered, listings[0]);
    ExpectCounted("When the page is offered, ", offered.size());
    ExpectListed(OfTheDevice(opened), listings[1]);
    ExpectCounted("When it opens, ", OfTheDevice(opened).size());
    ExpectListed(changed, listings[2]);
    ExpectCounted("One press of the right arrow key on the slider, ", changed.size());
}

}  // namespace
