// Memory runs out inside the DLL, at each of its allocations in turn, while a page is given its camera and
// while it is opened.

#include "adapter/hr_exception.h"
#include "tests/windows/page_fixture.h"

#include <cstdlib>
#include <cstring>
#include <optional>

namespace page_test {
namespace {

/// Stands between a module and the functions by which it takes memory. One at a time.
class ModuleAllocations {
public:
    explicit ModuleAllocations(HMODULE module) {
        auto* const base = reinterpret_cast<unsigned char*>(module);
        const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        const auto* from = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
        for (; from->Name != 0; ++from) {
            const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
            auto* places = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->FirstThunk);
            for (; names->u1.AddressOfData != 0; ++names, ++places) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
                const auto* named =
                    reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
                Replace(reinterpret_cast<const char*>(named->Name), places->u1.Function);
            }
        }
    }
    ModuleAllocations(const ModuleAllocations&) = delete;
    ModuleAllocations& operator=(const ModuleAllocations&) = delete;
    ~ModuleAllocations() {
        if (malloc_place_ != nullptr) Write(*malloc_place_, reinterpret_cast<ULONGLONG>(real_malloc));
        if (calloc_place_ != nullptr) Write(*calloc_place_, reinterpret_cast<ULONGLONG>(real_calloc));
        failing = 0;
    }

    /// The n-th from now on fails.
    static void Fail(unsigned n) {
        taken = 0;
        failing = n;
    }
    static void FailNone() { failing = 0; }
    [[nodiscard]] static unsigned Taken() { return taken; }
    [[nodiscard]] bool Watches() const { return malloc_place_ != nullptr; }

private:
    static bool MayTake() { return ++taken != failing; }
    static void* Malloc(std::size_t size) { return MayTake() ? real_malloc(size) : nullptr; }
    static void* Calloc(std::size_t count, std::size_t size) {
        return MayTake() ? real_calloc(count, size) : nullptr;
    }

    static void Write(ULONGLONG& place, ULONGLONG function) {
        DWORD before = 0;
        VirtualProtect(&place, sizeof place, PAGE_READWRITE, &before);
        place = function;
        VirtualProtect(&place, sizeof place, before, &before);
    }

    void Replace(const char* name, ULONGLONG& place) {
        if (std::strcmp(name, "malloc") == 0) {
            real_malloc = reinterpret_cast<decltype(real_malloc)>(place);
            malloc_place_ = &place;
            Write(place, reinterpret_cast<ULONGLONG>(&Malloc));
        } else if (std::strcmp(name, "calloc") == 0) {
            real_calloc = reinterpret_cast<decltype(real_calloc)>(place);
            calloc_place_ = &place;
            Write(place, reinterpret_cast<ULONGLONG>(&Calloc));
        }
    }

    static inline void* (*real_malloc)(std::size_t) = nullptr;
    static inline void* (*real_calloc)(std::size_t, std::size_t) = nullptr;
    static inline unsigned taken = 0;
    static inline unsigned failing = 0;
    ULONGLONG* malloc_place_ = nullptr;
    ULONGLONG* calloc_place_ = nullptr;
};

class AllocationTest : public RoadTest {
protected:
    // What the page says to the camera; not set where it ended with the exception of a camera that cannot be
    // worked with.
    std::optional<HRESULT> Taken(IPropertyPage& page) const {
        try {
            return Give(page);
        } catch (const genicam_adapter::hr_exception&) {
            return std::nullopt;
        }
    }

    [[nodiscard]] std::size_t ControlsOfPage(IPropertyPage& page) const {
        EXPECT_EQ(page.Activate(host_.Handle(), &place, FALSE), S_OK);
        const std::size_t count = ChildrenOf(GetWindow(host_.Handle(), GW_CHILD)).size();
        EXPECT_EQ(page.Deactivate(), S_OK);
        return count;
    }

    [[nodiscard]] std::size_t ControlsOfPage(REFCLSID clsid) const {
        const PagePtr page = GivenPage(clsid);
        return ControlsOfPage(*page);
    }

    const ModuleAllocations allocations_{server_.Module()};
};

TEST_P(AllocationTest, SetObjectsSurvivesTheFailureOfAny) {
    ASSERT_TRUE(allocations_.Watches());
    for (const CLSID& clsid : all_pages) {
        const std::size_t controls = ControlsOfPage(clsid);
        unsigned refused = 0;
        for (unsigned n = 1;; ++n) {
            SCOPED_TRACE(n);
            const PagePtr page = server_.MakePage(clsid);
            ModuleAllocations::Fail(n);
            const std::optional<HRESULT> said = Taken(*page);
            ModuleAllocations::FailNone();
            const bool came = ModuleAllocations::Taken() >= n;
            // Items that had no memory are left out, and with all of them the camera has nothing to show.
            if (said) EXPECT_TRUE(*said == S_OK || *said == E_OUTOFMEMORY || *said == E_NOINTERFACE) << *said;
            refused += said == S_OK ? 0 : 1;
            EXPECT_EQ(Taken(*page), S_OK);
            EXPECT_EQ(ControlsOfPage(*page), controls);
            if (!came || HasFailure()) break;
        }
        EXPECT_GT(refused, 5U);
        EXPECT_EQ(camera_->references(), 1);
        EXPECT_EQ(server_.CanUnloadNow(), S_OK);
    }
}

TEST_P(AllocationTest, ActivateSurvivesTheFailureOfAny) {
    for (const CLSID& clsid : all_pages) {
        const PagePtr page = GivenPage(clsid);
        const std::size_t controls = ControlsOfPage(*page);
        ASSERT_GT(controls, 1U);
        unsigned failed = 0;
        for (unsigned n = 1;; ++n) {
            SCOPED_TRACE(n);
            ModuleAllocations::Fail(n);
            const HRESULT opened = page->Activate(host_.Handle(), &place, FALSE);
            ModuleAllocations::FailNone();
            const bool came = ModuleAllocations::Taken() >= n;
            EXPECT_TRUE(opened == S_OK || opened == E_OUTOFMEMORY) << opened;
            failed += opened == S_OK ? 0 : 1;
            (void)page->Deactivate();
            EXPECT_TRUE(ChildrenOf(host_.Handle()).empty());
            EXPECT_EQ(ControlsOfPage(*page), controls);
            if (!came || HasFailure()) break;
        }
        EXPECT_GT(failed, 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(Roads, AllocationTest, testing::Values(Road::Named, Road::Registers), RoadName);

}  // namespace
}  // namespace page_test
