#pragma once

#include "platform/text.h"
#include "propui/page_canvas.h"
#include "propui/scale_measure.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test_support {

/// A canvas that shows nothing and keeps what a layout puts on it.
class RecorderCanvas final : public ZELPropUI::IPageCanvas {
    using Item = ZELPropUI::CZELItemDataBase;
    using Controller = ZELPropUI::ISliderController;
    using Key = ZELPropUI::InterfaceKey;
    using Rect = ZELPropUI::PageRect;

public:
    struct Placed {
        std::string kind;
        Rect rect;
        std::wstring text;
        Key key = 0;                               ///< of combo, switch and button
        platform::com_ptr<Item> item;              ///< the same
        platform::com_ptr<Controller> controller;  ///< of slider, edit and spin
    };

    int dots_per_inch_x = 96;
    int dots_per_inch_y = 96;
    int character_width = 6;
    /// Runs before anything is placed; may throw.
    std::function<void(const std::string& kind)> before_add;
    std::function<bool()> is_gone;

    std::map<std::wstring, int> widths;  ///< texts that are not as wide as their characters

    std::vector<Placed> placed;
    std::vector<std::wstring> measured;

    int TextWidth(std::wstring_view text) override {
        const auto special = widths.find(measured.emplace_back(text));
        return special != widths.end() ? special->second : static_cast<int>(text.size()) * character_width;
    }
    int ScaleX(int measure) override { return ZELPropUI::ScaleMeasure(measure, dots_per_inch_x); }
    int ScaleY(int measure) override { return ZELPropUI::ScaleMeasure(measure, dots_per_inch_y); }

    [[nodiscard]] bool IsGone() const override { return is_gone && is_gone(); }

    void AddLabel(const Rect& rect, std::wstring_view text) override { Add("label", rect, text); }
    void AddSlider(const Rect& rect, Controller& controller) override { AddOn("slider", rect, controller); }
    void AddEdit(const Rect& rect, Controller& controller) override { AddOn("edit", rect, controller); }
    void AddSpinButton(const Rect& rect, Controller& controller) override { AddOn("spin", rect, controller); }
    void AddCombo(const Rect& rect, Item& item, Key key) override { AddFor("combo", rect, item, key, {}); }
    void AddSwitch(const Rect& rect, Item& item, Key key, std::wstring_view caption) override {
        AddFor("switch", rect, item, key, caption);
    }
    void AddButton(const Rect& rect, Item& item, Key key, std::wstring_view caption) override {
        AddFor("button", rect, item, key, caption);
    }

    /// One line for each thing placed, in the order of the calls: "slider 135,18 140x23", "label 20,18 110x23
    /// Gain", "button 365,18 49x23 #7 Read" with the key behind the number sign.
    [[nodiscard]] std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        for (const Placed& one : placed) lines.push_back(Line(one));
        return lines;
    }

private:
    static std::string Line(const Placed& one) {
        std::string line = one.kind + " " + std::to_string(one.rect.left) + "," +
                           std::to_string(one.rect.top) + " " + std::to_string(one.rect.width) + "x" +
                           std::to_string(one.rect.height);
        if (one.item) line += " #" + std::to_string(one.key);
        if (!one.text.empty()) line += " " + platform::narrow(one.text);
        return line;
    }

    Placed& Add(const char* kind, const Rect& rect, std::wstring_view text) {
        if (before_add) before_add(kind);
        Placed one;
        one.kind = kind;
        one.rect = rect;
        one.text = text;
        return placed.emplace_back(std::move(one));
    }

    void AddOn(const char* kind, const Rect& rect, Controller& controller) {
        Add(kind, rect, {}).controller = platform::com_ptr<Controller>(&controller);
    }

    void AddFor(const char* kind, const Rect& rect, Item& item, Key key, std::wstring_view caption) {
        Placed& one = Add(kind, rect, caption);
        one.item = platform::com_ptr<Item>(&item);
        one.key = key;
    }
};

}  // namespace test_support
