// Memory runs out inside the DLL, at each of its allocations in turn, while a page is given its camera and
// while it is opened.

#include "adapter/hr_exception.h"
#include "tests/windows/page_fixture.h"
#include "tests/windows/redirected_import.h"

#include <cstdlib>
#include <optional>

namespace page_test {
namespace {

/// Stands between a module and the functions by which it takes memory. One at a time.
class ModuleAllocations {
public:
    explicit ModuleAllocations(HMODULE module)
        : malloc_(module, "malloc", reinterpret_cast<void*>(&Malloc)),
          calloc_(module, "calloc", reinterpret_cast<void*>(&Calloc)),
          realloc_(module, "realloc", reinterpret_cast<void*>(&Realloc)),
          free_(module, "free", reinterpret_cast<void*>(&Free)) {}

    /// Which one fails after `Strike`, from one.
    static void Choose(unsigned n) { chosen = n; }
    static void Strike() {
        taken = 0;
        failing = chosen;
    }
    static void Spare() { failing = 0; }
    /// Whether there were so many.
    [[nodiscard]] static bool Struck() { return taken >= chosen; }
    /// Blocks taken and not given back since this began to watch; below zero where older ones were given
    /// back.
    [[nodiscard]] static long Live() { return live; }
    [[nodiscard]] bool Watches() const { return malloc_.Before() != nullptr && free_.Before() != nullptr; }

private:
    static bool MayTake() { return ++taken != failing; }
    static void* Counted(void* block) {
        if (block != nullptr) ++live;
        return block;
    }
    static void* Malloc(std::size_t size) { return MayTake() ? Counted(std::malloc(size)) : nullptr; }
    static void* Calloc(std::size_t count, std::size_t size) {
        return MayTake() ? Counted(std::calloc(count, size)) : nullptr;
    }
    static void* Realloc(void* block, std::size_t size) {
        if (!MayTake()) return nullptr;
        void* const moved = std::realloc(block, size);
        return block == nullptr ? Counted(moved) : moved;
    }
    static void Free(void* block) {
        if (block != nullptr) --live;
        std::free(block);
    }

    static inline unsigned chosen = 0;
    static inline unsigned taken = 0;
    static inline unsigned failing = 0;
    static inline long live = 0;
    RedirectedImport malloc_, calloc_, realloc_, free_;
};

class AllocationTest : public AccessPathTest {
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
        EXPECT_EQ(page.Activate(host_.Handle(), &rect, FALSE), S_OK);
        const std::size_t count = ChildrenOf(GetWindow(host_.Handle(), GW_CHILD)).size();
        EXPECT_EQ(page.Deactivate(), S_OK);
        return count;
    }

    [[nodiscard]] std::size_t ControlsOfPage(REFCLSID clsid) const {
        const PagePtr page = GivenPage(clsid);
        return ControlsOfPage(*page);
    }

    // Lives once for each allocation that fails.
    template <class Live>
    void StrikeEach(Live live) const {
        long blocks = 0;
        unsigned n = 0;
        do {
            do ++n;
            while (!IsVisited(n));
            SCOPED_TRACE(n);
            ModuleAllocations::Choose(n);
            live();
            // The first exception of a thread leaves what all others use.
            if (n == 1) blocks = ModuleAllocations::Live();
            EXPECT_EQ(ModuleAllocations::Live(), blocks);
        } while (ModuleAllocations::Struck() && !HasFailure());
    }

    const ModuleAllocations allocations_{server_.Module()};
};

TEST_P(AllocationTest, SetObjectsSurvivesTheFailureOfAny) {
    ASSERT_TRUE(allocations_.Watches());
    for (const CLSID& clsid : all_pages) {
        const std::size_t controls = ControlsOfPage(clsid);
        int refused = 0;
        StrikeEach([&] {
            const PagePtr page = server_.MakePage(clsid);
            ModuleAllocations::Strike();
            const std::optional<HRESULT> said = Taken(*page);
            ModuleAllocations::Spare();
            // Items that had no memory are left out, and with all of them the camera has nothing to show.
            const HRESULT code = said.value_or(E_FAIL);
            EXPECT_TRUE(!said || code == S_OK || code == E_OUTOFMEMORY || code == E_NOINTERFACE) << code;
            refused += said == S_OK ? 0 : 1;
            EXPECT_EQ(Taken(*page), S_OK);
            EXPECT_EQ(ControlsOfPage(*page), controls);
        });
        EXPECT_GT(refused, 5);
        EXPECT_EQ(camera_->references(), 1);
        EXPECT_EQ(server_.CanUnloadNow(), S_OK);
    }
}

TEST_P(AllocationTest, ActivateShowsWhatItHasMemoryFor) {
    for (const CLSID& clsid : all_pages) {
        const PagePtr page = GivenPage(clsid);
        const std::size_t controls = ControlsOfPage(*page);
        ASSERT_GT(controls, 1U);
        int cut = 0;
        StrikeEach([&] {
            ModuleAllocations::Strike();
            EXPECT_EQ(page->Activate(host_.Handle(), &rect, FALSE), S_OK);
            ModuleAllocations::Spare();
            const HWND window = GetWindow(host_.Handle(), GW_CHILD);
            cut += window == nullptr || ChildrenOf(window).size() < controls ? 1 : 0;
            EXPECT_EQ(page->Deactivate(), S_OK);
            EXPECT_TRUE(ChildrenOf(host_.Handle()).empty());
            EXPECT_EQ(ControlsOfPage(*page), controls);
        });
        EXPECT_GT(cut, 5);
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, AllocationTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
