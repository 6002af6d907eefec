// A driver that fails, lies, cuts short or throws, at every single call from the first question to the last
// operation of the last element.

#include "adapter/hr_exception.h"
#include "items/unknown.h"
#include "tests/adapter/allocation_watch.h"
#include "tests/adapter/item_walk.h"
#include "tests/support/sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <stdexcept>

namespace adapter_test {
namespace {

std::string Register(const std::string& name, int address) {
    return "<IntReg Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</"
           "Cachable>"
           "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>";
}

std::string Feature(const std::string& kind, const std::string& name, const std::string& content) {
    return "<" + kind + " Name=\"" + name + "\">" + ElementMark() + content + "</" + kind + ">";
}

// One feature of each kind over registers, and two items.
std::string TheDescription() {
    const std::string there = "<pIsImplemented>There</pIsImplemented><pIsLocked>Lock</pIsLocked>";
    return Description(
        "<Port Name=\"Device\"/><Category "
        "Name=\"Root\"><pFeature>First</pFeature><pFeature>Second</pFeature></Category>"
        "<Category "
        "Name=\"First\"><Extension><ZELItemGUID>{00000000-0000-0000-0000-000000000001}</ZELItemGUID>"
        "</Extension><pFeature>Num</pFeature><pFeature>Real</pFeature><pFeature>Flag</pFeature></Category>"
        "<Category "
        "Name=\"Second\"><Extension><ZELItemGUID>{00000000-0000-0000-0000-000000000002}</ZELItemGUID>"
        "</Extension><pFeature>Go</pFeature><pFeature>Mode</pFeature></Category>" +
        Register("There", 0) + Register("Lock", 4) + Register("NumReg", 8) + Register("NumMin", 12) +
        Register("NumMax", 16) + Register("NumInc", 20) + Register("RealReg", 24) + Register("RealMin", 28) +
        Register("RealMax", 32) + Register("FlagReg", 36) + Register("GoReg", 40) + Register("ModeReg", 44) +
        Feature("Integer", "Num",
                there + "<pValue>NumReg</pValue><pMin>NumMin</pMin><pMax>NumMax</pMax><pInc>NumInc</pInc>") +
        Feature("Float", "Real", there + "<pValue>RealReg</pValue><pMin>RealMin</pMin><pMax>RealMax</pMax>") +
        Feature("Boolean", "Flag", there + "<pValue>FlagReg</pValue>") +
        Feature("Command", "Go", there + "<pValue>GoReg</pValue><CommandValue>1</CommandValue>") +
        Feature("Enumeration", "Mode",
                there + "<EnumEntry Name=\"Off\"><Value>0</Value></EnumEntry><EnumEntry Name=\"On\">"
                        "<Value>1</Value></EnumEntry><pValue>ModeReg</pValue>"));
}

class FaultyCamera : public ScriptedCamera {
public:
    explicit FaultyCamera(AccessPath access_path)
        : ScriptedCamera(access_path, {TheDescription(), TheDescription()}) {
        for (const std::uint64_t address : {0U, 4U, 20U}) memory[address] = 1;
        for (const std::uint64_t address : {16U, 32U}) memory[address] = 100;
        other_paths = [](std::string_view path, Bytes& answer) {
            const bool is_selection = path.find("/SelectedEntry") != std::string_view::npos;
            answer = is_selection ? BytesOfText("On") : BytesOf(std::uint64_t{1});
            return true;
        };
    }
};

struct Life {
    std::vector<WalkStep> steps;
    std::string exception;  ///< text of the `hr_exception` that ended it
    std::size_t calls = 0;
};

// What a page does with a filter, and more.
Life Live(ScriptedCamera& camera) {
    Life life;
    try {
        if (genicam_adapter::is_adapter_device(&camera.filter)) {
            GenICamAdapterDevice adapter(&camera.filter);
            life.steps = WalkTable(adapter, camera.filter);
        }
    } catch (const genicam_adapter::hr_exception& failure) {
        life.exception = failure.what();
    }
    EXPECT_EQ(camera.filter.OutstandingReferences(), 0);
    EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), 0);
    life.calls = camera.filter.Calls().size();
    return life;
}

// With sanitizers each fault meets some of the calls.
#ifdef SELVANE_SANITIZED
const std::size_t stride = test_support::by_sweep(5U, 3U, 1U);
#else
constexpr std::size_t stride = 1;
#endif

class FaultSweep : public testing::TestWithParam<AccessPath> {
protected:
    Life clean_ = LiveClean();

    static Life LiveClean() {
        FaultyCamera camera(GetParam());
        return Live(camera);
    }
};

TEST_P(FaultSweep, HasAllElementsWithoutFaults) {
    EXPECT_EQ(clean_.exception, "");
    std::vector<std::string> elements;
    for (const WalkStep& step : clean_.steps) {
        if (elements.empty() || elements.back() != step.element) elements.push_back(step.element);
    }
    EXPECT_EQ(elements, (std::vector<std::string>{"Num", "Real", "Flag", "Go", "Mode", "Num", "Real", "Flag",
                                                  "Go", "Mode"}));
    EXPECT_GT(clean_.calls, 100U);
}

const WalkStep* StepOfCall(const Life& life, std::size_t call) {
    const auto found = std::find_if(life.steps.begin(), life.steps.end(), [=](const WalkStep& step) {
        return call >= step.first_call && call < step.end_call;
    });
    return found != life.steps.end() ? &*found : nullptr;
}

