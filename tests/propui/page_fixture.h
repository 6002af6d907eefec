#pragma once

#include "propui/page_layout.h"
#include "tests/support/fake_item.h"
#include "tests/support/recorder_canvas.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ZELPropUI {

using Lines = std::vector<std::string>;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceEntry;
using ZELAdapterHelper::InterfaceType;
using ZELAdapterHelper::ItemRecord;

/// An id that differs from others by its first field only.
constexpr GUID IdOf(std::uint32_t number) { return {number, 0, 0, {}}; }

/// A page of fake items. An item exists, which means that its factory yields one, where the test has asked
/// for its script; records share a script by name.
class PageTest : public testing::Test {
protected:
    PageTest() { current_ = this; }
    ~PageTest() override {
        canvas_.placed.clear();
        for (const auto& [name, script] : scripts_) EXPECT_EQ(script.living_items, 0);
        current_ = nullptr;
    }

    test_support::FakeScript& Script(const std::wstring& name = L"Item") { return scripts_[name]; }
    test_support::FakeInterface& At(InterfaceKey key, const std::wstring& name = L"Item") {
        return Script(name).interfaces[key];
    }

    /// Elements keep their interfaces here.
    ElementRecord Element(const GUID& id, const wchar_t* name, const std::vector<InterfaceEntry>& interfaces,
                          std::int32_t level = 0, const GUID& linked = {}, const GUID& linked_too = {}) {
        const auto& kept = interfaces_.emplace_back(interfaces);
        ElementRecord element{
            id, name, nullptr, static_cast<std::uint32_t>(kept.size()), {}, level, {linked, linked_too}};
        if (kept.size() < 2) {
            element.inline_interface = kept.front();
        } else {
            element.interfaces = kept.data();
        }
        return element;
    }

    /// Items keep their elements here.
    ItemRecord Item(const wchar_t* group, std::uint32_t priority, const GUID& id, const wchar_t* name,
                    const std::vector<ElementRecord>& elements) {
        ItemRecord record{
            group, priority, id, name, &Make, nullptr, static_cast<std::uint32_t>(elements.size()), {}};
        if (elements.size() == 1) {
            record.inline_element = elements.front();
        } else {
            record.elements = elements_.emplace_back(elements).data();
        }
        return record;
    }

    /// The records of the page; `groups_` empty lets all of them through.
    bool Build(bool measure_only = false) {
        PageSources sources;
        sources.filter = filter_;
        sources.groups = &groups_;
        sources.built_in = {built_in_.data(), built_in_.size()};
        sources.described = {described_.data(), described_.size()};
        return PageLayout(sources, measure_only ? nullptr : &canvas_).BuildPage(measure_only);
    }

    std::vector<std::wstring> groups_;
    std::vector<ItemRecord> built_in_;
    std::vector<ItemRecord> described_;
    test_support::RecorderCanvas canvas_;
    IUnknown* filter_ = nullptr;

    // What the factories saw and how they misbehave.
    std::vector<std::wstring> made_;
    std::vector<const ItemRecord*> made_for_;
    std::vector<IUnknown*> made_from_;
    std::set<std::wstring> throw_before_making_;
    std::set<std::wstring> throw_after_making_;

private:
    static void Make(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter,
                     const ItemRecord& record) {
        current_->made_.emplace_back(record.name);
        current_->made_for_.push_back(&record);
        current_->made_from_.push_back(filter);
        if (current_->throw_before_making_.count(record.name) != 0) throw std::runtime_error("factory");
        const auto script = current_->scripts_.find(record.name);
        *result = script != current_->scripts_.end() ? new test_support::FakeItem(script->second) : nullptr;
        if (current_->throw_after_making_.count(record.name) != 0) throw std::runtime_error("factory");
    }

    static inline PageTest* current_ = nullptr;
    std::map<std::wstring, test_support::FakeScript> scripts_;
    std::deque<std::vector<InterfaceEntry>> interfaces_;
    std::deque<std::vector<ElementRecord>> elements_;
};

}  // namespace ZELPropUI
