// A driver that runs messages while it answers lets the page's host call in again, at every single question.

#include "adapter/hr_exception.h"
#include "platform/text.h"
#include "tests/adapter/scripted_camera.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace adapter_test {
namespace {

using ZELAdapterHelper::SharedString;

std::string TwoItems() {
    const auto item = [](const char* name, const char* number, const char* features) {
        return std::string("<Category Name=\"") + name +
               "\"><Extension><ZELItemGUID>{00000000-0000-0000-0000-00000000000" + number +
               "}</ZELItemGUID></Extension>" + features + "</Category>";
    };
    const auto number = [](const char* name) {
        return std::string("<Integer Name=\"") + name + "\">" + ElementMark() + "<Value>1</Value></Integer>";
    };
    return Description(
        "<Port Name=\"Device\"/><Category Name=\"Root\"><pFeature>First</pFeature><pFeature>Second</pFeature>"
        "</Category>" +
        item("First", "1", "<pFeature>A</pFeature><pFeature>B</pFeature>") +
        item("Second", "2", "<pFeature>C</pFeature><pFeature>Mode</pFeature>") + number("A") + number("B") +
        number("C") + "<Enumeration Name=\"Mode\">" + ElementMark() +
        "<EnumEntry Name=\"Off\"><Value>0</Value></EnumEntry><EnumEntry Name=\"On\"><Value>1</Value>"
        "</EnumEntry><EnumEntry "
        "Name=\"AutomaticByTheCamera\"><Value>2</Value></EnumEntry><Value>0</Value></Enumeration>");
}

class Reentry : public testing::TestWithParam<AccessPath> {
protected:
    Reentry() {
        camera_.other_paths = [](std::string_view path, Bytes& answer) {
            const bool is_selection = path.find("/SelectedEntry") != std::string_view::npos;
            answer = is_selection ? BytesOfText("On") : BytesOf(std::uint64_t{1});
            return true;
        };
        camera_.filter.before_call = [this](const DriverRequest&) {
            if (awaited_ != 0 && --awaited_ == 0) call_();
        };
    }

    // Runs something once, before the n-th question from now on.
    void Before(std::size_t n, std::function<void()> call) {
        awaited_ = n;
        call_ = std::move(call);
    }

    std::size_t QuestionsOfATable() {
        GenICamAdapterDevice adapter(&camera_.filter);
        (void)camera_.filter.TakeRequests();
        (void)adapter.get_item_table();
        return camera_.filter.TakeRequests().size();
    }

