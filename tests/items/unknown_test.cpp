#include "items/unknown.h"

#include "items/item_contract.h"
#include "tests/items/item_test.h"

#include <thread>

namespace item_tests {
namespace {

using ZELAdapterHelper::CUnknown;
using ZELAdapterHelper::CZELItemDataBase;

constexpr GUID some_iid = {0x11111111, 0x2222, 0x3333, {4, 5, 6, 7, 8, 9, 10, 11}};

class PlainObject final : public CUnknown {
public:
    explicit PlainObject(IUnknown* outer, bool* destroyed = nullptr)
        : CUnknown(outer), destroyed_(destroyed) {}
    ~PlainObject() override {
        // What a destructor may do: hand the object to someone who takes a reference and gives it back.
        if (destroyed_ != nullptr) {
            NonDelegatingAddRef();
            NonDelegatingRelease();
            *destroyed_ = true;
        }
    }

private:
    bool* destroyed_;
};

class PlainItem final : public CZELItemDataBase {
public:
    explicit PlainItem(IUnknown* outer = nullptr) : CZELItemDataBase(outer) {}
    bool SupportsInterface(InterfaceKey) override { return true; }
};

class Outer final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    int references = 1;
};

TEST(UnknownTest, CountsReferencesAndDeletesWithTheLast) {
    bool destroyed = false;
    auto* object = new PlainObject(nullptr, &destroyed);
    EXPECT_EQ(object->NonDelegatingAddRef(), 1U);
    EXPECT_EQ(object->NonDelegatingAddRef(), 2U);
    EXPECT_EQ(object->NonDelegatingRelease(), 1U);
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(object->NonDelegatingRelease(), 0U);
    EXPECT_TRUE(destroyed);
}

TEST(UnknownTest, OneReleaseTooManyStillAnswersOne) {
    PlainObject object(nullptr);
    EXPECT_EQ(object.NonDelegatingRelease(), 1U);
}

TEST(UnknownTest, GivesItselfAsUnknownWithAReference) {
    auto* object = new PlainObject(nullptr);
    object->NonDelegatingAddRef();
    void* out = nullptr;
    ASSERT_EQ(object->NonDelegatingQueryInterface(platform::iid_unknown, &out), S_OK);
    auto* unknown = static_cast<IUnknown*>(out);
    EXPECT_EQ(unknown, object->GetOwner());
    void* again = nullptr;
    ASSERT_EQ(unknown->QueryInterface(platform::iid_unknown, &again), S_OK);
    EXPECT_EQ(again, out);
    EXPECT_EQ(unknown->Release(), 2U);
    EXPECT_EQ(unknown->QueryInterface(some_iid, &again), E_NOINTERFACE);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(unknown->AddRef(), 3U);
    EXPECT_EQ(unknown->Release(), 2U);
    EXPECT_EQ(unknown->Release(), 1U);
    EXPECT_EQ(object->NonDelegatingRelease(), 0U);
}

TEST(UnknownTest, KnowsNoOtherInterface) {
    PlainObject object(nullptr);
    int something = 0;
    for (REFIID iid : {some_iid, platform::iid_property_set, platform::null_guid}) {
        void* out = &something;
        EXPECT_EQ(object.NonDelegatingQueryInterface(iid, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
    }
}

TEST(UnknownTest, NullOutIsAnError) {
    PlainObject object(nullptr);
    EXPECT_EQ(object.NonDelegatingQueryInterface(platform::iid_unknown, nullptr), E_POINTER);
    EXPECT_EQ(object.NonDelegatingQueryInterface(some_iid, nullptr), E_POINTER);
}

TEST(UnknownTest, AggregatedObjectCountsAtItsOuterObject) {
    Outer outer;
    PlainObject object(&outer);
    EXPECT_EQ(object.GetOwner(), &outer);
    EXPECT_EQ(object.AddRef(), 2U);
    EXPECT_EQ(outer.references, 2);
    EXPECT_EQ(object.Release(), 1U);
    // Its own operations stay its own.
    EXPECT_EQ(object.NonDelegatingAddRef(), 1U);
    EXPECT_EQ(outer.references, 1);
    void* out = nullptr;
    ASSERT_EQ(object.NonDelegatingQueryInterface(platform::iid_unknown, &out), S_OK);
    EXPECT_NE(out, static_cast<void*>(&outer));
    EXPECT_EQ(static_cast<IUnknown*>(out)->Release(), 1U);
    EXPECT_EQ(outer.references, 1);
}

TEST(UnknownTest, EveryObjectCountsAmongTheLiveOnes) {
    const std::int32_t before = CUnknown::LiveObjects();
    {
        PlainObject first(nullptr);
        EXPECT_EQ(CUnknown::LiveObjects(), before + 1);
        const Item item = Item::attach(new PlainItem);
        EXPECT_EQ(CUnknown::LiveObjects(), before + 2);
    }
    EXPECT_EQ(CUnknown::LiveObjects(), before);
}

TEST(UnknownTest, CountsAreAtomic) {
    constexpr int rounds = 20000;
    const std::int32_t before = CUnknown::LiveObjects();
    Item shared = Item::attach(new PlainItem);
    const auto work = [&shared] {
        for (int round = 0; round < rounds; ++round) {
            const Item held = shared;
            const PlainObject made(nullptr);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(shared->NonDelegatingAddRef(), 2U);
    EXPECT_EQ(shared->NonDelegatingRelease(), 1U);
    EXPECT_EQ(CUnknown::LiveObjects(), before + 1);
}

TEST(ItemContractTest, NewItemHasOneReference) {
    auto* item = new PlainItem;
    EXPECT_EQ(item->AddRef(), 2U);
    EXPECT_EQ(item->Release(), 1U);
    EXPECT_EQ(item->Release(), 0U);
}

TEST(ItemContractTest, AggregatedItemTakesItsReferenceAtTheOuterObject) {
    Outer outer;
    PlainItem item(&outer);
    EXPECT_EQ(outer.references, 2);
    EXPECT_EQ(item.NonDelegatingAddRef(), 1U);
}

TEST(ItemContractTest, NullIidAnswersWithoutWriting) {
    const Item item = Item::attach(new PlainItem);
    int something = 0;
    void* out = &something;
    EXPECT_EQ(item->NonDelegatingQueryInterface(platform::null_guid, &out), S_OK);
    EXPECT_EQ(out, &something);
    EXPECT_EQ(item->NonDelegatingQueryInterface(platform::null_guid, nullptr), S_OK);
    EXPECT_EQ(item->NonDelegatingQueryInterface(platform::iid_unknown, nullptr), E_POINTER);
    EXPECT_EQ(item->NonDelegatingQueryInterface(some_iid, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(item->AddRef(), 2U);
    EXPECT_EQ(item->Release(), 1U);
}

TEST(ItemContractTest, DefaultsOfTheBase) {
    const Item item = Item::attach(new PlainItem);
    for (const InterfaceKey key : {InterfaceKey{0}, InterfaceKey{7}, ~InterfaceKey{0}}) {
        bool available = false;
        bool read_only = true;
        EXPECT_EQ(item->Refresh(key), S_OK);
        EXPECT_EQ(item->IsAvailable(key, available), S_OK);
        EXPECT_TRUE(available);
        EXPECT_EQ(item->IsReadOnly(key, read_only), S_OK);
        EXPECT_FALSE(read_only);
        ExpectOnly(*item, key, op_none);
        EXPECT_EQ(item->Reserved1(key), E_NOTIMPL);
        EXPECT_EQ(item->Reserved2(key), E_NOTIMPL);
        EXPECT_EQ(item->Reserved3(key), E_NOTIMPL);
        EXPECT_FALSE(item->IsDoNotSerialize(key));
        EXPECT_EQ(item->Closing1(key), 1);
        EXPECT_EQ(item->Closing2(key), 1);
    }
}

TEST(ItemContractTest, SharedStringOutlivesItsFirstHolder) {
    SharedString copy;
    EXPECT_EQ(copy.View(), L"");
    {
        const SharedString first(L"dB");
        copy = first;
        EXPECT_EQ(copy.View().data(), first.View().data());
    }
    EXPECT_EQ(copy.View(), L"dB");
}

}  // namespace
}  // namespace item_tests
