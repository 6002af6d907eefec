#pragma once

#include "platform/text.h"
#include "propui/slider_controller.h"
#include "propui/windows/control_window.h"
#include "tests/support/fake_item.h"
#include "tests/windows/creation_watch.h"
#include "tests/windows/parent_window.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ZELPropUI {

using Log = std::vector<std::string>;

/// A parent and room for one control on it.
class ControlTest : public testing::Test {
protected:
    static constexpr RECT rect{10, 20, 110, 45};

    [[nodiscard]] static std::wstring TextOf(HWND window) {
        wchar_t text[128] = {};
        GetWindowTextW(window, text, 128);
        return text;
    }
    /// The style that the window was made with.
    [[nodiscard]] static DWORD FirstStyleOf(HWND window) {
        EXPECT_EQ(page_test::CreationWatch::RequestOf(window).extended_style, 0u);
        return page_test::CreationWatch::RequestOf(window).style;
    }
    [[nodiscard]] static DWORD StyleOf(HWND window) {
        return static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    }
    [[nodiscard]] RECT RectOf(HWND window) const {
        RECT screen{};
        GetWindowRect(window, &screen);
        MapWindowPoints(nullptr, parent_.Handle(), reinterpret_cast<POINT*>(&screen), 2);
        return screen;
    }
    [[nodiscard]] static HFONT FontOf(HWND window) {
        return reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    }
    /// A notification to the parent, as the control sends it.
    void NotifyParent(HWND control, WORD code) const {
        SendMessageW(parent_.Handle(), WM_COMMAND, MAKEWPARAM(0, code), reinterpret_cast<LPARAM>(control));
    }

    page_test::CreationWatch creation_;
    ParentWindow parent_;
};

/// A control on a fake item.
class ItemControlTest : public ControlTest {
protected:
    static constexpr ZELAdapterHelper::InterfaceKey key = 7;

    ~ItemControlTest() override { EXPECT_EQ(script_.living_items, 0); }

    template <class Control, class... Arguments>
    std::shared_ptr<Control> Make(Arguments&&... arguments) {
        const auto item =
            platform::com_ptr<test_support::FakeItem>::attach(new test_support::FakeItem(script_));
        auto control = std::make_shared<Control>(item.get(), key, std::forward<Arguments>(arguments)...);
        EXPECT_TRUE(control->Create(parent_.Handle(), rect, nullptr));
        return control;
    }
    test_support::FakeInterface& At() { return script_.interfaces[key]; }

    test_support::FakeScript script_;
};

/// What a scripted controller answers, and what it is asked.
struct ControllerScript {
    bool range_known = true;
    std::int32_t low = 0;
    std::int32_t high = 100;
    bool position_known = true;
    std::int32_t position = 0;
    bool available = true;
    bool read_only = false;
    bool text_known = true;
    std::wstring text;
    bool accepts = true;
    Log log;
    std::function<void()> during_write;
    int living = 0;

    Log TakeLog() {
        Log taken;
        taken.swap(log);
        return taken;
    }
};

class FakeController final : public ISliderController {
public:
    explicit FakeController(ControllerScript& script) : script_(script) { ++script_.living; }
    ~FakeController() override { --script_.living; }

    bool GetPositionRange(std::int32_t& low, std::int32_t& high) override {
        Note("GetPositionRange");
        low = script_.low;
        high = script_.high;
        return script_.range_known;
    }
    bool SetPosition(std::int32_t position) override {
        Note("SetPosition " + std::to_string(position));
        if (script_.during_write) script_.during_write();
        return script_.accepts;
    }
    bool GetPosition(std::int32_t& position) override {
        Note("GetPosition");
        position = script_.position;
        return script_.position_known;
    }
    bool IsReadOnly() override {
        Note("IsReadOnly");
        return script_.read_only;
    }
    bool IsAvailable() override {
        Note("IsAvailable");
        return script_.available;
    }
    bool SetText(std::wstring_view text) override {
        Note("SetText " + platform::narrow(text));
        if (script_.during_write) script_.during_write();
        return script_.accepts;
    }
    bool GetText(std::wstring& text) override {
        Note("GetText");
        text = script_.text;
        return script_.text_known;
    }
    CZELItemDataBase& GetItem() const noexcept override { return *item_; }
    InterfaceKey GetKey() const noexcept override { return 0; }

private:
    void Note(std::string line) { script_.log.push_back(std::move(line)); }

    ControllerScript& script_;
    test_support::FakeScript element_;
    platform::com_ptr<CZELItemDataBase> item_ =
        platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(element_));
};

/// A control on a fake controller.
class ControllerControlTest : public ControlTest {
protected:
    ~ControllerControlTest() override { EXPECT_EQ(script_.living, 0); }

    template <class Control>
    std::shared_ptr<Control> Make(HWND extra = nullptr) {
        const auto controller = platform::com_ptr<FakeController>::attach(new FakeController(script_));
        auto control = std::make_shared<Control>(controller.get());
        EXPECT_TRUE(control->Create(parent_.Handle(), rect, extra));
        return control;
    }

    ControllerScript script_;
};

}  // namespace ZELPropUI
