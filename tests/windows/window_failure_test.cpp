// The system has no window left for the n-th that a page wants, for each n: a host has ten thousand for all
// of its windows, and a description can ask for more.

#include "tests/windows/page_fixture.h"

#include <commctrl.h>

#include <gtest/gtest.h>

namespace page_test {
namespace {

enum class Shortage { once, for_good };

/// Refuses the n-th of the windows that this thread makes as children of a window, or of its children.
class RefusedWindow {
public:
    RefusedWindow(HWND parent, std::uint64_t n, Shortage shortage) {
        parent_ = parent;
        left_ = n;
        shortage_ = shortage;
        hook_ = SetWindowsHookExW(WH_CBT, Hook, nullptr, GetCurrentThreadId());
    }
    RefusedWindow(const RefusedWindow&) = delete;
    RefusedWindow& operator=(const RefusedWindow&) = delete;
    ~RefusedWindow() { UnhookWindowsHookEx(hook_); }

    [[nodiscard]] static bool Came() { return left_ == 0; }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wparam, LPARAM lparam) {
        if (code == HCBT_CREATEWND &&
            IsRefused(reinterpret_cast<const CBT_CREATEWNDW*>(lparam)->lpcs->hwndParent))
            return 1;
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }
    static bool IsRefused(HWND above) {
        if (above != parent_ && GetParent(above) != parent_) return false;
        if (left_ == 0) return shortage_ == Shortage::for_good;
        return --left_ == 0;
    }

    static inline HWND parent_ = nullptr;
    static inline std::uint64_t left_ = 0;
    static inline Shortage shortage_ = Shortage::once;
    HHOOK hook_;
};

class WindowFailureTest : public AccessPathTest {
protected:
    [[nodiscard]] std::size_t CountWindows() const {
        const HWND page = GetWindow(host_.Handle(), GW_CHILD);
        return page != nullptr ? ChildrenOf(page).size() : 0;
    }

    [[nodiscard]] std::size_t WindowsOfWholePage(IPropertyPage& page) const {
        EXPECT_EQ(page.Activate(host_.Handle(), &rect, FALSE), S_OK);
        const std::size_t all = CountWindows();
        EXPECT_EQ(page.Deactivate(), S_OK);
        return all;
    }

    void Work(HWND window) const {
        SendMessageW(window, 1029, 0, 0);
        for (const HWND control : ChildrenOf(window)) {
            SendMessageW(control, WM_HSCROLL, TB_LINEDOWN, 0);
            SetFocus(control);
        }
        SetFocus(host_.Handle());
    }

    // Whether a window was refused.
    bool Live(IPropertyPage& page, std::uint64_t n, Shortage shortage) const {
        const RefusedWindow refused(host_.Handle(), n, shortage);
        static_cast<void>(page.Activate(host_.Handle(), &rect, FALSE));
        page.Show(SW_SHOW);
        if (const HWND window = GetWindow(host_.Handle(), GW_CHILD); window != nullptr) Work(window);
        RunMessages();
        page.Deactivate();
        return RefusedWindow::Came();
    }
};

TEST_P(WindowFailureTest, APageDoesWithoutAnyOfItsWindows) {
    for (const CLSID& clsid : all_pages) {
        const PagePtr page = GivenPage(clsid);
        const std::size_t all = WindowsOfWholePage(*page);
        ASSERT_GT(all, 2U);
        for (const Shortage shortage : {Shortage::once, Shortage::for_good}) {
            std::uint64_t n = 1;
            for (; Live(*page, n, shortage) && !HasFailure(); ++n) {
                EXPECT_TRUE(ChildrenOf(host_.Handle()).empty()) << n;
                EXPECT_EQ(WindowsOfWholePage(*page), all) << "the next time it is whole, " << n;
            }
            EXPECT_GT(n, all);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, WindowFailureTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