// Failures by name that a range or a list of entries makes good.
bool IsMadeGood(const DriverRequest& request, const WalkStep& step) {
    const std::string path(request.instance.begin() + 8, request.instance.end() - 64);
    const std::string suffix = path.substr(path.rfind('/'));
    const bool in_range = std::string_view(step.operation).find("Range") != std::string_view::npos;
    return suffix == "/IsImplemented" || (in_range && (suffix == "/Inc" || suffix == "/Default"));
}

void ExpectFailureByName(const DriverRequest& request, const WalkStep& step, HRESULT hr) {
    if (IsMadeGood(request, step)) {
        EXPECT_NE(step.result, hr);
    } else {
        EXPECT_EQ(step.result, hr);
    }
}

// Over registers the nodes make some failures good: of a step, and of what tells whether a node is there. A
// limit that cannot be read refuses no value.
void ExpectFailureOverRegisters(const WalkStep& step, const WalkStep& clean, HRESULT hr) {
    const std::string_view operation = step.operation;
    const bool is_write = operation.substr(0, 3) == "Set";
    const HRESULT failure = operation == "Push" ? E_FAIL : hr;
    EXPECT_TRUE(step.result == clean.result || step.result == failure || (is_write && step.result == S_OK))
        << step.result;
}

TEST_P(FaultSweep, SurvivesAFailureOfAnyCall) {
    for (const HRESULT hr : {device_is_lost, E_ACCESSDENIED}) {
        for (std::size_t n = 1; n <= clean_.calls; ++n) {
            SCOPED_TRACE(n);
            FaultyCamera camera(GetParam());
            camera.filter.FailCall(n, hr);
            const Life life = Live(camera);
            const DriverRequest request = test_support::RequestOf(camera.filter.Calls().at(n - 1));
            const std::uint32_t only_path = GetParam() == AccessPath::Named       ? 4
                                            : GetParam() == AccessPath::Registers ? 3
                                                                                  : 0;
            const bool was_the_only_path = request.kind == DriverRequest::Kind::query_supported &&
                                           only_path != 0 && request.id == only_path;
            EXPECT_EQ(life.exception, was_the_only_path ? "Failed to access GenICam data" : "");
            const WalkStep* const step = StepOfCall(life, n - 1);
            if (step == nullptr) continue;
            SCOPED_TRACE(step->element + ' ' + step->operation);
            if (request.id == 4) {
                ExpectFailureByName(request, *step, hr);
            } else {
                ASSERT_EQ(life.steps.size(), clean_.steps.size());
                ExpectFailureOverRegisters(
                    *step, clean_.steps[static_cast<std::size_t>(step - life.steps.data())], hr);
            }
        }
    }
}

TEST_P(FaultSweep, SurvivesTheLossOfTheDevice) {
    for (std::size_t n = 1; n <= clean_.calls; ++n) {
        FaultyCamera camera(GetParam());
        std::size_t calls = 0;
        camera.filter.before_call = [&](const DriverRequest&) {
            if (++calls >= n) camera.filter.FailCall(1, device_is_lost);
        };
        const Life life = Live(camera);
        EXPECT_TRUE(life.exception.empty() || life.exception == "Failed to access GenICam data")
            << life.exception;
    }
}

TEST_P(FaultSweep, SurvivesAnyReturnedSize) {
    for (const std::uint32_t lie : {0U, 1U, 3U, 5U, 7U, 9U, 143U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        for (std::size_t n = 1 + lie % stride; n <= clean_.calls; n += stride) {
            FaultyCamera camera(GetParam());
            std::size_t calls = 0;
            camera.lie = [&](std::uint32_t returned) { return ++calls == n ? lie : returned; };
            const Life life = Live(camera);
            EXPECT_EQ(life.exception, "");
            if (calls < n) break;
        }
    }
}

TEST_P(FaultSweep, SurvivesAnswersCutShort) {
    for (const std::uint32_t left : {0U, 1U, 3U}) {
        for (std::size_t n = 1 + left % stride; n <= clean_.calls; n += stride) {
            FaultyCamera camera(GetParam());
            std::size_t calls = 0;
            camera.cut = [&](std::uint32_t size) { return ++calls == n ? std::min(left, size) : size; };
            const Life life = Live(camera);
            EXPECT_TRUE(life.exception.empty() || life.exception == "Failed to parse GenICam data");
            if (calls < n) break;
        }
    }
}

TEST_P(FaultSweep, LeavesNothingBehindWhenTheDriverThrows) {
    for (std::size_t n = 1; n <= clean_.calls; ++n) {
        FaultyCamera camera(GetParam());
        std::size_t calls = 0;
        camera.filter.before_call = [&](const DriverRequest&) {
            if (++calls == n) throw std::runtime_error("thrown by the driver");
        };
        try {
            (void)Live(camera);
        } catch (const std::runtime_error& failure) {
            EXPECT_STREQ(failure.what(), "thrown by the driver");
        }
        EXPECT_EQ(camera.filter.OutstandingReferences(), 0);
        EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), 0);
    }
}

TEST_P(FaultSweep, LeavesNothingBehindWithoutMemory) {
    bool came = true;
    for (std::uint64_t n = 1; came; n += stride) {
        FaultyCamera camera(GetParam());
        const FailingAllocation failing(n);
        try {
            (void)Live(camera);
        } catch (const std::bad_alloc&) {
            // Nothing on the way stops it.
        }
        came = failing.Came();
        EXPECT_EQ(camera.filter.OutstandingReferences(), 0);
        EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, FaultSweep,
                         testing::Values(AccessPath::Named, AccessPath::Registers, AccessPath::Both),
                         [](const auto& access_path) {
                             return access_path.param == AccessPath::Named       ? "Named"
                                    : access_path.param == AccessPath::Registers ? "Registers"
                                                                                 : "Both";
                         });

}  // namespace
}  // namespace adapter_test
