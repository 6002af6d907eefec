// Descriptions of real cameras with marks for the pages, over registers of three kinds: all zero, scattered,
// and scattered with a legal value in every marked feature.

#include "tests/simcam/element_view.h"
#include "tests/simcam/marked_cameras.h"

#include "adapter/interface_key.h"
#include "data_paths.h"
#include "platform/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <set>
#include <sstream>

namespace simcam_test {
namespace {

using namespace ZELAdapterHelper;
using genicam_adapter::node_as;
using genicam_adapter::node_of;
using test_support::RecorderCanvas;

// The features whose enabled state is the description's. Without a `pIsLocked` a driver has its own opinion.
std::set<std::string> features_with_a_lock(const std::string& description) {
    std::set<std::string> names;
    pugi::xml_document xml;
    EXPECT_TRUE(xml.load_buffer(description.data(), description.size()));
    xml.find_node([&](pugi::xml_node node) {
        if (node.child("pIsLocked")) names.insert(node.attribute("Name").value());
        return false;
    });
    return names;
}

// By name a box counts the entries that are implemented, over registers it gives their values and has them
// all.
std::string selected_text(const element& shown, bool named) {
    std::int32_t value = 0;
    HRESULT hr = shown.item->GetValue(shown.key, value);
    std::string text;
    if (named && SUCCEEDED(hr)) {
        std::vector<SharedString> strings;
        EXPECT_EQ(shown.item->GetMapStrings(shown.key, strings), S_OK);
        text = platform::narrow(strings.at(static_cast<std::size_t>(value)).View());
    } else if (SUCCEEDED(hr)) {
        GenICam::IEnumEntry* const entry =
            node_as<GenICam::IEnumeration>(shown.key)->find_entry(std::int64_t{value});
        hr = entry->is_implemented() ? S_OK : E_FAIL;
        if (SUCCEEDED(hr)) text = entry->get_display_name();
    }
    return std::to_string(hr) + " " + text;
}

void show_number(const element& shown, std::ostream& text) {
    RangeInfo range;
    std::int32_t value = 0;
    HRESULT hr = shown.item->GetRange(shown.key, range);
    text << "range " << hr << " " << range.min << " " << range.max << " " << range.step;
    hr = shown.item->GetValue(shown.key, value);
    text << " value " << hr << " " << value;
}

void show_real(const element& shown, std::ostream& text) {
    AbsRangeInfo range;
    double value = 0;
    HRESULT hr = shown.item->GetAbsRange(shown.key, range);
    text << "range " << hr << " " << range.min << " " << range.max << " " << range.default_value;
    hr = shown.item->GetAbsValue(shown.key, value);
    text << " value " << hr << " " << value;
}

std::string value_of(const element& shown, bool named) {
    std::ostringstream text;
    text.precision(17);
    bool flag = false;
    switch (shown.type) {
        case InterfaceType::Switch:
            text << "switch " << shown.item->GetSwitch(shown.key, flag) << " " << flag;
            break;
        case InterfaceType::Range:
            show_number(shown, text);
            break;
        case InterfaceType::MapStrings:
            text << "entry " << selected_text(shown, named);
            break;
        case InterfaceType::AbsoluteValue:
            show_real(shown, text);
            break;
        case InterfaceType::Button:
            break;
    }
    return text.str();
}

// The index of the first entry that is implemented, in the list of either access path.
std::int32_t first_index(const element& shown, bool named) {
    std::int32_t index = 0;
    if (named) return index;
    for (GenICam::IEnumEntry* entry : node_as<GenICam::IEnumeration>(shown.key)->get_entries()) {
        if (entry->is_implemented()) return index;
        ++index;
    }
    return -1;
}

// Over registers one failure stands for all of a button's, and an enumeration that is not implemented has no
// indices to refuse.
HRESULT any_failure(HRESULT hr) { return FAILED(hr) ? E_FAIL : hr; }

// Gives an element a value that ought to be legal: on, the first entry, the least number.
HRESULT settle(const element& shown, bool named) {
    RangeInfo range;
    AbsRangeInfo limits;
    switch (shown.type) {
        case InterfaceType::Switch:
            return shown.item->SetSwitch(shown.key, true);
        case InterfaceType::MapStrings:
            // What was written before may have changed which entries there are.
            if (const HRESULT hr = shown.item->Refresh(shown.key); FAILED(hr)) return hr;
            return any_failure(shown.item->SetValue(shown.key, first_index(shown, named)));
        case InterfaceType::Range:
            if (const HRESULT hr = shown.item->GetRange(shown.key, range); FAILED(hr)) return hr;
            return shown.item->SetValue(shown.key, range.min);
        case InterfaceType::AbsoluteValue:
            if (const HRESULT hr = shown.item->GetAbsRange(shown.key, limits); FAILED(hr)) return hr;
            return shown.item->SetAbsValue(shown.key, limits.min);
        case InterfaceType::Button:
            return any_failure(shown.item->Push(shown.key));
    }
    return E_NOTIMPL;
}

// What one access path shows of a camera: the rows of its table, the pages, and the values.
struct shown_over_path {
    shown_over_path(const marked_description& marked, std::uint64_t seed, bool is_named)
        : named(is_named),
          seen(over_one_access_path(camera_of(marked, seed), is_named)),
          elements(elements_of(seen)) {}

