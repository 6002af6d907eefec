#include "platform/com_ptr.h"

#include <utility>

#include <gtest/gtest.h>

namespace {

using platform::com_ptr;

struct counted {
    int references = 0;
    int AddRef() { return ++references; }
    int Release() { return --references; }
};

TEST(ComPtr, CountsWhatItHolds) {
    counted object;
    {
        const com_ptr<counted> first(&object);
        EXPECT_EQ(object.references, 1);
        const com_ptr<counted> second = first;
        EXPECT_EQ(object.references, 2);
        com_ptr<counted> third(&object);
        com_ptr<counted> moved = std::move(third);
        EXPECT_EQ(object.references, 3);
        moved = com_ptr<counted>();
        EXPECT_EQ(object.references, 2);
        EXPECT_TRUE(second);
        EXPECT_EQ(second->references, 2);
    }
    EXPECT_EQ(object.references, 0);
}

TEST(ComPtr, TakesOverAndHandsOver) {
    counted object;
    object.AddRef();
    com_ptr<counted> held = com_ptr<counted>::attach(&object);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(held.detach(), &object);
    EXPECT_EQ(object.references, 1);
    EXPECT_FALSE(held);
}

TEST(ComPtr, PutDropsWhatWasHeld) {
    counted object;
    com_ptr<counted> held(&object);
    counted other;
    other.AddRef();
    *held.put() = &other;
    EXPECT_EQ(object.references, 0);
    held.reset();
    EXPECT_EQ(other.references, 0);
}

// Gives its one interface, or fails.
class object_with_property_set final : public IKsPropertySet {
public:
    explicit object_with_property_set(bool has_interface) : has_interface_(has_interface) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool found = has_interface_ && iid == platform::iid_property_set;
        *out = found ? static_cast<IKsPropertySet*>(this) : nullptr;
        if (!found) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Get(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID, DWORD, DWORD*) override { return E_NOTIMPL; }

    ULONG references = 0;

private:
    bool has_interface_;
};

TEST(Query, AsksForTheInterface) {
    object_with_property_set object(true);
    {
        const com_ptr<IKsPropertySet> found = platform::query<IKsPropertySet>(&object);
        EXPECT_EQ(found.get(), &object);
        EXPECT_EQ(object.references, 1U);
        EXPECT_FALSE(platform::query<IAMCameraControl>(&object));
    }
    EXPECT_EQ(object.references, 0U);
}

TEST(Query, NullAndRefusal) {
    object_with_property_set object(false);
    EXPECT_FALSE(platform::query<IKsPropertySet>(&object));
    EXPECT_FALSE(platform::query<IKsPropertySet>(nullptr));
    EXPECT_EQ(object.references, 0U);
}

}  // namespace
