#include "server/runtime_memory.h"

#include <windows.h>

#include <cxxabi.h>

#include <cstdlib>

namespace __gnu_cxx {
void __freeres();  // of the run-time library, in none of its headers
}

namespace __cxxabiv1 {
// As the ABI for exceptions says.
struct __cxa_eh_globals {
    void* caught_exceptions;
    unsigned int uncaught_exceptions;
};
}  // namespace __cxxabiv1

namespace selvane_server {
namespace {

void CALLBACK FreeState(void* state) { HeapFree(GetProcessHeap(), 0, state); }

const DWORD slot = FlsAlloc(FreeState);

}  // namespace

bool HasRuntimeMemory() noexcept { return slot != FLS_OUT_OF_INDEXES; }

void ReleaseRuntimeMemory() noexcept {
    FlsFree(slot);
    __gnu_cxx::__freeres();
}

}  // namespace selvane_server

// The state of exceptions of a thread. These take the place of the run-time library's own two functions: its
// way to thread storage leaves memory and handles behind in each thread that outlives the module.
namespace __cxxabiv1 {

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return static_cast<__cxa_eh_globals*>(FlsGetValue(selvane_server::slot));
}

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept {
    __cxa_eh_globals* state = __cxa_get_globals_fast();
    if (state != nullptr) return state;
    state = static_cast<__cxa_eh_globals*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof *state));
    if (state == nullptr || FlsSetValue(selvane_server::slot, state) == 0) std::abort();
    return state;
}

}  // namespace __cxxabiv1
