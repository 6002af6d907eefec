#include "propui/windows/framework/process_lock.h"

#include <windows.h>

namespace ZELPropUI::Framework {
namespace {

// Not a std::mutex: the run-time library would make one on first use that outlives the module.
class CriticalSection {
public:
    CriticalSection() noexcept { InitializeCriticalSectionEx(&section_, 0, 0); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    ~CriticalSection() { DeleteCriticalSection(&section_); }

    void Enter() noexcept { EnterCriticalSection(&section_); }
    void Leave() noexcept { LeaveCriticalSection(&section_); }

private:
    CRITICAL_SECTION section_{};
};

CriticalSection process_section;

}  // namespace

ProcessLock::ProcessLock() noexcept { process_section.Enter(); }

ProcessLock::~ProcessLock() { process_section.Leave(); }

}  // namespace ZELPropUI::Framework