    ScriptedCamera camera_{GetParam(), {TwoItems(), TwoItems(), TwoItems()}};

private:
    std::size_t awaited_ = 0;
    std::function<void()> call_;
};

TEST_P(Reentry, ACallWhileTheTableIsMadeGetsItAsItIsAndFetchesNothing) {
    const std::size_t questions = QuestionsOfATable();
    ASSERT_GT(questions, 6U);
    for (std::size_t n = 1; n <= questions; ++n) {
        SCOPED_TRACE(n);
        GenICamAdapterDevice adapter(&camera_.filter);
        (void)camera_.filter.TakeRequests();
        std::size_t rows = 99;
        Before(n, [&] { rows = adapter.get_item_table().size(); });
        const auto& table = adapter.get_item_table();
        EXPECT_EQ(rows, 0U);
        EXPECT_EQ(table.size(), 6U);
        EXPECT_EQ(adapter.get_documents().size(), 3U);
        EXPECT_EQ(camera_.filter.TakeRequests().size(), questions);
        for (const ItemRecord& record : table) EXPECT_EQ(record.element_count, 2U);
    }
}

TEST_P(Reentry, AnExceptionLeavesTheTableToTheNextCall) {
    const std::size_t questions = QuestionsOfATable();
    for (std::size_t n = 1; n <= questions; ++n) {
        SCOPED_TRACE(n);
        GenICamAdapterDevice adapter(&camera_.filter);
        Before(n, [] { throw 7; });  // what nothing on the way takes for a missing element
        EXPECT_THROW((void)adapter.get_item_table(), int);
        const std::size_t kept = adapter.get_documents().size();
        EXPECT_EQ(adapter.get_item_table().size(), 2 * (kept + 3));
    }
}

TEST_P(Reentry, DescriptionsMayComeInWhileTheTableIsMade) {
    const std::size_t questions = QuestionsOfATable();
    for (std::size_t n = 1; n <= questions; ++n) {
        SCOPED_TRACE(n);
        GenICamAdapterDevice adapter(&camera_.filter);
        Before(n, [&] { adapter.fetch_descriptions(); });
        const auto& table = adapter.get_item_table();
        EXPECT_EQ(adapter.get_documents().size(), 6U);
        EXPECT_GE(table.size(), 6U);
        for (const ItemRecord& record : table) {
            for (const auto& element : ZELAdapterHelper::ElementsOf(record)) {
                EXPECT_EQ(platform::narrow(element.name),
                          genicam_adapter::node_of(element.inline_interface.key)->get_name());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, Reentry, testing::Values(AccessPath::Named, AccessPath::Registers));

/// The item with an enumeration, over named access, where each entry is a question to the driver.
class EntryReentry : public Reentry {
protected:
    EntryReentry() {
        for (const ItemRecord& record : adapter_.get_item_table()) record_ = record;
        for (const auto& element : ZELAdapterHelper::ElementsOf(record_))
            mode_ = element.inline_interface.key;
    }

    [[nodiscard]] platform::com_ptr<CZELItemDataBase> Item() { return MakeItem(record_, &camera_.filter); }
    [[nodiscard]] std::vector<std::string> EntriesOf(CZELItemDataBase& item) const {
        std::vector<SharedString> strings;
        EXPECT_EQ(item.GetMapStrings(mode_, strings), S_OK);
        std::vector<std::string> texts;
        for (const SharedString& string : strings)
            texts.push_back(platform::narrow(std::wstring(string.View())));
        return texts;
    }

    const std::vector<std::string> entries_{"Off", "On", "AutomaticByTheCamera"};
    GenICamAdapterDevice adapter_{&camera_.filter};
    ItemRecord record_{};
    InterfaceKey mode_ = 0;
};

TEST_P(EntryReentry, EachEntryIsOfferedOnce) {
    for (std::size_t n = 1; n <= entries_.size(); ++n) {
        SCOPED_TRACE(n);
        const auto item = Item();
        Before(n, [&] { EXPECT_EQ(EntriesOf(*item), entries_); });
        EXPECT_EQ(EntriesOf(*item), entries_);
        EXPECT_EQ(EntriesOf(*item), entries_);
    }
}

TEST_P(EntryReentry, ADriverThatThrowsLeavesNoHalfOfAList) {
    for (std::size_t n = 1; n <= entries_.size(); ++n) {
        SCOPED_TRACE(n);
        const auto item = Item();
        Before(n, [] { throw std::runtime_error("the driver throws"); });
        EXPECT_THROW((void)EntriesOf(*item), std::runtime_error);
        EXPECT_EQ(EntriesOf(*item), entries_);
    }
}

// Reads what it is sent only after the page has been back in its item.
class SlowDriver final : public IdleDriver {
public:
    explicit SlowDriver(ScriptedFilter& filter) : filter_(filter) {}

    std::function<void()> before_set;
    std::string sent;

    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override {
        return filter_.Get(set, id, instance, instance_size, data, data_size, returned);
    }
    HRESULT STDMETHODCALLTYPE Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID data, DWORD data_size) override {
        before_set();
        sent.assign(static_cast<const char*>(data), data_size);
        return S_OK;
    }

private:
    ScriptedFilter& filter_;
};

TEST_P(EntryReentry, TheListMayBeForgottenWhileTheDriverTakesAChoice) {
    SlowDriver driver(camera_.filter);
    const auto item = MakeItem(record_, &driver);
    EXPECT_EQ(EntriesOf(*item), entries_);
    driver.before_set = [&] { item->Refresh(mode_); };
    EXPECT_EQ(item->SetValue(mode_, 2), S_OK);
    EXPECT_EQ(driver.sent, "AutomaticByTheCamera");
}

TEST_P(EntryReentry, TheListMayBeForgottenWhileTheChoiceIsRead) {
    const auto item = Item();
    EXPECT_EQ(EntriesOf(*item), entries_);
    Before(1, [&] { item->Refresh(mode_); });
    std::int32_t index = -1;
    EXPECT_EQ(item->GetValue(mode_, index), S_OK);
    EXPECT_EQ(index, 1);
}

INSTANTIATE_TEST_SUITE_P(Named, EntryReentry, testing::Values(AccessPath::Named));

}  // namespace
}  // namespace adapter_test
