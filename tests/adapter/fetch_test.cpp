#include "adapter/genicam_adapter_device.h"

#include "tests/adapter/allocation_watch.h"
#include "tests/adapter/scripted_camera.h"
#include "wire/device_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

namespace adapter_test {
namespace {

using genicam_adapter::hr_exception;
using wire::device_set;

std::string NamedDescription(const std::string& model) {
    return "<RegisterDescription ModelName=\"" + model + "\"><Port Name=\"Device\"/></RegisterDescription>";
}

constexpr char malformed[] = "<RegisterDescription>";

std::vector<std::string> ModelsOf(const GenICamAdapterDevice& adapter) {
    std::vector<std::string> models;
    for (const auto& document : adapter.get_documents()) models.emplace_back(document->get_model_name());
    return models;
}

void ExpectParseFailure(GenICamAdapterDevice& adapter) {
    try {
        adapter.fetch_descriptions();
        FAIL() << "nothing was thrown";
    } catch (const hr_exception& failure) {
        EXPECT_STREQ(failure.what(), "Failed to parse GenICam data");
        EXPECT_EQ(failure.hr(), static_cast<HRESULT>(0x80004005));
    }
}

// A camera with an adapter, whose own requests are out of the way.
class Fetch : public testing::Test {
protected:
    ScriptedCamera camera_{AccessPath::Registers, {}};
    GenICamAdapterDevice adapter_{&camera_.filter};

    void SetUp() override { (void)camera_.filter.TakeRequests(); }

    // Answers a request for a size with these bytes and this returned size.
    void AnswerSize(std::uint32_t size, std::uint32_t returned = 4) {
        camera_.filter.Property(wire::device_set, 1).get = [=](GetArguments& call) {
            std::memcpy(call.data, &size, sizeof(size));
            call.returned = returned;
            return call.instance == BytesOf(std::array<std::uint32_t, 2>{1, 0}) ? S_OK : E_FAIL;
        };
    }
    void AnswerData(const std::string& text, std::uint32_t returned, HRESULT hr = S_OK) {
        camera_.filter.Property(wire::device_set, 2).get = [=](GetArguments& call) {
            std::copy_n(text.begin(), std::min<std::size_t>(text.size(), call.size), call.data);
            call.returned = returned;
            return hr;
        };
    }
};

TEST_F(Fetch, GoesOnUntilTheDriverRefusesAnIndex) {
    camera_.descriptions = {NamedDescription("first"), NamedDescription("second!")};
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), (std::vector<std::string>{"first", "second!"}));
    EXPECT_EQ(camera_.filter.TakeRequests(),
              (std::vector{SizeGet(1, 0), DataGet(1, 0, camera_.descriptions[0].size()), SizeGet(1, 1),
                           DataGet(1, 1, camera_.descriptions[1].size()), SizeGet(1, 2)}));
}

TEST_F(Fetch, FallsBackForTheFirstDescriptionOnly) {
    const std::string text = NamedDescription("fallback");
    camera_.filter.Property(wire::device_set, 1).get = [&](GetArguments& call) {
        const auto size = static_cast<std::uint32_t>(text.size());
        std::memset(call.data, 0xEE, 4);
        if (call.instance != Bytes(8)) return E_FAIL;
        std::memcpy(call.data, &size, sizeof(size));
        call.returned = 4;
        return S_OK;
    };
    AnswerData(text, static_cast<std::uint32_t>(text.size()));
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), std::vector<std::string>{"fallback"});
    EXPECT_EQ(camera_.filter.TakeRequests(),
              (std::vector{SizeGet(1, 0), SizeGet(0, 0), DataGet(0, 0, text.size()), SizeGet(1, 1)}));
}

TEST_F(Fetch, EndsQuietlyWhenBothFirstRequestsAreRefused) {
    adapter_.fetch_descriptions();
    EXPECT_TRUE(adapter_.get_documents().empty());
    EXPECT_EQ(camera_.filter.TakeRequests(), (std::vector{SizeGet(1, 0), SizeGet(0, 0)}));
}

TEST_F(Fetch, EndsQuietlyWhenTheSizeIsNotFourBytes) {
    for (const std::uint32_t returned : {0U, 2U, 3U, 5U, 8U, 0xFFFFFFFFU}) {
        AnswerSize(20, returned);
        adapter_.fetch_descriptions();
        EXPECT_EQ(camera_.filter.TakeRequests(), std::vector{SizeGet(1, 0)}) << returned;
    }
    EXPECT_TRUE(adapter_.get_documents().empty());
}

