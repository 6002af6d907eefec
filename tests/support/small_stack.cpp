#include "tests/support/small_stack.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

#include <cstddef>
#include <stdexcept>

namespace test_support {
namespace {

constexpr std::size_t one_megabyte = std::size_t{1} << 20;

#ifdef _WIN32

DWORD WINAPI Run(void* function) {
    (*static_cast<std::function<void()>*>(function))();
    return 0;
}

#else

void* Run(void* function) {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
}

#endif

}  // namespace

void RunOnSmallStack(std::function<void()> function) {
#ifdef _WIN32
    HANDLE thread =
        CreateThread(nullptr, one_megabyte, Run, &function, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr) throw std::runtime_error("no thread");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
#else
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, one_megabyte);
    pthread_t thread;
    const int failed = pthread_create(&thread, &attributes, Run, &function);
    pthread_attr_destroy(&attributes);
    if (failed != 0) throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
#endif
}

}  // namespace test_support
