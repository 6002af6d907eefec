// Whatever a user does, the driver sees the same calls from the playground as from the DLL's windows.

#include "tests/playground/playground_fixture.h"
#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>

#include <map>

namespace playground_test {
namespace {

using page_test::AccessPath;
using page_test::Transcript;

constexpr const char* page_words[] = {"exposure", "feature", "lens", "color"};

void Key(HWND control, WPARAM key) {
    SendMessageW(control, WM_KEYDOWN, key, 0);
    SendMessageW(control, WM_KEYUP, key, 0);
}

void Leave(HWND page, HWND edit, const wchar_t* text) {
    SetFocus(edit);
    if (text != nullptr) SetWindowTextW(edit, text);
    SetFocus(GetParent(page));
}

// The position of a slider one step below what it shows, or at the end from which there is no step.
std::int32_t NextPosition(const json& layout, const json& state) {
    return std::max(layout.at("low").get<std::int32_t>(), state.at("position").get<std::int32_t>() - 1);
}

class WindowTranscriptTest : public page_test::PageTest, public testing::WithParamInterface<AccessPath> {
protected:
    WindowTranscriptTest() : PageTest(page_test::CameraOn(GetParam(), "described")) {}

    json Ask(const json& request, std::string_view payload = {}) {
        const json answer = json::parse(engine_.answer(request.dump(), payload));
        for (const json& line : answer.at("calls")) seen_.push_back(line);
        return answer;
    }
    json Act(std::size_t control, json deed) {
        deed.update({{"do", "act"}, {"page", page_words[page_]}, {"control", control}});
        return Ask(deed);
    }
    void ExpectTheSame(const std::string& behind) {
        page_test::RunMessages();
        EXPECT_EQ(seen_, TakeTranscript()) << behind;
        seen_.clear();
    }
    void WorkAll(HWND window);
    void Work(HWND window, HWND control, std::size_t number);

    selvane_playground::playground engine_;
    std::size_t page_ = 0;
    json layout_;
    json state_;
    Transcript seen_;
    std::map<std::string, int> worked_;
};

void WindowTranscriptTest::WorkAll(HWND window) {
    const std::vector<HWND> windows = page_test::ChildrenOf(window);
    ASSERT_EQ(windows.size(), layout_.size());
    for (std::size_t number = 0; number < windows.size(); ++number) {
        if (IsWindowEnabled(windows[number]) == 0) continue;
        Work(window, windows[number], number);
    }
}

void WindowTranscriptTest::Work(HWND window, HWND control, std::size_t number) {
    const std::string kind = layout_[number].at("kind");
    const std::string words = kind + " " + layout_[number].at("feature").get<std::string>();
    const auto both = [&](const json& deed, auto by_message) {
        const json answer = Act(number, deed);
        by_message();
        ExpectTheSame(words + " " + deed.dump());
        if (answer.contains("state")) state_ = answer.at("state");
        ++worked_[kind];
    };
    const auto move = [](std::int32_t to) { return json{{"deed", "move"}, {"value", to}}; };
    if (kind == "slider") {
        both(move(layout_[number].at("high")), [&] { Key(control, VK_END); });
        both(move(NextPosition(layout_[number], state_[number])), [&] { Key(control, VK_LEFT); });
    } else if (kind == "spin button") {
        const std::int32_t to = NextPosition(layout_[number], state_[number]);
        both(move(to), [&] {
            SendMessageW(control, UDM_SETPOS, 0, MAKELPARAM(to, 0));
            SendMessageW(window, WM_VSCROLL, SB_THUMBPOSITION, reinterpret_cast<LPARAM>(control));
        });
    } else if (kind == "edit") {
        page_test::ErrorBoxWatch boxes;
        const std::string shown = state_[number].at("text");
        Act(number, {{"deed", "focus"}});
        both({{"deed", "commit"}, {"text", shown}}, [&] { Leave(window, control, nullptr); });
        Act(number, {{"deed", "focus"}});
        both({{"deed", "commit"}, {"text", "--"}}, [&] { Leave(window, control, L"--"); });
    } else if (kind == "combo") {
        both({{"deed", "pick"}, {"value", 1}}, [&] {
            SendMessageW(control, CB_SETCURSEL, 1, 0);
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
        });
    } else if (kind == "check box") {
        both({{"deed", "toggle"}}, [&] { SendMessageW(control, BM_CLICK, 0, 0); });
        both({{"deed", "toggle"}}, [&] { SendMessageW(control, BM_CLICK, 0, 0); });
    } else if (kind == "button") {
        both({{"deed", "push"}}, [&] { SendMessageW(control, BM_CLICK, 0, 0); });
    }
}

TEST_P(WindowTranscriptTest, IsTheSame) {
    const bool named = GetParam() == AccessPath::Named;
    const std::string text = Ask({{"do", "text"}, {"name", "simulated_camera"}}).at("text");
    Ask({{"do", "open"}, {"access", named ? "named" : "registers"}, {"simulated", true}}, text);
    std::vector<page_test::PagePtr> given;
    for (const CLSID& clsid : page_test::all_pages) given.push_back(GivenPage(clsid));
    ExpectTheSame("the camera was handed over");
    for (page_ = 0; page_ < given.size(); ++page_) {
        SCOPED_TRACE(page_words[page_]);
        const json shown = Ask({{"do", "show"}, {"page", page_words[page_]}});
        layout_ = shown.at("layout");
        state_ = shown.at("state");
        const HWND window = Open(*given[page_]);
        ExpectTheSame("the page was shown");
        WorkAll(window);
        given[page_]->Deactivate();
    }
    for (const char* kind : {"slider", "spin button", "edit", "combo", "check box", "button"}) {
        EXPECT_GT(worked_[kind], 0) << kind;
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, WindowTranscriptTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers),
                         [](const auto& access_path) { return page_test::NameOf(access_path.param); });

}  // namespace
}  // namespace playground_test