TEST_F(Fetch, EndsQuietlyWhenTheDataIsRefused) {
    const std::string text = NamedDescription("refused");
    AnswerSize(static_cast<std::uint32_t>(text.size()));
    AnswerData(text, static_cast<std::uint32_t>(text.size()), device_is_lost);
    adapter_.fetch_descriptions();
    EXPECT_TRUE(adapter_.get_documents().empty());
    EXPECT_EQ(camera_.filter.TakeRequests(), (std::vector{SizeGet(1, 0), DataGet(1, 0, text.size())}));
}

TEST_F(Fetch, EndsQuietlyWhenMoreIsReturnedThanFits) {
    const std::string text = NamedDescription("too much");
    AnswerSize(static_cast<std::uint32_t>(text.size()));
    AnswerData(text, static_cast<std::uint32_t>(text.size()) + 1);
    adapter_.fetch_descriptions();
    EXPECT_TRUE(adapter_.get_documents().empty());
}

TEST_F(Fetch, ParsesTheWholeBufferWhateverIsReturned) {
    const std::string text = NamedDescription("whole");
    AnswerSize(static_cast<std::uint32_t>(text.size()));
    AnswerData(text, 3);
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), std::vector<std::string>{"whole"});
}

TEST_F(Fetch, ParsesZerosBehindTheText) {
    const std::string text = NamedDescription("padded");
    AnswerSize(static_cast<std::uint32_t>(text.size()) + 1000);
    AnswerData(text, static_cast<std::uint32_t>(text.size()));
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), std::vector<std::string>{"padded"});
    const auto requests = camera_.filter.TakeRequests();
    ASSERT_GE(requests.size(), 2U);
    EXPECT_EQ(requests[1], DataGet(1, 0, text.size() + 1000)) << "the buffer starts as zeros";
}

TEST_F(Fetch, ThrowsAtAnEmptyDescription) {
    AnswerSize(0);
    AnswerData("", 0);
    ExpectParseFailure(adapter_);
    EXPECT_EQ(camera_.filter.TakeRequests(), (std::vector{SizeGet(1, 0), DataGet(1, 0, 0)}));
}

TEST_F(Fetch, ThrowsAtAMalformedDescriptionAndKeepsThoseBefore) {
    camera_.descriptions = {NamedDescription("kept"), malformed, NamedDescription("never asked for")};
    ExpectParseFailure(adapter_);
    EXPECT_EQ(ModelsOf(adapter_), std::vector<std::string>{"kept"});
    EXPECT_EQ(camera_.filter.TakeRequests().back(), DataGet(1, 1, sizeof(malformed) - 1));
}

TEST_F(Fetch, AppendsWhenCalledAgain) {
    camera_.descriptions = {NamedDescription("one")};
    adapter_.fetch_descriptions();
    const auto first = adapter_.get_documents().front();
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), (std::vector<std::string>{"one", "one"}));
    EXPECT_EQ(adapter_.get_documents().front(), first);
}

TEST_F(Fetch, BindsThePortNamedDeviceAndNoOther) {
    camera_.descriptions = {"<R><Port Name=\"Device\"/><Port Name=\"Other\"/></R>",
                            "<R><Port Name=\"Other\"/></R>"};
    adapter_.fetch_descriptions();
    ASSERT_EQ(adapter_.get_documents().size(), 2U);
    const auto& first = adapter_.get_documents()[0];
    EXPECT_TRUE(genicam_adapter::node_as<GenICam::IPort>(first->find_port("Device"))->is_bound());
    EXPECT_FALSE(genicam_adapter::node_as<GenICam::IPort>(first->find_port("Other"))->is_bound());
    const auto& second = adapter_.get_documents()[1];
    EXPECT_FALSE(genicam_adapter::node_as<GenICam::IPort>(second->find_port("Other"))->is_bound());
}

TEST_F(Fetch, KeepsADescriptionWhosePortTakesNoDevice) {
    camera_.descriptions = {
        "<R ModelName=\"chunk\"><Port Name=\"Device\"><ChunkID>1</ChunkID></Port></R>",
        "<R ModelName=\"no port\"><Integer Name=\"Device\"><Value>1</Value></Integer></R>"};
    adapter_.fetch_descriptions();
    EXPECT_EQ(ModelsOf(adapter_), (std::vector<std::string>{"chunk", "no port"}));
}

TEST_F(Fetch, KeepsFeaturesForDebugging) {
    camera_.descriptions = {
        "<R><Integer Name=\"Hidden\"><Extension><ZELIsDebugProperty>1</ZELIsDebugProperty>"
        "</Extension><Value>1</Value></Integer></R>"};
    adapter_.fetch_descriptions();
    EXPECT_NE(adapter_.get_documents().front()->find_node("Hidden"), nullptr);
}

