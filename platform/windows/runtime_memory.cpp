#include "platform/windows/runtime_memory.h"

#include <windows.h>

#include <cxxabi.h>

#include <cstdlib>

// The run-time library keeps what it knows of a thread's exceptions in storage that it makes at the first of
// them and gives back when the thread ends. Here the thread is the host's and the library is part of the
// module: the storage and the handles around it outlive the module, and the next load makes new ones. Each
// life of the module with an exception would leave four handles and sixteen blocks of memory with the host;
// the test of a hundred cameras that cannot be reached counts them. The library has no call that ends its
// storage early, and a library beside the module, which could stay loaded, is a file that hosts do not have.
// But it reaches the state of a thread through two functions alone, which the ABI for exceptions names and
// whose contents it fixes. Both are defined here over storage of the system that ends with the thread or with
// the module, whichever is first. The linker takes them for the library's, as it has them already. That is
// known of this one library.
#if !defined(__MINGW32__) || !defined(__GLIBCXX__) || _GLIBCXX_RELEASE != 12 || \
    defined(__USING_SJLJ_EXCEPTIONS__) || defined(__ARM_EABI_UNWINDER__)
#error "See whether this run-time library still reaches the state of exceptions through these two functions."
#endif

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

namespace platform {
namespace {

void CALLBACK FreeState(void* state) { HeapFree(GetProcessHeap(), 0, state); }

const DWORD slot = FlsAlloc(FreeState);

}  // namespace

bool has_runtime_memory() noexcept { return slot != FLS_OUT_OF_INDEXES; }

void release_runtime_memory() noexcept {
    FlsFree(slot);
    __gnu_cxx::__freeres();
}

}  // namespace platform

namespace __cxxabiv1 {

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return static_cast<__cxa_eh_globals*>(FlsGetValue(platform::slot));
}

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept {
    __cxa_eh_globals* state = __cxa_get_globals_fast();
    if (state != nullptr) return state;
    state = static_cast<__cxa_eh_globals*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof *state));
    if (state == nullptr || FlsSetValue(platform::slot, state) == 0) std::abort();
    return state;
}

}  // namespace __cxxabiv1