    [[nodiscard]] std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        for (const ItemRecord& record : seen.adapter->get_item_table()) {
            rows.push_back(platform::narrow(record.group) + " / " + platform::narrow(record.name) + " " +
                           platform::narrow(platform::format_guid(record.id)));
            for (const ElementRecord& one : ElementsOf(record)) {
                rows.push_back("  " + platform::narrow(one.name) + " " +
                               platform::narrow(platform::format_guid(one.id)));
            }
        }
        return rows;
    }
    // Kinds, rects and captions; the keys of the two access paths are nodes of different documents.
    [[nodiscard]] std::vector<std::string> Page(ZELPropUI::PageName page) {
        RecorderCanvas canvas;
        std::vector<std::string> lines = {seen.build(page, canvas) ? "shown" : "nothing to show"};
        for (auto& one : canvas.placed) one.key = 0;
        for (std::string& line : canvas.Lines()) lines.push_back(std::move(line));
        return lines;
    }
    [[nodiscard]] std::vector<std::string> Values(const std::set<std::string>& locked) const {
        std::vector<std::string> lines;
        for (const element& one : elements) {
            bool flag = false;
            const HRESULT hr = one.item->IsAvailable(one.key, flag);
            std::string line = one.name + " " + value_of(one, named);
            if (locked.count(one.name) != 0) line += " enabled " + std::to_string(hr) + std::to_string(flag);
            lines.push_back(std::move(line));
        }
        return lines;
    }

    bool named;
    camera_on_pages seen;
    std::vector<element> elements;
};

class MarkedAccessPaths : public testing::TestWithParam<std::uint64_t> {
protected:
    void SetUp() override {
        if (marked.empty()) GTEST_SKIP() << "no descriptions in " SELVANE_SHARED_DESCRIPTIONS "/marked";
    }

    std::vector<marked_description> marked = marked_descriptions();
};

TEST_P(MarkedAccessPaths, ShowTheSameRowsAndPages) {
    for (const marked_description& one : marked) {
        SCOPED_TRACE(one.name);
        shown_over_path by_name(one, GetParam(), true);
        shown_over_path by_register(one, GetParam(), false);
        EXPECT_THAT(by_name.Rows(), testing::Not(testing::IsEmpty()));
        EXPECT_EQ(by_name.Rows(), by_register.Rows());
        for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
            EXPECT_EQ(by_name.Page(page), by_register.Page(page)) << ZELPropUI::TitleOf(page);
        }
    }
}

TEST_P(MarkedAccessPaths, ShowTheSameValues) {
    for (const marked_description& one : marked) {
        SCOPED_TRACE(one.name);
        const std::set<std::string> locked = features_with_a_lock(one.text);
        const shown_over_path by_name(one, GetParam(), true);
        const shown_over_path by_register(one, GetParam(), false);
        EXPECT_EQ(by_name.Values(locked), by_register.Values(locked));
    }
}

TEST_P(MarkedAccessPaths, TakeTheSameChanges) {
    for (const marked_description& one : marked) {
        SCOPED_TRACE(one.name);
        const std::set<std::string> locked = features_with_a_lock(one.text);
        const shown_over_path by_name(one, GetParam(), true);
        const shown_over_path by_register(one, GetParam(), false);
        for (std::size_t at = 0; at < by_name.elements.size(); ++at) {
            SCOPED_TRACE(by_name.elements[at].name);
            EXPECT_EQ(settle(by_name.elements[at], true), settle(by_register.elements[at], false));
            ASSERT_EQ(by_name.Values(locked), by_register.Values(locked));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Memories, MarkedAccessPaths, testing::Values(0, 11, 29),
                         [](const auto& seed) { return "Seed" + std::to_string(seed.param); });

}  // namespace
}  // namespace simcam_test