TEST_F(Fetch, PortReachesTheDriver) {
    camera_.descriptions = {NamedDescription("wired")};
    adapter_.fetch_descriptions();
    auto* const port =
        genicam_adapter::node_as<GenICam::IPort>(adapter_.get_documents().front()->find_port(""));
    (void)camera_.filter.TakeRequests();
    camera_.PutMemory(0x100, {1, 2});
    Bytes buffer(2);
    EXPECT_FALSE(port->read(0x100, buffer.data(), 2, 0));
    EXPECT_EQ(buffer, (Bytes{1, 2}));
    EXPECT_FALSE(port->write(0x102, buffer.data(), 2, 0));
    EXPECT_EQ(camera_.filter.TakeRequests(),
              (std::vector{RegisterGet(0x100, Bytes(2)), RegisterSet(0x102, {1, 2})}));
    camera_.register_result = device_is_lost;
    EXPECT_EQ(port->read(0, buffer.data(), 2, 0), GenICam::make_error_code(GenICam::device_lost));
}

// Claims a huge description and fills little in.
class BoastingDriver final : public IdleDriver {
public:
    HRESULT data_result = E_FAIL;
    std::uint32_t claimed = 0xFFFFFFFF;
    std::string text;
    std::vector<std::uint64_t> offered;

    HRESULT STDMETHODCALLTYPE Get(REFGUID, DWORD id, LPVOID instance, DWORD, LPVOID data, DWORD data_size,
                                  DWORD* returned) override {
        if (static_cast<const std::uint32_t*>(instance)[1] != 0) return E_FAIL;
        *returned = data_size;
        if (id == 1) {
            std::memcpy(data, &claimed, sizeof(claimed));
            return S_OK;
        }
        offered.push_back(data_size);
        std::copy(text.begin(), text.end(), static_cast<char*>(data));
        return data_result;
    }
};

TEST(FetchOfAHugeDescription, OffersTheWholeSize) {
    BoastingDriver driver;
    GenICamAdapterDevice adapter(&driver);
    adapter.fetch_descriptions();
    EXPECT_EQ(driver.offered, std::vector<std::uint64_t>{0xFFFFFFFF});
    EXPECT_TRUE(adapter.get_documents().empty());
}

TEST(FetchOfAHugeDescription, EndsQuietlyWithoutRoomForIt) {
    BoastingDriver driver;
    driver.data_result = S_OK;
    GenICamAdapterDevice adapter(&driver);
    const NoLargeBlocks small_machine(1U << 30);
    adapter.fetch_descriptions();
    EXPECT_TRUE(driver.offered.empty());
    EXPECT_TRUE(adapter.get_documents().empty());
}

TEST(FetchOfAHugeDescription, TakesMemoryForWhatWasFilled) {
    BoastingDriver driver;
    driver.data_result = S_OK;
    driver.claimed = 0x10000000;
    driver.text = NamedDescription("small");
    GenICamAdapterDevice adapter(&driver);
    const std::uint64_t before = AllocatedBytes();
    adapter.fetch_descriptions();
    EXPECT_LT(AllocatedBytes() - before, 100000U);
    EXPECT_EQ(driver.offered, std::vector<std::uint64_t>{driver.claimed});
    EXPECT_EQ(ModelsOf(adapter), std::vector<std::string>{"small"});
}

// Looks at the documents when the adapter lets go of it.
class WatchingDriver final : public IdleDriver {
public:
    std::weak_ptr<GenICam::IGenICamDoc> document;
    bool document_lived = false;

    ULONG STDMETHODCALLTYPE Release() override {
        document_lived = !document.expired();
        return 1;
    }
    HRESULT STDMETHODCALLTYPE Get(REFGUID, DWORD id, LPVOID instance, DWORD, LPVOID data, DWORD data_size,
                                  DWORD* returned) override {
        static constexpr std::string_view text = "<R/>";
        if (static_cast<const std::uint32_t*>(instance)[1] != 0) return E_FAIL;
        if (id == 1) std::memset(data, 0, data_size);
        if (id == 1) static_cast<std::uint8_t*>(data)[0] = static_cast<std::uint8_t>(text.size());
        if (id == 2) std::memcpy(data, text.data(), text.size());
        *returned = 4;
        return S_OK;
    }
};

TEST(AdapterDestruction, ReleasesTheFilterBeforeTheDocuments) {
    WatchingDriver driver;
    {
        GenICamAdapterDevice adapter(&driver);
        adapter.fetch_descriptions();
        ASSERT_EQ(adapter.get_documents().size(), 1U);
        driver.document = adapter.get_documents().front();
    }
    EXPECT_TRUE(driver.document_lived);
    EXPECT_TRUE(driver.document.expired());
}

}  // namespace
}  // namespace adapter_test
